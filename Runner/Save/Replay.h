#pragma once

#include "Runner/Input/Input_Source.h"
#include "Runner/Save/Recording.h"

#include <utility>

namespace Runner
{
// Gives a game what entered a recorded run: its input, and the answers to what it asked. Nothing outside is asked or
// written. It notices when the game goes another way than the recorded one.
class Replay : public Journal, public InputSource
{
public:
    // first: the frame that Next answers first. The answers before it are those before the first frame of all.
    // apply: makes the changes by hand; null leaves them out.
    explicit Replay(const Recording& recording, int first = 0, ChangeApplier apply = nullptr)
        : m_recording(recording), m_apply(std::move(apply)), m_answers(recording.head.answers), m_next(first)
    {
    }

    bool Next(InputFrame& frame) override; // false: all frames have been played
    Answer Ask(Question question, const std::function<Answer()>& ask) override;
    void BeginFrame(const Game& game) override;
    void EndFrame(const Game& game) override;

    // The first frame (from 1) of the second in which the game went another way; 0 while it has not.
    int PartedAt() const { return m_partedAt; }
    // The first frame (from 1) in which it asked for what the recording does not hold; 0 while it has not.
    int AskedElseAt() const { return m_askedElseAt; }

private:
    void Part(int frame);

    const Recording& m_recording;
    const ChangeApplier m_apply;
    std::vector<RecordedAnswer> m_answers; // of the running frame, or those before the first one
    size_t m_answered = 0;                 // of m_answers
    int m_next;                            // frame
    Hash m_blockSum;
    int m_partedAt = 0;
    int m_askedElseAt = 0;
};

// Why a recording is not of this game as it is now, in a few words; empty when it is.
std::string DifferenceOf(const Game& game, const RecordingHead& head);
} // namespace Runner
