#pragma once
// The pages that the window shows without a game.

#include "Runner/App/Panel.h"
#include "Runner/Game/Failure_Report.h"

namespace Runner
{
// Shows what went wrong until the user presses R: true, or closes the window or interrupts the run: false.
bool ShowErrorPage(Window& window, const FailureReport& report);

// A game of the menu: DIRECTORY/NAME/NAME.lua, with its picture DIRECTORY/NAME/menu.png if there is one.
struct MenuEntry
{
    std::string name, file, picture;
};
std::vector<MenuEntry> FindGames(const std::string& directory); // by name

// Lets the user choose one by keyboard, mouse or gamepad. Its index; -1 when the window was closed.
int ShowMenu(Window& window, const std::vector<MenuEntry>& games);
} // namespace Runner
