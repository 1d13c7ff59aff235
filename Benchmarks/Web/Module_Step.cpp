// The time of a camera's step in the real Runner's host, natively and in WebAssembly: what the module does in each
// frame for a camera that follows, from the update to the published area. Prints nanoseconds a step.
//
//   module_step [ROUNDS]      so many rounds instead of 9: on a busy machine the difference of two counts in processor
//                             time tells more than the clock
#include "Files/Graphics/Graphics_Support.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace
{
constexpr int CAMERAS = 64;
constexpr int STEPS = 4000; // of each camera, in a round
constexpr int ROUNDS = 9;

double Nanoseconds(std::chrono::steady_clock::duration time)
{
    return static_cast<double>(std::chrono::duration_cast<std::chrono::nanoseconds>(time).count());
}

// Every step builds view and projection, inverts them and publishes the area: the camera has moved.
double Round(const std::vector<CCamera*>& cameras)
{
    const auto began = std::chrono::steady_clock::now();
    for (int step = 0; step < STEPS; ++step)
        for (CCamera* camera : cameras)
        {
            camera->SetViewX(static_cast<float>(step % 977));
            camera->SetViewDirty();
            camera->CameraUpdate();
            camera->ApplyMatrices();
        }
    return Nanoseconds(std::chrono::steady_clock::now() - began) / (STEPS * static_cast<double>(cameras.size()));
}
} // namespace

int main(int argc, char** argv)
{
    std::vector<CCamera*> cameras;
    for (int i = 0; i < CAMERAS; ++i)
    {
        CCamera* const camera = g_CM.CreateCamera();
        camera->SetViewWidth(640.0f);
        camera->SetViewHeight(360.0f);
        camera->SetViewAngle(static_cast<float>(i % 2) * 30.0f); // upright ones and turned ones
        cameras.push_back(camera);
    }
    const int count = argc > 1 ? std::max(1, std::atoi(argv[1])) : ROUNDS;
    std::vector<double> rounds;
    for (int round = 0; round < count; ++round)
        rounds.push_back(Round(cameras));
    std::sort(rounds.begin(), rounds.end());
    std::printf("%.1f\n", rounds[rounds.size() / 2]);
    return 0;
}
