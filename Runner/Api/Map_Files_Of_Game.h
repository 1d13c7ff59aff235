#pragma once

#include "Runner/Lua/Script_Engine.h"
#include "Runner/World/Map_Files.h"

#include <set>
#include <string>

namespace Runner
{
// The files of a game, for the reader of maps. Each counts as code of the game, once; one that cannot be read is noted,
// so that it is watched.
class MapFilesOfGame : public MapFiles
{
public:
    explicit MapFilesOfGame(ScriptEngine& scripts) : m_scripts(scripts) {}
    bool Read(const std::string& path, size_t limit, std::vector<uint8_t>& bytes, std::string& why) override;

private:
    bool IsInside(const std::string& path, std::string& why) const;

    ScriptEngine& m_scripts;
    std::set<std::string> m_noted;
};
} // namespace Runner
