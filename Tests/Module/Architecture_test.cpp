// The map of the sources in Docs/Architecture.md, held against the folders.
#include "Tests/Support/Source_Includes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>
#include <string>

namespace
{
using namespace SourceIncludes;

// Sources and headers of a folder without their endings.
std::set<std::string> NamesIn(const std::string& folder)
{
    std::set<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(ROOT / folder))
        if (entry.path().extension() == ".h" || entry.path().extension() == ".cpp")
            names.insert(entry.path().stem().string());
    return names;
}

// The names between backticks in a line's first column.
void AddNames(const std::string& row, std::set<std::string>& names)
{
    const std::string column = row.substr(0, row.find('|', 1));
    for (size_t open = column.find('`'); open != std::string::npos; open = column.find('`', open))
    {
        const size_t close = column.find('`', open + 1);
        EXPECT_TRUE(names.insert(column.substr(open + 1, close - open - 1)).second) << "twice: " << row;
        open = close + 1;
    }
}

// What the section headed "### `FOLDER`" names in its table.
std::set<std::string> NamesInMap(const std::string& folder)
{
    std::set<std::string> names;
    bool isInSection = false;
    for (const std::string& line : LinesOf(ROOT / "Docs/Architecture.md"))
    {
        if (StartsWith(line, "#"))
            isInSection = line == "### `" + folder + "`";
        else if (isInSection && StartsWith(line, "| `"))
            AddNames(line, names);
    }
    return names;
}

TEST(Architecture, NamesEverySourceOfTheModuleAndNoOther)
{
    EXPECT_EQ(NamesInMap("Files/Graphics"), NamesIn("Files/Graphics"));
}

TEST(Architecture, NamesEverySourceOfTheHostCheckAndNoOther)
{
    EXPECT_EQ(NamesInMap("Host_Check"), NamesIn("Host_Check"));
}

TEST(Architecture, NamesEverySourceOfTheRunnerAndNoOther)
{
    size_t floors = 0;
    for (const fs::directory_entry& entry : fs::directory_iterator(ROOT / "Runner"))
    {
        if (!entry.is_directory())
            continue;
        const std::string folder = "Runner/" + entry.path().filename().string();
        EXPECT_EQ(NamesInMap(folder), NamesIn(folder)) << folder;
        ++floors;
    }
    EXPECT_GE(floors, 9u);
}

std::string TextOf(const fs::path& file)
{
    std::string text;
    for (const std::string& line : LinesOf(file))
        text += line + "\n";
    return text;
}

// Every document can be reached from the first page: by a link there, or in the page of its subject, which is named as
// it begins (Kit.md for Kit_Follow.md).
TEST(Architecture, ReadmeLinksEveryDocument)
{
    const std::string readme = TextOf(ROOT / "README.md");
    for (const fs::directory_entry& entry : fs::directory_iterator(ROOT / "Docs"))
    {
        const std::string name = entry.path().filename().string();
        const std::string subject = name.substr(0, name.find('_')) + ".md";
        const bool isOfSubject = readme.find("(Docs/" + subject + ")") != std::string::npos &&
                                 TextOf(ROOT / "Docs" / subject).find("(" + name + ")") != std::string::npos;
        const bool isLinked = readme.find("(Docs/" + name + ")") != std::string::npos || isOfSubject;
        EXPECT_TRUE(isLinked || entry.path().extension() != ".md") << name;
    }
}
} // namespace
