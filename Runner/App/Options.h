#pragma once
// The runner as a program, callable from tests.

#include "Runner/Game/Game.h"
#include "Runner/Save/Recording.h"
#include "Runner/Window/Runner_Keys.h"

#include <cstdio>

namespace Runner
{
// A run that a signal ended answers 128 plus the signal's number, as shells count.
enum ExitStatus : int
{
    EXIT_DONE = 0,
    EXIT_GAME_ERROR = 1,
    EXIT_WRONG_USAGE = 2,
};

struct RunOptions
{
    GameOptions game;
    std::string archive;          // that the game stands in, a path; empty for a game in a folder
    std::string newGame;          // the name of a game to make instead of playing one; empty for none
    int frames = 60;              // to play, unless the game ends earlier
    bool isFramesGiven = false;   // false: a replay plays all that was recorded
    int instructionMillions = -1; // of Lua in one frame; -1: not given
    int every = 0;                // frames from one picture to the next; 0 for no such pictures
    std::string out = "out";      // directory of the pictures, and the game's save area
    std::string screenshot;       // picture of the last frame, in that directory; empty for none
    std::string contactSheet;     // picture of twelve frames of the run, in that directory; empty for none
    bool quiet = false;
    bool confined = false; // the process gives up what the game does not need
    bool inspect = false;  // pictures show the camera inspector, too
    std::string profile;   // file for where the frames' time went; empty for none

    // ---- the window ----
    bool window = false;
    bool fullscreen = false;
    int scale = 0;        // pixels of the display for one of the game; 0: as many as fit
    bool unpaced = false; // frames follow each other without waiting for the clock or the display
    int paceSeconds = 0;  // to play and to say at the end how evenly frames were shown; 0: nobody asks
    RunnerKeys keys;
    std::string menu; // directory of the games to choose from; empty: the game is given

    std::string settings; // the file of the game's settings; empty for none

    // ---- saved games: paths, empty for none ----
    std::string load;                                 // the saved game to go on from
    bool isSeedGiven = false;                         // false: a loaded game brings its own
    std::pair<std::string, std::string> compareSaves; // two saved games to compare instead of playing; empty for none
    std::pair<int, std::string> saveAt;               // the file, once so many frames of the game have been played

    // ---- input: paths, empty for none ----
    std::string input;              // a text of what is pressed and moved
    std::string record;             // where to keep what enters the game
    std::string replay;             // what to play again
    std::string compare;            // another version of the game, which the recording is played with, too
    std::vector<HandChange> values; // of cameras, for the other game of a comparison
    bool Compares() const { return !compare.empty() || !values.empty(); }
    bool watch = false;  // starts the game anew when its files change, in a window
    bool anyway = false; // replays a game that has changed since
};

enum class ParseResult
{
    Play,
    Help,
    Version,
    NewGame,
    CompareSaves,
    Wrong,
};

// Reads the command line. Wrong: the line about what is wrong and what to do has been written to err. Help, Version and
// NewGame: nothing has been written, and only what they need of the options is there.
ParseResult ParseOptions(int argc, char** argv, RunOptions& options, FILE* err);

// What --help prints: usage, then one line for each option.
std::string HelpText();

// Parses, plays, writes pictures. Answers an ExitStatus, or 128 plus the number of the signal that ended the run. What
// the game logs goes to out, errors and progress to err.
int RunnerMain(int argc, char** argv, FILE* out, FILE* err);
} // namespace Runner
