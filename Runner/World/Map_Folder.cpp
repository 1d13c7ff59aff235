#include "Runner/World/Map_Folder.h"

#include "Runner/Base/Packed_Files.h"
#include "Runner/Base/Whole_File.h"

#include <filesystem>

namespace Runner
{
namespace
{
namespace fs = std::filesystem;

constexpr char NO_SUCH_FILE[] = "there is no such file: put it there, or mend the name where it is used";
constexpr char TOO_LARGE[] = "the file is too large";

bool Refused(std::string& why, const char* text)
{
    why = text;
    return false;
}

// Whether the file, links followed, lies below the folder.
bool LiesBelow(const fs::path& file, const fs::path& folder)
{
    const auto [inFolder, inFile] = std::mismatch(folder.begin(), folder.end(), file.begin(), file.end());
    return inFolder == folder.end() && inFile != file.end();
}
// A packed folder has no links, and no file outside of it.
bool ReadPacked(const std::string& file, size_t limit, std::vector<uint8_t>& bytes, std::string& why)
{
    const std::vector<uint8_t>* const content = FindPackedFile(file);
    if (content == nullptr)
        return Refused(why, NO_SUCH_FILE);
    if (content->size() > limit)
        return Refused(why, TOO_LARGE);
    bytes = *content;
    return true;
}
} // namespace

bool MapFolder::Read(const std::string& path, size_t limit, std::vector<uint8_t>& bytes, std::string& why)
{
    if (IsPacked(m_folder))
        return ReadPacked(m_folder + "/" + path, limit, bytes, why);
    std::error_code error;
    const fs::path folder = fs::canonical(m_folder.empty() ? "." : m_folder, error);
    if (error)
        return Refused(why, "the game's folder cannot be read");
    const fs::path file = fs::canonical(folder / path, error);
    if (error)
        return Refused(why, NO_SUCH_FILE);
    if (!LiesBelow(file, folder))
        return Refused(why, "this is a link out of the game's folder: put the file itself into it");
    if (!fs::is_regular_file(file, error))
        return Refused(why, "this is no file");
    if (fs::file_size(file, error) > limit || error)
        return Refused(why, TOO_LARGE);
    return ReadWholeFile(file.string(), bytes, why);
}
} // namespace Runner
