// Prints a document that is made from the tables of functions:
//
//   script_documents built_ins           Docs/Built_Ins.md
//   script_documents annotations DOCS    Docs/api.lua; DOCS: the folder of the pages that tell of functions
#include "Tools/Script_Documents.h"

#include <cstdio>
#include <fstream>
#include <sstream>

namespace
{
// Cells of a row of a table, without the blanks around them. A \| is part of its cell.
std::vector<std::string> CellsOf(const std::string& line)
{
    std::vector<std::string> cells;
    std::string cell;
    for (size_t i = 1; i < line.size(); ++i)
    {
        if (line[i] != '|' || line[i - 1] == '\\')
        {
            cell += line[i];
            continue;
        }
        const size_t begin = cell.find_first_not_of(' ');
        cells.push_back(begin == std::string::npos ? "" : cell.substr(begin, cell.find_last_not_of(' ') + 1 - begin));
        cell.clear();
    }
    return cells;
}

std::vector<std::string> SpansOf(const std::string& cell)
{
    std::vector<std::string> spans;
    std::istringstream parts(cell);
    int number = 0;
    for (std::string part; std::getline(parts, part, '`'); ++number)
        if (number % 2 == 1)
            spans.push_back(part);
    return spans;
}

// Empty for a page that is not there.
std::string ReadPage(const std::string& folder, const char* name)
{
    std::ifstream file(folder + "/" + name, std::ios::binary);
    std::stringstream whole;
    whole << file.rdbuf();
    return whole.str();
}

std::string Annotations(const std::string& folder)
{
    const auto page = [&](const char* name) { return ReadPage(folder, name); };
    const std::string functions = page("Script_API.md");
    const KitPages kit = {page("Kit.md"), page("Kit_Effects.md"), page("Kit_Follow.md") + page("Kit_Limits.md"),
                          page("Kit_Pixels.md"), page("Kit_Shots.md")};
    const bool isWhole = !functions.empty() && !kit.kit.empty() && !kit.effects.empty() && !kit.fields.empty();
    return isWhole ? LuaAnnotations(functions) + KitAnnotations(kit) : "";
}
} // namespace

std::vector<PageRow> RowsOf(const std::string& page)
{
    std::vector<PageRow> rows;
    std::string heading;
    std::istringstream lines(page);
    for (std::string line; std::getline(lines, line);)
    {
        const std::vector<std::string> cells = line.rfind("|", 0) == 0 ? CellsOf(line) : std::vector<std::string>();
        if (cells.size() < 2)
            heading.clear();
        else if (heading.empty())
            heading = cells.front();
        else if (line.rfind("|---", 0) != 0)
            rows.push_back({heading, cells.front(), cells[1], cells.back(), SpansOf(cells.front())});
    }
    return rows;
}

int main(int argc, char** argv)
{
    const std::string document = argc > 1 ? argv[1] : "";
    std::string text;
    if (document == "built_ins" && argc == 2)
        text = BuiltInsPage();
    else if (document == "annotations" && argc == 3)
        text = Annotations(argv[2]);
    if (text.empty())
    {
        std::fputs("usage: script_documents built_ins | script_documents annotations DOCS\n", stderr);
        return 2;
    }
    return std::fputs(text.c_str(), stdout) >= 0 && std::fflush(stdout) == 0 ? 0 : 1;
}
