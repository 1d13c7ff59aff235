// Saves of rooms from maps: of the map they keep the cells that differ from its file, and nothing else.

#include "Tests/Runner/Save/Save_Support.h"

#include <filesystem>

namespace
{
using RunnerTest::SaveTest;

// Tiles 1 to 12 of "earth", then those of "water".
constexpr const char* MAP = R"(<map width="4" height="2" tilewidth="16" tileheight="16" infinite="0">
<tileset firstgid="1" name="earth" tilewidth="16" tileheight="16"><image source="tiles.png"/></tileset>
<tileset firstgid="101" name="water" tilewidth="16" tileheight="16"><image source="tiles.png"/></tileset>
<layer name="sky" width="4" height="2"><data encoding="csv">0,0,0,0,0,0,0,0</data></layer>
<layer name="ground" width="4" height="2"><data encoding="csv">1,2,3,1,2,2,2,1</data></layer></map>)";

// Prints the ground's cells, row by row, as tile:turn.
constexpr const char* PRINT = R"(function show() local text = ''
for row = 0, 1 do for column = 0, 3 do local tile, turn = map_tile_get('ground', column, row)
text = text .. tile .. ':' .. turn .. ' ' end end log(text) end
)";

class SaveMaps : public SaveTest
{
protected:
    void SetUp() override
    {
        std::filesystem::copy_file(std::string(GAMES_DIR) + "/canyon/tiles.png", directory.Path("tiles.png"));
        directory.Write("m.tmx", MAP);
    }

    // A game in the map's room, which changes cells as it starts.
    static std::string Changing(const std::string& changes, const std::string& before = "")
    {
        return before + PRINT + "room_from_map('m.tmx', { name = 'town', load = show, create = function()\n" + changes +
               "\nend })";
    }

    Runner::SavedState Saved()
    {
        Runner::SavedState state;
        std::string why;
        EXPECT_TRUE(Runner::ReadSavedGame(SavePath(), state, why)) << why;
        return state;
    }

    // What is printed by a load, which ends with the cells.
    std::string Printed(const std::string& why, size_t before) const
    {
        return why.empty() ? Log().substr(before) : "error: " + why;
    }
};

const std::string CHANGES = "map_tile_set('ground', 1, 0, 104, 5) map_tile_set('ground', 3, 1, 0)\n"
                            "map_tile_set('ground', 0, 0, 7) map_tile_set('ground', 0, 0, 1)";

TEST_F(SaveMaps, OnlyTheCellsThatDifferAreSaved)
{
    ASSERT_EQ(Play(Changing(CHANGES)), "");
    ASSERT_EQ(Save(), "");
    const Runner::SavedMap map = Saved().map;
    EXPECT_EQ(map.tilesets, (std::vector<std::string>{"earth", "water"}));
    ASSERT_EQ(map.layers.size(), 1u);
    EXPECT_EQ(map.layers[0].number, 1);
    EXPECT_EQ(map.layers[0].name, "ground");
    ASSERT_EQ(map.layers[0].cells.size(), 2u); // by row; the one that was changed back is as in the file
    EXPECT_EQ(map.layers[0].cells[0].column, 1);
    EXPECT_EQ(map.layers[0].cells[0].row, 0);
    EXPECT_EQ(map.layers[0].cells[0].tileset, 1);
    EXPECT_EQ(map.layers[0].cells[0].tile & Runner::MAP_CELL_NUMBER, 3u); // 104 is the fourth tile from 101 on
    EXPECT_EQ(map.layers[0].cells[1].column, 3);
    EXPECT_EQ(map.layers[0].cells[1].tileset, -1);
}

TEST_F(SaveMaps, ALoadGivesTheCellsOfTheSave)
{
    ASSERT_EQ(Play(Changing(CHANGES)), "");
    ASSERT_EQ(Save(), "");
    EXPECT_EQ(Printed(LoadAfresh(), 0), "1:0 104:5 3:0 1:0 2:0 2:0 2:0 0:0 \n");
    const std::vector<uint8_t> first = Bytes();
    ASSERT_EQ(Save(), "");
    EXPECT_EQ(Bytes(), first);
}

// Cells that were changed after the save are again as they were.
TEST_F(SaveMaps, ALoadTakesBackWhatCameAfterTheSave)
{
    ASSERT_EQ(Play(Changing("") + " function on_step() end"), "");
    ASSERT_EQ(Save(), "");
    EXPECT_TRUE(Saved().map.layers.empty());
    ASSERT_TRUE(game->RunningMap()->SetCell(*game->CurrentPainter(), {1, 2, 0, 5}));
    const size_t before = Log().size(); // a statement of its own: arguments are computed in any order
    EXPECT_EQ(Printed(Load(), before), "1:0 2:0 3:0 1:0 2:0 2:0 2:0 1:0 \n");
}

// A game in the map's room that shows and hides layers as it starts, and prints after a load which are shown.
std::string Showing(const std::string& changes)
{
    return "game_version(1) function show() log('ground ' .. tostring(map_layer_get_visible('ground'))) end\n"
           "room_from_map('m.tmx', { name = 'town', load = show, create = function()\n" +
           changes + "\nend })";
}

