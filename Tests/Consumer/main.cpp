// A runner that is not ours, built from the installed package: it registers the built-ins, makes a camera through one
// of them and draws through it.
#include <Files/Graphics/Graphics_Support.h>

#include <cstdio>

int main()
{
    g_CM.SetupLumFunctions();

    RValue args[4] = {};
    args[2].val = 640.0;
    args[3].val = 480.0;
    RValue result = {};
    F_CameraCreateView(result, nullptr, nullptr, 4, args);
    CCamera* const camera = g_CM.GetCamera(static_cast<int>(result.val));
    if (camera == nullptr)
    {
        puts("no camera");
        return 1;
    }
    camera->ApplyMatrices();
    printf("camera %d shows %.0f x %.0f\n", camera->GetID(), static_cast<double>(g_ViewAreaW),
           static_cast<double>(g_ViewAreaH));
    return 0;
}
