#pragma once
// The runner as a program, callable from tests.

#include "Runner/Game/Game.h"

#include <cstdio>

namespace Runner
{
enum ExitStatus : int
{
    EXIT_DONE = 0,
    EXIT_GAME_ERROR = 1,
    EXIT_WRONG_USAGE = 2,
};

struct RunOptions
{
    GameOptions game;
    int frames = 60;          // to play, unless the game ends earlier
    int every = 1;            // frames from one picture to the next
    std::string out = "out";  // directory of the pictures, and the game's save area
    std::string screenshot;   // picture of the last frame, in that directory; empty for none
    std::string contactSheet; // picture of twelve frames of the run, likewise
    bool quiet = false;

    // ---- saved games: paths, empty for none ----
    std::string load;                   // goes on from there
    bool isSeedGiven = false;           // false: a loaded game brings its own
    std::pair<int, std::string> saveAt; // the file, once so many frames of the game have been played
};

enum class ParseResult
{
    Play,
    Done, // help was asked for, and given
    Wrong,
};

// Wrong: one line about what is wrong and what to do has been written to err.
ParseResult ParseOptions(int argc, char** argv, RunOptions& options, FILE* out, FILE* err);

// Parses, plays, writes pictures. Answers an ExitStatus. What the game logs goes to out, errors and progress to err.
int RunnerMain(int argc, char** argv, FILE* out, FILE* err);
} // namespace Runner
