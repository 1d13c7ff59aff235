#pragma once
// The include lines of the sources, for tests that hold them against a table of layers.

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace SourceIncludes
{
namespace fs = std::filesystem;

inline const fs::path ROOT = SOURCE_DIR;

struct Include
{
    fs::path file;
    std::string name;
    bool quoted;
};

inline std::vector<fs::path> SourcesIn(const std::string& directory)
{
    std::vector<fs::path> sources;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(ROOT / directory))
        if (entry.path().extension() == ".h" || entry.path().extension() == ".cpp")
            sources.push_back(entry.path());
    return sources;
}

inline std::vector<std::string> LinesOf(const fs::path& file)
{
    std::ifstream input(file);
    std::vector<std::string> lines;
    for (std::string line; std::getline(input, line);)
        lines.push_back(line);
    return lines;
}

inline void AddIncludesOf(const fs::path& file, std::vector<Include>& includes)
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

inline std::vector<Include> IncludesIn(const std::vector<std::string>& directories)
{
    std::vector<Include> includes;
    for (const std::string& directory : directories)
        for (const fs::path& file : SourcesIn(directory))
            AddIncludesOf(file, includes);
    return includes;
}

inline bool StartsWith(const std::string& text, const char* start) { return text.rfind(start, 0) == 0; }

// "<file> includes <name>" for each include that breaks the rule.
template <typename Rule> std::vector<std::string> Breaking(const std::vector<std::string>& directories, Rule allowed)
{
    std::vector<std::string> breaking;
    for (const Include& include : IncludesIn(directories))
        if (!allowed(include))
            breaking.push_back(fs::relative(include.file, ROOT).generic_string() + " includes " + include.name);
    return breaking;
}
} // namespace SourceIncludes
