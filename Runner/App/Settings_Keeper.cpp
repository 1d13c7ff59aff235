#include "Runner/App/Settings_Keeper.h"

#include "Runner/Base/Printable.h"
#include "Runner/Base/Whole_File.h"
#include "Runner/Game/Game.h"
#include "Runner/Lua/Settings_Table.h"

#include <algorithm>
#include <filesystem>

namespace Runner
{
namespace
{
constexpr int FRAMES_BETWEEN_WRITES = 60;
} // namespace

bool ReadSettings(const std::string& path, Settings& settings, std::string& why)
{
    settings.clear();
    std::error_code error;
    if (path.empty() || (!std::filesystem::exists(path, error) && !error))
        return true;
    std::vector<uint8_t> bytes;
    if (!ReadWholeFile(path, bytes, why))
        return false;
    std::string wrong;
    if (ParseSettings({reinterpret_cast<const char*>(bytes.data()), bytes.size()}, settings, wrong))
        return true;
    why = "\"" + PrintableName(path) + "\" holds no settings: " + wrong + "; mend or remove it";
    return false;
}

bool SettingsKeeper::Keep(Game& game, bool isLast, std::string& why)
{
    Settings now;
    if (!TakeSettings(game.scripts, now))
        return false;
    m_framesSinceWritten = std::min(m_framesSinceWritten + 1, FRAMES_BETWEEN_WRITES);
    const bool isKnown = now == m_written && !(isLast && m_isUnwritten);
    if (m_path.empty() || isKnown || (!isLast && m_framesSinceWritten < FRAMES_BETWEEN_WRITES))
        return true;
    const std::string text = SettingsText(now);
    m_framesSinceWritten = 0;
    m_written = now;
    std::error_code ignored;
    std::filesystem::create_directories(std::filesystem::path(m_path).parent_path(), ignored);
    m_isUnwritten = !WriteFileAtomically(m_path, text.data(), text.size(), why);
    return !m_isUnwritten;
}
} // namespace Runner
