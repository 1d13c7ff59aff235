#pragma once

#include "Runner/App/Contact_Sheet.h"
#include "Runner/App/Options.h"
#include "Runner/Inspect/Inspector.h"

namespace Runner
{
// The pictures of a run: every so many frames, twelve of them on a sheet, and the last one. All go into the save area.
class Album
{
public:
    // All are kept, not copied. inspector: of the game; null for pictures of the game alone.
    Album(const RunOptions& options, Game& game, Inspector* inspector)
        : m_options(options), m_game(game), m_inspector(inspector), m_sheet(options.frames)
    {
    }

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
    Inspector* const m_inspector;
    ContactSheet m_sheet;
};
} // namespace Runner
