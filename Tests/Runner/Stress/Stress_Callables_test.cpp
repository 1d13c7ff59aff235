// Callables and the collector in whole games: identity, cycles, collections in the middle of things.

#include "Tests/Runner/Support/Game_Support.h"

#include "Files/Graphics/Camera_Manager.h"
#include "Files/Run/Run_Globals.h"
#include "Runner/Host/Code.h"
#include "Runner/Host/Collector.h"
#include "Runner/Host/Memory.h"
#include "Runner/Host/Value.h"

#include <chrono>
#include <new>

namespace
{
using Runner::Collector;
using RunnerTest::GameTest;

// Objects that a game has beside its cameras' ones: the global instance and the script instance.
constexpr int HELPERS = 2;

class StressCallables : public GameTest
{
protected:
    // What the statements leave alive after a collection, beside the helpers.
    int LiveAfter(const std::string& statements)
    {
        EXPECT_EQ(Run(statements + " collect() collect()"), "");
        return Collector::GetStats().live - HELPERS;
    }
};

TEST_F(StressCallables, ACameraHasOneProxyForAllItsCallbacks)
{
    EXPECT_EQ(LiveAfter("camera_create()"), 0);
    EXPECT_EQ(LiveAfter("local c = camera_create() camera_set_begin_script(c, 3)"), 0);
    EXPECT_EQ(LiveAfter("local c = camera_create() camera_set_begin_script(c, function() end)"), 2);
    EXPECT_EQ(LiveAfter("local c = camera_create() for i = 1, 5 do\n"
                        "camera_set_begin_script(c, function() return i end)\n"
                        "camera_set_update_script(c, function() return i end)\n"
                        "camera_set_end_script(c, function() return i end) end"),
              4);
}

TEST_F(StressCallables, CamerasThatShareAFunctionShareItsObject)
{
    EXPECT_EQ(LiveAfter("local f = function() end for i = 1, 10 do camera_set_end_script(camera_create(), f) end"), 11);
}

TEST_F(StressCallables, AProxyGoesAfterItsCameraAndStaysWithoutCallbacks)
{
    EXPECT_EQ(LiveAfter("local c = camera_create() camera_set_begin_script(c, print) camera_set_begin_script(c, -1)"),
              1);
    EXPECT_EQ(LiveAfter("local c = camera_create() camera_set_begin_script(c, print) camera_destroy(c)"), 0);
}

TEST_F(StressCallables, AClosureThatKnowsItsCameraGoesWithIt)
{
    EXPECT_EQ(LiveAfter("for i = 1, 200 do local c = camera_create()\n"
                        "local function f() return c, camera_get_begin_script(c) end\n"
                        "camera_set_begin_script(c, f) camera_set_end_script(c, function() return f end)\n"
                        "camera_destroy(c) end"),
              0);
}

TEST_F(StressCallables, TwoCamerasWhoseCallbacksKnowEachOtherGoTogether)
{
    const std::string pair = "local a, b = camera_create(), camera_create() local f, g\n"
                             "f = function() return b, g end g = function() return a, f end\n"
                             "camera_set_update_script(a, f) camera_set_update_script(b, g) ";
    EXPECT_EQ(LiveAfter(pair), 4);
    EXPECT_EQ(LiveAfter(pair + "camera_destroy(a)"), 2);
    EXPECT_EQ(LiveAfter(pair + "camera_destroy(a) camera_destroy(b)"), 0);
}

TEST_F(StressCallables, AFunctionKeepsItsIdentityThroughCollections)
{
    EXPECT_EQ(Run("local c, f = camera_create(), function() end\n"
                  "for i = 1, 50 do camera_set_begin_script(c, f) collect()\n"
                  "assert(camera_get_begin_script(c) == f)\n"
                  "camera_set_begin_script(c, -1) collect() end"),
              "");
}

TEST_F(StressCallables, ARunningCallbackSurvivesACollectionThatNobodyElseStops)
{
    EXPECT_EQ(Play("room_add{ views = { [0] = {} }, create = function()\n"
                   "local c = view_get_camera(0)\n"
                   "camera_set_update_script(c, function() local kept = { 1, 2 }\n"
                   "camera_set_update_script(c, -1) camera_destroy(c) collect()\n"
                   "for i = 1, 300 do camera_set_end_script(camera_create(), function() return i end) end collect()\n"
                   "print(#kept, camera_current()) end) end }"),
              "");
    EXPECT_EQ(Log(), "2\t1\n");
}

TEST_F(StressCallables, AResultThatCannotCrossIsToldWithItsCamera)
{
    EXPECT_EQ(Play("room_add{ views = { [0] = {} }, create = function()\n"
                   "camera_set_end_script(view_get_camera(0), function() return coroutine.create(print) end) end }"),
              "a callback of camera 1 cannot return a coroutine");
}

TEST_F(StressCallables, ACallbackThatIsNoneDoesNotRunTheFirstScript)
{
    EXPECT_EQ(Play("script_add(function() print('ran') end)\n"
                   "room_add{ views = { [0] = {} }, create = function()\n"
                   "pcall(camera_set_begin_script, view_get_camera(0), {}) end }"),
              "a callback of camera 1 cannot run: expected a number, got a table");
    EXPECT_EQ(Log(), "");
}

TEST_F(StressCallables, AHelperThatWasRefusedASlotIsFreedAllTheSame)
{
    const size_t blocksBefore = Runner::CurrentMemoryUse().blocks;
    {
        options.file = directory.Write("main.lua", "room_add{} room_add{}");
        Runner::FailAllocationAfter(0);
        Runner::Game refused(options, Runner::OpenApi);
        Runner::FailAllocationAfter(-1);
        EXPECT_EQ(g_pGlobal->m_slot, -1);
        EXPECT_TRUE(refused.Load());
    }
    EXPECT_EQ(Runner::CurrentMemoryUse().blocks, blocksBefore); // the helper itself: the leak checker's task
}

// The module goes on without a camera that it is refused the memory for: the Runner ends the game.
TEST_F(StressCallables, AGameNeverGoesOnWithoutACameraThatWasRefused)
{
    options.file = directory.Write("main.lua", "room_add{ views = { [0] = {}, [1] = {} },\n"
                                               "          create = function() vars.made = camera_create()\n"
                                               "                              assert(vars.made >= 0) end }");
    int ended = 0, failed = 0;
    for (int n = 0; n < 40; ++n)
    {
        game = std::make_unique<Runner::Game>(options, Runner::OpenApi);
        Runner::FailAllocationAfter(n);
        try
        {
            const bool isLoaded = game->Load();
            Runner::FailAllocationAfter(-1);
            EXPECT_NE(game->rooms.Running()->views[0].cameraID, -1) << "request " << n;
            EXPECT_NE(game->rooms.Running()->views[1].cameraID, -1) << "request " << n;
            EXPECT_TRUE(isLoaded || game->Failure().find("not enough memory") != std::string::npos) << game->Failure();
            failed += isLoaded ? 0 : 1;
        }
        catch (const std::bad_alloc&)
        {
            ++ended;
        }
        Runner::FailAllocationAfter(-1);
        game.reset();
    }
    EXPECT_GT(ended, 2);  // the default camera's, the views'
    EXPECT_GT(failed, 0); // the script's
}

TEST_F(StressCallables, AProxyIsLeftForTheCollectorWhenItsCameraGoesWithTheGame)
{
    EXPECT_EQ(Run("for i = 1, 500 do camera_set_begin_script(camera_create(), function() return i end) end"), "");
    EXPECT_GE(Collector::GetStats().live, 1000);
    game.reset();
    EXPECT_EQ(Collector::GetStats().live, 0);
}

// Ten thousand live callbacks: all survive, and the time is printed.
TEST_F(StressCallables, TenThousandLiveCallbacksSurviveACollection)
{
    ASSERT_EQ(Run("for i = 1, 10000 do camera_set_update_script(camera_create(), function() return i end) end"), "");
    Collector::Collect(true);
    const auto start = std::chrono::steady_clock::now();
    Collector::Collect(true);
    const std::chrono::duration<double, std::milli> full = std::chrono::steady_clock::now() - start;
    const auto startOfYoung = std::chrono::steady_clock::now();
    Collector::Collect(false);
    const std::chrono::duration<double, std::milli> young = std::chrono::steady_clock::now() - startOfYoung;
    EXPECT_EQ(Collector::GetStats().live, 20000 + HELPERS);
    std::printf("collection with 10000 live callbacks: full %.2f ms, young %.2f ms\n", full.count(), young.count());
}

// ---- arrays as callbacks: reported, and stored all the same ----

constexpr char STORE_ARRAY[] = "local c, f = camera_create(), function() return 7 end\n"
                               "assert(not pcall(camera_set_begin_script, c, { 1, { f } })) f = nil ";

TEST_F(StressCallables, AFunctionInAnArrayLivesAsLongAsACameraHoldsTheArray)
{
    for (const bool stress : {false, true})
    {
        options.gcStress = stress;
        EXPECT_EQ(LiveAfter(STORE_ARRAY), 1) << "stress " << stress;
        EXPECT_EQ(LiveAfter(std::string(STORE_ARRAY) + "camera_set_begin_script(c, -1)"), 0) << "stress " << stress;
        EXPECT_EQ(LiveAfter(std::string(STORE_ARRAY) + "camera_destroy(c)"), 0) << "stress " << stress;
    }
}

TEST_F(StressCallables, AFunctionInAnArrayCanBeReadBackAfterCollections)
{
    EXPECT_EQ(Run(std::string(STORE_ARRAY) +
                  "for i = 1, 300 do camera_set_end_script(camera_create(), function() return i end) end\n"
                  "collect() collect() local array = camera_get_begin_script(c)\n"
                  "assert(array[1] == 1 and array[2][1]() == 7)"),
              "");
}

TEST_F(StressCallables, YoungCollectionsLeaveAFunctionInAnArray)
{
    ASSERT_EQ(Run(std::string(STORE_ARRAY) + "C = c"), "");
    Collector::Collect(false);
    Collector::Collect(false);
    const RValue& callback = g_CM.GetCamera(1)->m_beginScript;
    ASSERT_EQ(callback.kind, VALUE_ARRAY);
    EXPECT_GE(callback.pRefArray->m_array[1].pRefArray->m_array[0].pObj->m_slot, 0);
    EXPECT_EQ(Collector::GetStats().live - HELPERS, 1);
}

// Live objects of a game whose camera 1 holds the array and a proxy for its end script.
constexpr int WITH_PROXY = HELPERS + 3;

class StressSharedArrays : public StressCallables
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(Run("local c = camera_create() camera_set_end_script(c, function() end)\n"
                      "assert(not pcall(camera_set_begin_script, c, { function() end }))"),
                  "");
        ExpectLive(WITH_PROXY);
    }

    // Reports that the callback is none are taken, as the Lua bridge would.
    static void Store(void (CCamera::*set)(RValue*), CCamera& camera, RValue& value)
    {
        (camera.*set)(&value);
        Runner::TakeError();
    }

    static void ExpectLive(int expected)
    {
        Collector::Collect(true);
        Collector::Collect(true);
        EXPECT_EQ(Collector::GetStats().live, expected);
    }
};

