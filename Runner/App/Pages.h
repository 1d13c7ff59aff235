#pragma once
// The pages that the window shows without a game.

#include "Runner/App/Panel.h"
#include "Runner/Game/Failure_Report.h"

#include <functional>

namespace Runner
{
// Shows what went wrong, over what the game showed last (empty for nothing), until the user presses R, or isMended
// answers true: true, or until the user closes the window or interrupts the run: false. isMended: asked now and then;
// null for never.
bool ShowErrorPage(Window& window, const FailureReport& report, const Picture& last,
                   const std::function<bool()>& isMended = nullptr);

// Shows how far work has come that the user waits for. False: the user has pressed Escape or closed the window.
bool ShowProgressPage(Window& window, Panel& panel, const std::string& what, int done, int all);
constexpr PixelSize PROGRESS_PAGE = {320, 60};

// A game of the menu: DIRECTORY/NAME/NAME.lua, with its picture DIRECTORY/NAME/menu.png if there is one.
struct MenuEntry
{
    std::string name, file, picture;
};
std::vector<MenuEntry> FindGames(const std::string& directory); // by name

// Lets the user choose one by keyboard, mouse or gamepad. Its index; -1 when the window was closed.
int ShowMenu(Window& window, const std::vector<MenuEntry>& games);
} // namespace Runner
