// Recordings: decoded, coded again, and played by a game that asks for everything that a recording holds.
//
// Input: the file; its checksums are mended first.

#include "Fuzz/Game_Session.h"
#include "Fuzz/Parted_File.h"

#include "Runner/App/Run_Start.h"
#include "Runner/Save/Replay.h"

#include <algorithm>

namespace
{
using namespace Runner;

constexpr int FRAMES_MOST = 12; // played of each recording

// Leads the game's questions to the recording of the input, or to nobody.
class Switch : public Journal
{
public:
    Answer Ask(Question question, const std::function<Answer()>& ask) override
    {
        return to != nullptr ? to->Ask(question, ask) : Answer{false, "there is no recording", {}};
    }
    void BeginFrame(const Game& game) override
    {
        if (to != nullptr)
            to->BeginFrame(game);
    }
    void EndFrame(const Game& game) override
    {
        if (to != nullptr)
            to->EndFrame(game);
    }

    Journal* to = nullptr;
};

Fuzz::Bytes FileOf(const Runner::Recording& recording)
{
    Fuzz::Bytes file = EncodeRecordingHead(recording.head);
    const auto append = [&file](const Fuzz::Bytes& part) { file.insert(file.end(), part.begin(), part.end()); };
    for (const Fuzz::Bytes& block : recording.Blocks())
        append(EncodeRecordingBlock(block));
    append(EncodeRecordingEnd(recording.Frames()));
    return file;
}

// A recording that was read and is written is read as the same.
void RequireSameAgain(const Runner::Recording& recording)
{
    Runner::Recording again;
    std::string left, why;
    const Fuzz::Bytes file = FileOf(recording);
    if (!DecodeRecording(file, again, left, why))
        Fuzz::Report("a recording that was read and written is refused: " + why);
    Fuzz::Require(left.empty(), "a recording that was read and written is not whole");
    Fuzz::Require(FileOf(again) == file, "a recording has changed by being kept");
}

// Frames coded anew: the same input comes back, however its writer had coded it.
void RequireSameFrames(const Runner::Recording& recording)
{
    Runner::Recording anew;
    const int frames = std::min(recording.Frames(), 2 * BLOCK_FRAMES + 1);
    for (int i = 0; i < frames; ++i)
        anew.Add(recording.Frame(i), UNKNOWN_SUM);
    for (int i = 0; i < frames; ++i)
    {
        const RecordedFrame was = recording.Frame(i); // a copy: it is valid until the next call
        const RecordedFrame& is = anew.Frame(i);
        Fuzz::Require(is.input == was.input, "a frame's input has changed by being coded");
        Fuzz::Require(is.answers.size() == was.answers.size() && is.changes.size() == was.changes.size(),
                      "a frame has lost an answer or a change");
    }
}

void Play(Fuzz::GameSession& session, Switch& journal, const Runner::Recording& recording)
{
    Replay replay(recording, 0, ApplyByHand);
    journal.to = &replay;
    InputFrame input;
    for (int i = 0; i < FRAMES_MOST && replay.Next(input) && !session.Now().HasEnded() && session.Now().Frame(input);
         ++i)
    {
    }
    journal.to = nullptr;
    Fuzz::RequireWhole(session.Now());
    session.GoBack();
}
} // namespace

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t maxSize, unsigned seed);
extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t maxSize, unsigned seed)
{
    return Fuzz::MutatePart(Fuzz::RECORDING, data, size, maxSize, seed);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static Switch journal;
    static Fuzz::GameSession session("recorded.lua", "", &journal);
    const Fuzz::SlowInputWatch watch(data, size);
    Fuzz::Bytes file(data, data + size);
    Fuzz::RECORDING.mend(file);
    Runner::Recording recording;
    std::string left, why;
    const bool isRead = DecodeRecording(file, recording, left, why);
    Fuzz::Require(isRead == why.empty(), "a refused recording has no reason, or a good one has");
    if (!isRead)
        return 0;
    Fuzz::Require(recording.Frames() > 0, "a recording without frames is taken");
    RequireSameAgain(recording);
    RequireSameFrames(recording);
    Play(session, journal, recording);
    return 0;
}
