#pragma once
// A game that lives from input to input, since starting one takes longer than most inputs, and what must hold of it.

#include "Fuzz/Fuzz_Target.h"

#include "Runner/Game/Game.h"

#include <memory>

namespace Fuzz
{
// The folder of this process, removed at its end: games that inputs bring, and the save area.
const std::string& WorkFolder();

// Writes a file there; its path.
std::string WriteWorkFile(const std::string& name, const std::string& text);

// Nothing that games print is shown; whoever shows progress is the fuzzer.
void SilenceConsole();

// Options of a game that is walked after each frame (--check), draws nothing and is ended where it does not come back.
Runner::GameOptions CheckedOptions(const std::string& file);

// Ends the process when a walker has found a broken rule. A script's failure is none.
void RequireWhole(const Runner::Game& game);

// With no game: no block and no object may be left.
void RequireNothingLeft(size_t blocksBefore);

class GameSession
{
public:
    // The game stands in Fuzz/Games; prologue names a file whose text is put before the game's, empty for none. Its
    // state after some frames is what each input starts from.
    GameSession(const std::string& name, const std::string& prologue, Runner::Journal* journal = nullptr);
    ~GameSession();
    GameSession(const GameSession&) = delete;
    GameSession& operator=(const GameSession&) = delete;

    Runner::Game& Now() { return *m_game; }

    void Play(int frames);

    // Back to the first state, so that an input does not depend on those before it. A game that has failed or ended is
    // started anew.
    void GoBack();

private:
    void Start();

    Runner::GameOptions m_options;
    std::unique_ptr<Runner::Game> m_game;
    std::vector<uint8_t> m_first; // saved
};
} // namespace Fuzz
