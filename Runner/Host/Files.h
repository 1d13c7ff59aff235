#pragma once
// The save area and the files in it (Files/IO/Load_Save.h).

#include <string>

namespace Runner
{
// The directory that holds everything a game writes. Remembered, not touched.
void SetSaveArea(const std::string& path);
const std::string& SaveArea();

// The full path of a file in it; empty when the name is refused, which the console has been told then.
std::string SavePath(const std::string& name);

// Makes the save area's directory and tries whether files can be made in it. False, and why in one line.
bool PrepareSaveArea(std::string& why);

// Whether anything failed with the file last opened for writing through LoadSave: the opening, a write, the closing.
bool LastWriteFailed();
} // namespace Runner
