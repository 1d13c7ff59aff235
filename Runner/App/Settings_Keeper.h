#pragma once

#include "Runner/Base/Settings.h"

#include <string>

namespace Runner
{
class Game;

// Reads the settings of a file; none when there is no such file. False, and why in one line, for a damaged one.
bool ReadSettings(const std::string& path, Settings& settings, std::string& why);

// Keeps what a game writes into `settings` in a file: once a second while it changes, and at the end.
class SettingsKeeper
{
public:
    // path: empty for no file; then the settings are only checked. known: what the file holds.
    SettingsKeeper(std::string path, Settings known) : m_path(std::move(path)), m_written(std::move(known)) {}

    // After a frame, and with isLast after the last one. False: the game has failed, or the file cannot be written, and
    // why tells so.
    bool Keep(Game& game, bool isLast, std::string& why);

private:
    const std::string m_path;
    Settings m_written;
    int m_framesSinceWritten = 0; // at most as many as must lie between two writes
    bool m_isUnwritten = false;   // the last write failed: tried once more at the end
};
} // namespace Runner
