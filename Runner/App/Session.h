#pragma once

#include "Runner/App/Album.h"
#include "Runner/App/Options.h"
#include "Runner/App/Run_Start.h"
#include "Runner/App/Settings_Keeper.h"
#include "Runner/App/Watching.h"
#include "Runner/Input/Input_Source.h"

#include <functional>
#include <string>
#include <vector>

namespace Runner
{
// How a run ended: the line to show, empty when all went well, and the exit status.
struct Outcome
{
    std::string line;
    int status = EXIT_DONE;
    std::vector<std::string> details = {}; // of a script's error: lines to show below, indented
};

void ShowDetails(const Outcome& outcome, FILE* err); // indented by four
void TellWarnings(const Game& game, FILE* err);      // how many there were; nothing for none

// One run of a game: its frames, and what is written after them.
class Session
{
public:
    // All are kept, not copied. start: what the run starts from and what is kept of it. input: asked before each frame,
    // so a window keeps the time of the run there, shows the frame before, and ends the run. err: where the progress is
    // shown.
    Session(Game& game, const RunOptions& options, RunStart& start, InputSource& input, FILE* err)
        : m_game(game), m_options(options), m_start(start), m_input(input), m_err(err), m_watching(options, game),
          m_album(options, game, m_watching.PictureInspector()), m_settings(options.settings, game.options.settings)
    {
    }

    // A signal ends it after the frame, and a script that does not come
    // back is ended; either way what was asked for at the end is written.
    Outcome Play();

    std::function<void(int frame)> onFrame; // after each frame that was played whole, counted from 0; null for nothing

private:
    bool Start();
    bool SaveIsAhead();
    bool PlayFrames();
    bool PlayFrame(int frame, const InputFrame& seen);
    bool GoesOn(int frame) const;
    void WriteTheEnd(bool isWhole);
    void Note(const std::string& fault);
    std::string InterruptedText(const std::string& failure) const;

    Game& m_game;
    const RunOptions& m_options;
    RunStart& m_start;
    InputSource& m_input;
    FILE* m_err;
    Watching m_watching;
    Album m_album;
    SettingsKeeper m_settings;
    bool m_isStarted = false; // the first frame can be played
    bool m_isSaved = false;   // what --save-at asks for
    int m_whole = 0;          // frames of the game that were played whole
    std::string m_faults;     // of this run's own files, in the order in which they came, with "; " between
};
} // namespace Runner
