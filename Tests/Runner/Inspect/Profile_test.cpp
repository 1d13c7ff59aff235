// Where a frame's time goes, by a clock that the test sets.
#include "Runner/Inspect/Profile.h"
#include "Tests/Runner/App/Command_Line_Fixture.h"

#include <gmock/gmock.h>

namespace
{
using namespace Runner;
using testing::HasSubstr;

int64_t s_now = 0;

constexpr int64_t MILLISECOND = 1000000;

class ProfileTest : public RunnerTest::GameTest
{
protected:
    ProfileTest() { EXPECT_EQ(Play("room_add{}"), ""); }

    void Event(const char* owner, const char* event, int64_t milliseconds)
    {
        profile.EventBegins(owner, event);
        s_now += milliseconds * MILLISECOND;
        profile.EventEnded();
    }

    // One frame: 2 ms of step with an event of 1 ms in it, 1 ms of nothing, 3 ms of painting.
    void Frame()
    {
        profile.FrameBegins(*game);
        profile.PartBegins(FramePart::Step);
        Event("object ball", "step", 1);
        s_now += MILLISECOND;
        profile.PartEnded(FramePart::Step);
        s_now += MILLISECOND;
        profile.PartBegins(FramePart::Painting);
        s_now += 3 * MILLISECOND;
        profile.PartEnded(FramePart::Painting);
        profile.FrameEnded(*game);
    }

    Profile profile{[] { return s_now; }};
};

TEST_F(ProfileTest, SharesAFrameAmongItsPartsAndTheRest)
{
    Frame();
    Frame();
    const ProfileContent content = profile.Content();
    EXPECT_EQ(content.frames, 2u);
    EXPECT_DOUBLE_EQ(content.whole, 6.0);
    EXPECT_DOUBLE_EQ(content.longest, 6.0);
    EXPECT_DOUBLE_EQ(content.parts[0], 2.0);
    EXPECT_DOUBLE_EQ(content.parts[3], 3.0);
    EXPECT_DOUBLE_EQ(content.rest, 1.0);
    ASSERT_EQ(content.dearest.size(), 1u);
    EXPECT_EQ(content.dearest[0].owner, "object ball");
    EXPECT_DOUBLE_EQ(content.dearest[0].milliseconds, 1.0);
    EXPECT_DOUBLE_EQ(content.dearest[0].calls, 1.0);
}

TEST_F(ProfileTest, KeepsTheLastThreeHundredFrames)
{
    profile.FrameBegins(*game);
    s_now += 1000 * MILLISECOND;
    profile.FrameEnded(*game);
    for (int i = 0; i < 299; ++i)
        Frame();
    EXPECT_DOUBLE_EQ(profile.Content().longest, 1000.0);
    Frame();
    EXPECT_EQ(profile.Content().frames, 300u);
    EXPECT_DOUBLE_EQ(profile.Content().longest, 6.0) << "the first frame is forgotten";
}

TEST_F(ProfileTest, NamesTheFiveDearestEventsTheDearestFirst)
{
    profile.FrameBegins(*game);
    for (int i = 1; i <= 7; ++i)
        Event(("object o" + std::to_string(i)).c_str(), "draw", i);
    profile.FrameEnded(*game);
    std::string names;
    for (const DearEvent& event : profile.Content().dearest)
        names += event.owner.substr(7) + " ";
    EXPECT_EQ(names, "o7 o6 o5 o4 o3 ");
}

TEST_F(ProfileTest, CountsEveryCallOfAnEvent)
{
    profile.FrameBegins(*game);
    Event("object ball", "step", 2);
    Event("object ball", "step", 3);
    profile.FrameEnded(*game);
    EXPECT_DOUBLE_EQ(profile.Content().dearest[0].milliseconds, 5.0);
    EXPECT_DOUBLE_EQ(profile.Content().dearest[0].calls, 2.0);
}

TEST_F(ProfileTest, OfNoFrameIsEmpty)
{
    EXPECT_EQ(profile.Content().frames, 0u);
    EXPECT_TRUE(profile.Content().dearest.empty());
}

constexpr const char* GAME_WITH_EVENTS =
    "local o = object_add{ name = 'ball', step = function() end, draw = function() end }\n"
    "room_add{ name = 'field', views = { [0] = {} }, instances = { {o, 0, 0}, {o, 9, 9} }, step = function() end,\n"
    "draw = function() end, draw_gui = function() end }";

// Real time, so that only what does not depend on it is looked at.
TEST_F(ProfileTest, IsToldOfEveryKindOfEventByTheGame)
{
    options.file = directory.Write("main.lua", GAME_WITH_EVENTS);
    game.reset();
    game = std::make_unique<Game>(options, OpenApi);
    Profile real;
    ASSERT_TRUE(game->Load()) << game->Failure();
    game->observer = &real;
    ASSERT_EQ(PlayOn(3), "");
    EXPECT_EQ(real.Content().frames, 3u);
    EXPECT_GT(real.Content().whole, 0.0);
    EXPECT_GE(real.Content().rest, 0.0) << "no part is counted twice";
    std::string owners;
    for (const DearEvent& event : real.Content().dearest)
        owners += event.owner + " " + event.event + (event.calls == 2.0 ? " twice\n" : "\n");
    EXPECT_EQ(real.Content().dearest.size(), 5u) << owners;
}

class ProfileOption : public RunnerTest::CommandLine
{
};

TEST_F(ProfileOption, WritesTheProfileAndChangesNothingOfTheTrace)
{
    const std::string path = directory.Path("profile.txt");
    ASSERT_EQ(Play(GAME_WITH_EVENTS, {"--no-draw", "--trace", directory.Path("plain")}), 0) << err;
    ASSERT_EQ(Play(GAME_WITH_EVENTS, {"--no-draw", "--trace", directory.Path("watched"), "--profile", path}), 0) << err;
    EXPECT_THAT(directory.Read("profile.txt"), HasSubstr("the last 60 frames, milliseconds a frame\n"));
    EXPECT_THAT(directory.Read("profile.txt"), HasSubstr("cameras and callbacks"));
    EXPECT_THAT(directory.Read("profile.txt"), HasSubstr("2.0 calls"));
    EXPECT_EQ(directory.Read("plain"), directory.Read("watched"));
}

TEST_F(ProfileOption, APathThatCannotBeWrittenIsKnownBeforeTheFirstFrame)
{
    EXPECT_EQ(Play("room_add{} log('played')", {"--no-draw", "--profile", directory.Path("none/there")}), 1);
    RunnerTest::ExpectOneLine(err);
    EXPECT_EQ(out, "");
}

TEST_F(ProfileOption, TheTraceIsNoFileForTheProfile)
{
    const std::string same = directory.Path("same");
    EXPECT_EQ(Play("room_add{}", {"--no-draw", "--profile", same, "--trace", same}), 1);
    EXPECT_THAT(err, HasSubstr("--trace and --profile name the same file"));
}
} // namespace
