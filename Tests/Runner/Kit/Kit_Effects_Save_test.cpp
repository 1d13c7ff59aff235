// A game that is saved in the middle of the kit's effects goes on exactly: what it saves later is the same byte by
// byte, and the scripts at the effects' ends run in the same frames.
#include "Tests/Runner/Save/Save_Support.h"

#include <gmock/gmock.h>

namespace
{
using RunnerTest::SaveTest;
using testing::HasSubstr;

constexpr int END = 90;

// Under way in frames 10, 25 and 40: shake and pan; flash, trauma and fade; zoom, turn and fade back.
constexpr char GAME[] = R"(
local kit = include("kit/camera_kit.lua")
local function arrived(what)
    return script_add(function() vars[what] = frame_number() log(what .. " in frame " .. frame_number()) end)
end
local SHAKEN, PANNED, FADED, BACK = arrived("shaken"), arrived("panned"), arrived("faded"), arrived("back")
local last = object_add{ step = function()
    if frame_number() == 20 then
        kit.camera(0):trauma{ level = 0.8 }
        kit.camera(0):flash{ frames = 30 }
    end
    kit.step()
end }
room_add{ width = 2000, height = 800, views = { [0] = { w = 640, h = 360 } }, instances = { {last, 0, 0} },
    create = function()
        local camera = kit.camera{ view = 0, follow = {x = 700, y = 400}, pixels = { grid = "screen" } }
        camera:shake{ angle = 4, frames = 30, done = SHAKEN }
        camera:pan_to{ x = 900, frames = 22, done = PANNED }
        camera:chain{ {"fade", frames = 35, done = FADED}, {"zoom_to", zoom = 2, point = {900, 300}, frames = 12},
                      {"rotate_to", angle = 30, frames = 9}, {"fade", to = 0, frames = 9}, {"release", frames = 12,
                      done = BACK} }
    end,
    draw_gui = function() kit.draw() end }
)";

class KitEffectsSaved : public SaveTest, public testing::WithParamInterface<int>
{
protected:
    KitEffectsSaved() { options.kit = SOURCE_DIR "/kit"; }
};

TEST_P(KitEffectsSaved, GoOnExactly)
{
    ASSERT_EQ(Play(GAME, GetParam()), "");
    ASSERT_EQ(Save(), "");
    const std::string midway = directory.Read("state.sav");
    ASSERT_EQ(PlayOn(END - GetParam()), "");
    ASSERT_EQ(Save(), "");
    const std::vector<uint8_t> wanted = Bytes();
    // Frames count from 0, and an effect that starts before frame 0 arrives after as many frames as it has.
    for (const char* line :
         {"panned in frame 21\n", "shaken in frame 29\n", "faded in frame 34\n", "back in frame 76\n"})
        EXPECT_THAT(Log(), HasSubstr(line));

    directory.Write("state.sav", midway);
    ASSERT_EQ(LoadAfresh(), "");
    ASSERT_EQ(PlayOn(END - GetParam()), "");
    ASSERT_EQ(Save(), "");
    EXPECT_TRUE(Bytes() == wanted) << "saved in frame " << GetParam();
}

INSTANTIATE_TEST_SUITE_P(In, KitEffectsSaved, testing::Values(1, 10, 25, 40, 60));
} // namespace
