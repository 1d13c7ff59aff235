// The table `settings` from one run to the next.
#include "Tests/Runner/App/Command_Line_Fixture.h"

namespace
{
class SettingsFile : public RunnerTest::CommandLine
{
protected:
    int PlayWith(const std::string& step, const std::string& frames = "1")
    {
        return Play("room_add{ step = function() " + step + " end }",
                    {"--no-draw", "--frames", frames, "--settings", directory.Path("deep/settings.txt")});
    }

    std::string Kept() const { return directory.Read("deep/settings.txt"); }
};

TEST_F(SettingsFile, WhatOneRunSetsTheNextOneReads)
{
    EXPECT_EQ(PlayWith("settings.calm, settings.runs = true, (settings.runs or 0) + 1"), 0) << err;
    EXPECT_EQ(PlayWith("settings.runs = settings.runs + 1 print(settings.calm, settings.runs)"), 0) << err;
    EXPECT_EQ(out, "true\t2\n");
    EXPECT_EQ(Kept(), "settings 1\n\"calm\" = true\n\"runs\" = 2\n");
}

TEST_F(SettingsFile, ASettingThatIsTakenAwayIsGone)
{
    PlayWith("settings.a, settings.b = 1, 2");
    PlayWith("settings.a = nil");
    EXPECT_EQ(Kept(), "settings 1\n\"b\" = 2\n");
}

TEST_F(SettingsFile, WithoutAFileNothingIsKept)
{
    EXPECT_EQ(Play("room_add{ step = function() settings.a = 1 end }", {"--no-draw"}), 0) << err;
    EXPECT_FALSE(std::filesystem::exists(directory.Path("deep")));
    EXPECT_FALSE(std::filesystem::exists(directory.Path("out/settings.txt")));
}

TEST_F(SettingsFile, WhatCannotBeKeptIsOneClearLine)
{
    EXPECT_EQ(PlayWith("settings.list = {}"), 1);
    EXPECT_NE(err.find("settings.list is a number, true, false or a string of at most 1000 bytes, got a table"),
              std::string::npos)
        << err;
    EXPECT_EQ(PlayWith("settings[5] = 1"), 1);
    EXPECT_NE(err.find("settings: a name is a string of 1 to 60 bytes, got the number 5"), std::string::npos) << err;
    EXPECT_EQ(PlayWith("settings = nil"), 1);
    EXPECT_NE(err.find("settings is a table, got nil"), std::string::npos) << err;
    EXPECT_EQ(PlayWith("for i = 1, 101 do settings['n' .. i] = i end"), 1);
    EXPECT_NE(err.find("settings has more than 100 entries"), std::string::npos) << err;
}

TEST_F(SettingsFile, ADamagedFileIsNamedAndStays)
{
    std::filesystem::create_directory(directory.Path("deep"));
    directory.Write("deep/settings.txt", "settings 1\nrubbish\n");
    EXPECT_EQ(PlayWith("settings.a = 1"), 1);
    EXPECT_NE(err.find("settings.txt\" holds no settings: line 2 is no setting: \"rubbish\"; mend or remove it"),
              std::string::npos)
        << err;
    EXPECT_EQ(Kept(), "settings 1\nrubbish\n");
}

TEST_F(SettingsFile, ASavedGameHoldsNoSettings)
{
    const std::string game = "room_add{ step = function() if frame_number() == 0 then settings.a = 1 vars.b = 1 end "
                             "print(settings.a, vars.b) end }";
    EXPECT_EQ(Play(game, {"--no-draw", "--frames", "1", "--save-at", "1", directory.Path("save")}), 0) << err;
    EXPECT_EQ(Play(game, {"--no-draw", "--frames", "1", "--load", directory.Path("save")}), 0) << err;
    EXPECT_EQ(out, "nil\t1\n");
}
} // namespace
