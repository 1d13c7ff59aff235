// The example games answer to what a player does. Left alone they go their own way (Golden_Trace_test.cpp).
#include "Files/Graphics/Graphics_Support.h"
#include "Runner/Input/Input_Names.h"
#include "Runner/Lua/Settings_Table.h"

#include "Tests/Runner/Support/Game_Support.h"
#include "Tests/Runner/Support/Golden_Runs.h"

#include <algorithm>

namespace
{
using namespace Runner;

class PlayableGames : public RunnerTest::GameTest
{
protected:
    void Open(const char* name)
    {
        options.file = RunnerTest::GameFile(name);
        game = std::make_unique<Game>(options, OpenApi);
        ASSERT_TRUE(game->Load()) << game->Failure();
    }

    void Frames(int count, const InputFrame& seen = InputFrame())
    {
        for (int i = 0; i < count; ++i)
            ASSERT_TRUE(game->Frame(seen)) << game->Failure();
    }

    // Pressed in one frame and released in the next one.
    void Tap(const char* key)
    {
        InputFrame frame;
        frame.names.pressed[static_cast<size_t>(FindKey(key))] = true;
        Frames(1, frame);
        Frames(1);
    }

    const Instance& First(const std::string& object) const
    {
        for (const auto& instance : game->world.Instances())
            if (instance->type.name == object && instance->IsLive())
                return *instance;
        ADD_FAILURE() << "there is no " << object;
        return *game->world.Instances().front();
    }

    std::ptrdiff_t Count(const std::string& object) const
    {
        const auto& all = game->world.Instances();
        return std::count_if(all.begin(), all.end(), [&](const auto& each) { return each->type.name == object; });
    }

