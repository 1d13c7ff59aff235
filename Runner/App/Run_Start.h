#pragma once

#include "Runner/App/Options.h"
#include "Runner/Input/Input_Source.h"
#include "Runner/Save/Recorder.h"
#include "Runner/Save/Replay.h"
#include "Runner/Save/Saved_State.h"

namespace Runner
{
// Makes a change of a recording in the running game.
void ApplyByHand(const HandChange& change);

// What a run starts from, who plays it, and what is kept of it: --load, --replay, --input, --settings, --record.
class RunStart
{
public:
    // Reads the files and settles what they decide: options' seed, settings, size and number of frames. False, and why
    // in one line.
    bool Open(RunOptions& options, std::string& why);

    const SavedState* Saved() const { return m_saved.get(); }                 // null for a new game
    const std::vector<uint8_t>& SaveContent() const { return m_saveContent; } // of its file; empty for a new game
    const Recording* Replayed() const { return m_replay == nullptr ? nullptr : &m_recording; } // null: none
    InputSource* Player() { return m_player; } // of a recording or a text; null: the user, or nobody
    void ShowNotice(FILE* err) const;          // a line for the user, if there is one

    // Before the first frame: whether the game is the one that was recorded. False, and why in one line; true with a
    // notice when the user goes on anyway.
    bool FitsGame(const Game& game, std::string& why);

    // A change that somebody has made by hand since the frame before; nothing where nothing is recorded.
    void KeepByHand(const HandChange& change);

    // After the last frame. False, and why in one line, when the recording is not whole or the replay went another way.
    bool Finish(const Game& game, std::string& why);

    // What there is to say of a replay that went another way from that frame (counted from 1) on, or did not (0).
    // False: why is a fault, in one line; true with a notice when the user goes on anyway.
    bool TellParting(int partedAt, std::string& why);

private:
    bool OpenReplay(RunOptions& options, std::string& why);
    bool OpenInput(const std::string& path, std::string& why);
    bool OpenSave(RunOptions& options, std::string& why);
    bool OpenSettings(RunOptions& options, std::string& why);

    std::unique_ptr<SavedState> m_saved;
    std::vector<uint8_t> m_saveContent;
    Recording m_recording; // that is replayed
    std::unique_ptr<Replay> m_replay;
    std::unique_ptr<Recorder> m_recorder;
    std::unique_ptr<InputSource> m_text;
    InputSource* m_player = nullptr;
    std::string m_notice;
    std::string m_replayed; // path
    bool m_goesOnAnyway = false;
};
} // namespace Runner
