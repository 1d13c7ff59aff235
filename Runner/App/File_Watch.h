#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace Runner
{
// Notices when files change. Editors write in several steps, and some put a new file in the place of the old one: a
// change is told once nothing has moved for a while (debouncing) and all files are there, or are gone for good.
class FileWatch
{
public:
    static constexpr int64_t QUIET_MILLISECONDS = 150;
    static constexpr int64_t GONE_MILLISECONDS = 2000;

    void Watch(std::vector<std::string> paths); // as they are now
    const std::vector<std::string>& Paths() const { return m_paths; }

    // Looks at the files. True once for each change. now: milliseconds of a clock that only runs forwards.
    bool HasChanged(int64_t now);

private:
    struct Look
    {
        int64_t seconds = 0, nanoseconds = 0, size = -1; // size -1: not there
        uint64_t file = 0;                               // its number in the file system

        bool operator==(const Look& other) const
        {
            return seconds == other.seconds && nanoseconds == other.nanoseconds && size == other.size &&
                   file == other.file;
        }
    };

    static Look LookAt(const std::string& path);
    std::vector<Look> LookAtAll() const;

    std::vector<std::string> m_paths;
    std::vector<Look> m_told; // as the last change left them
    std::vector<Look> m_last; // as they were at the last look
    int64_t m_movedAt = 0;    // when m_last became so
};
} // namespace Runner
