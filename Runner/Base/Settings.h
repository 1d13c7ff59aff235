#pragma once

#include "Runner/Base/Held_Text.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <variant>

namespace Runner
{
// What a game keeps of its user's choices: numbers, texts and switches under names. Apart from saved games, which go
// back to an earlier moment.
using Setting = std::variant<bool, int64_t, double, HeldText>;
using Settings = std::map<std::string, Setting>;

constexpr size_t SETTINGS_LIMIT = 100;      // of one game
constexpr size_t SETTING_NAME_LIMIT = 60;   // bytes; 1 at least
constexpr size_t SETTING_TEXT_LIMIT = 1000; // bytes

// Settings as the text of a file: a line for each, by name. Numbers come back as they were, bit for bit.
std::string SettingsText(const Settings& settings);

// False, and why in one line with the line's number, for anything that SettingsText does not write.
bool ParseSettings(std::string_view text, Settings& settings, std::string& why);
} // namespace Runner
