#pragma once
// The collector object that stands for a camera.
//
// A camera is no object of the collector, but its callbacks may be. The first callable object stored in a camera makes
// its proxy, which is a root while the camera lives; marking the proxy marks the camera's callbacks. A destroyed camera
// detaches its proxy, which the collector then reclaims like any object without references. A proxy serves one camera
// and is never attached again.

#include "Files/Object/Object_Base.h"

class CCamera;

class Camera_GCProxy : public KvObjectBase
{
public:
    CCamera* pCamObj; // null once detached

    // Takes a slot of g_slotObjects and becomes a root. Without memory for a slot the program ends with a message.
    explicit Camera_GCProxy(CCamera* camera);
    ~Camera_GCProxy() override;

    void Detach(); // the caller clears its own pointer to the proxy

    bool Mark4GC(uint32_t* marks, int count) override;
    bool Free(bool freeVars) override; // deletes the proxy; true
    bool ThreadFree(bool freeVars, GCContext* context) override;
};
