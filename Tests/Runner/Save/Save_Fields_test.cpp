// Saves with good checksums and one number that cannot be: each is refused in one line, and the game stays as it was.

#include "Runner/Draw/Picture.h"
#include "Tests/Runner/Save/Save_Support.h"

#include <gmock/gmock.h>

#include <limits>

namespace
{
using namespace Runner;

constexpr float NOT_FINITE = std::numeric_limits<float>::infinity();
constexpr char SENSELESS[] = "it is damaged: its content makes no sense";

struct Row
{
    const char* name;
    void (*change)(SavedState& state);
    const char* part = SENSELESS; // of the line
};

void PrintTo(const Row& row, std::ostream* out) { *out << row.name; }

class SaveFields : public RunnerTest::SaveTest, public testing::WithParamInterface<Row>
{
protected:
    // Two instances, a view, a surface and a map of four tiles of a sprite of 8 or more frames.
    void SetUp() override
    {
        std::filesystem::copy_file(std::string(GAMES_DIR) + "/canyon/tiles.png", directory.Path("tiles.png"));
        ASSERT_EQ(Play("screen_set_size(64, 48)\n"
                       "tilemap_add{ sprite = sprite_add_sheet('tiles.png', 16, 16), columns = 2, rows = 2, "
                       "data = {1, 2, 3, 4} }\n"
                       "local thing = object_add{ name = 'thing' }\n"
                       "room_add{ instances = { {thing, 1, 2}, {thing, 3, 4} }, views = { [0] = { w = 32, h = 24 } },\n"
                       "create = function() surface_create(4, 4) surface_create(4, 4) vars.t = { 1 } end }",
                       2),
                  "");
        std::string missing, why;
        std::vector<uint8_t> file;
        ASSERT_TRUE(CaptureGame(*game, file, missing, why)) << why;
        ASSERT_TRUE(DecodeState(file, state, why)) << why;
    }

    // Why the state cannot be loaded as a file would be; empty when it can.
    std::string Refusal()
    {
        std::vector<uint8_t> file;
        std::string why;
        SavedState read;
        EXPECT_TRUE(EncodeState(state, file, why)) << why;
        const bool fits = DecodeState(file, read, why) && FitToGame(*game, read, "it.sav", why);
        EXPECT_EQ(fits, why.empty());
        return why;
    }

