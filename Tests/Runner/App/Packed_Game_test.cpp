// Games in zip archives: which file starts, and that such a game is the same as the one in its folder.

#include "Runner/App/Packed_Game.h"

#include "Tests/Runner/App/Command_Line_Fixture.h"
#include "Tests/Runner/Support/Zip_Maker.h"

namespace
{
using RunnerTest::ZipMaker;

std::string MainOf(const std::vector<std::string>& names)
{
    Runner::FileContents files;
    for (const std::string& name : names)
        files[name];
    std::string why;
    const std::string main = Runner::MainFileOf(files, why);
    return main.empty() ? "! " + why : main;
}

TEST(MainFile, IsMainElseTheOneOfTheFoldersNameElseTheOnlyOne)
{
    EXPECT_EQ(MainOf({"a.lua", "main.lua"}), "main.lua");
    EXPECT_EQ(MainOf({"hop/hop.lua", "hop/level.lua", "hop/main.lua"}), "hop/main.lua");
    EXPECT_EQ(MainOf({"hop/hop.lua", "hop/level.lua"}), "hop/hop.lua");
    EXPECT_EQ(MainOf({"one.lua", "one.png", "parts/two.lua"}), "one.lua");
    EXPECT_EQ(MainOf({"hop/one.lua", "hop/parts/two.lua"}), "hop/one.lua");
    EXPECT_EQ(MainOf({"__MACOSX/hop/._one.lua", "hop/one.lua"}), "hop/one.lua");
    EXPECT_EQ(MainOf({"a.lua", "b.lua"}).substr(0, 29), "! it has several Lua files an");
    EXPECT_EQ(MainOf({"a.png", "sub/b.lua"}).substr(0, 24), "! there is no Lua file i");
    EXPECT_EQ(MainOf({}).substr(0, 24), "! there is no Lua file i");
}

class PackedGameRun : public RunnerTest::CommandLine
{
protected:
    PackedGameRun()
    {
        for (const char* folder : {"hop/parts", "hop/kit"})
            std::filesystem::create_directories(directory.Path(folder));
        ZipMaker zip;
        for (const auto& [name, text] : FILES)
        {
            directory.Write("hop/" + name, text);
            zip.Add({"hop/" + name, text, 8});
        }
        archive = directory.Write("hop.zip", zip.Text());
    }

    // Plays without drawing, in a save area of its own.
    int Start(const std::string& game, std::vector<std::string> more = {})
    {
        more.insert(more.begin(), {game, "--no-draw", "--out", directory.Path("area"), "--check"});
        return Run(more);
    }

