#include "Runner/Api/Map_Files_Of_Game.h"

namespace Runner
{
bool MapFilesOfGame::Read(const std::string& path, size_t limit, std::vector<uint8_t>& bytes, std::string& why)
{
    const bool isRead = m_folder.Read(path, limit, bytes, why);
    if (!m_noted.insert(path).second)
        return isRead;
    if (isRead)
        m_scripts.files.NoteCode(path, bytes);
    else
        m_scripts.files.NoteMissing(path);
    return isRead;
}
} // namespace Runner
