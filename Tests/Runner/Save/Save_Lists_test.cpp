// game_autosave, game_saves, thumbnails, and saves of older file versions.

#include "Runner/Draw/Reduced.h"
#include "Tests/Runner/Save/Save_Support.h"
#include "Tests/Runner/Support/Documents.h"

namespace
{
using RunnerTest::SaveTest;

class SaveLists : public SaveTest
{
protected:
    bool HasSave(const std::string& name) const { return std::filesystem::exists(directory.Path("save/" + name)); }
};

// ---- slots ----

TEST_F(SaveLists, AutosavesTakeTurnsByACountThatIsSaved)
{
    const std::string text = "room_add{ step = function() local frame = frame_number()\n"
                             "if frame % 2 == 0 and frame < 9 then log(game_autosave(3)) end end }";
    ASSERT_EQ(Play(text, 5), "");
    EXPECT_EQ(Log(), "autosave_1.sav\nautosave_2.sav\nautosave_3.sav\n");
    ASSERT_EQ(Save(), "");
    ASSERT_EQ(PlayOn(4), "");
    EXPECT_EQ(Log(), "autosave_1.sav\nautosave_2.sav\nautosave_3.sav\nautosave_1.sav\nautosave_2.sav\n");
    std::filesystem::remove_all(directory.Path("save")); // what lies in the folder does not matter
    ASSERT_EQ(LoadAfresh(), "");
    ASSERT_EQ(PlayOn(2), "");
    EXPECT_EQ(Log().substr(75), "autosave_1.sav\n");
    EXPECT_TRUE(HasSave("autosave_1.sav"));
}

TEST_F(SaveLists, AnAutosaveThatIsNotTakenDoesNotCount)
{
    EXPECT_EQ(Run("game_save('a.sav') assert(game_autosave(2) == false)"), "");
    EXPECT_EQ(Log(), "game_autosave() - another save or load was asked for in this frame already\n");
    EXPECT_EQ(game->names.autosaves, 0);
}

// ---- the list ----

TEST_F(SaveLists, NamesVersionRoomAndFrameOfEachSaveOfThisGame)
{
    const std::string text =
        "game_version(4) room_add{ name = 'cave', step = function()\n"
        "if frame_number() == 1 then game_save('b/two.sav') end\n"
        "if frame_number() == 2 then game_save('a.sav') end\n"
        "if frame_number() == 5 then for _, s in ipairs(game_saves()) do\n"
        "log(s.name .. ' ' .. tostring(s.version) .. ' ' .. tostring(s.room) .. ' ' .. "
        "tostring(s.frame) .. ' ' .. tostring(s.thumbnail) .. ' ' .. tostring(s.why)) end end end }";
    ASSERT_EQ(Play(text, 4), "");
    directory.Write("save/note.txt", "no save");
    directory.Write("save/a.sav.part", directory.Read("save/a.sav")); // what a crash has left, whole as it is
    directory.Write("save/broken.sav", directory.Read("save/a.sav").substr(0, 200));
    std::filesystem::create_symlink(directory.Path("save/a.sav"), directory.Path("save/link.sav"));
    ASSERT_EQ(PlayOn(2), "");
    EXPECT_EQ(Log(), "a.sav 4 cave 3 nil nil\nb/two.sav 4 cave 2 nil nil\n"
                     "broken.sav nil nil nil nil it is damaged: its checksum is wrong\n");
}

TEST_F(SaveLists, SavesOfAnotherGameAreNotListed)
{
    options.file = directory.Write("other.lua", "room_add{}");
    game = std::make_unique<Runner::Game>(options, Runner::OpenApi);
    ASSERT_TRUE(game->Load());
    std::filesystem::create_directory(directory.Path("save"));
    std::string why;
    ASSERT_TRUE(Runner::SaveGame(*game, directory.Path("save/other.sav"), why)) << why;
    EXPECT_EQ(Run("assert(#game_saves() == 0)"), "");
    std::filesystem::remove_all(directory.Path("save"));
    EXPECT_EQ(Run("assert(#game_saves() == 0)"), "");
}

// ---- thumbnails ----

TEST_F(SaveLists, APictureIsReducedToTheMeanOfWhatEachPixelCovers)
{
    Runner::Picture picture{4, 2, {}};
    for (const int value : {0, 10, 20, 40, 30, 40, 50, 90})
        picture.rgba.insert(picture.rgba.end(), {static_cast<uint8_t>(value), 7, 0, 255});
    const Runner::Picture small = Runner::Reduced(picture, 2, 2);
    ASSERT_EQ(small.width, 2);
    ASSERT_EQ(small.height, 1);
    EXPECT_EQ(small.rgba, (std::vector<uint8_t>{20, 7, 0, 255, 50, 7, 0, 255})); // (0+10+30+40)/4, (20+40+50+90)/4
    EXPECT_EQ(Runner::Reduced(picture, 4, 2).rgba, picture.rgba);
}

// The game draws red on its left half; the thumbnail of the save becomes a sprite of 96 x 48.
TEST_F(SaveLists, ADrawnGameHasThumbnailsThatComparisonsLeaveOut)
{
#ifdef RUNNER_WITHOUT_DRAWING
    GTEST_SKIP() << "this runner was built without drawing";
#endif
    options.draw = true;
    const std::string text =
        "screen_set_size(192, 96) room_add{ draw = function() draw_set_colour(colours.red)\n"
        "draw_rectangle(0, 0, 96, 96) end, step = function() if frame_number() == 1 then game_save('a.sav') end\n"
        "if frame_number() == 2 then local list = game_saves() local t = list[1].thumbnail\n"
        "assert(game_saves()[1].thumbnail == t and sprite_width(t) == 96 and sprite_height(t) == 48) end end }";
    ASSERT_EQ(Play(text, 3), "");
    const std::string drawn = directory.Read("save/a.sav");
    Runner::SavedState state;
    std::string why;
    std::vector<uint8_t> first, second;
    ASSERT_TRUE(Runner::DecodeState({drawn.begin(), drawn.end()}, state, why)) << why;
    constexpr size_t PIXELS = size_t{96} * 48, ROW = size_t{96} * 20;
    ASSERT_EQ(state.thumbnail.rgb.size(), 3 * PIXELS);
    EXPECT_EQ(state.thumbnail.rgb[3 * (ROW + 40)], 255); // left of the middle
    EXPECT_EQ(state.thumbnail.rgb[3 * (ROW + 60)], 0);
    ASSERT_TRUE(Runner::ComparableSave({drawn.begin(), drawn.end()}, first, why));
    options.draw = false;
    game.reset();
    ASSERT_EQ(Play(text.substr(0, text.find("if frame_number() == 2")) + "end }", 3), "");
    const std::string bare = directory.Read("save/a.sav");
    ASSERT_TRUE(Runner::ComparableSave({bare.begin(), bare.end()}, second, why));
    EXPECT_LT(bare.size(), drawn.size() - 3 * PIXELS + 100);
    EXPECT_EQ(first.size(), bare.size());
    EXPECT_EQ(std::string(second.begin(), second.end()), bare);
}

// ---- older files ----

class OldSaves : public SaveTest
{
protected:
    const std::string folder = std::string(SOURCE_DIR) + "/Tests/Runner/Save/Old_Saves/";

