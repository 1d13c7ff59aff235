// A program of its own: a camera's part of a frame, which is Begin, CameraUpdate, ApplyMatrices, End, over a host that
// does nothing (Empty_Host.cpp), so that the host's time is on neither side. No callbacks; both sides make the same
// calls: the target's look-up, the view extents, the two matrices. Ours also calls the host's matrix builders, which
// are the Runner's.

#include "Benchmarks/Bench.h"
#include "Benchmarks/Peer_Glm.h"
#include "Benchmarks/Peers.h"
#include "Files/Graphics/Graphics_Support.h"

#include <array>
#include <cmath>
#include <memory>

namespace
{
using namespace Bench;

constexpr int NOBODY = -1;
constexpr int ROOM_SIDE = 100000;
constexpr float PATH = 1024.0f; // a target walks this far, then starts again

// A large room with a target for each camera, for as long as it lives.
class Stage
{
public:
    Stage()
    {
        for (int slot = 0; slot < BENCH_VIEWS; ++slot)
            m_targets[static_cast<size_t>(slot)] =
                std::make_unique<CInstance>(2000.0f, 2000.0f, INSTANCE_ID_FIRST + slot, 0, false);
        m_room.r_width = m_room.r_height = ROOM_SIDE;
        Run_Room = &m_room;
    }
    ~Stage() { Run_Room = nullptr; }
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    CInstance& Target(int slot) const { return *m_targets[static_cast<size_t>(slot)]; }

    void MoveTarget(int slot) const
    {
        CInstance& target = Target(slot);
        target.x = target.x < 2000.0f + PATH ? target.x + 1.25f : 2000.0f;
        target.y = target.x;
    }

    BenchFollower Follower(int slot, bool follows) const
    {
        const BenchView view = ViewOf(slot);
        return {view.x, view.y, view.width, view.height, view.angle,
                100.0f, 80.0f,  -1.0f,      -1.0f,       follows ? Target(slot).m_id : NOBODY,
                true};
    }

private:
    CRoom m_room = {};
    std::array<std::unique_ptr<CInstance>, BENCH_VIEWS> m_targets;
};

// Registered cameras, destroyed at the end.
class Cameras
{
public:
    Cameras(const Stage& stage, bool follow)
    {
        for (int slot = 0; slot < BENCH_VIEWS; ++slot)
        {
            const BenchFollower values = stage.Follower(slot, follow);
            CCamera* const camera = g_CM.CreateCamera();
            camera->SetViewX(values.x);
            camera->SetViewY(values.y);
            camera->SetViewWidth(values.width);
            camera->SetViewHeight(values.height);
            camera->SetViewAngle(values.angle);
            camera->SetViewBorderX(values.borderX);
            camera->SetViewBorderY(values.borderY);
            camera->SetViewSpeedX(values.speedX);
            camera->SetViewSpeedY(values.speedY);
            camera->SetTargetInstance(values.target);
            camera->SetViewDirty();
            m_cameras[static_cast<size_t>(slot)] = camera;
        }
    }
    ~Cameras()
    {
        // The room of the benchmark has no views, so none may be running when the room's list is rebuilt.
        CRoom* const room = Run_Room;
        Run_Room = nullptr;
        for (CCamera* camera : m_cameras)
            g_CM.DestroyCamera(camera->GetID());
        Run_Room = room;
    }
    Cameras(const Cameras&) = delete;
    Cameras& operator=(const Cameras&) = delete;

    void Step(int slot) const
    {
        CCamera& camera = *m_cameras[static_cast<size_t>(slot)];
        camera.Begin();
        camera.CameraUpdate();
        camera.ApplyMatrices();
        camera.End();
    }

private:
    std::array<CCamera*, BENCH_VIEWS> m_cameras;
};

template <typename Step> void Run(benchmark::State& state, const Stage& stage, bool moves, const Step& step)
{
    for (int slot = 0; slot < BENCH_VIEWS; ++slot)
        step(slot); // what was dirty at first is clean afterwards
    int slot = 0;
    for (auto _ : state)
    {
        if (moves)
            stage.MoveTarget(slot);
        step(slot);
        slot = (slot + 1) % BENCH_VIEWS;
    }
}

void Ours(benchmark::State& state, bool moves)
{
    const Stage stage;
    const Cameras cameras(stage, moves);
    Run(state, stage, moves, [&](int slot) { cameras.Step(slot); });
}

void Peer(benchmark::State& state, bool moves, const BenchStepper& stepper)
{
    const Stage stage;
    for (int slot = 0; slot < BENCH_VIEWS; ++slot)
        stepper.set(slot, stage.Follower(slot, moves));
    Run(state, stage, moves, stepper.step);
}

// ---- the check ----

struct Published
{
    float values[16] = {g_ViewAreaX, g_ViewAreaY, g_ViewAreaW, g_ViewAreaH, g_ViewAreaA};
};

void CheckStepper(const BenchStepper& stepper)
{
    const Stage stage;
    const Cameras cameras(stage, true);
    for (int slot = 0; slot < BENCH_VIEWS; ++slot)
        stepper.set(slot, stage.Follower(slot, true));
    for (int turn = 0; turn < 2000; ++turn)
    {
        const int slot = turn % BENCH_VIEWS;
        stage.MoveTarget(slot);
        cameras.Step(slot);
        Published ours;
        const float behindEdge = stage.Target(slot).x - g_ViewAreaX;
        Require(behindEdge > 0.0f && behindEdge < g_ViewAreaW, "following: a step that leaves its target outside");
        stepper.step(slot);
        Published theirs;
        // An angle near 0 may come out near 360.
        const float turned = std::fabs(theirs.values[4] - ours.values[4]);
        Require(std::fmin(turned, 360.0f - turned) < 0.05f, std::string("angle of a step by ") + stepper.name);
        ours.values[4] = theirs.values[4] = 0.0f;
        RequireNear(theirs.values, ours.values, 1e-5f, std::string("area of a step by ") + stepper.name);
    }
}

void Check()
{
    CheckStepper(BENCH_GLM_STEPPER);
    CheckStepper(BENCH_GLM_SIMD_STEPPER);
}

void AddRows()
{
    for (const bool moves : {true, false})
    {
        const char* const subject = moves ? "step after a moving target" : "step of an unchanged view";
        Row(subject, "ours", [=](benchmark::State& state) { Ours(state, moves); });
        for (const BenchStepper* stepper : {&BENCH_GLM_STEPPER, &BENCH_GLM_SIMD_STEPPER})
            Row(subject, stepper->name, [=](benchmark::State& state) { Peer(state, moves, *stepper); });
    }
}
} // namespace

int main(int argc, char** argv) { return Run(argc, argv, {{Check, AddRows}}); }
