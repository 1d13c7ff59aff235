#pragma once
// The file of a saved game, described in Docs/Saves.md.

#include "Runner/Save/Saved_State.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace Runner
{
constexpr uint32_t SAVE_VERSION = 2;
constexpr size_t SAVE_SIZE_MAX = size_t{1} << 28; // bytes

// Whether a file starts as saved games do. False when it cannot be read, too, and then why in one line.
bool StartsAsSave(const std::string& path, std::string& why);

// Reads a file and decodes it. False, and why in one line.
bool ReadSavedGame(const std::string& path, SavedState& state, std::string& why);

// Decodes the content of a file that was read before. path: what the line names.
bool ReadSavedGame(const std::string& path, const std::vector<uint8_t>& content, SavedState& state, std::string& why);

// The line that says why a save is refused.
std::string CannotLoad(const std::string& path, const std::string& reason);

// The content of the file. False, and why in a few words, when the state does not fit into a file.
bool EncodeState(const SavedState& state, std::vector<uint8_t>& file, std::string& why);

// False, and why in a few words, when the content is damaged or of a newer version. A decoded state is consistent in
// itself: every number of a table or camera names one.
bool DecodeState(const std::vector<uint8_t>& file, SavedState& state, std::string& why);

// The same content without its thumbnail, in this runner's file version: two saves are the same when these bytes are.
// False, and why in a few words, as DecodeState.
bool ComparableSave(const std::vector<uint8_t>& file, std::vector<uint8_t>& comparable, std::string& why);
} // namespace Runner
