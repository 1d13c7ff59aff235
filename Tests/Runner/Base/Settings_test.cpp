#include "Runner/Base/Settings.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace
{
using namespace Runner;

std::string Wrong(const std::string& text)
{
    Settings settings = {{"left over", true}};
    std::string why;
    EXPECT_FALSE(ParseSettings(text, settings, why)) << text;
    EXPECT_TRUE(settings.empty()) << "nothing of a damaged file is taken";
    return why;
}

TEST(Settings, AreALineEachByName)
{
    EXPECT_EQ(SettingsText({{"volume", 0.5}, {"jump", std::string("@w")}, {"calm", true}, {"seen", int64_t{-3}}}),
              "settings 1\n\"calm\" = true\n\"jump\" = \"@w\"\n\"seen\" = -3\n\"volume\" = real 0.5\n");
}

TEST(Settings, ComeBackAsTheyWere)
{
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes += static_cast<char>(byte);
    const Settings settings = {{"bytes", bytes},
                               {"quote \" back \\ line \n", false},
                               {"least", std::numeric_limits<int64_t>::min()},
                               {"tiny", std::numeric_limits<double>::denorm_min()},
                               {"third", 1.0 / 3.0},
                               {"whole real", 3.0},
                               {"infinite", -std::numeric_limits<double>::infinity()},
                               {"empty", std::string()}};
    Settings back;
    std::string why;
    ASSERT_TRUE(ParseSettings(SettingsText(settings), back, why)) << why;
    EXPECT_EQ(back, settings);
}

TEST(Settings, NotANumberComesBackAsSuch)
{
    Settings back;
    std::string why;
    ASSERT_TRUE(ParseSettings(SettingsText({{"x", std::nan("")}}), back, why)) << why;
    EXPECT_TRUE(std::isnan(std::get<double>(back.at("x"))));
}

TEST(Settings, ADamagedFileNamesTheLine)
{
    EXPECT_EQ(Wrong(""), "line 1 is not \"settings 1\"");
    EXPECT_EQ(Wrong("settings 2\n"), "line 1 is not \"settings 1\"");
    EXPECT_EQ(Wrong("settings 1\n\"a\" = 1\n\"b\" = yes\n"), "line 3 is no setting: \"\"b\" = yes\"");
    for (const char* line : {"", "a = 1", "\"\" = 1", "\"a\" = ", "\"a\" = 1 ", "\"a\" = \"x", "\"a\" = \"\\4\"",
                             "\"a\" = \"\\zz\"", "\"a\" = real", "\"a\" = 99999999999999999999", "\"a\"=1"})
        EXPECT_EQ(Wrong(std::string("settings 1\n") + line + "\n").find("line 2 is no setting"), 0u) << line;
    EXPECT_EQ(Wrong("settings 1\n\"a\" = 1").find("line 2"), 0u) << "its end is missing";
    EXPECT_EQ(Wrong("settings 1\n\"a\" = 1\n\"a\" = 2\n").find("line 3"), 0u) << "a name stands twice";
}

TEST(Settings, WhatIsTooMuchIsRefused)
{
    std::string many = "settings 1\n";
    for (size_t i = 0; i <= SETTINGS_LIMIT; ++i)
        many += "\"" + std::to_string(i) + "\" = 1\n";
    EXPECT_EQ(Wrong(many).find("line 102 "), 0u);
    EXPECT_NE(Wrong("settings 1\n\"" + std::string(SETTING_NAME_LIMIT + 1, 'n') + "\" = 1\n"), "");
    EXPECT_NE(Wrong("settings 1\n\"a\" = \"" + std::string(SETTING_TEXT_LIMIT + 1, 'n') + "\"\n"), "");
}
} // namespace
