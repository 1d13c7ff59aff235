#pragma once
// The save area and the files in it (Files/IO/Load_Save.h).

#include <string>

namespace Runner
{
// The directory that holds everything a game writes. Only stored: nothing is made or checked.
void SetSaveArea(const std::string& path);
const std::string& SaveArea();

// The full path of a file in the save area. Empty when the name is refused; the console then says why.
std::string SavePath(const std::string& name);

// Makes the save area's directory and checks that files can be made in it. On failure false, and why in one line.
bool PrepareSaveArea(std::string& why);

// Makes the directories of a file in the save area, and checks that the file can be written. On failure false, and why
// in one line; the console is told nothing.
bool PrepareSaveFile(const std::string& name, std::string& why);

// True when opening, writing or closing the file last opened for writing through LoadSave failed.
bool LastWriteFailed();
} // namespace Runner