TEST_F(StressSharedArrays, AClonesArrayOutlivesTheOriginals)
{
    CCamera* clone = g_CM.CloneCamera(1);
    Runner::TakeError();
    ASSERT_EQ(clone->m_beginScript.kind, VALUE_ARRAY);
    ExpectLive(WITH_PROXY + 1); // the clone's proxy, for the end script
    g_CM.DestroyCamera(1);
    ExpectLive(WITH_PROXY);
    g_CM.DestroyCamera(clone->GetID());
    ExpectLive(HELPERS);
}

TEST_F(StressSharedArrays, AnArrayIsKeptByTheCameraWithoutAProxyWhenTheOthersLetGo)
{
    CCamera* other = g_CM.CreateCamera();
    Store(&CCamera::SetBeginScript, *other, g_CM.GetCamera(1)->m_beginScript);
    ASSERT_EQ(other->m_beginScript.kind, VALUE_ARRAY);
    RValue none = Runner::MakeReal(-1);
    Store(&CCamera::SetBeginScript, *g_CM.GetCamera(1), none); // in the name of its proxy
    EXPECT_EQ(other->m_beginScript.pRefArray->m_refCount, 1);
    ExpectLive(WITH_PROXY);
    g_CM.DestroyCamera(1);
    ExpectLive(HELPERS + 1);
    g_CM.DestroyCamera(other->GetID());
    ExpectLive(HELPERS);
}

