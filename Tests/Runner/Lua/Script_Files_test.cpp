// Where included files are found, and what of them makes the game this one.

#include "Runner/Lua/Script_Engine.h"
#include "Runner/Save/Replay.h"
#include "Tests/Runner/Support/Game_Support.h"

namespace
{
using RunnerTest::GameTest;
using RunnerTest::TestDirectory;

constexpr char GAME[] = "ANSWER = include('kit/camera_kit.lua') room_add{ name = 'a', width = 9, height = 9 }\n"
                        "log('got ' .. tostring(ANSWER))";

class ScriptFilesTest : public GameTest
{
protected:
    ScriptFilesTest()
    {
        for (const TestDirectory* folder : {&directory, &m_runner})
            std::filesystem::create_directory(folder->Path("kit"));
        options.kit = m_runner.Path("kit");
        WriteKit("version.lua", "return 1");
    }

    void WriteKit(const std::string& name, const std::string& text) const { m_runner.Write("kit/" + name, text); }

    uint64_t FilesOfTheGame() { return Play(GAME).empty() ? game->Identity().files : 0; }

private:
    TestDirectory m_runner;
};

TEST_F(ScriptFilesTest, TheKitIsFoundInItsFolderWhenTheGameHasNone)
{
    WriteKit("camera_kit.lua", "return include('kit/part.lua')");
    WriteKit("part.lua", "return 'ours'");
    EXPECT_EQ(Play(GAME), "");
    EXPECT_EQ(Log(), "got ours\n");
}

TEST_F(ScriptFilesTest, AKitBesideTheGameComesFirst)
{
    WriteKit("camera_kit.lua", "return 'ours'");
    directory.Write("kit/camera_kit.lua", "return 'the game\\'s'");
    EXPECT_EQ(Play(GAME), "");
    EXPECT_EQ(Log(), "got the game's\n");
}

TEST_F(ScriptFilesTest, PartsOfTheKitComeFromWhereTheKitWasFound)
{
    WriteKit("camera_kit.lua", "local part = include('kit/part.lua') return part");
    WriteKit("part.lua", "return 'ours'");
    directory.Write("kit/part.lua", "return 'the game\\'s'");
    EXPECT_EQ(Play(GAME), "");
    EXPECT_EQ(Log(), "got ours\n");
}

TEST_F(ScriptFilesTest, OnlyTheKitIsReadFromItsFolder)
{
    WriteKit("other.lua", "return 1");
    EXPECT_NE(Play("include('other.lua')"), "");
    EXPECT_NE(Play("include('kit/../other.lua')").find("is no file of the game"), std::string::npos) << game->Failure();
}

TEST_F(ScriptFilesTest, AMissingKitIsToldWithBothPlaces)
{
    const std::string failure = Play(GAME);
    EXPECT_NE(failure.find(directory.Path("kit/camera_kit.lua")), std::string::npos) << failure;
    EXPECT_NE(failure.find("nor is it in " + options.kit), std::string::npos) << failure;
}

TEST_F(ScriptFilesTest, TheFingerprintTakesTheKitsVersionInsteadOfItsText)
{
    WriteKit("camera_kit.lua", "return 1");
    const uint64_t before = FilesOfTheGame();
    ASSERT_NE(before, 0u);
    WriteKit("camera_kit.lua", "return 2 -- mended");
    EXPECT_EQ(FilesOfTheGame(), before);
    WriteKit("version.lua", "return 2");
    EXPECT_NE(FilesOfTheGame(), before);
}

TEST_F(ScriptFilesTest, TheGamesOwnTextStaysInTheFingerprint)
{
    WriteKit("camera_kit.lua", "return 1");
    const uint64_t before = FilesOfTheGame();
    ASSERT_EQ(Play(std::string(GAME) + " "), "");
    EXPECT_NE(game->Identity().files, before);
}

TEST_F(ScriptFilesTest, AKitWithoutAVersionCountsByItsText)
{
    std::filesystem::remove(options.kit + "/version.lua");
    WriteKit("camera_kit.lua", "return 1");
    const uint64_t before = FilesOfTheGame();
    WriteKit("camera_kit.lua", "return 2");
    EXPECT_NE(FilesOfTheGame(), before);
}

// A save is data and goes on with a mended kit; a recording must go the same way, so it asks for the same text.
TEST_F(ScriptFilesTest, ARecordingNamesTheFileOfTheKitThatHasChanged)
{
    WriteKit("camera_kit.lua", "return 1");
    ASSERT_EQ(Play(GAME), "");
    Runner::RecordingHead head;
    head.identity = game->Identity();
    head.files = game->scripts.files.Read();
    EXPECT_EQ(DifferenceOf(*game, head), "");
    WriteKit("camera_kit.lua", "return 2");
    ASSERT_EQ(Play(GAME), "");
    EXPECT_EQ(DifferenceOf(*game, head), "the game has changed since it was made: see kit/camera_kit.lua");
}

TEST_F(ScriptFilesTest, AFileKnowsWhereItWasRead)
{
    WriteKit("camera_kit.lua", "return 1");
    ASSERT_EQ(Play(GAME), "");
    ASSERT_EQ(game->scripts.files.Read().size(), 2u);
    EXPECT_EQ(game->scripts.files.Read()[0].path, directory.Path("main.lua"));
    EXPECT_EQ(game->scripts.files.Read()[1].path, options.kit + "/camera_kit.lua");
}
} // namespace
