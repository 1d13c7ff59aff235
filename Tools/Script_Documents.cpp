// Prints a document that is made from the tables of functions:
//
//   script_documents built_ins                    Docs/Built_Ins.md
//   script_documents annotations SCRIPT_API.md    Docs/api.lua
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

bool ReadWhole(const char* path, std::string& text)
{
    std::ifstream file(path, std::ios::binary);
    std::stringstream whole;
    whole << file.rdbuf();
    text = whole.str();
    return file.is_open() && !text.empty();
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
            rows.push_back({heading, cells.front(), cells.back(), SpansOf(cells.front())});
    }
    return rows;
}

int main(int argc, char** argv)
{
    const std::string document = argc > 1 ? argv[1] : "";
    std::string text, page;
    if (document == "built_ins" && argc == 2)
        text = BuiltInsPage();
    else if (document == "annotations" && argc == 3 && ReadWhole(argv[2], page))
        text = LuaAnnotations(page);
    if (text.empty())
    {
        std::fputs("usage: script_documents built_ins | script_documents annotations Docs/Script_API.md\n", stderr);
        return 2;
    }
    return std::fputs(text.c_str(), stdout) >= 0 && std::fflush(stdout) == 0 ? 0 : 1;
}
