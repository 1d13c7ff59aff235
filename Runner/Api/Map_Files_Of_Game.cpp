#include "Runner/Api/Map_Files_Of_Game.h"

#include "Runner/Base/Whole_File.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <sys/stat.h>

namespace Runner
{
namespace
{
// The path without symbolic links; empty when there is no such file.
std::string Resolved(const std::string& path)
{
    char resolved[PATH_MAX];
    return realpath(path.c_str(), resolved) == nullptr ? std::string() : std::string(resolved);
}

bool IsFileOfAtMost(const std::string& path, size_t limit, std::string& why)
{
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0)
        why = errno == ENOENT ? "there is no such file" : std::strerror(errno);
    else if (!S_ISREG(status.st_mode))
        why = "it is no file";
    else if (static_cast<uint64_t>(status.st_size) > limit)
        why = "it has more than " + std::to_string(limit) + " bytes";
    return why.empty();
}
} // namespace

bool MapFilesOfGame::IsInside(const std::string& path, std::string& why) const
{
    std::string folder = Resolved(m_scripts.PathOf(".")) + "/";
    if (Resolved(path).compare(0, folder.size(), folder) != 0)
        why = "it is a link that leads out of the game's folder";
    return why.empty();
}

bool MapFilesOfGame::Read(const std::string& path, size_t limit, std::vector<uint8_t>& bytes, std::string& why)
{
    why.clear();
    bytes.clear();
    const std::string full = m_scripts.PathOf(path);
    const bool isNew = m_noted.insert(path).second;
    const bool isRead = IsFileOfAtMost(full, limit, why) && IsInside(full, why) && ReadWholeFile(full, bytes, why);
    if (isNew && isRead)
        m_scripts.NoteCode(path, bytes);
    else if (isNew)
        m_scripts.NoteMissing(path);
    return isRead;
}
} // namespace Runner
