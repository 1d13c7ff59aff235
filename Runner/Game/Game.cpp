#include "Runner/Game/Game.h"

#include "Files/Graphics/Graphics_Support.h"
#include "Runner/Host/Code.h"
#include "Runner/Host/Collector.h"
#include "Runner/Host/Graphics.h"
#include "Runner/Host/Memory.h"
#include "Runner/Lua/Bridge.h"
#include "Runner/Lua/Map_Values.h"
#include "Runner/Lua/Self.h"

#include <new>
#include <utility>

namespace Runner
{
namespace
{
Game* s_current = nullptr;
} // namespace

// ---- life ----

Game::Game(const GameOptions& gameOptions, ScriptOpener openScripts)
    : options(gameOptions), random(gameOptions.seed), scripts(random), m_openScripts(openScripts)
{
    scripts.SetLimits(options.limits);
    if (options.strict)
        scripts.strict.SwitchOn();
    ResetGraphics();
    TakeError();
    MakeGlobalInstance();
    Collector::SetStress(options.gcStress);
    s_current = this; // nothing refuses memory any more: the destructor will run
}

// Cameras go before the collector frees their callables, and these before the Lua state.
Game::~Game()
{
    EndRoom();
    DestroyAllCameras();
    Collector::LetGo(g_pGlobal);
    g_pGlobal = nullptr;
    Collector::SetStress(false);
    Collector::FreeEverything();
    s_current = nullptr;
}

Game* Game::Current() { return s_current; }

void Game::MakeGlobalInstance()
{
    g_pGlobal = new CInstance(0.0f, 0.0f, 0, g_DummyObjectIndex, false);
    AddGlobalObject(g_pGlobal);
}

void Game::DestroyAllCameras()
{
    for (int slot = 0; slot < g_CM.m_cameraListSize; ++slot)
        if (const CCamera* camera = g_CM.m_cameras[slot])
            g_CM.DestroyCamera(camera->GetID());
    g_CM.m_InitialLoadHighPoint = 0;
    g_DefaultCameraID = NO_CAMERA;
}

// ---- loading ----

// Built-ins stay registered for the life of the process.
void Game::OpenScripts()
{
    if (FindBuiltin("camera_create") == nullptr)
        g_CM.SetupLumFunctions();
    const ScriptEngine::Body open = [](lua_State* L, void* pointer)
    {
        Game& game = *static_cast<Game*>(pointer);
        OpenBuiltins(L);
        game.m_openScripts(L, game);
    };
    scripts.Protect(open, this);
}

void Game::MakeDefaultCamera()
{
    CCamera* camera = g_CM.CreateCamera();
    if (camera == nullptr)
        throw std::bad_alloc();
    camera->SetPersistent(true);
    g_DefaultCameraID = camera->GetID();
    AdoptDefaultCamera(camera->GetID());
}

void Game::AdoptDefaultCamera(int id) { m_ownDefaultCamera = CCameraHandle(g_CM.GetCamera(id)); }

int Game::OwnDefaultCamera() const
{
    const CCamera* camera = m_ownDefaultCamera.Get();
    return camera != nullptr ? camera->GetID() : NO_CAMERA;
}

// A state of the random numbers other than at the start: the main file has drawn some.
void Game::Identify()
{
    const Random::State now = random.GetState();
    const Random::State start = Random(options.seed).GetState();
    m_identity.name = options.file.substr(options.file.rfind('/') + 1);
    m_identity.files = scripts.files.Fingerprint();
    m_identity.seed = options.seed;
    m_identity.usesSeed = now.position != start.position || now.increment != start.increment;
}

bool Game::Load()
{
    std::string why;
    if (!options.trace.empty() && !m_trace.Open(options.trace, why))
        scripts.Fail(why);
    MakeDefaultCamera();
    OpenScripts();
    const std::string kit = options.kit.empty() ? InstalledKit() : options.kit;
    if (scripts.Failed() || !scripts.RunMain(options.file, kit) || OpenPainter() == nullptr)
        return false;
    Identify();
    if (rooms.Count() == 0)
        scripts.Fail("the game has no room: add one with room_add");
    g_CM.SetInitialLoadHighPoint();
    if (scripts.Failed())
        return false;
    const int first = m_nextRoom == NO_ROOM ? 0 : m_nextRoom;
    m_nextRoom = NO_ROOM;
    return StartRoom(first);
}

bool Game::Finish()
{
    std::string why;
    if (!m_trace.Close(why))
        scripts.Fail(why);
    return !scripts.Failed();
}

// ---- the screen ----

bool Game::SetScreenSize(int width, int height)
{
    if (m_painter != nullptr || rooms.Count() > 0)
        return false;
    m_screenWidth = width;
    m_screenHeight = height;
    return true;
}

Painter* Game::OpenPainter()
{
    if (m_painter != nullptr)
        return m_painter.get();
    const int width = options.width > 0 ? options.width : m_screenWidth;
    const int height = options.height > 0 ? options.height : m_screenHeight;
    std::string why;
    m_painter = Painter::Open(width, height, options.draw, why, options.openDevice);
    if (m_painter == nullptr)
        scripts.Fail(why);
    return m_painter.get();
}

Picture Game::Screen() { return m_painter == nullptr ? Picture() : m_painter->ReadScreen(); }

bool Game::PushTarget(int surface)
{
    const bool pushed = m_isDrawing && m_painter->PushTarget(surface);
    m_pushedTargets += pushed ? 1 : 0;
    return pushed;
}

bool Game::PopTarget()
{
    if (m_pushedTargets == 0)
        return false;
    --m_pushedTargets;
    return m_painter->PopTarget();
}

// ---- instances ----

bool Game::MayCreateInstance()
{
    if (!world.MayCreate())
        scripts.Fail("no further instance can be made: the game has used up all " + std::to_string(COUNTERS_END) +
                     " identifiers");
    return world.MayCreate();
}

Instance* Game::CreateInstance(ObjectType& type, float x, float y)
{
    if (!MayCreateInstance())
        return nullptr;
    Instance& instance = world.Create(type, x, y);
    return scripts.Call(type.traits.Script(Event::Create), &instance) ? &instance : nullptr;
}

bool Game::DestroyInstance(Instance& instance)
{
    if (instance.IsDestroyed())
        return true;
    world.Destroy(instance);
    return scripts.Call(instance.type.traits.Script(Event::Destroy), &instance);
}

// ---- rooms ----

void Game::EndRoom()
{
    rooms.End();
    world.RemoveAll(DropSelf);
}

bool Game::StartRoom(int number)
{
    const RunningRoom& room = rooms.Start(number);
    world.SetRoomSize(room.r_width, room.r_height);
    FitDefaultCamera(room);
    if (RoomMap* map = RunningMap())
        map->Reset(*m_painter);
    for (const RoomPlacement& placement : room.spec.instances)
        if (CreatePlaced(placement) == nullptr)
            return false;
    return scripts.Call(room.spec.scripts.create);
}

// ---- maps ----

int Game::AddMap(std::unique_ptr<RoomMap> map)
{
    m_maps.push_back(std::move(map));
    return static_cast<int>(m_maps.size()) - 1;
}

RoomMap* Game::FindMap(int map) const
{
    return map >= 0 && static_cast<size_t>(map) < m_maps.size() ? m_maps[static_cast<size_t>(map)].get() : nullptr;
}

RoomMap* Game::RunningMap() const
{
    const RunningRoom* room = rooms.Running();
    return room == nullptr ? nullptr : FindMap(room->spec.map);
}

namespace
{
struct Placing
{
    Instance& instance;
    const PlacedObject& placed;
};

bool SetPlacedProperties(ScriptEngine& scripts, Placing placing)
{
    const ScriptEngine::Body set = [](lua_State* L, void* pointer)
    {
        const auto& [instance, placed] = *static_cast<Placing*>(pointer);
        SetProperties(L, instance, placed.properties);
    };
    return scripts.Protect(set, &placing);
}

// The cameras of these views, a bit each, follow the instance from now on.
void LetFollow(const RunningRoom& room, unsigned followers, int id)
{
    for (size_t view = 0; view < room.views.size(); ++view)
        if (CCamera* camera = (followers >> view & 1) != 0 ? g_CM.GetCamera(room.views[view].cameraID) : nullptr)
            camera->SetTargetInstance(id);
}
} // namespace

// The properties of a map's object are there before the create event.
Instance* Game::CreatePlaced(const RoomPlacement& placement)
{
    ObjectType& type = *world.FindObject(placement.object);
    if (placement.placed == nullptr)
        return CreateInstance(type, placement.x, placement.y);
    if (!MayCreateInstance())
        return nullptr;
    const PlacedObject& placed = *placement.placed;
    Instance& instance = world.Create(type, placement.x, placement.y);
    instance.visible = instance.visible && placed.visible;
    instance.angle += placed.angle;
    instance.depth += placed.depth;
    world.Touch(instance);
    LetFollow(*rooms.Running(), placed.followers, instance.m_id);
    if (!SetPlacedProperties(scripts, {instance, placed}))
    {
        const std::string why = scripts.TakeFailure();
        scripts.Fail("object " + std::to_string(placed.id) + " of the room's map: " + why);
        return nullptr;
    }
    return scripts.Call(type.traits.Script(Event::Create), &instance) ? &instance : nullptr;
}

// The Runner's own default camera shows the whole room. One that a script has put in its place is the script's affair.
void Game::FitDefaultCamera(const RunningRoom& room)
{
    CCamera* camera = m_ownDefaultCamera.Get();
    if (camera == nullptr)
        return;
    camera->SetViewX(0.0f);
    camera->SetViewY(0.0f);
    camera->SetViewWidth(static_cast<float>(room.r_width));
    camera->SetViewHeight(static_cast<float>(room.r_height));
    camera->SetViewDirty();
}

// ---- checks ----

// What the module finds wrong with a callback: no script is running that could be told.
void Game::CollectHostError(int camera)
{
    if (HasError())
        scripts.Fail("a callback of camera " + std::to_string(camera) + " cannot run: " + TakeError());
}

bool Game::CheckEverything()
{
    std::string why;
    if (HasError()) // whoever calls the module outside of a script takes what it reports, or some later callback fails
        scripts.Fail("check of the reports: one is left over: " + TakeError());
    const char* rule = g_CM.Validate();
    if (rule != nullptr)
        scripts.Fail(std::string("check of the cameras: ") + rule);
    if (!Collector::Check(why))
        scripts.Fail("check of the collector: " + why);
    if (!CheckMemory(why))
        scripts.Fail("check of the memory: " + why);
    if (!world.Check(why))
        scripts.Fail("check of the world: " + why);
    return !scripts.Failed();
}
} // namespace Runner
