// --record, --replay, --input: a run played again, with nothing written.

#include "Tests/Runner/App/Command_Line_Fixture.h"

namespace
{
class Recordings : public RunnerTest::CommandLine
{
protected:
    // Plays the game with further options; each run has its own save area. Its status.
    int Start(const std::string& area, std::vector<std::string> more)
    {
        const std::vector<std::string> common = {game, "--no-draw", "--out", directory.Path(area), "--check"};
        more.insert(more.begin(), common.begin(), common.end());
        return Run(more);
    }

    int Replay(std::vector<std::string> more = {})
    {
        more.insert(more.begin(), {"--replay", directory.Path("run.rec")});
        return Start("second", more);
    }

    // Cuts the recording after so many bytes from its end.
    void Cut(size_t bytes)
    {
        const std::string all = directory.Read("run.rec");
        directory.Write("run.rec", all.substr(0, all.size() - bytes));
    }

    bool Exists(const std::string& name) const { return std::filesystem::exists(directory.Path(name)); }

    const std::string game = directory.Write("main.lua", R"(
        local ball = object_add{ step = function(self) self.x = self.x + random() end }
        room_add{ width = 200, height = 200, instances = { {ball, 5, 5} },
                  views = { [0] = { w = 50, h = 50, hborder = 20, vborder = 20, target = ball } } })");
};

TEST_F(Recordings, AReplayHasTheTraceAndTheFinalSaveOfTheRun)
{
    ASSERT_EQ(Start("first", {"--frames", "70", "--seed", "5", "--record", directory.Path("run.rec"), "--trace",
                              directory.Path("first.txt"), "--save-at", "70", directory.Path("first.sav")}),
              0)
        << err;
    ASSERT_EQ(Replay({"--trace", directory.Path("second.txt"), "--save-at", "70", directory.Path("second.sav")}), 0)
        << err;
    EXPECT_EQ(directory.Read("second.txt"), directory.Read("first.txt"));
    EXPECT_EQ(directory.Read("second.sav"), directory.Read("first.sav"));
    EXPECT_EQ(directory.Read("first.txt").find("nan"), std::string::npos);
    EXPECT_GT(directory.Read("first.txt").size(), 70u * 50u);
}

TEST_F(Recordings, AReplayHasTheSettingsOfTheRunAndKeepsNone)
{
    directory.Write("main.lua", R"(
        settings.runs = (settings.runs or 0) + 1
        room_add{ step = function() log("run " .. settings.runs) end })");
    directory.Write("it.txt", "settings 1\n\"runs\" = 7\n");
    ASSERT_EQ(Start("first",
                    {"--frames", "2", "--settings", directory.Path("it.txt"), "--record", directory.Path("run.rec")}),
              0)
        << err;
    EXPECT_EQ(out, "run 8\nrun 8\n");
    EXPECT_EQ(directory.Read("it.txt"), "settings 1\n\"runs\" = 8\n");
    ASSERT_EQ(Replay({"--settings", directory.Path("it.txt")}), 0) << err;
    EXPECT_EQ(out, "run 8\nrun 8\n");
    EXPECT_EQ(directory.Read("it.txt"), "settings 1\n\"runs\" = 8\n");
}

TEST_F(Recordings, ARunThatWentOnFromASaveBringsItAlong)
{
    ASSERT_EQ(Start("first", {"--frames", "10", "--save-at", "10", directory.Path("it.sav")}), 0);
    ASSERT_EQ(Start("first", {"--frames", "20", "--load", directory.Path("it.sav"), "--record",
                              directory.Path("run.rec"), "--trace", directory.Path("first.txt")}),
              0);
    std::filesystem::remove(directory.Path("it.sav"));
    ASSERT_EQ(Replay({"--trace", directory.Path("second.txt")}), 0) << err;
    EXPECT_EQ(directory.Read("second.txt"), directory.Read("first.txt"));
    EXPECT_EQ(directory.Read("second.txt").substr(0, 3), "10 ");
}

// The game saves in frame 1, loads in frame 3 and in frame 5, where nothing was ever saved, and takes a picture, which
// fails without drawing.
TEST_F(Recordings, AReplayHasWhatTheRunLoadedAndWritesNothing)
{
    directory.Write("main.lua", R"(
        vars.n = 0
        room_add{ step = function()
            vars.n = vars.n + 1
            local frame = frame_number()
            if frame == 1 then log("save " .. tostring(game_save("a/b.sav"))) end
            if vars.n == 4 then log("load " .. tostring(game_load("a/b.sav"))) end
            if vars.n == 6 then log("other " .. tostring(game_load("none.sav"))) end
            if vars.n == 7 then log("picture " .. tostring(screenshot("p.png"))) end
            log(frame .. " " .. vars.n)
        end })");
    ASSERT_EQ(Start("first", {"--frames", "12", "--record", directory.Path("run.rec")}), 0) << err;
    const std::string log = out;
    EXPECT_NE(log.find("save true\n"), std::string::npos) << log;
    EXPECT_NE(log.find("load true\n3 4\n2 3\nload true\n"), std::string::npos) << log;
    ASSERT_TRUE(Exists("first/a/b.sav"));
    ASSERT_EQ(Replay(), 0) << err;
    const auto withoutPaths = [](std::string text)
    {
        const size_t at = text.find("cannot open");
        return at == std::string::npos ? text : text.erase(at, text.find('\n', at) - at);
    };
    EXPECT_EQ(withoutPaths(out), withoutPaths(log));
    EXPECT_FALSE(Exists("second"));
}

TEST_F(Recordings, AReplayHasTheListsOfSavesOfTheRun)
{
    directory.Write("main.lua", R"(
        game_version(6)
        room_add{ name = "cave", step = function()
            if frame_number() == 1 then log(game_autosave(2)) end
            if frame_number() == 4 then for _, it in ipairs(game_saves()) do
                log(it.name .. " " .. it.version .. " " .. it.room .. " " .. it.frame) end end
        end })");
    ASSERT_EQ(Start("first", {"--frames", "6", "--record", directory.Path("run.rec")}), 0) << err;
    EXPECT_EQ(out, "autosave_1.sav\nautosave_1.sav 6 cave 2\n");
    std::filesystem::remove_all(directory.Path("first"));
    ASSERT_EQ(Replay(), 0) << err;
    EXPECT_EQ(out, "autosave_1.sav\nautosave_1.sav 6 cave 2\n");
    EXPECT_FALSE(Exists("second"));
}

// The text presses space in frames 3 to 5 and holds the pointer and a stick; scripts see the same in the replay.
TEST_F(Recordings, WhatTheUserDidIsReplayed)
{
    directory.Write("main.lua", R"(
        room_add{ step = function()
            log(frame_number() .. " " .. tostring(key_down("space")) .. " " .. tostring(key_pressed("space")) .. " " ..
                mouse_x() .. " " .. pad_axis(0, "left_x"))
        end })");
    directory.Write("input.txt", "2 mouse 10.5 20 # a comment\n3 key space down\n4 pad 0 on\n4 pad 0 axis left_x 1\n"
                                 "6 key space up\n");
    ASSERT_EQ(Start("first",
                    {"--frames", "8", "--input", directory.Path("input.txt"), "--record", directory.Path("run.rec")}),
              0)
        << err;
    EXPECT_NE(out.find("2 false false 10.5 0"), std::string::npos) << out;
    EXPECT_NE(out.find("3 true true 10.5 0"), std::string::npos) << out;
    EXPECT_NE(out.find("4 true false 10.5 1"), std::string::npos) << out;
    EXPECT_NE(out.find("6 false false 10.5 1"), std::string::npos) << out;
    const std::string first = out;
    std::filesystem::remove(directory.Path("input.txt"));
    ASSERT_EQ(Replay(), 0) << err;
    EXPECT_EQ(out, first);
}

TEST_F(Recordings, AMistakeInATextOfInputsNamesItsLine)
{
    const std::pair<const char*, const char*> cases[] = {
        {"1 key nope down", "write FRAME key NAME down|up|tap, with a key's name as scripts have it"},
        {"1 jump", "\"jump\" is none of key, mouse, button, wheel, pad, text"},
        {"x key a down", "a line is FRAME EVENT, and no frame is smaller than the one before"},
        {"1 mouse 1 2\n0 mouse 1 2", "a line is FRAME EVENT, and no frame is smaller than the one before"},
        {"1 mouse 1 nan", "write FRAME mouse X Y"},
        {"1 wheel 0.5 1", "write FRAME wheel X Y, in whole notches"}};
    for (const auto& [text, why] : cases)
    {
        const std::string path = directory.Write("input.txt", std::string("# first\n") + text);
        EXPECT_EQ(Start("first", {"--input", path}), 1);
        const std::string line = std::string(text).find('\n') == std::string::npos ? "2" : "3";
        EXPECT_EQ(err, "runner: " + path + ":" + line + ": " + why + "\n");
    }
}

TEST_F(Recordings, AScriptErrorIsReplayed)
{
    directory.Write("main.lua", "room_add{ step = function() if frame_number() == 7 then error('here') end end }");
    ASSERT_EQ(Start("first", {"--record", directory.Path("run.rec")}), 1);
    const std::string first = err;
    EXPECT_EQ(Replay(), 1);
    EXPECT_EQ(err, first);
}

TEST_F(Recordings, AfterACrashTheWholeSecondsAreReplayed)
{
    ASSERT_EQ(Start("first", {"--frames", "130", "--record", directory.Path("run.rec")}), 0);
    Cut(25);
    EXPECT_EQ(Replay({"--save-at", "120", directory.Path("it.sav")}), 0);
    EXPECT_EQ(err,
              "runner: replay " + directory.Path("run.rec") + ": it ends early; its first 120 frames are played\n");
}

TEST_F(Recordings, AChangedGameIsRefusedOrPlayedAnyway)
{
    ASSERT_EQ(Start("first", {"--frames", "20", "--record", directory.Path("run.rec")}), 0);
    directory.Write("main.lua", directory.Read("main.lua") + "\n-- changed");
    EXPECT_EQ(Replay(), 1);
    const std::string changed = ": the game has changed since it was made: see main.lua";
    EXPECT_EQ(err, "runner: cannot replay " + directory.Path("run.rec") + changed + "; --anyway goes on\n");
    EXPECT_EQ(Replay({"--anyway"}), 0);
    EXPECT_EQ(err, "runner: replay " + directory.Path("run.rec") + changed + "\n");
}

TEST_F(Recordings, TheFrameAtWhichAReplayPartsFromTheRunIsTold)
{
    ASSERT_EQ(Start("first", {"--frames", "130", "--record", directory.Path("run.rec")}), 0);
    std::string text = directory.Read("main.lua");
    text.replace(text.find("room_add{"), 9,
                 "room_add{ step = function() if frame_number() == 90 then random() end end,");
    directory.Write("main.lua", text);
    EXPECT_EQ(Replay({"--anyway"}), 0);
    EXPECT_NE(err.find("the replay goes another way than the recorded run from frame 60 or soon after"),
              std::string::npos)
        << err;
}

TEST_F(Recordings, MistakesAreOneLine)
{
    ASSERT_EQ(Start("first", {"--frames", "2", "--record", directory.Path("run.rec")}), 0);
    for (const std::vector<std::string>& wrong :
         std::vector<std::vector<std::string>>{{"--seed", "3"}, {"--load", "x"}, {"--input", "x"}, {"--record", "x"}})
    {
        EXPECT_EQ(Replay(wrong), 2);
        RunnerTest::ExpectOneLine(err);
    }
    EXPECT_EQ(Start("first", {"--anyway"}), 2);
    EXPECT_EQ(Start("first", {"--compare", game}), 2);
    EXPECT_EQ(Start("first", {"--watch"}), 2);
    directory.Write("run.rec", "something else");
    EXPECT_EQ(Replay(), 1);
    EXPECT_EQ(err, "runner: cannot replay " + directory.Path("run.rec") + ": it is no recording\n");
    EXPECT_EQ(Start("first", {"--record", directory.Path("none/run.rec")}), 1);
    EXPECT_EQ(err, "runner: cannot make " + directory.Path("none/run.rec") + ": No such file or directory\n");
}
} // namespace
