#include "Runner/App/Packed_Game.h"

#include "Runner/Base/Printable.h"
#include "Runner/Base/Whole_File.h"
#include "Runner/Base/Zip_File.h"

#include <algorithm>
#include <filesystem>
#include <strings.h>

namespace Runner
{
namespace
{
constexpr char MAIN_FILE[] = "main.lua";
constexpr char SCRIPT[] = ".lua";
constexpr char ARCHIVE[] = ".zip";
constexpr char MAC_FOLDER[] = "__MACOSX/"; // what some systems add to every archive

// Some systems write it in capitals.
bool HasExtension(const std::string& text, const char* end)
{
    const std::string wanted = end;
    return text.size() >= wanted.size() && strcasecmp(text.c_str() + text.size() - wanted.size(), end) == 0;
}

bool IsOfMac(const std::string& name) { return name.rfind(MAC_FOLDER, 0) == 0; }

// The folder that all files stand in, with a slash at its end; empty for none.
std::string CommonFolder(const FileContents& files)
{
    std::string folder;
    for (const auto& [name, content] : files)
    {
        if (IsOfMac(name))
            continue;
        if (folder.empty())
            folder = name.substr(0, name.find('/') + 1);
        if (folder.empty() || name.rfind(folder, 0) != 0)
            return "";
    }
    return folder;
}

std::vector<std::string> ScriptsIn(const std::string& folder, const FileContents& files)
{
    std::vector<std::string> scripts;
    for (const auto& [name, content] : files)
        if (name.rfind(folder, 0) == 0 && name.find('/', folder.size()) == std::string::npos &&
            HasExtension(name, SCRIPT))
            scripts.push_back(name);
    return scripts;
}
} // namespace

std::string ArchiveIn(const std::string& path)
{
    std::error_code ignored;
    for (size_t end = std::min(path.find('/', 1), path.size());; end = std::min(path.find('/', end + 1), path.size()))
    {
        std::string part = path.substr(0, end);
        if (HasExtension(part, ARCHIVE) && std::filesystem::is_regular_file(part, ignored))
            return part;
        if (end == path.size())
            return "";
    }
}

std::string MainFileOf(const FileContents& files, std::string& why)
{
    const std::string folder = CommonFolder(files);
    const std::string named = folder.empty() ? "" : folder + folder.substr(0, folder.size() - 1) + SCRIPT;
    for (const std::string& name : {folder + MAIN_FILE, named})
        if (files.count(name) > 0)
            return name;
    const std::vector<std::string> scripts = ScriptsIn(folder, files);
    if (scripts.size() == 1)
        return scripts[0];
    why = scripts.empty() ? "there is no Lua file in it: pack the game's folder"
                          : "it has several Lua files and no main.lua: name the one that starts the game, such as " +
                                PrintableName(scripts[0]) + ", behind a slash";
    return "";
}

bool PackedGame::Open(std::string& game, std::string& why)
{
    m_folder.reset();
    m_archive = ArchiveIn(game);
    if (m_archive.empty())
        return true;
    std::vector<uint8_t> bytes;
    FileContents files;
    if (!ReadWholeFile(m_archive, bytes, why))
        return false;
    const bool isRead = ReadZip(bytes, ZipLimits(), files, why);
    const bool isNamed = game.size() > m_archive.size() + 1;
    const std::string main = isRead && !isNamed ? MainFileOf(files, why) : "";
    if (!isRead || (!isNamed && main.empty()))
    {
        why = PrintableName(m_archive) + ": " + why;
        return false;
    }
    if (!isNamed)
        game = m_archive + "/" + main;
    m_folder = std::make_unique<PackedFolder>(m_archive, std::move(files));
    return true;
}
} // namespace Runner
