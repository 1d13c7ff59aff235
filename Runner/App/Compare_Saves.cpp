#include "Runner/App/Compare_Saves.h"

#include "Runner/Base/Whole_File.h"
#include "Runner/Host/Console.h"
#include "Runner/Save/Describe_State.h"
#include "Runner/Save/Save_File.h"

#include <map>

namespace Runner
{
namespace
{
constexpr size_t LINES = 20;

struct Compared
{
    SavedState state;
    std::vector<uint8_t> bytes; // without the thumbnail, in this runner's file version
};

bool Read(const std::string& path, Compared& save, std::string& why)
{
    std::vector<uint8_t> file;
    std::string reason;
    if (!ReadWholeFile(path, file, why) || !ReadSavedGame(path, file, save.state, why))
        return false;
    if (!ComparableSave(file, save.bytes, reason))
        why = CannotLoad(path, reason);
    return reason.empty();
}

// "instance 100003 x: 4.5 / 5.5", with "-" on the side that has no such thing.
std::vector<std::string> Differences(const SavedState& first, const SavedState& second)
{
    const Description here = Describe(first), there = Describe(second);
    const std::map<std::string, std::string> others(there.begin(), there.end());
    const std::map<std::string, std::string> own(here.begin(), here.end());
    std::vector<std::string> lines;
    for (const auto& [name, value] : here)
    {
        const auto other = others.find(name);
        if (other == others.end() || other->second != value)
            lines.push_back(name + ": " + value + " / " + (other == others.end() ? "-" : other->second));
    }
    for (const auto& [name, value] : there)
        if (own.count(name) == 0)
            lines.push_back(name + ": - / " + value);
    return lines;
}
} // namespace

bool CompareSaves(const std::string& first, const std::string& second, FILE* out, std::string& why)
{
    Compared a, b;
    if (!Read(first, a, why) || !Read(second, b, why))
        return false;
    SetConsoleOutput(out);
    const bool isSame = a.bytes == b.bytes;
    const std::vector<std::string> lines = isSame ? std::vector<std::string>() : Differences(a.state, b.state);
    for (size_t i = 0; i < lines.size() && i < LINES; ++i)
        PrintLog(lines[i] + "\n");
    if (lines.size() > LINES)
        PrintLog("and " + std::to_string(lines.size() - LINES) + " more\n");
    if (isSame)
        PrintLog("the saves are the same\n");
    else if (lines.empty())
        PrintLog("the saves differ in bits that show in no text\n");
    return ConsoleIsGood(why) && isSame;
}
} // namespace Runner
