// Whole saved games past their checksums, loaded over a running game, which then plays on.
//
// Input: the file; its checksums are mended first. Built twice: as saved_game the save is of the running game, as
// older_save of another version of it, so that it goes through the game's on_load and is found again by names.

#include "Fuzz/Game_Session.h"
#include "Fuzz/Parted_File.h"

#include "Runner/Save/Fit.h"
#include "Runner/Save/Restore.h"
#include "Runner/Save/Save_File.h"

namespace
{
using namespace Runner;

constexpr int FRAMES = 2; // played with each loaded state

// What was decoded is encoded again to a file that decodes to the same.
void RequireSameAgain(const SavedState& state)
{
    Fuzz::Bytes once, twice;
    SavedState again;
    std::string why;
    if (!EncodeState(state, once, why))
        return;
    if (!DecodeState(once, again, why))
        Fuzz::Report("a decoded state, encoded, is refused: " + why);
    Fuzz::Require(EncodeState(again, twice, why) && once == twice, "a state has changed by being kept");
}

void Load(Fuzz::GameSession& session, const Fuzz::Bytes& file)
{
    SavedState state;
    std::string why;
    const bool isRead = DecodeState(file, state, why);
    Fuzz::Require(isRead == why.empty(), "a refused save has no reason, or a good one has");
    if (!isRead)
        return;
    RequireSameAgain(state);
    const bool fits = FitToGame(session.Now(), state, "input", why);
    Fuzz::Require(fits == why.empty(), "a refused state has no reason, or a good one has");
    Fuzz::Require(why.find_first_of("\r\n") == std::string::npos, "a refused state is not told in one line");
    if (!fits)
        return;
    RestoreGame(session.Now(), state);
    session.Play(FRAMES);
    session.GoBack();
}
} // namespace

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t maxSize, unsigned seed);
extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t maxSize, unsigned seed)
{
    return Fuzz::MutatePart(Fuzz::SAVED_GAME, data, size, maxSize, seed);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static Fuzz::GameSession session("saved.lua", FUZZ_PROLOGUE);
    const Fuzz::SlowInputWatch watch(data, size);
    Fuzz::Bytes file(data, data + size);
    Fuzz::SAVED_GAME.mend(file);
    Load(session, file);
    return 0;
}
