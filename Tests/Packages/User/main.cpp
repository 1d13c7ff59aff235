// A runner that is not ours: it asks for the version, registers the built-ins, makes a camera and draws through it.
#include <Files/Graphics/Graphics_Support.h>

#include <cstdio>

int main()
{
    const bool isSameVersion = CameraModule::Version() == CAMERA_MODULE_VERSION;
    printf("version %s, archive %s\n", CAMERA_MODULE_VERSION_TEXT, isSameVersion ? "the same" : "another");

    g_CM.SetupLumFunctions();
    CCamera* const camera = g_CM.CreateCamera();
    if (camera == nullptr)
        return 1;
    camera->SetViewWidth(640.0f);
    camera->SetViewHeight(480.0f);
    camera->Build2DView(320.0f, 240.0f);
    camera->ApplyMatrices();
    printf("camera %d shows %.0f x %.0f\n", camera->GetID(), static_cast<double>(g_ViewAreaW),
           static_cast<double>(g_ViewAreaH));
    return 0;
}
