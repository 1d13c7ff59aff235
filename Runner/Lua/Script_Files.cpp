#include "Runner/Lua/Script_Files.h"

#include "Runner/Base/Packed_Files.h"
#include "Runner/Base/Printable.h"
#include "Runner/Base/Whole_File.h"
#include "Runner/Lua/Script_Engine.h"

#include <filesystem>
#include <system_error>

namespace Runner
{
namespace
{
namespace fs = std::filesystem;

constexpr char KIT[] = "kit/";
constexpr char KIT_VERSION[] = "version.lua";

bool IsInKit(const std::string& name) { return name.rfind(KIT, 0) == 0; }

// A file that the system cannot tell of counts as one: opening it says why.
bool Exists(const std::string& path)
{
    std::error_code ignored;
    return FindPackedFile(path) != nullptr || fs::status(path, ignored).type() != fs::file_type::not_found;
}

// Whether path stands directly or deeper in a folder that ends with a slash.
bool IsBelow(const std::string& path, const std::string& folder)
{
    return !folder.empty() && path.rfind(folder, 0) == 0;
}
} // namespace

std::string ScriptFiles::Open(const std::string& mainFile, const std::string& kit)
{
    const size_t slash = mainFile.rfind('/');
    m_directory = slash == std::string::npos ? "" : mainFile.substr(0, slash + 1);
    m_kit = kit.empty() ? "" : kit + "/";
    return mainFile.substr(m_directory.size());
}

std::string ScriptFiles::PathOf(const std::string& name) const
{
    const bool climbs = name == ".." || name.rfind("../", 0) == 0 || name.find("/../") != std::string::npos ||
                        (name.size() >= 3 && name.compare(name.size() - 3, 3, "/..") == 0);
    if (name.empty() || name[0] == '/' || climbs || name.find('\0') != std::string::npos)
        throw ScriptError("\"" + Printable(name) +
                          "\" is no file of the game: give a name relative to the game's file");
    return m_directory + name;
}

std::string ScriptFiles::FindScript(const std::string& name, const std::string& includer) const
{
    std::string ofGame = PathOf(name);
    if (m_kit.empty() || !IsInKit(name))
        return ofGame;
    const std::string ofKit = m_kit + name.substr(sizeof KIT - 1);
    const auto found = m_paths.find(includer);
    const bool isAskedByKit = found != m_paths.end() && IsBelow(found->second, m_kit);
    return (isAskedByKit || !Exists(ofGame)) && Exists(ofKit) ? ofKit : ofGame;
}

std::vector<uint8_t> ScriptFiles::ReadScript(const std::string& name, const std::string& path)
{
    std::vector<uint8_t> bytes;
    std::string why;
    const bool isRead = ReadWholeFile(path, bytes, why);
    m_read.push_back({name, isRead ? HashBytes(bytes.data(), bytes.size()) : 0, path});
    if (!isRead && IsInKit(name))
        why += m_kit.empty() ? "; this program found no camera kit: --kit names its folder" : "; nor is it in " + m_kit;
    if (!isRead)
        throw ScriptError(why);
    m_paths[name] = path;
    AddToFingerprint(name, path, bytes);
    return bytes;
}

void ScriptFiles::AddToFingerprint(const std::string& name, const std::string& path, const std::vector<uint8_t>& text)
{
    std::vector<uint8_t> version;
    std::string ignored;
    const bool isVersioned =
        IsInKit(name) && ReadWholeFile(path.substr(0, path.rfind('/') + 1) + KIT_VERSION, version, ignored);
    const std::vector<uint8_t>& counted = isVersioned ? version : text;
    m_fingerprint.Bytes(name.c_str(), name.size() + 1);
    m_fingerprint.Bytes(counted.data(), counted.size());
}

bool ScriptFiles::Note(const std::string& name)
{
    std::vector<uint8_t> bytes;
    std::string ignored;
    const std::string path = m_directory + name;
    const bool isRead = ReadWholeFile(path, bytes, ignored);
    m_read.push_back({name, isRead ? HashBytes(bytes.data(), bytes.size()) : 0, path});
    return isRead;
}

void ScriptFiles::NoteCode(const std::string& name, const std::vector<uint8_t>& content)
{
    m_read.push_back({name, HashBytes(content.data(), content.size()), m_directory + name});
    m_fingerprint.Bytes(name.c_str(), name.size() + 1);
    m_fingerprint.Bytes(content.data(), content.size());
}

void ScriptFiles::NoteMissing(const std::string& name) { m_read.push_back({name, 0, m_directory + name}); }
} // namespace Runner
