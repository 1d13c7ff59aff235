// The layers, read from the include lines: the module sees the host's interfaces and nothing of a host.
#include "Tests/Support/Source_Includes.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>

namespace
{
using namespace SourceIncludes;
using testing::Contains;
using testing::IsEmpty;
using testing::IsSupersetOf;

std::vector<std::string> HeadersIn(const std::vector<std::string>& directories)
{
    std::vector<std::string> headers;
    for (const std::string& directory : directories)
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
               header == "Platform/Strict_Float.h" || header == "Platform/Lanes.h" || header == "Platform/Compiler.h";
    };
    wanted.erase(std::remove_if(wanted.begin(), wanted.end(), elsewhere), wanted.end());
    EXPECT_THAT(IncludedByUmbrella(), IsSupersetOf(wanted));
}

TEST(Headers, UmbrellaBringsThePublicHeadersOfTheModule)
{
    for (const char* name : {"Camera", "Camera_GCProxy", "Camera_Manager", "Colour", "Function_Arguments", "Functions",
                             "Image_Writers", "Version"})
        EXPECT_THAT(IncludedByUmbrella(), Contains("Files/Graphics/" + std::string(name) + ".h"));
}
} // namespace