    // Visible views, by their ports: "0,0 1280x720".
    std::string Ports() const
    {
        std::string ports;
        for (const View& view : game->rooms.Running()->views)
            if (view.visible)
                ports += (ports.empty() ? "" : " | ") + std::to_string(view.xport) + "," + std::to_string(view.yport) +
                         " " + std::to_string(view.wport) + "x" + std::to_string(view.hport);
        return ports;
    }
};

InputFrame Held(const char* key)
{
    InputFrame frame;
    frame.names.held[static_cast<size_t>(FindKey(key))] = true;
    frame.positions.held[static_cast<size_t>(FindKey(key))] = true;
    return frame;
}

InputFrame Pad(size_t number, int16_t stickX)
{
    InputFrame frame;
    frame.pads[number].connected = true;
    frame.pads[number].axes[0] = stickX;
    return frame;
}

TEST_F(PlayableGames, TheExplorerOfTheCanyonRunsWhereTheArrowsSay)
{
    Open("canyon");
    const float start = First("explorer").x;
    Frames(40, Held("left"));
    const float left = First("explorer").x;
    EXPECT_LT(left, start) << "alone the explorer runs to the right";
    Frames(40, Held("right"));
    EXPECT_GT(First("explorer").x, left + 20.0f);
}

TEST_F(PlayableGames, TheSecondGamepadOfTheCanyonPlaysTheBandit)
{
    Open("canyon");
    const float bandit = First("bandit").x;
    Frames(30, Pad(1, 32767));
    EXPECT_GT(First("bandit").x, bandit) << "alone the bandit runs to the left";
}

TEST_F(PlayableGames, AdaOfTheTownWalksWhereTheKeysSayAndStopsAtTheRiver)
{
    Open("town");
    const float x = First("walker").x, y = First("walker").y;
    Frames(20, Held("left"));
    EXPECT_NEAR(First("walker").x, x - 32.0f, 2.0f);
    Frames(200, Held("down"));
    EXPECT_GT(First("walker").y, y + 20.0f);
    EXPECT_LT(First("walker").y, 37.0f * 16.0f) << "she walks into the river";
}

TEST_F(PlayableGames, TheViewsOfTheTownFollowWhomTheMapSays)
{
    Open("town");
    Frames(300);
    const auto& views = game->rooms.Running()->views;
    const CCamera* small = g_CM.GetCamera(views[1].cameraID);
    const Instance* followed = game->world.Find(small->GetTargetInstance());
    ASSERT_NE(followed, nullptr);
    EXPECT_EQ(followed->type.name, "villager");
    EXPECT_NEAR(small->GetViewX() + 128.0f, followed->x, 1.0f);
    EXPECT_EQ(Ports(), "0,0 1280x720 | 1004,20 256x144");
}

TEST_F(PlayableGames, AClickInShakeCallsDownAMeteor)
{
    Open("shake");
    Frames(2);
    const auto before = Count("meteor");
    InputFrame click;
    click.mouse.x = 300.0f;
    click.mouse.y = 400.0f;
    click.mouse.buttons.pressed = 1;
    Frames(1, click);
    EXPECT_GT(Count("meteor"), before);
}

TEST_F(PlayableGames, TheFlightOfOrbitTurnsWithTheStick)
{
    Open("orbit");
    Frames(3);
    const auto eyeX = [this] { return g_CM.GetCamera(game->rooms.Running()->views[0].cameraID)->GetCamPos().x; };
    const float before = eyeX();
    Frames(1);
    const float alone = eyeX() - before;
    const float then = eyeX();
    Frames(1, Pad(0, -32768));
    EXPECT_GT(eyeX() - then, alone * 0.5f + 1.0f) << "against the way it flies alone";
}

// The screen is 1280 x 720, with 4 pixels between two ports.
TEST_F(PlayableGames, PlayersOfSplitJoinAndLeave)
{
    Open("split");
    const std::string one = "0,0 1280x720", two = "0,0 638x720 | 642,0 638x720";
    const std::string three = "0,0 638x358 | 642,0 638x358 | 0,362 638x358";
    Frames(2);
    EXPECT_EQ(Ports(), two) << "two boats sail alone";
    Tap("enter");
    EXPECT_EQ(Ports(), one);
    Tap("right_ctrl");
    EXPECT_EQ(Ports(), two);
    InputFrame start = Pad(3, 0);
    start.pads[3].buttons.pressed = 1u << static_cast<unsigned>(FindPadButton("start"));
    Frames(1, start);
    Frames(1, Pad(3, 0));
    EXPECT_EQ(Ports(), three);
    Frames(1);
    EXPECT_EQ(Ports(), two) << "a gamepad that is pulled out leaves";
    Tap("enter");
    EXPECT_EQ(Ports(), one);
    Tap("right_ctrl");
    EXPECT_EQ(Ports(), two) << "alone again";
}

TEST_F(PlayableGames, FourPlayersOfSplitFillTheScreenAndAFifthFindsNoPlace)
{
    Open("split");
    for (const size_t pad : {0u, 1u, 2u, 3u, 4u})
    {
        InputFrame frame;
        for (size_t all = 0; all <= pad; ++all)
            frame.pads[all].connected = true;
        frame.pads[pad].buttons.pressed = 1u << static_cast<unsigned>(FindPadButton("start"));
        Frames(1, frame);
    }
    EXPECT_EQ(Ports(), "0,0 638x358 | 642,0 638x358 | 0,362 638x358 | 642,362 638x358");
}
// Scenes are rooms, in their order. 240 frames each when nobody is there; whoever has touched a key stays.
TEST_F(PlayableGames, TheScenesOfTheKitChangeByKeysAndByThemselves)
{
    Open("kit");
    const auto scene = [this] { return game->rooms.Running()->spec.name; };
    Frames(2);
    EXPECT_EQ(scene(), "Platformer");
    Frames(240);
    EXPECT_EQ(scene(), "Look-ahead");
    Tap("enter");
    EXPECT_EQ(scene(), "Screen by screen");
    Tap("backspace");
    EXPECT_EQ(scene(), "Look-ahead");
    Frames(300);
    EXPECT_EQ(scene(), "Look-ahead") << "somebody is there";
    const float before = First("walker").x;
    Frames(30, Held("left"));
    EXPECT_LT(First("walker").x, before);
}

TEST_F(PlayableGames, TheKitsMotionIsSetByAKey)
{
    Open("kit");
    Frames(2);
    const auto motion = [this]
    {
        Settings settings;
        EXPECT_TRUE(TakeSettings(game->scripts, settings)) << game->Failure();
        return settings.count("kit_motion") == 0 ? -1.0 : std::get<double>(settings.at("kit_motion"));
    };
    EXPECT_EQ(motion(), -1.0) << "nothing is set unless somebody asks for it";
    Tap("m");
    EXPECT_EQ(motion(), 0.5);
}
} // namespace
