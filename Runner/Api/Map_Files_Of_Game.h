#pragma once

#include "Runner/Lua/Script_Engine.h"
#include "Runner/World/Map_Folder.h"

#include <set>
#include <string>

namespace Runner
{
// The files of a game, for the reader of maps. Each counts as code of the game, once; one that cannot be read is noted,
// so that it is watched.
class MapFilesOfGame : public MapFiles
{
public:
    explicit MapFilesOfGame(ScriptEngine& scripts) : m_scripts(scripts), m_folder(scripts.files.PathOf(".")) {}
    bool Read(const std::string& path, size_t limit, std::vector<uint8_t>& bytes, std::string& why) override;

private:
    ScriptEngine& m_scripts;
    MapFolder m_folder;
    std::set<std::string> m_noted;
};
} // namespace Runner
