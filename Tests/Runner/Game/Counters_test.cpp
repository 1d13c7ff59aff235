// Counters at their ends: what a game reaches after months of play, or by a saved game that somebody has made.

#include "Files/Graphics/Graphics_Support.h"
#include "Files/Object/Object_Base.h"
#include "Runner/Host/Collector.h"
#include "Tests/Runner/Save/Save_Support.h"

#include <climits>

namespace
{
using Runner::COUNTERS_END;

class Counters : public RunnerTest::SaveTest
{
};

TEST_F(Counters, TheLastFramesArePlayedAndTheGameThenEndsWithOneLine)
{
    ASSERT_EQ(Run("vars.first = true"), "");
    game->SetFrameNumber(COUNTERS_END - 3);
    EXPECT_EQ(PlayOn(2), "");
    EXPECT_EQ(game->FrameNumber(), 0x6FFFFFFF);
    EXPECT_EQ(PlayOn(1), "the game has played 1879048191 frames, and cannot count further");
    EXPECT_EQ(game->FrameNumber(), 0x6FFFFFFF);
}

TEST_F(Counters, ASaveOfTheLastFrameIsLoaded)
{
    ASSERT_EQ(Run("vars.first = true"), "");
    game->SetFrameNumber(COUNTERS_END - 1);
    ASSERT_EQ(Save(), "");
    EXPECT_EQ(LoadAfresh(), "");
    EXPECT_EQ(game->FrameNumber(), 0x6FFFFFFF);
}

TEST_F(Counters, TheLastInstanceIsMadeAndSavedAndTheNextIsRefusedWithOneLine)
{
    ASSERT_EQ(Play("local thing = object_add{}\n"
                   "room_add{ step = function() log(tostring(instance_create(0, 0, thing))) end }"),
              "");
    game->world.SetNextId(COUNTERS_END - 2);
    EXPECT_EQ(PlayOn(1), "");
    ASSERT_EQ(Save(), "");
    const std::string used = "no further instance can be made: the game has used up all 1879048192 identifiers";
    EXPECT_NE(PlayOn(1).find(used), std::string::npos) << game->Failure();
    EXPECT_EQ(Log(), "100000\n1879048190\n");
    EXPECT_EQ(LoadAfresh(), "");
    EXPECT_NE(game->world.Find(COUNTERS_END - 2), nullptr);
}

// Instances of a room's list, which no script makes.
TEST_F(Counters, ARoomWhoseInstancesHaveNoIdentifiersLeftDoesNotStart)
{
    ASSERT_EQ(Play("local thing = object_add{}\n"
                   "room_add{ step = function() room_goto(1) end }\n"
                   "room_add{ instances = { { thing, 0, 0 } } }",
                   0),
              "");
    game->world.SetNextId(COUNTERS_END - 1);
    EXPECT_EQ(PlayOn(1).rfind("no further instance can be made", 0), 0u) << game->Failure();
}

TEST_F(Counters, AutomaticSavesGoOnInTurnWhereTheirCountWraps)
{
    ASSERT_EQ(Play("room_add{ step = function() log(game_autosave(3)) end }", 0), "");
    game->names.autosaves = COUNTERS_END - 1;
    ASSERT_EQ(PlayOn(5), "");
    const std::string first = "autosave_" + std::to_string((COUNTERS_END - 1) % 3 + 1) + ".sav\n";
    EXPECT_EQ(Log().substr(0, first.size()), first);
    std::string inTurn;
    for (int i = 0; i < 5; ++i)
        inTurn += "autosave_" + std::to_string((COUNTERS_END - 1 + i % 3) % 3 + 1) + ".sav\n";
    EXPECT_EQ(Log(), inTurn);
}

TEST_F(Counters, ASaveWithAnAbsurdCountOfAutomaticSavesStillNamesASlot)
{
    for (const int count : {-5, INT_MAX})
    {
        ASSERT_EQ(Play("room_add{ step = function() if frame_number() > 0 then vars.name = game_autosave(3) end end }"),
                  "");
        game->names.autosaves = count;
        ASSERT_EQ(Save(), "");
        ASSERT_EQ(LoadAfresh(), "");
        ASSERT_EQ(PlayOn(2), "");
        EXPECT_GT(game->names.autosaves, 0);
        EXPECT_LE(game->names.autosaves, COUNTERS_END);
    }
    EXPECT_TRUE(std::filesystem::exists(directory.Path("save/autosave_1.sav")));
}

// The stamp of new objects stays at its largest value; collections go on.
TEST_F(Counters, TheCollectorGoesOnWhereItsStampEnds)
{
    ASSERT_EQ(Run("camera_set_begin_script(camera_create(), function() end)"), "");
    const int before = KvObjectBase::ms_currentCounter;
    KvObjectBase::ms_currentCounter = INT_MAX - 1;
    for (int i = 0; i < 3; ++i)
        Runner::Collector::Collect(i == 1);
    EXPECT_EQ(KvObjectBase::ms_currentCounter, INT_MAX);
    std::string why;
    EXPECT_TRUE(Runner::Collector::Check(why)) << why;
    EXPECT_EQ(PlayOn(3), "");
    KvObjectBase::ms_currentCounter = before;
}

// In the suite a twentieth of what the endurance of a year of play would have; ENDURANCE=1 plays all of it.
int Often(int whole) { return std::getenv("ENDURANCE") != nullptr ? whole : whole / 50; }

TEST_F(Counters, AMillionCallbacksCreatedAndDroppedLeaveNothing)
{
    constexpr int A_FRAME = 100;
    ASSERT_EQ(Play("local camera\n"
                   "room_add{ step = function()\n"
                   "    camera = camera or camera_create()\n"
                   "    for i = 1, 100 do camera_set_update_script(camera, function() return i end) end\n"
                   "end }",
                   20),
              "");
    const int live = Runner::Collector::GetStats().live;
    ASSERT_EQ(PlayOn(Often(1000000) / A_FRAME), "");
    EXPECT_LE(Runner::Collector::GetStats().live, live + 512); // up to the next collection
    Runner::Collector::Collect(true);
    EXPECT_LE(Runner::Collector::GetStats().live, 4); // the room's proxy, callback, globals
}

TEST_F(Counters, AMillionRoomChangesLeaveNothing)
{
    ASSERT_EQ(
        Play("local thing = object_add{ create = function(self) self.name = 'x' end }\n"
             "for i = 0, 1 do\n"
             "    room_add{ views = { [0] = {}, [1] = {} }, instances = { { thing, 1, 2 }, { thing, 3, 4 } },\n"
             "              create = function() camera_set_begin_script(view_get_camera(0), function() end) end,\n"
             "              step = function() room_goto(1 - i) end }\n"
             "end",
             50),
        "");
    const auto cameras = [] { return g_CM.m_cameraListSize; };
    const int slots = cameras();
    const int changes = Often(1000000);
    options.check = false;
    ASSERT_EQ(PlayOn(changes), "");
    EXPECT_EQ(cameras(), slots);
    EXPECT_EQ(game->world.Instances().size(), 2u);
    EXPECT_EQ(game->world.NextId(), 100000 + 2 * (50 + 1 + changes));
    EXPECT_EQ(g_CM.Validate(), nullptr);
}
} // namespace
