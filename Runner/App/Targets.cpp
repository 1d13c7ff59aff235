#include "Runner/App/Targets.h"

#include "Runner/Base/Packed_Files.h"
#include "Runner/Base/Printable.h"
#include "Runner/Base/Whole_File.h"
#include "Runner/Draw/Screenshot.h"
#include "Runner/Host/Files.h"

#include <filesystem>

namespace Runner
{
namespace
{
struct NamedFile
{
    const char* option; // null: the game
    std::string path;   // empty: not asked for
};

bool IsSameFile(const std::string& first, const std::string& second)
{
    if (IsPacked(first) || IsPacked(second)) // no file of the disk, and nothing is written there
        return false;
    std::error_code ignored;
    return std::filesystem::equivalent(first, second, ignored) ||
           std::filesystem::weakly_canonical(first, ignored) == std::filesystem::weakly_canonical(second, ignored);
}

// To go on from a saved game and to save into it again is the one good reason for naming a file twice.
bool MayShare(const RunOptions& options, const std::string& first, const std::string& second)
{
    const bool isSavedAndLoaded = first == options.saveAt.second && second == options.load;
    const bool isGameAndLoaded = first == options.game.file && second == options.load; // refused when it is loaded
    return isSavedAndLoaded || isGameAndLoaded;
}

std::string PicturePath(const RunOptions& options, const std::string& name)
{
    return name.empty() ? "" : options.out + "/" + name;
}

bool AreDistinct(const RunOptions& options, std::string& why)
{
    const NamedFile files[] = {
        {nullptr, options.archive.empty() ? options.game.file : options.archive},
        {"--trace", options.game.trace},
        {"--profile", options.profile},
        {"--save-at", options.saveAt.second},
        {"--load", options.load},
        {"--record", options.record},
        {"--replay", options.replay},
        {"--input", options.input},
        {"--settings", options.settings},
        {"--contact-sheet", PicturePath(options, options.contactSheet)},
        {"--screenshot", PicturePath(options, options.screenshot)},
    };
    for (const NamedFile* first = files; first != std::end(files); ++first)
        for (const NamedFile* second = first + 1; second != std::end(files); ++second)
        {
            if (first->path.empty() || second->path.empty() || MayShare(options, first->path, second->path) ||
                !IsSameFile(first->path, second->path))
                continue;
            why = first->option == nullptr
                      ? std::string(second->option) + ": " + PrintableName(second->path) + " is the game"
                      : std::string(first->option) + " and " + second->option + " name the same file";
            return false;
        }
    return true;
}

bool PictureIsGood(const char* option, const std::string& name, std::string& why)
{
    if (name.empty() || (!PictureFormat(name, "", why).empty() && PrepareSaveFile(name, why)))
        return true;
    why = std::string(option) + ": " + why;
    return false;
}
} // namespace

bool TargetsAreGood(const RunOptions& options, std::string& why)
{
    const std::string& save = options.saveAt.second;
    const std::string& record = options.record;
    return AreDistinct(options, why) && PictureIsGood("--contact-sheet", options.contactSheet, why) &&
           PictureIsGood("--screenshot", options.screenshot, why) && (save.empty() || TryToWriteFile(save, why)) &&
           (record.empty() || TryToWriteFile(record, why)) &&
           (options.profile.empty() || TryToWriteFile(options.profile, why));
}
} // namespace Runner
