// A saved game as lines of text, and how two of them differ.

#include "Runner/Save/Describe_State.h"

#include "Runner/App/Compare_Saves.h"
#include "Tests/Runner/Save/Save_Support.h"

#include <gmock/gmock.h>

#include <map>

namespace
{
using namespace Runner;
using testing::HasSubstr;

// The line of that name; "none" when there is no such line.
std::string Line(const SavedState& state, const std::string& name)
{
    const Description all = Describe(state);
    const std::map<std::string, std::string> lines(all.begin(), all.end());
    const auto found = lines.find(name);
    return found == lines.end() ? "none" : found->second;
}

TEST(DescribedState, HasItsPictures)
{
    SavedState state;
    state.surfaces = {{3, 40, 30}};
    state.tileMaps = {{0, 2, 2, 1, 8.0f, 9.5f, {5, -1}}, {1, 2, 0, 1, 8.0f, 8.0f, {7}}};
    state.map.layers = {{4, "ground", {{1, 2, -1, 0}, {3, 2, 1, 7}}}};
    state.shownLayers = {{5, "roof", false}};
    EXPECT_EQ(Line(state, "surface 3"), "40x30");
    EXPECT_EQ(Line(state, "tile map 0 sprite"), "2");
    EXPECT_EQ(Line(state, "tile map 0 size"), "2x1");
    EXPECT_EQ(Line(state, "tile map 0 tile"), "8x9.5");
    EXPECT_EQ(Line(state, "tile map 0 column 0 row 0"), "5");
    EXPECT_EQ(Line(state, "tile map 0 column 1 row 0"), "-1");
    EXPECT_EQ(Line(state, "tile map 1 column 0 row 0"), "none") << "it has no columns";
    EXPECT_EQ(Line(state, "map layer 4 column 1 row 2"), "empty");
    EXPECT_EQ(Line(state, "map layer 4 column 3 row 2"), "tileset 1 tile 7");
    EXPECT_EQ(Line(state, "map layer 5 visible"), "false");
}

// A table is called by the first entry that holds it, one that nothing holds by its number.
TEST(DescribedState, HasItsVariablesByTheirPaths)
{
    const std::string longName(50, 'n');
    SavedState state;
    state.values.tables.resize(6);
    state.values.tables[0].entries = {{HeldText("speed"), 0.1},
                                      {HeldText("who"), InstanceNumber{100002}},
                                      {HeldText(longName), TableNumber{4}},
                                      {int64_t{7}, TableNumber{1}}};
    state.values.tables[1].entries = {{true, int64_t{1}}};
    state.values.tables[2].entries = {{0.5, false}};
    state.values.tables[3].entries = {{HeldText("a"), HeldText("text")}};
    state.values.tables[4].entries = {{HeldText(longName), TableNumber{5}}};
    state.values.tables[5].entries = {{HeldText("b"), int64_t{2}}};
    SavedInstance owner, plain;
    owner.id = 100001;
    owner.variables = 4; // table 3
    plain.id = 100002;
    state.world.instances = {owner, plain};
    state.names.cameras = {{5, "eye"}};
    EXPECT_EQ(Line(state, "vars.speed"), "0.10000000000000001");
    EXPECT_EQ(Line(state, "vars.who"), "instance 100002");
    EXPECT_EQ(Line(state, "vars[7]"), "table 1");
    EXPECT_EQ(Line(state, "vars[7][true]"), "1");
    EXPECT_EQ(Line(state, "table 2[0.5]"), "false");
    EXPECT_EQ(Line(state, "instance 100001.a"), "\"text\"");
    EXPECT_EQ(Line(state, "table 5.b"), "2") << "the start of a long path is left out";
    EXPECT_EQ(Line(state, "name of camera 5"), "\"eye\"");
}

// ---- two saves ----

class ComparedSaves : public RunnerTest::SaveTest
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(Play("room_add{ create = function() surface_create(4, 4) end }"), "");
        std::string missing;
        std::vector<uint8_t> file;
        ASSERT_TRUE(CaptureGame(*game, file, missing, why)) << why;
        ASSERT_TRUE(DecodeState(file, first, why)) << why;
        second = first;
    }

    std::string Write(const char* name, const SavedState& state) const
    {
        std::vector<uint8_t> file;
        std::string reason;
        EXPECT_TRUE(EncodeState(state, file, reason)) << reason;
        return directory.Write(name, {file.begin(), file.end()});
    }

    // What is said of the two.
    std::string Compared()
    {
        const RunnerTest::CapturedFile out;
        const bool isSame = CompareSaves(Write("a.sav", first), Write("b.sav", second), out.Get(), why);
        EXPECT_EQ(isSame, out.Text() == "the saves are the same\n");
        SetConsoleOutput(nullptr);
        return out.Text();
    }

    SavedState first, second;
    std::string why;
};

TEST_F(ComparedSaves, AreTheSameWhateverTheirThumbnailsShow)
{
    second.thumbnail.width = second.thumbnail.height = 1;
    second.thumbnail.rgb = {1, 2, 3};
    EXPECT_EQ(Compared(), "the saves are the same\n");
}

TEST_F(ComparedSaves, WhatOnlyOneHasIsADashOfTheOther)
{
    ASSERT_EQ(first.surfaces.size(), 1u);
    first.surfaces[0] = {0, 5, 6};
    second.surfaces = {{2, 7, 8}};
    EXPECT_EQ(Compared(), "surface 0: 5x6 / -\nsurface 2: - / 7x8\n");
}

TEST_F(ComparedSaves, OfManyDifferencesTheFirstAreShownAndTheOthersCounted)
{
    for (int number = 1; number <= 23; ++number)
        second.surfaces.push_back({number, 1, 1});
    const std::string said = Compared();
    EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 21);
    EXPECT_THAT(said, HasSubstr("surface 20: - / 1x1\nand 3 more\n"));
}

// The name of a layer is no line: it stands beside the number of the layer.
TEST_F(ComparedSaves, WhatShowsInNoLineIsToldAllTheSame)
{
    first.map.tilesets = second.map.tilesets = {"tiles"};
    first.map.layers = {{0, "a", {{0, 0, -1, 0}}}};
    second.map.layers = {{0, "b", {{0, 0, -1, 0}}}};
    EXPECT_EQ(Compared(), "the saves differ in bits that show in no text\n");
}

TEST_F(ComparedSaves, AFileThatCannotBeReadIsNamed)
{
    const RunnerTest::CapturedFile out;
    const std::string good = Write("a.sav", first), none = directory.Path("none.sav"),
                      bad = directory.Write("bad.sav", "something else");
    for (const auto& [a, b, named] : {std::array<std::string, 3>{none, good, none}, {good, bad, bad}, {bad, good, bad}})
    {
        why.clear();
        EXPECT_FALSE(CompareSaves(a, b, out.Get(), why));
        EXPECT_THAT(why, HasSubstr(named));
    }
    EXPECT_EQ(out.Text(), "");
    SetConsoleOutput(nullptr);
}
} // namespace
