#pragma once

#include "Runner/App/Contact_Sheet.h"
#include "Runner/App/Options.h"
#include "Runner/Inspect/Inspector.h"

#include <memory>

namespace Runner
{
// The pictures of a run: every so many frames, twelve of them on a sheet, and the last one. All go into the save area.
class Album
{
public:
    // options and game: kept, not copied. With --inspect, an inspector watches the game while the album lives.
    Album(const RunOptions& options, Game& game);

    // Takes what is wanted of a frame that has just been played; frame counts those of this run from 0. False, and why.
    bool Take(int frame, std::string& why);

    // Writes the sheet with the frames so far.
    bool WriteSheet(std::string& why) const;

    // Writes what the screen shows now. True without a word before there is a screen.
    bool WriteLastFrame(std::string& why) const;

private:
    Picture Screen(std::string& why) const;

    const RunOptions& m_options;
    Game& m_game;
    std::unique_ptr<Inspector> m_inspector; // null without --inspect
    ContactSheet m_sheet;
};
} // namespace Runner
