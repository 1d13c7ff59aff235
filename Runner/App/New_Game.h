#pragma once
// --new: a game to start from.

#include <string>

namespace Runner
{
// Whether a name can be a folder's and a file's on every system. Empty when it can, otherwise what is wrong with it.
std::string WrongGameName(const std::string& name);

// Makes the folder NAME with the game NAME/NAME.lua. told: how to go on, or why nothing was made: a folder or file of
// that name is left as it is.
bool MakeNewGame(const std::string& name, std::string& told);
} // namespace Runner