    // A script, one of a folder, a part of the camera kit of its own.
    const std::vector<std::pair<std::string, std::string>> FILES = {
        {"hop.lua", R"(
            include("parts/ball.lua")
            log(include("kit/own.lua"))
            room_add{ width = 200, height = 200, instances = { {ball, 5, 5} },
                      views = { [0] = { w = 50, h = 50, hborder = 20, vborder = 20, target = ball } } })"},
        {"parts/ball.lua", "ball = object_add{ step = function(self) self.x = self.x + random() end }"},
        {"kit/own.lua", "return 'own part'"},
    };
    std::string archive;
};

TEST_F(PackedGameRun, HasTheTraceTheSaveAndTheLogOfTheGameInItsFolder)
{
    ASSERT_EQ(Start(directory.Path("hop/hop.lua"), {"--trace", directory.Path("a.txt"), "--save-at", "60",
                                                    directory.Path("a.sav"), "--record", directory.Path("a.rec")}),
              0)
        << err;
    const std::string log = out;
    EXPECT_NE(log.find("own part"), std::string::npos) << log;
    ASSERT_EQ(Start(archive, {"--trace", directory.Path("b.txt"), "--save-at", "60", directory.Path("b.sav"),
                              "--record", directory.Path("b.rec")}),
              0)
        << err;
    EXPECT_EQ(out, log);
    for (const std::string end : {".txt", ".sav", ".rec"})
        EXPECT_TRUE(directory.Read("a" + end) == directory.Read("b" + end)) << end;
    EXPECT_EQ(Start(archive, {"--replay", directory.Path("a.rec")}), 0) << err;
    EXPECT_EQ(Start(archive, {"--load", directory.Path("a.sav")}), 0) << err;
}

#ifndef RUNNER_WITHOUT_DRAWING
// The town has pictures, a map and a tileset in a file of its own.
TEST_F(PackedGameRun, MapsAndPicturesAreReadFromTheArchive)
{
    const std::string folder = GAMES_DIR "/town";
    ZipMaker zip;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
    {
        std::stringstream text;
        text << std::ifstream(entry.path(), std::ios::binary).rdbuf();
        zip.Add({"town/" + entry.path().filename().string(), text.str(), 8});
    }
    const std::string town = directory.Write("town.zip", zip.Text());
    ASSERT_EQ(Run({folder + "/town.lua", "--frames", "3", "--size", "160x90", "--out", directory.Path("a")}), 0) << err;
    ASSERT_EQ(Run({town, "--frames", "3", "--size", "160x90", "--out", directory.Path("b")}), 0) << err;
    EXPECT_FALSE(directory.Read("a/last_frame.png").empty());
    EXPECT_TRUE(directory.Read("a/last_frame.png") == directory.Read("b/last_frame.png"));
}
#endif

TEST_F(PackedGameRun, AFileOfTheArchiveCanBeNamedAsIfItWereAFolder)
{
    EXPECT_EQ(Start(archive + "/hop/hop.lua"), 0) << err;
    EXPECT_EQ(Start(archive + "/hop/none.lua"), 1);
    RunnerTest::ExpectOneLine(err);
    EXPECT_NE(err.find("hop.zip/hop/none.lua"), std::string::npos) << err;
    ASSERT_EQ(Start(archive, {"--record", directory.Path("run.rec")}), 0) << err;
    ZipMaker zip;
    zip.Add("main.lua", FILES[0].second).Add("run.rec", directory.Read("run.rec"));
    for (size_t i = 1; i < FILES.size(); ++i)
        zip.Add(FILES[i].first, FILES[i].second);
    const std::string whole = directory.Write("with_recording.zip", zip.Text());
    EXPECT_EQ(Start(whole, {"--replay", whole + "/run.rec"}), 1);
    EXPECT_NE(err.find("main.lua"), std::string::npos) << "the recording is read, and is of hop.lua: " << err;
}

TEST_F(PackedGameRun, NothingIsWrittenBesideOrIntoTheArchive)
{
    const std::string before = directory.Read("hop.zip");
    std::filesystem::remove_all(directory.Path("hop"));
    ASSERT_EQ(Start(archive), 0) << err;
    for (const std::string& target : {archive, archive + "/new.rec"})
    {
        EXPECT_NE(Start(archive, {"--record", target}), 0);
        RunnerTest::ExpectOneLine(err);
    }
    EXPECT_EQ(directory.Read("hop.zip"), before);
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(directory.Path("")))
        names.push_back(entry.path().filename().string());
    EXPECT_EQ(names, (std::vector<std::string>{"hop.zip"}));
}

TEST_F(PackedGameRun, WatchingAnArchiveIsRefusedInOneLine)
{
    EXPECT_EQ(Run({archive, "--window", "--watch"}), 2);
    RunnerTest::ExpectOneLine(err);
    EXPECT_NE(err.find("unpack it, or leave --watch out"), std::string::npos) << err;
}

TEST_F(PackedGameRun, ADamagedArchiveIsOneLineThatNamesIt)
{
    const std::string whole = directory.Read("hop.zip");
    for (const std::string& text : {std::string(), std::string("PK"), whole.substr(0, whole.size() / 2),
                                    ZipMaker().Add("../evil.lua", "").Text(), ZipMaker().Add("a.png", "").Text()})
    {
        EXPECT_EQ(Start(directory.Write("bad.ZIP", text)), 1);
        RunnerTest::ExpectOneLine(err);
        EXPECT_NE(err.find("bad.ZIP: "), std::string::npos) << err;
    }
    EXPECT_EQ(Start(directory.Path("none.zip")), 1);
    RunnerTest::ExpectOneLine(err);
}

TEST_F(PackedGameRun, AGameInAFolderWhoseNameEndsLikeAnArchiveIsPlayed)
{
    std::filesystem::rename(directory.Path("hop"), directory.Path("plain.zip"));
    EXPECT_EQ(Start(directory.Path("plain.zip/hop.lua")), 0) << err;
}
} // namespace
