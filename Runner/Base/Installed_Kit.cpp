#include "Runner/Base/Installed_Kit.h"

#include <filesystem>
#include <system_error>

namespace Runner
{
namespace
{
namespace fs = std::filesystem;

constexpr int LEVELS_ABOVE = 6; // from a program in a build folder to the sources

bool HoldsKit(const fs::path& folder)
{
    std::error_code ignored;
    return fs::exists(folder / "kit" / "camera_kit.lua", ignored);
}
} // namespace

std::string InstalledKit()
{
    std::error_code why;
    fs::path folder = fs::read_symlink("/proc/self/exe", why).parent_path();
    const fs::path shared = folder.parent_path() / "share" / "camera-module-runner";
    if (HoldsKit(shared))
        return (shared / "kit").string();
    for (int level = 0; level < LEVELS_ABOVE && folder.has_relative_path(); ++level, folder = folder.parent_path())
        if (HoldsKit(folder))
            return (folder / "kit").string();
    return "";
}
} // namespace Runner
