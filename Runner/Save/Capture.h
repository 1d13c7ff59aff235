#pragma once
// The running game, saved whole. It is called between two frames (Game::Frame).

#include <cstdint>
#include <string>
#include <vector>

namespace Runner
{
class Game;

// Writes the game into a file by an atomic rename: the path holds the old save or the new one, whatever happens. The
// game itself does not change. On failure false, and why in one line.
// A callback that is neither a function nor a number is saved as no script; one line on the console tells which.
bool SaveGame(Game& game, const std::string& path, std::string& why);

// The content of that file. missing: the line about callbacks that are not saved, empty when there are none. False, and
// why in a few words. withThumbnail: with what the last frame drew, which is no part of the game's state.
bool CaptureGame(Game& game, std::vector<uint8_t>& file, std::string& missing, std::string& why,
                 bool withThumbnail = false);
} // namespace Runner