TEST_F(SaveMaps, LayersThatAreShownOtherwiseThanInTheFileAreSaved)
{
    ASSERT_EQ(Play(Showing("map_layer_set_visible('ground', false) map_layer_set_visible('sky', false)\n"
                           "map_layer_set_visible('sky', true)")),
              "");
    ASSERT_EQ(Save(), "");
    const Runner::SavedState state = Saved();
    ASSERT_EQ(state.shownLayers.size(), 1u) << "the sky is as in the file again";
    EXPECT_EQ(state.shownLayers[0].number, 1);
    EXPECT_EQ(state.shownLayers[0].name, "ground");
    EXPECT_FALSE(state.shownLayers[0].visible);
    game->RunningMap()->SetVisible({1, true});
    EXPECT_EQ(Printed(Load(), 0), "ground false\n");
    const size_t before = Log().size();
    EXPECT_EQ(Printed(LoadAfresh(), before), "ground false\n");
    const std::vector<uint8_t> first = Bytes();
    ASSERT_EQ(Save(), "");
    EXPECT_EQ(Bytes(), first);
}

TEST_F(SaveMaps, ShownLayersThatNoMapCanHaveAreDamage)
{
    ASSERT_EQ(Play(Showing("")), "");
    ASSERT_EQ(Save(), "");
    const auto decodes = [this](const std::vector<int>& numbers)
    {
        Runner::SavedState state = Saved(), decoded;
        for (const int number : numbers)
            state.shownLayers.push_back({number, "ground", false});
        std::vector<uint8_t> file;
        std::string why;
        EXPECT_TRUE(Runner::EncodeState(state, file, why)) << why;
        return Runner::DecodeState(file, decoded, why);
    };
    EXPECT_TRUE(decodes({0, 1, 999}));
    EXPECT_FALSE(decodes({-1}));
    EXPECT_FALSE(decodes({1000}));
    EXPECT_FALSE(decodes({1, 1}));
    EXPECT_FALSE(decodes({1, 0}));
}

TEST_F(SaveMaps, InAnotherMapALayerIsShownByItsNameAndOneThatIsGoneIsToldAndLeftOut)
{
    ASSERT_EQ(Play(Showing("map_layer_set_visible('ground', false) map_layer_set_visible('sky', false)")), "");
    ASSERT_EQ(Save(), "");
    Runner::SavedState state = Saved();
    state.shownLayers[0].number = 2;
    std::string why;
    EXPECT_FALSE(Runner::FitToGame(*game, state, SavePath(), why)) << "the map has no third layer";
    directory.Write("m.tmx", R"(<map width="1" height="1" tilewidth="16" tileheight="16" infinite="0">
<layer name="ground" width="1" height="1"><data encoding="csv">0</data></layer></map>)");
    ASSERT_EQ(Play(Showing(""), 0), "");
    const size_t before = Log().size();
    EXPECT_EQ(Printed(Load(), before),
              SavePath() + ": the game's code has changed since it was made\n" + SavePath() +
                  ": left out: whether the map's layer \"sky\" is shown: it has no such layer now\nground false\n");
}

TEST_F(SaveMaps, ACellThatTheMapCannotHaveIsDamage)
{
    ASSERT_EQ(Play(Changing(CHANGES)), "");
    ASSERT_EQ(Save(), "");
    const auto fits = [this](const Runner::SavedMapCell& cell, int layer)
    {
        Runner::SavedState state = Saved();
        std::string why;
        state.map.layers = {{layer, "ground", {cell}}};
        return Runner::FitToGame(*game, state, SavePath(), why);
    };
    EXPECT_TRUE(fits({3, 1, 1, 0}, 1));
    EXPECT_TRUE(fits({3, 1, 1, Runner::MAP_FLIP_VERTICAL}, 1));
    EXPECT_FALSE(fits({4, 1, 1, 0}, 1));
    EXPECT_FALSE(fits({3, -1, 1, 0}, 1));
    EXPECT_FALSE(fits({INT32_MIN, INT32_MAX, 1, 0}, 1));
    EXPECT_FALSE(fits({3, 1, 2, 0}, 1));
    EXPECT_FALSE(fits({3, 1, -2, 0}, 1));
    EXPECT_FALSE(fits({3, 1, -1, 1}, 1));
    EXPECT_FALSE(fits({3, 1, 1, 100000}, 1));
    EXPECT_FALSE(fits({3, 1, 1, Runner::MAP_CELL_HEXAGONAL}, 1));
    EXPECT_FALSE(fits({3, 1, 1, 0}, 2));
    EXPECT_FALSE(fits({3, 1, 1, 0}, -1));
}

// The tilesets changed places, the ground has another number and is narrower.
TEST_F(SaveMaps, InAnotherMapCellsAreFoundByTheNamesOfLayersAndTilesets)
{
    ASSERT_EQ(Play(Changing(CHANGES, "game_version(1) ")), "");
    ASSERT_EQ(Save(), "");
    directory.Write("m.tmx", R"(<map width="3" height="2" tilewidth="16" tileheight="16" infinite="0">
<tileset firstgid="1" name="water" tilewidth="16" tileheight="16"><image source="tiles.png"/></tileset>
<tileset firstgid="101" name="earth" tilewidth="16" tileheight="16"><image source="tiles.png"/></tileset>
<layer name="ground" width="3" height="2"><data encoding="csv">101,102,103,101,102,102</data></layer></map>)");
    ASSERT_EQ(Play(Changing("", "game_version(1) "), 0), "");
    const size_t before = Log().size();
    EXPECT_EQ(Printed(Load(), before),
              SavePath() + ": the game's code has changed since it was made\n" + SavePath() +
                  ": left out: 1 changed cells of the map's layer \"ground\": the map has no such cells or tiles now\n"
                  "101:0 4:5 103:0 0:0 101:0 102:0 102:0 0:0 \n");
}
} // namespace
