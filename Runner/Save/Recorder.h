#pragma once

#include "Runner/Save/Recording.h"

#include <cstdio>
#include <utility>

namespace Runner
{
// Keeps what enters a game while it plays, and writes it into a file as it goes: each block is handed to the system as
// soon as it is complete, so that a process that ends suddenly loses less than a second.
class Recorder : public Journal
{
public:
    // path: empty for no file. save: content of the saved game that the run goes on from, empty for none.
    Recorder(const std::string& path, std::vector<uint8_t> save);
    ~Recorder() override;
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    Answer Ask(Question question, const std::function<Answer()>& ask) override;
    void BeginFrame(const Game& game) override;
    void EndFrame(const Game& game) override;

    // After the last frame: writes what is left and the mark of a whole recording. False, and why in one line, when
    // anything could not be written; the game has gone on all the same.
    bool Finish(const Game& game, std::string& why);

    void Keep(const HandChange& change) { m_changes.push_back(change); } // made since the frame before
    const std::vector<HandChange>& Changes() const { return m_changes; }
    bool HasChanges() const { return !m_changes.empty(); }
    std::vector<HandChange> TakeChanges() { return std::exchange(m_changes, {}); }
    void Forget(); // what was asked and changed since the frame before: the game is another one

    // Forgets the frames from that number on, in the file too. sums: Game::FrameSum of all frames.
    void Cut(int frames, const std::vector<uint64_t>& sums);

    // The frames are those of another game from now on, which has been played with them: sums are its own.
    void Adopt(const Game& game, const std::vector<uint64_t>& sums);

    // The frames of another run, to be played again; nothing is kept of it in a file.
    void Take(Recording recording);
    void AddChanges(int frame, const std::vector<HandChange>& changes) { m_recording.AddChanges(frame, changes); }

    const Recording& Recorded() const { return m_recording; }

private:
    void TakeHead(const Game& game);
    void WriteAgain();
    void Write(const std::vector<uint8_t>& bytes);
    void Stop(const char* action);

    const std::string m_path;
    FILE* m_file = nullptr; // null: none, not yet, or no longer
    std::string m_fault;    // the first, as one line
    Recording m_recording;
    std::vector<RecordedAnswer> m_answers; // since the frame before
    std::vector<HandChange> m_changes;     // since the frame before
    bool m_hasHead = false;
};
} // namespace Runner
