// The layers, read from the include lines: the module sees the host's interfaces and nothing of a host.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>

namespace
{
namespace fs = std::filesystem;
using testing::Contains;
using testing::IsEmpty;
using testing::IsSupersetOf;

const fs::path ROOT = SOURCE_DIR;

struct Include
{
    fs::path file;
    std::string name;
    bool quoted;
};

std::vector<fs::path> SourcesIn(const char* directory)
{
    std::vector<fs::path> sources;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(ROOT / directory))
        if (entry.path().extension() == ".h" || entry.path().extension() == ".cpp")
            sources.push_back(entry.path());
    return sources;
}

std::vector<std::string> LinesOf(const fs::path& file)
{
    std::ifstream input(file);
    std::vector<std::string> lines;
    for (std::string line; std::getline(input, line);)
        lines.push_back(line);
    return lines;
}

void AddIncludesOf(const fs::path& file, std::vector<Include>& includes)
{
    for (const std::string& line : LinesOf(file))
    {
        const size_t hash = line.find_first_not_of(" \t");
        if (hash == std::string::npos || line[hash] != '#' || line.find("include", hash) == std::string::npos)
            continue;
        const size_t open = line.find_first_of("\"<", hash);
        const size_t close = open == std::string::npos ? open : line.find_first_of("\">", open + 1);
        if (close != std::string::npos)
            includes.push_back({file, line.substr(open + 1, close - open - 1), line[open] == '"'});
    }
}

std::vector<Include> IncludesIn(const std::vector<const char*>& directories)
{
    std::vector<Include> includes;
    for (const char* directory : directories)
        for (const fs::path& file : SourcesIn(directory))
            AddIncludesOf(file, includes);
    return includes;
}

bool StartsWith(const std::string& text, const char* start) { return text.rfind(start, 0) == 0; }

// "<file> includes <name>" for each include that breaks the rule.
template <typename Rule> std::vector<std::string> Breaking(const std::vector<const char*>& directories, Rule allowed)
{
    std::vector<std::string> breaking;
    for (const Include& include : IncludesIn(directories))
        if (!allowed(include))
            breaking.push_back(fs::relative(include.file, ROOT).generic_string() + " includes " + include.name);
    return breaking;
}

std::vector<std::string> HeadersIn(const std::vector<const char*>& directories)
{
    std::vector<std::string> headers;
    for (const char* directory : directories)
        for (const fs::path& file : SourcesIn(directory))
            if (file.extension() == ".h")
                headers.push_back(fs::relative(file, ROOT).generic_string());
    return headers;
}

std::vector<std::string> IncludedByUmbrella()
{
    std::vector<Include> includes;
    AddIncludesOf(ROOT / "Files/Graphics/Graphics_Support.h", includes);
    std::vector<std::string> names;
    for (const Include& include : includes)
        names.push_back(include.name);
    return names;
}

TEST(Headers, ThereAreHeadersToCheck)
{
    EXPECT_GE(HeadersIn({"Platform"}).size(), 4u);
    EXPECT_GE(HeadersIn({"Files/Graphics"}).size(), 7u);
    EXPECT_GE(IncludesIn({"Files"}).size(), 50u);
}

TEST(Headers, ProjectFilesAreIncludedByTheirPathFromTheRoot)
{
    const auto exists = [](const Include& include) { return !include.quoted || fs::exists(ROOT / include.name); };
    EXPECT_THAT(Breaking({"Platform", "Files"}, exists), IsEmpty());
}

TEST(Headers, ModuleAndInterfacesIncludeOnlyPlatformAndFiles)
{
    const auto inside = [](const Include& include)
    { return !include.quoted || StartsWith(include.name, "Platform/") || StartsWith(include.name, "Files/"); };
    EXPECT_THAT(Breaking({"Platform", "Files"}, inside), IsEmpty());
}

TEST(Headers, ModuleUsesNoLibraryButTheCompilersAndPng)
{
    const std::set<std::string> others = {"png.h", "setjmp.h", "emmintrin.h", "smmintrin.h", "arm_neon.h"};
    const auto known = [&](const Include& include)
    {
        const bool standard = include.name.find_first_of("./") == std::string::npos;
        return include.quoted || standard || others.count(include.name) != 0;
    };
    EXPECT_THAT(Breaking({"Platform", "Files"}, known), IsEmpty());
}

TEST(Headers, InterfacesKnowNothingOfTheModule)
{
    const auto below = [](const Include& include)
    {
        const bool module = include.file.parent_path() == ROOT / "Files/Graphics";
        return module || !StartsWith(include.name, "Files/Graphics/");
    };
    EXPECT_THAT(Breaking({"Platform", "Files"}, below), IsEmpty());
}

TEST(Headers, PlatformStandsBelowFiles)
{
    const auto below = [](const Include& include) { return !StartsWith(include.name, "Files/"); };
    EXPECT_THAT(Breaking({"Platform"}, below), IsEmpty());
}

TEST(Headers, EveryHeaderIsGuarded)
{
    for (const std::string& header : HeadersIn({"Platform", "Files"}))
        EXPECT_EQ(LinesOf(ROOT / header).at(0), "#pragma once") << header;
}

// Apart from what comes with the value, and what only sources that compute include.
TEST(Headers, UmbrellaBringsEveryInterface)
{
    std::vector<std::string> wanted = HeadersIn({"Platform", "Files"});
    const auto elsewhere = [](const std::string& header)
    {
        return StartsWith(header, "Files/Graphics/") || header == "Files/LLVM/Value_Ownership.h" ||
               header == "Platform/Strict_Float.h" || header == "Platform/Lanes.h";
    };
    wanted.erase(std::remove_if(wanted.begin(), wanted.end(), elsewhere), wanted.end());
    EXPECT_THAT(IncludedByUmbrella(), IsSupersetOf(wanted));
}

TEST(Headers, UmbrellaBringsThePublicHeadersOfTheModule)
{
    for (const char* name : {"Camera", "Camera_GCProxy", "Camera_Manager", "Colour", "Functions", "Image_Writers"})
        EXPECT_THAT(IncludedByUmbrella(), Contains("Files/Graphics/" + std::string(name) + ".h"));
}
} // namespace
