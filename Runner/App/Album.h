#pragma once

#include "Runner/App/Contact_Sheet.h"
#include "Runner/App/Options.h"

namespace Runner
{
// The pictures of a run: every so many frames, twelve of them on a sheet, and the last one. All go into the save area.
class Album
{
public:
    explicit Album(const RunOptions& options)
        : m_options(options), m_sheet(options.frames) {} // options: kept, not copied

    // Takes what is wanted of a frame that has just been played; frame counts those of this run from 0. False, and why.
    bool Take(Game& game, int frame, std::string& why);

    // Writes the sheet with the frames so far.
    bool WriteSheet(std::string& why) const;

    // Writes what the screen shows now. True without a word before there is a screen.
    bool WriteLastFrame(Game& game, std::string& why) const;

private:
    const RunOptions& m_options;
    ContactSheet m_sheet;
};
} // namespace Runner
