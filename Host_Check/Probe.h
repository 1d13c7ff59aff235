#pragma once
// An object of the collector whose fate can be seen: it takes a slot as the cameras' proxies do, holds values, and says
// when it is marked and deleted.

#include "Host_Check/Check.h"

namespace HostCheck
{

class Probe : public Camera_GCProxy
{
public:
    // What happened to a probe; outlives it.
    struct Fate
    {
        bool isDeleted = false;
        int marked = 0; // times that its marking began
    };

    // Placed in a slot and no root. Null without memory.
    static Probe* Make(Fate& fate);
    ~Probe() override;

    bool Mark4GC(uint32_t* marks, int count) override; // marks held, too

    void Hold(const RValue& value); // as objects hold values: in the name of the probe
    void Drop();                    // releases what it holds
    void Discard();                 // deletes a probe that no collection has taken

    using WhenFreed = void (*)();
    void CallWhenFreed(WhenFreed action) { m_whenFreed = action; } // inside Free, before the deletion
    bool Free(bool freeVars) override;
    bool ThreadFree(bool freeVars, GCContext* context) override;

private:
    explicit Probe(Fate& fate);

    Fate& m_fate;
    RValue m_held;
    WhenFreed m_whenFreed = nullptr;
};

RValue ObjectValue(KvObjectBase* object);          // object may be null
RValue ArrayValue(RefDynamicArrayOfRValue* array); // does not count; array may be null
RefDynamicArrayOfRValue* NewArray(int32_t length); // of zero reals, as the module makes them; null without memory

} // namespace HostCheck
