#pragma once
// Files that are held in memory and read under a path, as if they stood in a folder: those of an archive.

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace Runner
{
using FileContents = std::map<std::string, std::vector<uint8_t>>; // by name relative to the folder, "maps/town.tmx"

// A folder of such files, there for as long as this object lives. What reads whole files, maps and pictures finds them
// before it asks the disk; nothing writes to them.
class PackedFolder
{
public:
    // folder: the path that the names follow; without a slash at its end.
    PackedFolder(const std::string& folder, FileContents files);
    ~PackedFolder();
    PackedFolder(const PackedFolder&) = delete;
    PackedFolder& operator=(const PackedFolder&) = delete;

private:
    friend bool IsPacked(const std::string& path);
    friend const std::vector<uint8_t>* FindPackedFile(const std::string& path);
    static const PackedFolder* Of(const std::string& normalPath);

    const std::string m_folder; // in its lexically normal form, ends with a slash
    const FileContents m_files;
    PackedFolder* m_next;
};

// Whether a path leads into such a folder, be there a file or none.
bool IsPacked(const std::string& path);

// The content of the file at that path; null when there is none.
const std::vector<uint8_t>* FindPackedFile(const std::string& path);
} // namespace Runner