// ---- the example games ----

class StressGames : public GameTest, public ::testing::WithParamInterface<const char*>
{
protected:
    std::string TraceOf(bool gcStress, int frames)
    {
        options.file = std::string(GAMES_DIR "/") + GetParam() + "/" + GetParam() + ".lua";
        options.trace = directory.Path(gcStress ? "stress.txt" : "plain.txt");
        options.gcStress = gcStress;
        game.reset();
        game = std::make_unique<Runner::Game>(options, Runner::OpenApi);
        EXPECT_TRUE(game->Load()) << game->Failure();
        EXPECT_EQ(PlayOn(frames), "");
        EXPECT_TRUE(game->Finish());
        return directory.Read(gcStress ? "stress.txt" : "plain.txt");
    }
};

TEST_P(StressGames, RunAlikeHoweverOftenIsCollected)
{
    constexpr int FRAMES = 120;
    const std::string plain = TraceOf(false, FRAMES);
    EXPECT_GT(std::count(plain.begin(), plain.end(), '\n'), FRAMES / 2);
    EXPECT_EQ(TraceOf(true, FRAMES), plain);
}

INSTANTIATE_TEST_SUITE_P(All, StressGames, ::testing::Values("canyon", "orbit", "shake"),
                         [](const auto& test) { return std::string(test.param); });
} // namespace
