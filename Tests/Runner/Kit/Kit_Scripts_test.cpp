// The camera kit's tests are Lua scripts, Tests/Kit/*.lua, which check the kit's parts by themselves. Each is played
// here as a game: a wrong value is an error at the script's line, and the last line says that the script came to its
// end.
#include "Tests/Runner/Support/Game_Support.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <vector>

namespace
{
using RunnerTest::GameTest;

constexpr int FRAMES_LIMIT = 20000;

std::vector<std::string> Scripts()
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(TESTS_DIR "/Kit"))
        if (entry.path().extension() == ".lua")
            names.push_back(entry.path().stem().string());
    std::sort(names.begin(), names.end());
    return names;
}

class KitScript : public GameTest, public ::testing::WithParamInterface<std::string>
{
};

TEST_P(KitScript, FindsWhatItExpects)
{
    options.file = std::string(TESTS_DIR) + "/Kit/" + GetParam() + ".lua";
    options.kit = SOURCE_DIR "/kit";
    game = std::make_unique<Runner::Game>(options, Runner::OpenApi);
    ASSERT_TRUE(game->Load()) << game->Failure();
    ASSERT_EQ(PlayOn(FRAMES_LIMIT), "");
    EXPECT_TRUE(game->HasEnded()) << "it did not call expect.done";
    EXPECT_THAT(Log(), testing::ContainsRegex("expected: [1-9]"));
}

INSTANTIATE_TEST_SUITE_P(Of, KitScript, ::testing::ValuesIn(Scripts()), [](const auto& test) { return test.param; });
} // namespace
