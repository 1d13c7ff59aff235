// One frame: the game's step, then what each view shows of it.

#include "Files/Graphics/Graphics_Support.h"
#include "Runner/Game/Game.h"
#include "Runner/Game/Mistakes.h"
#include "Runner/Host/Collector.h"
#include "Runner/Host/Console.h"
#include "Runner/Host/Graphics.h"
#include "Runner/Lua/Self.h"

#include <algorithm>
#include <cmath>

namespace Runner
{
bool Game::Frame(const InputFrame& seen)
{
    if (m_frame >= COUNTERS_END - 1)
    {
        scripts.Fail("the game has played " + std::to_string(m_frame) + " frames, and cannot count further");
        return false;
    }
    input.BeginFrame(seen);
    if (options.journal != nullptr)
        options.journal->BeginFrame(*this);
    PlayFrame();
    if (options.journal != nullptr)
        options.journal->EndFrame(*this);
    return !scripts.Failed();
}

void Game::PlayFrame()
{
    scripts.RenewInstructions();
    if (observer != nullptr)
        observer->FrameBegins(*this);
    {
        const PartScope part(observer, FramePart::Step);
        Step();
        ChangeRoom();
    }
    Draw();
    {
        const PartScope part(observer, FramePart::Collector);
        Collector::Safepoint();
    }
    ++m_frame;
    SumFrame();
    if (observer != nullptr)
        observer->FrameEnded(*this);
    if (!scripts.Failed() && afterFrame != nullptr)
        afterFrame->Perform(*this);
    if (options.check && !scripts.Failed())
        CheckEverything();
}

// A hash of what the frame's views showed and of the random numbers afterwards: a run that parts from another one is
// noticed at once, or as soon as it shows.
void Game::SumFrame()
{
    const Random::State state = random.GetState();
    Hash hash;
    for (const uint64_t number : {m_trace.TakeSum(), state.position, state.increment})
    {
        hash.U32(static_cast<uint32_t>(number));
        hash.U32(static_cast<uint32_t>(number >> 32));
    }
    m_frameSum = hash.Value();
}

// ---- the step ----

// Instances that this step creates wait for the next one.
void Game::Step()
{
    if (!CallRoom(rooms.Running()->spec.scripts.step, "step"))
        return;
    const size_t count = world.Steppers().size();
    for (size_t i = 0; i < count; ++i)
    {
        Instance& instance = *world.Steppers()[i];
        if (!instance.IsLive())
            continue;
        const EventScope event(observer, "object", instance.type.name, "step");
        if (!scripts.Call(instance.type.traits.Script(Event::Step), &instance))
            return;
    }
    world.RemoveDestroyed(DropSelf);
}

bool Game::CallRoom(int script, const char* event)
{
    const EventScope scope(script == NO_SCRIPT ? nullptr : observer, "room", rooms.Running()->spec.name, event);
    return scripts.Call(script);
}

void Game::ChangeRoom()
{
    if (scripts.Failed() || m_nextRoom == NO_ROOM)
        return;
    const int next = m_nextRoom;
    m_nextRoom = NO_ROOM;
    EndRoom();
    StartRoom(next);
}

// ---- drawing ----

void Game::Draw()
{
    if (scripts.Failed())
        return;
    RunningRoom& room = *rooms.Running();
    m_isDrawing = true;
    m_painter->BeginFrame();
    m_painter->Clear(0);
    DrawViews(room);
    DrawGui(room);
    {
        const PartScope part(observer, FramePart::Painting);
        m_painter->EndFrame();
    }
    m_isDrawing = false;
    const std::string problem = m_painter->TakeError();
    if (!problem.empty())
        scripts.Fail(problem);
    if (scripts.Failed()) // half a picture is of no use
        m_painter->TakeBackFrame();
}

void Game::DrawViews(RunningRoom& room)
{
    if (!room.HasVisibleView())
        DrawDefaultView(room);
    for (int number = 0; number < ROOM_VIEWS; ++number)
        if (room.views[static_cast<size_t>(number)].visible)
            DrawView(room, number);
    g_CM.SetActiveCamera(NO_CAMERA);
}

void Game::DrawView(RunningRoom& room, int number)
{
    View& view = room.views[static_cast<size_t>(number)];
    const int surface = view.surface;
    if (!HasTarget(view, number))
        return;
    if (surface != SCREEN_SURFACE && !m_painter->PushTarget(surface))
        return;
    BeginTarget(PortOf(view), room.background);
    DrawThrough(CameraNumber(view.cameraID), number);
    EndTarget();
    if (surface != SCREEN_SURFACE)
        m_painter->PopTarget();
}

// Whether what the view draws into exists. A missing surface is reported once, until the view has a target again.
bool Game::HasTarget(View& view, int number) const
{
    const bool hasTarget = view.surface == SCREEN_SURFACE || m_painter->SurfaceExists(view.surface);
    const int missing = hasTarget ? SCREEN_SURFACE : view.surface;
    if (!hasTarget && view.missingSurface != missing)
        PrintLine("view " + std::to_string(number) + " shows nothing: it draws into surface " +
                  std::to_string(missing) + ", which does not exist");
    view.missingSurface = missing;
    return hasTarget;
}

void Game::DrawDefaultView(const RunningRoom& room)
{
    const CCamera* camera = g_CM.GetCamera(g_DefaultCameraID);
    if (camera == nullptr)
        return;
    BeginTarget(FittingPort(camera->GetViewWidth(), camera->GetViewHeight()), room.background);
    DrawThrough(CameraNumber(g_DefaultCameraID), NO_VIEW);
    EndTarget();
}

// A callback may destroy its camera or put another one in its place, so every step looks the camera up anew.
void Game::DrawThrough(const CameraNumber& number, int view)
{
    if (g_CM.GetCamera(number.Now()) == nullptr)
        WarnOfMissingCamera(*this, number.Now(), view);
    g_CM.SetActiveCamera(number.Now());
    {
        const PartScope part(observer, FramePart::Cameras);
        Perform(&CCamera::Begin, number, "begin");
        Update(number);
        Perform(&CCamera::ApplyMatrices, number, "apply");
    }
    {
        const PartScope part(observer, FramePart::Draw);
        DrawRoom(number, view);
    }
    const PartScope part(observer, FramePart::Cameras);
    Perform(&CCamera::End, number, "end");
}

void Game::Perform(void (CCamera::*step)(), const CameraNumber& number, const char* name)
{
    CCamera* camera = g_CM.GetCamera(number.Now());
    if (camera == nullptr || scripts.Failed())
        return;
    const EventScope event(observer, "camera", std::to_string(number.Now()), name);
    (camera->*step)();
    CollectHostError(number.Now());
}

void Game::Update(const CameraNumber& number)
{
    const CCamera* camera = g_CM.GetCamera(number.Now());
    if (camera != nullptr)
        WarnOfTarget(*this, *camera);
    const bool isTold = observer != nullptr && camera != nullptr && !scripts.Failed();
    const CCameraHandle updated(isTold ? camera : nullptr);
    if (isTold)
        observer->UpdateBegins(*camera);
    Perform(&CCamera::CameraUpdate, number, "update");
    if (isTold && (camera = updated.Get()) != nullptr)
        observer->UpdateEnded(*camera);
}

// Instances are culled by the matrices as the room's own draw leaves them: it may have applied another camera.
void Game::DrawRoom(const CameraNumber& number, int view)
{
    const CCamera* camera = g_CM.GetCamera(number.Now());
    if (camera == nullptr || scripts.Failed())
        return;
    m_trace.Write(m_frame, view, *camera);
    if (!CallRoom(rooms.Running()->spec.scripts.draw, "draw"))
        return;
    world.FindForDrawing(VisibleRegion(), m_seen);
    TellOfView(number.Now(), view);
    DrawInstances();
}

// The layers of the room's map stand between the instances by their depth, before instances of the same depth.
void Game::DrawInstances()
{
    size_t nextLayer = 0;
    for (Instance* instance : m_seen)
    {
        DrawMap(instance->depth, nextLayer);
        if (instance->IsLive())
            DrawInstance(*instance);
        if (scripts.Failed())
            return;
    }
    DrawMap(-INFINITY, nextLayer);
}

// Animated tiles count the time by frames, so that every run shows the same.
void Game::DrawMap(float depth, size_t& next)
{
    const RoomMap* map = RunningMap();
    if (map != nullptr)
        map->Draw(*m_painter, int64_t{m_frame} * 1000 / FRAMES_A_SECOND, depth, next);
}

void Game::TellOfView(int camera, int view) const
{
    if (observer == nullptr)
        return;
    const CCamera* shown = g_CM.GetCamera(camera);
    if (shown == nullptr)
        return;
    const View* of = view == NO_VIEW ? nullptr : &rooms.Running()->views[static_cast<size_t>(view)];
    const Port port = of == nullptr ? FittingPort(shown->GetViewWidth(), shown->GetViewHeight()) : PortOf(*of);
    observer->ViewIsDrawn(*this, {view, camera, of == nullptr ? SCREEN_SURFACE : of->surface, port, m_seen});
}

void Game::DrawInstance(Instance& instance)
{
    const int script = instance.type.traits.Script(Event::Draw);
    if (script != NO_SCRIPT)
    {
        const EventScope event(observer, "object", instance.type.name, "draw");
        scripts.Call(script, &instance);
        return;
    }
    if (m_painter->FindSprite(instance.sprite) == nullptr)
        return;
    Placement placement;
    placement.x = instance.x;
    placement.y = instance.y;
    placement.scaleX = instance.scaleX;
    placement.scaleY = instance.scaleY;
    placement.angle = instance.angle;
    placement.colour = instance.colour;
    placement.alpha = instance.alpha;
    const float frame = std::clamp(std::floor(instance.frame), -1e9f, 1e9f);
    m_painter->Sprite(instance.sprite, static_cast<int>(frame), placement);
}

void Game::DrawGui(const RunningRoom& room)
{
    if (room.spec.scripts.drawGui == NO_SCRIPT || scripts.Failed())
        return;
    m_painter->SetPort({0, 0, m_painter->ScreenWidth(), m_painter->ScreenHeight()});
    SetFlatView(0.0f, 0.0f, static_cast<float>(m_screenWidth), static_cast<float>(m_screenHeight));
    const PartScope part(observer, FramePart::Draw);
    CallRoom(room.spec.scripts.drawGui, "draw_gui");
    EndTarget();
}

// ---- targets and ports ----

void Game::ResetDrawingState()
{
    ResetWorldMatrix();
    m_painter->SetColour(0xFFFFFF);
    m_painter->SetAlpha(1.0f);
    m_painter->SetDepth(0.0f);
    m_painter->SetDepthTest(false);
}

void Game::BeginTarget(const Port& port, unsigned background)
{
    m_painter->SetPort(port);
    m_painter->Clear(background);
    ResetDrawingState();
}

// Scripts that forget to reset their target must not take the next view with them.
void Game::EndTarget()
{
    while (PopTarget())
        continue;
    ResetDrawingState();
}

// From the game's screen to the picture's pixels. Neighbouring ports share their edges.
Port Game::PortOf(const View& view) const
{
    if (view.surface != SCREEN_SURFACE)
        return {0, 0, m_painter->SurfaceWidth(view.surface), m_painter->SurfaceHeight(view.surface)};
    const double scaleX = static_cast<double>(m_painter->ScreenWidth()) / m_screenWidth;
    const double scaleY = static_cast<double>(m_painter->ScreenHeight()) / m_screenHeight;
    const auto pixel = [](double place) { return static_cast<int>(std::clamp(std::floor(place + 0.5), -1e6, 1e6)); };
    Port port = {pixel(view.xport * scaleX), pixel(view.yport * scaleY), 0, 0};
    port.width = pixel((static_cast<double>(view.xport) + view.wport) * scaleX) - port.x;
    port.height = pixel((static_cast<double>(view.yport) + view.hport) * scaleY) - port.y;
    return port;
}

// The largest port in the middle of the screen that has the shape of the rectangle; all of it for one without a shape.
Port Game::FittingPort(float width, float height) const
{
    const double screenWidth = m_painter->ScreenWidth();
    const double screenHeight = m_painter->ScreenHeight();
    const double shape = static_cast<double>(width) / static_cast<double>(height);
    double fittedWidth = screenWidth;
    double fittedHeight = screenHeight;
    if (shape > 0.0 && std::isfinite(shape))
    {
        fittedWidth = std::max(1.0, std::min(screenWidth, std::floor(screenHeight * shape + 0.5)));
        fittedHeight = std::max(1.0, std::min(screenHeight, std::floor(screenWidth / shape + 0.5)));
    }
    return {static_cast<int>((screenWidth - fittedWidth) / 2), static_cast<int>((screenHeight - fittedHeight) / 2),
            static_cast<int>(fittedWidth), static_cast<int>(fittedHeight)};
}
} // namespace Runner
