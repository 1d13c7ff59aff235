// A game that is saved in the middle of a blend, a shake and a cut-scene of the camera kit goes on exactly.

#include "Tests/Runner/Save/Save_Support.h"

namespace
{
using RunnerTest::SaveTest;

constexpr int FRAMES_AFTER = 300;

// All at once: look-ahead, dead and soft zones, a zone of the room, a blend from frame 20 on, a cut-scene from frame 50
// on, shakes, a pan that holds; a second camera that frames a group on whole pixels.
constexpr char GAME[] = R"(
local kit = include("kit/camera_kit.lua")
local function walker(pace)
    return { bbox = {-8, -8, 8, 8}, create = function(self) self.vx, self.vy = pace, 0 end,
        step = function(self)
            if irandom(50) == 0 then self.vx = -self.vx end
            if irandom(70) == 0 and self.vy == 0 then self.vy = -9 end
            self.x, self.y = math.max(20, math.min(2980, self.x + self.vx)), self.y + self.vy
            self.vy = self.vy ~= 0 and self.vy + 0.5 or 0
            if self.y >= 700 then self.y, self.vy = 700, 0 end
        end }
end
local hero, friend = object_add(walker(4.7)), object_add(walker(-3.3))
ENDED = script_add(function() vars.ended = (vars.ended or 0) + 1 end)
local director = object_add{ step = function()
    local frame, camera = frame_number(), kit.camera(0)
    if frame == 20 then camera:shot("near", { follow = friend, zoom = 2.5, priority = 1, angle = 4 }) end
    if frame == 50 then
        camera:scene({ { shot = "main", frames = 40 }, { follow = { x = 900, y = 300 }, zoom = 0.8, frames = 60, blend = 30 },
                       { follow = { hero, friend }, frames = 50, ease = "cubic_inout" } }, ENDED)
    end
    if frame % 40 == 5 then camera:shake{ x = 9, y = 6, angle = 2, frames = 35 } end
    if frame == 80 then kit.camera(1):pan_to{ x = 1000, y = 500, frames = 60, done = ENDED } end
    if frame == 90 then camera:limits{ left = 200, right = 2500 } end
    kit.step()
end }
room_add{ width = 3000, height = 800, instances = { {hero, 900, 700}, {friend, 1500, 700}, {director, 0, 0} },
    views = { [0] = { w = 640, h = 360 }, [1] = { w = 320, h = 180, wport = 320, hport = 180 } },
    create = function()
        kit.camera{ view = 0, follow = hero, style = "platformer", lead = { x = 14 }, soft_zone = 40,
                    zones = { { left = 500, top = 0, right = 1200, bottom = 800, zoom = 1.4, margin = 30 } } }
        kit.camera{ view = 1, follow = { hero, friend }, style = "topdown", pixels = true, group = { max_zoom = 1 } }
    end }
)";

class SaveKit : public SaveTest, public ::testing::WithParamInterface<int>
{
protected:
    SaveKit() { options.kit = SOURCE_DIR "/kit"; }

    std::vector<uint64_t> Future()
    {
        std::vector<uint64_t> sums;
        for (int i = 0; i < FRAMES_AFTER && game->Frame(); ++i)
            sums.push_back(game->FrameSum());
        EXPECT_EQ(game->Failure(), "");
        return sums;
    }
};

TEST_P(SaveKit, GoesOnExactly)
{
    ASSERT_EQ(Play(GAME, GetParam()), "");
    ASSERT_EQ(Save(), "");
    const std::vector<uint64_t> wanted = Future();
    ASSERT_EQ(Load(), "");
    EXPECT_EQ(Future(), wanted) << "in the same process";
    ASSERT_EQ(Play(GAME, GetParam()), "");
    ASSERT_EQ(Save(), "");
    ASSERT_EQ(LoadAfresh(), "");
    EXPECT_EQ(Future(), wanted) << "in a fresh game";
}

// In the blend, in the blend that the scene interrupts, in each of the scene's items, while effects wear off.
INSTANTIATE_TEST_SUITE_P(At, SaveKit, ::testing::Values(1, 33, 60, 107, 170));

TEST_F(SaveTest, AnUpdateOfTheKitSpoilsNoSave)
{
    std::filesystem::create_directory(directory.Path("own"));
    std::filesystem::copy(SOURCE_DIR "/kit", directory.Path("own/kit"));
    options.kit = directory.Path("own/kit");
    ASSERT_EQ(Play(GAME, 30), "");
    ASSERT_EQ(Save(), "");
    std::ofstream(directory.Path("own/kit/follow.lua"), std::ios::app) << "\n-- mended\n";
    EXPECT_EQ(LoadAfresh(), "");
    EXPECT_EQ(PlayOn(100), "");
}
} // namespace
