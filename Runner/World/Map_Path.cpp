#include "Runner/World/Map_Path.h"

#include "Runner/Base/Printable.h"
#include "Runner/World/Map_Fault.h"
#include "Runner/World/Map_Limits.h"

#include <algorithm>
#include <vector>

namespace Runner
{
namespace
{
[[noreturn]] void Refuse(std::string_view reference, const char* why)
{
    throw MapFault("the path \"" + Printable(reference) + "\" " + why);
}

void CheckLetters(std::string_view reference)
{
    if (reference.size() > MapLimits::PATH_BYTES)
        Refuse(reference, "is too long");
    if (std::any_of(reference.begin(), reference.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; }))
        Refuse(reference, "has control characters: rename the file");
    if (reference.find('\\') != std::string_view::npos)
        Refuse(reference, "has a backslash: write '/'");
    if (reference.find(':') != std::string_view::npos)
        Refuse(reference, "has a colon, as drives and addresses do: put the file into the game's folder, and name it "
                          "relative to this one");
    if (reference.substr(0, 1) == "/")
        Refuse(reference, "is absolute: put the file into the game's folder, and name it relative to this one");
}

using Parts = std::vector<std::string_view>;

void AddParts(std::string_view path, Parts& parts, std::string_view reference)
{
    while (!path.empty())
    {
        const size_t end = std::min(path.find('/'), path.size());
        const std::string_view part = path.substr(0, end);
        path.remove_prefix(std::min(end + 1, path.size()));
        if (part == ".." && parts.empty())
            Refuse(reference, "leaves the game's folder: put the file into it");
        if (part == "..")
            parts.pop_back();
        else if (!part.empty() && part != ".")
            parts.push_back(part);
    }
}
} // namespace

std::string ResolveMapPath(std::string_view from, std::string_view reference)
{
    CheckLetters(reference);
    Parts parts;
    AddParts(from.substr(0, from.rfind('/') + 1), parts, reference);
    AddParts(reference, parts, reference);
    if (parts.empty() || reference.empty() || reference.back() == '/')
        Refuse(reference, "names no file");
    std::string path;
    for (const std::string_view part : parts)
        path += (path.empty() ? "" : "/") + std::string(part);
    return path;
}
} // namespace Runner