    SavedState state;
};

TEST_P(SaveFields, ThatCannotBeAreRefused)
{
    EXPECT_EQ(Refusal(), "");
    GetParam().change(state);
    EXPECT_THAT(Refusal(), testing::HasSubstr(GetParam().part));
    EXPECT_EQ(game->FrameNumber(), 2);
    EXPECT_EQ(PlayOn(1), "");
}

INSTANTIATE_TEST_SUITE_P(
    Game, SaveFields,
    testing::Values(Row{"ScreenWidth", [](SavedState& s) { ++s.game.screenWidth; }},
                    Row{"ScreenHeight", [](SavedState& s) { ++s.game.screenHeight; }},
                    Row{"FrameNegative", [](SavedState& s) { s.game.frame = -1; }},
                    Row{"FrameHuge", [](SavedState& s) { s.game.frame = INT32_MAX; }},
                    Row{"Room", [](SavedState& s) { s.game.room = 7; }, "it names room 7"},
                    Row{"NextRoom", [](SavedState& s) { s.game.nextRoom = 8; }, "it names room 8"},
                    Row{"Object", [](SavedState& s) { s.world.instances[1].object = 9; }, "it names object 9"},
                    Row{"InstanceTwice", [](SavedState& s) { s.world.instances[1].id = s.world.instances[0].id; }},
                    Row{"InstanceX", [](SavedState& s) { s.world.instances[0].x = NOT_FINITE; }},
                    Row{"InstanceY", [](SavedState& s) { s.world.instances[0].y = -NOT_FINITE; }},
                    Row{"NextId", [](SavedState& s) { s.world.nextId = s.world.instances[1].id; }},
                    Row{"NextIdHuge", [](SavedState& s) { s.world.nextId = INT32_MAX; }}),
    [](const auto& test) { return std::string(test.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Pictures, SaveFields,
    testing::Values(Row{"SurfaceTwice", [](SavedState& s) { s.surfaces[1].number = s.surfaces[0].number; }},
                    Row{"SurfaceNegative", [](SavedState& s) { s.surfaces[0].number = -1; }},
                    Row{"SurfaceHuge", [](SavedState& s) { s.surfaces[1].number = INT32_MAX; }},
                    Row{"SurfaceWidth", [](SavedState& s) { s.surfaces[0].width = 0; }},
                    Row{"SurfaceHeight", [](SavedState& s) { s.surfaces[0].height = PICTURE_SIDE_LIMIT + 1; }},
                    Row{"MapNumber", [](SavedState& s) { s.tileMaps[0].number = 1; }},
                    Row{"MapSprite", [](SavedState& s) { s.tileMaps[0].sprite = 99; }},
                    Row{"MapColumns", [](SavedState& s) { s.tileMaps[0].columns = -2; }},
                    Row{"MapRows", [](SavedState& s) { s.tileMaps[0].rows = 0; }},
                    Row{"MapTileWidth", [](SavedState& s) { s.tileMaps[0].tileWidth = NOT_FINITE; }},
                    Row{"MapTileHeight", [](SavedState& s) { s.tileMaps[0].tileHeight = NOT_FINITE; }},
                    Row{"MapSize", [](SavedState& s) { s.tileMaps[0].tiles.pop_back(); }},
                    Row{"MapTileNegative", [](SavedState& s) { s.tileMaps[0].tiles[2] = -2; }},
                    Row{"MapTileHuge", [](SavedState& s) { s.tileMaps[0].tiles[2] = 100000; }}),
    [](const auto& test) { return std::string(test.param.name); });

constexpr char NO_THUMBNAIL[] = "it is damaged: its thumbnail makes no sense";
constexpr char NO_CAMERAS[] = "it is damaged: its cameras make no sense";
constexpr char NO_VARIABLES[] = "it is damaged: its variables make no sense";

void Thumbnail(SavedState& state, int width, int height, size_t bytes)
{
    state.thumbnail.width = width;
    state.thumbnail.height = height;
    state.thumbnail.rgb.assign(bytes, 0);
}

INSTANTIATE_TEST_SUITE_P(
    Parts, SaveFields,
    testing::Values(
        Row{"ThumbnailWithoutWidth", [](SavedState& s) { Thumbnail(s, 0, 1, 3); }, NO_THUMBNAIL},
        Row{"ThumbnailWithoutHeight", [](SavedState& s) { Thumbnail(s, 1, 0, 3); }, NO_THUMBNAIL},
        Row{"ThumbnailWide", [](SavedState& s) { Thumbnail(s, PICTURE_SIDE_LIMIT + 1, 1, 3); }, NO_THUMBNAIL},
        Row{"ThumbnailHigh", [](SavedState& s) { Thumbnail(s, 1, PICTURE_SIDE_LIMIT + 1, 3); }, NO_THUMBNAIL},
        Row{"ThumbnailShort", [](SavedState& s) { Thumbnail(s, 2, 2, 11); }, NO_THUMBNAIL},
        Row{"CamerasNegative", [](SavedState& s) { s.cameras.highPoint = -1; }, NO_CAMERAS},
        Row{"CamerasBeyondSlots", [](SavedState& s) { s.cameras.highPoint = 1000000; }, NO_CAMERAS},
        Row{"CameraFlags", [](SavedState& s) { s.cameras.flags.pop_back(); }, NO_CAMERAS},
        Row{"CameraStream", [](SavedState& s) { s.cameras.stream.pop_back(); }, NO_CAMERAS},
        Row{"NoTable", [](SavedState& s) { s.values.tables.clear(); }, NO_VARIABLES},
        Row{"TableBeyond", [](SavedState& s) { s.values.tables[0].entries[0].value = TableNumber{99}; }, NO_VARIABLES},
        Row{"KeyNotANumber",
            [](SavedState& s) { s.values.tables[0].entries[0].key = std::numeric_limits<double>::quiet_NaN(); },
            NO_VARIABLES},
        Row{"VariablesBeyond", [](SavedState& s) { s.world.instances[0].variables = 99; }, NO_VARIABLES}),
    [](const auto& test) { return std::string(test.param.name); });

TEST_F(SaveFields, AThumbnailOfItsSizeIsTaken)
{
    Thumbnail(state, 2, 2, 12);
    EXPECT_EQ(Refusal(), "");
}
} // namespace
