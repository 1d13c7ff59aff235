#include "Runner/Base/Packed_Files.h"

#include <filesystem>
#include <utility>

namespace Runner
{
namespace
{
PackedFolder* s_first = nullptr; // of a list of all

// Paths are compared in their lexically normal form: "a.zip/./b" is "a.zip/b".
std::string NormalOf(const std::string& path) { return std::filesystem::path(path).lexically_normal().string(); }
} // namespace

PackedFolder::PackedFolder(const std::string& folder, FileContents files)
    : m_folder(NormalOf(folder + "/")), m_files(std::move(files)), m_next(std::exchange(s_first, this))
{
}

PackedFolder::~PackedFolder()
{
    PackedFolder** place = &s_first;
    while (*place != this)
        place = &(*place)->m_next;
    *place = m_next;
}

const PackedFolder* PackedFolder::Of(const std::string& normalPath)
{
    const PackedFolder* folder = s_first;
    while (folder != nullptr && normalPath.rfind(folder->m_folder, 0) != 0)
        folder = folder->m_next;
    return folder;
}

bool IsPacked(const std::string& path) { return s_first != nullptr && PackedFolder::Of(NormalOf(path)) != nullptr; }

const std::vector<uint8_t>* FindPackedFile(const std::string& path)
{
    if (s_first == nullptr)
        return nullptr;
    const std::string normal = NormalOf(path);
    const PackedFolder* const folder = PackedFolder::Of(normal);
    if (folder == nullptr)
        return nullptr;
    const auto found = folder->m_files.find(normal.substr(folder->m_folder.size()));
    return found == folder->m_files.end() ? nullptr : &found->second;
}
} // namespace Runner
