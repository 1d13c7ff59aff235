#pragma once
// The example games as the golden files have them. The files are written anew by Tools/update_golden.sh, after a look
// at the pictures.

#include <string>

namespace RunnerTest
{
constexpr const char* EXAMPLE_GAMES[] = {"canyon", "shake", "orbit", "split", "kit", "town"};

inline std::string GameFile(const std::string& game)
{
    return std::string(GAMES_DIR) + "/" + game + "/" + game + ".lua";
}

inline std::string GoldenFile(const std::string& name) { return std::string(TESTS_DIR) + "/Golden/" + name; }
} // namespace RunnerTest
