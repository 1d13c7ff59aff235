#include "Runner/Save/Replay.h"

#include "Runner/Base/Printable.h"
#include "Runner/Game/Game.h"
#include "Runner/Save/Fit.h"

#include <algorithm>

namespace Runner
{
bool Replay::Next(InputFrame& frame)
{
    if (m_next >= m_recording.Frames())
        return false;
    const RecordedFrame& recorded = m_recording.Frame(m_next++);
    frame = recorded.input;
    m_answers = recorded.answers;
    m_answered = 0;
    return true;
}

// A game that asks for something else is not the one that was recorded, or not with this input.
Answer Replay::Ask(Question question, const std::function<Answer()>&)
{
    if (m_answered < m_answers.size() && m_answers[m_answered].question == question)
        return m_answers[m_answered++].answer;
    m_askedElseAt = m_askedElseAt == 0 ? std::max(m_next, 1) : m_askedElseAt;
    Part(m_next);
    return {false, "the recording holds no answer to this", {}};
}

void Replay::BeginFrame(const Game&)
{
    if (m_apply != nullptr && m_next > 0)
        for (const HandChange& change : m_recording.Frame(m_next - 1).changes)
            m_apply(change);
}

void Replay::EndFrame(const Game& game)
{
    AddFrameSum(m_blockSum, game.FrameSum());
    const int block = (m_next - 1) / BLOCK_FRAMES;
    const bool isBlockDone = m_next % BLOCK_FRAMES == 0 || m_next == m_recording.Frames();
    if (!isBlockDone || static_cast<size_t>(block) >= m_recording.Blocks().size())
        return;
    const uint64_t recorded = m_recording.BlockSum(static_cast<size_t>(block));
    if (recorded != UNKNOWN_SUM && recorded != m_blockSum.Value())
        Part(block * BLOCK_FRAMES + 1);
    m_blockSum = Hash();
}

void Replay::Part(int frame) { m_partedAt = m_partedAt == 0 ? std::max(frame, 1) : m_partedAt; }

namespace
{
// The first file that is not as it was; empty when all are.
std::string ChangedFile(const std::vector<GameFile>& now, const std::vector<GameFile>& then)
{
    for (size_t i = 0; i < then.size(); ++i)
        if (i >= now.size() || now[i].name != then[i].name || now[i].hash != then[i].hash)
            return then[i].name;
    return now.size() > then.size() ? now[then.size()].name : "";
}
} // namespace

std::string DifferenceOf(const Game& game, const RecordingHead& head)
{
    std::string difference = DifferenceOf(game.Identity(), head.identity);
    const std::string file = ChangedFile(game.scripts.files.Read(), head.files);
    if (!difference.empty() && game.Identity().name != head.identity.name)
        return difference;
    return file.empty() ? difference : "the game has changed since it was made: see " + Printable(file);
}
} // namespace Runner
