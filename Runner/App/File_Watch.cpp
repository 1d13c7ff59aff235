#include "Runner/App/File_Watch.h"

#include <algorithm>

#include <sys/stat.h>

namespace Runner
{
FileWatch::Look FileWatch::LookAt(const std::string& path)
{
    struct stat status = {};
    Look look;
    if (stat(path.c_str(), &status) != 0)
        return look;
    look.seconds = status.st_mtim.tv_sec;
    look.nanoseconds = status.st_mtim.tv_nsec;
    look.size = status.st_size;
    look.file = status.st_ino;
    return look;
}

std::vector<FileWatch::Look> FileWatch::LookAtAll() const
{
    std::vector<Look> looks;
    for (const std::string& path : m_paths)
        looks.push_back(LookAt(path));
    return looks;
}

void FileWatch::Watch(std::vector<std::string> paths)
{
    m_paths = std::move(paths);
    m_told = m_last = LookAtAll();
}

bool FileWatch::HasChanged(int64_t now)
{
    std::vector<Look> looks = LookAtAll();
    if (looks != m_last)
    {
        m_last = std::move(looks);
        m_movedAt = now;
    }
    const bool areThere = std::all_of(m_last.begin(), m_last.end(), [](const Look& look) { return look.size >= 0; });
    if (m_last == m_told || now - m_movedAt < (areThere ? QUIET_MILLISECONDS : GONE_MILLISECONDS))
        return false;
    m_told = m_last;
    return true;
}
} // namespace Runner
