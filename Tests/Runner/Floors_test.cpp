// The Runner's floors, read from the include lines: a floor includes only itself and the floors below it.
#include "Tests/Support/Source_Includes.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace
{
using namespace SourceIncludes;
using testing::ElementsAreArray;
using testing::IsEmpty;

// From the lowest upwards. A folder of the Runner that is not named here has no place in the house.
const std::map<std::string, std::set<std::string>> FLOORS_BELOW = {
    {"Base", {}},
    {"Input", {"Base"}},
    {"Host", {"Base"}},
    {"Window", {"Draw", "Input", "Host", "Base"}},
    {"World", {"Host", "Base"}},
    {"Lua", {"World", "Host", "Base"}},
    {"Draw", {"Host", "Base"}},
    {"Game", {"Input", "Lua", "World", "Draw", "Host", "Base"}},
    {"Inspect", {"Game", "Input", "Lua", "World", "Draw", "Host", "Base"}},
    {"Save", {"Game", "Input", "Lua", "World", "Draw", "Host", "Base"}},
    {"Api", {"Save", "Game", "Input", "Lua", "World", "Draw", "Host", "Base"}},
    {"App", {"Window", "Api", "Save", "Inspect", "Game", "Input", "Lua", "World", "Draw", "Host", "Base"}},
};

// The folder in "Runner/FOLDER/...", empty for a file that stands elsewhere.
std::string FloorOf(const std::string& path)
{
    const std::string runner = "Runner/";
    const size_t end = StartsWith(path, runner.c_str()) ? path.find('/', runner.size()) : std::string::npos;
    return end == std::string::npos ? "" : path.substr(runner.size(), end - runner.size());
}

std::string FloorOf(const Include& include) { return FloorOf(fs::relative(include.file, ROOT).generic_string()); }

TEST(Floors, EveryFolderOfTheRunnerIsAFloor)
{
    std::vector<std::string> folders, floors;
    for (const fs::directory_entry& entry : fs::directory_iterator(ROOT / "Runner"))
        if (entry.is_directory())
            folders.push_back(entry.path().filename().string());
    for (const auto& floor : FLOORS_BELOW)
        floors.push_back(floor.first);
    std::sort(folders.begin(), folders.end());
    EXPECT_THAT(folders, ElementsAreArray(floors));
}

TEST(Floors, NoSourceStandsOutsideAFloor)
{
    for (const fs::directory_entry& entry : fs::directory_iterator(ROOT / "Runner"))
        EXPECT_TRUE(entry.is_directory() || entry.path().filename() == "CMakeLists.txt") << entry.path();
}

TEST(Floors, AFloorIncludesOnlyFloorsBelowIt)
{
    ASSERT_GE(IncludesIn({"Runner"}).size(), 300u) << "the includes were not found";
    const auto pointsDown = [](const Include& include)
    {
        const std::string from = FloorOf(include), to = FloorOf(include.name);
        return !StartsWith(include.name, "Runner/") || from == to || FLOORS_BELOW.at(from).count(to) != 0;
    };
    EXPECT_THAT(Breaking({"Runner"}, pointsDown), IsEmpty());
}

// What a floor may include, the floors of that may include as well: so no two floors can reach each other.
TEST(Floors, TheTableHasNoWayUp)
{
    for (const auto& [floor, below] : FLOORS_BELOW)
        for (const std::string& lower : below)
        {
            EXPECT_EQ(FLOORS_BELOW.at(lower).count(floor), 0u) << floor << " and " << lower;
            for (const std::string& lowest : FLOORS_BELOW.at(lower))
                EXPECT_EQ(below.count(lowest), 1u) << floor << " reaches " << lowest << " through " << lower;
        }
}

TEST(Floors, NothingButTestsBenchmarksAndToolsIncludesTheRunner)
{
    const auto leavesItAlone = [](const Include& include) { return !StartsWith(include.name, "Runner/"); };
    EXPECT_THAT(Breaking({"Platform", "Files"}, leavesItAlone), IsEmpty());
}
} // namespace
