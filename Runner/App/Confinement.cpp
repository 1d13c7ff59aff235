// What a confined run may reach, and the order in which the process gives everything else up.

#include "Runner/App/Confinement.h"

#include "Runner/App/Options.h"
#include "Runner/App/Packed_Game.h"
#include "Runner/App/Process_Limits.h"
#include "Runner/Base/Installed_Kit.h"
#include "Runner/Base/Printable.h"

#include <filesystem>
#include <system_error>

namespace Runner
{
namespace
{
namespace fs = std::filesystem;

constexpr size_t MEMORY_BESIDES = size_t{1} << 30; // of the Runner, the module and the driver, besides the scripts'

// The driver's libraries and settings, and what it asks about the machine.
constexpr const char* OF_THE_DRIVER[] = {"/usr/lib",         "/lib",       "/lib64",           "/usr/share/drirc.d",
                                         "/usr/share/glvnd", "/etc/glvnd", "/etc/ld.so.cache", "/sys/devices/system",
                                         "/sys/dev",         "/dev/dri",   "/proc/cpuinfo"};

std::string FolderOf(const std::string& file)
{
    const std::string folder = fs::path(file).parent_path().string();
    return folder.empty() ? "." : folder;
}

// The game's folder, or its archive.
std::string PlaceOf(const std::string& game)
{
    const std::string archive = ArchiveIn(game);
    return archive.empty() ? FolderOf(game) : archive;
}

// A file that is not there yet stands where its folder is.
bool IsBelow(const std::string& file, const std::string& folder)
{
    std::error_code ignored;
    const fs::path inner = fs::weakly_canonical(FolderOf(file), ignored);
    const fs::path relative = inner.lexically_relative(fs::weakly_canonical(folder, ignored));
    return !relative.empty() && *relative.begin() != "..";
}

void AddGiven(std::vector<std::string>& files, const std::string& file)
{
    if (!file.empty())
        files.push_back(file);
}
} // namespace

ConfinedTo NeedsOf(const RunOptions& options)
{
    ConfinedTo needs;
    needs.draws = options.game.draw;
    needs.memory = options.game.limits.memory + MEMORY_BESIDES;
    needs.readable = {PlaceOf(options.game.file)};
    if (!options.compare.empty())
        needs.readable.push_back(PlaceOf(options.compare));
    AddGiven(needs.readable, options.game.kit.empty() ? InstalledKit() : options.game.kit);
    for (const std::string* file : {&options.load, &options.replay, &options.input})
        AddGiven(needs.readable, *file);
    if (needs.draws)
        needs.readable.insert(needs.readable.end(), std::begin(OF_THE_DRIVER), std::end(OF_THE_DRIVER));
    needs.writable = {options.out};
    return needs;
}

bool WritesIntoSaveArea(const RunOptions& options, std::string& why)
{
    const std::pair<const char*, const std::string*> files[] = {{"--trace", &options.game.trace},
                                                                {"--profile", &options.profile},
                                                                {"--save-at", &options.saveAt.second},
                                                                {"--record", &options.record},
                                                                {"--settings", &options.settings}};
    for (const auto& [option, file] : files)
        if (!file->empty() && !IsBelow(*file, options.out))
        {
            why = std::string("--confined writes into ") + PrintableName(options.out) + " alone: name " + option + " " +
                  PrintableName(*file) + " there, or another --out";
            return false;
        }
    return true;
}

// The limits come first: the filter of system calls refuses to set them.
bool ConfineProcess(const ConfinedTo& to, std::string& why)
{
    return LimitResources(to.memory, why) && ConfineFiles(to.readable, to.writable, why) && ConfineCalls(to.draws, why);
}
} // namespace Runner