    // Loads the save of that name in a game of that text.
    std::string LoadOld(const std::string& text, const std::string& name = "version_1")
    {
        directory.Write("state.sav", RunnerTest::ReadText(folder + name + ".sav"));
        options.file = directory.Write(name + ".lua", text);
        game = std::make_unique<Runner::Game>(options, Runner::OpenApi);
        return game->Load() ? Load() : game->Failure();
    }

    std::string OldGame(const std::string& name = "version_1") const
    {
        return RunnerTest::ReadText(folder + name + ".lua");
    }
};

TEST_F(OldSaves, OneOfFileVersionOneLoadsInTheGameThatMadeIt)
{
    ASSERT_EQ(LoadOld(OldGame()), "");
    EXPECT_EQ(Log(), "loaded 7 90 3\n");
    EXPECT_EQ(game->FrameNumber(), 20);
    EXPECT_EQ(game->world.Find(100000)->x, 11.0f); // 1, and 20 steps of a half
    EXPECT_EQ(PlayOn(10), "");
    EXPECT_EQ(game->world.Find(100000)->x, 16.0f);
}

TEST_F(OldSaves, OneOfFileVersionOneIsRefusedByOtherCodeAndTheLineNamesIt)
{
    EXPECT_EQ(LoadOld("game_version(1) function on_load() end " + OldGame()),
              "cannot load " + SavePath() +
                  ": it is of file version 1, which holds no names, and the game's files have changed since it was "
                  "made");
}

TEST_F(OldSaves, OneOfFileVersionTwoLoadsInTheGameThatMadeItAndInALaterOne)
{
    ASSERT_EQ(LoadOld(OldGame("version_2"), "version_2"), "");
    EXPECT_EQ(Log(), "loaded 7 90 3\n");
    EXPECT_EQ(PlayOn(10), "");
    EXPECT_EQ(game->world.Find(100000)->x, 16.0f); // 1, and 30 steps of a half
    game.reset();
    ASSERT_EQ(
        LoadOld("function on_load() end " + OldGame("version_2").replace(OldGame("version_2").find("(1)"), 3, "(2)"),
                "version_2"),
        "");
    EXPECT_EQ(game->world.Find(100000)->x, 11.0f);
    EXPECT_EQ(Log(),
              "loaded 7 90 3\n" + SavePath() + ": it was made by version 1 and goes on in version 2\nloaded 7 90 3\n");
}

TEST_F(OldSaves, SavingItAgainWritesTheNewFile)
{
    ASSERT_EQ(LoadOld(OldGame()), "");
    ASSERT_EQ(Save(), "");
    EXPECT_EQ(Bytes()[8], 2);
    EXPECT_EQ(LoadAfresh(), "");
}
} // namespace
