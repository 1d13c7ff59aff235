#pragma once
// A recorded run: everything that entered the game from outside. Its file is described in Docs/Recordings.md.

#include "Runner/Base/Hash.h"
#include "Runner/Game/Game_Identity.h"
#include "Runner/Game/Journal.h"
#include "Runner/Input/Input_Frame.h"
#include "Runner/Lua/Script_Engine.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace Runner
{
constexpr uint32_t RECORDING_VERSION = 2; // 1 is read, too: it has no answers about lists of saves
constexpr uint64_t UNKNOWN_SUM = 0;
constexpr int BLOCK_FRAMES = 60; // at most, so that a crash costs at most a second

struct RecordedAnswer
{
    Question question = Question::Save;
    Answer answer;
};

// What was there before the first frame.
struct RecordingHead
{
    GameIdentity identity;
    std::vector<GameFile> files;         // that the game had read by then
    int32_t width = 0, height = 0;       // of the picture; 0: the game's screen
    int64_t instructions = 0;            // of Lua in a frame, at most; 0 for no limit
    std::string settings;                // what the table `settings` held at the start, as the text of a file
    std::vector<uint8_t> save;           // the saved game that it went on from; empty for none
    std::vector<RecordedAnswer> answers; // asked for before the first frame
};

// A property of a camera that a person has changed by hand, between the frame before and this one.
struct HandChange
{
    int32_t camera = -1;
    std::string field;
    float value = 0.0f;
};

// Makes such a change in the running game.
using ChangeApplier = std::function<void(const HandChange& change)>;

struct RecordedFrame
{
    InputFrame input;
    std::vector<RecordedAnswer> answers;
    std::vector<HandChange> changes;
};

// The frames of a run in memory, coded as in the file: an hour of play is a few megabytes, and any frame is at hand.
class Recording
{
public:
    RecordingHead head;

    int Frames() const { return m_coded + static_cast<int>(m_open.size()); }
    const RecordedFrame& Frame(int number) const; // decodes the block that it stands in; valid until the next call

    // Adds a frame with its Game::FrameSum. True: a block has become whole, and Blocks().back() is new.
    bool Add(RecordedFrame frame, uint64_t sum);
    void Cut(int frames, const std::vector<uint64_t>& sums); // forgets later ones. sums: of all frames
    // The frames are of a game that has changed: it has these sums, so far as they are known, and no changes by hand.
    void SetSums(const std::vector<uint64_t>& sums);
    // Adds changes by hand to a frame that is there. The sums of later blocks stay those of the run without them.
    void AddChanges(int frame, const std::vector<HandChange>& changes);
    bool CloseBlock(); // codes what is left over as a last, shorter block. False: nothing was

    // The content of the file's blocks. All but the last have BLOCK_FRAMES frames.
    const std::vector<std::vector<uint8_t>>& Blocks() const { return m_blocks; }

    // Takes a block's content as it stands in a file. False: no recording can hold it here.
    bool AddBlock(std::vector<uint8_t> content);

    // A hash of the sums of a block's frames, which tells whether a replay goes as the run did; UNKNOWN_SUM when one is
    // not known.
    uint64_t BlockSum(size_t block) const;

private:
    void Decode(size_t block) const;
    std::vector<RecordedFrame> TakeFrom(int first, int last);
    void AddAgain(std::vector<RecordedFrame> frames, const std::vector<uint64_t>& sums);

    std::vector<std::vector<uint8_t>> m_blocks;
    int m_coded = 0;                   // frames in m_blocks
    std::vector<RecordedFrame> m_open; // later ones, fewer than a block
    Hash m_openSum;
    bool m_openIsKnown = true;                    // all sums of m_open
    mutable std::vector<RecordedFrame> m_decoded; // of the block that was looked at last
    mutable uint64_t m_decodedSum = 0;
    mutable size_t m_decodedBlock = SIZE_MAX;
};

// How sums of frames become a block's.
void AddFrameSum(Hash& blockSum, uint64_t frameSum);

// ---- the file: a head, blocks, an end ----

std::vector<uint8_t> EncodeRecordingHead(const RecordingHead& head);
std::vector<uint8_t> EncodeRecordingBlock(const std::vector<uint8_t>& content);
std::vector<uint8_t> EncodeRecordingEnd(int frames);

// Decodes a file. False, and why in a few words: it is no recording, its head is damaged, or it has no frame. A file
// that is cut or damaged behind that gives the blocks before the damage; left then tells so in a few words.
bool DecodeRecording(const std::vector<uint8_t>& file, Recording& recording, std::string& left, std::string& why);

// Reads a file and decodes it. False, and why in one line.
bool ReadRecording(const std::string& path, Recording& recording, std::string& left, std::string& why);

// The line that says why a recording is refused, or what of it is played.
std::string CannotReplay(const std::string& path, const std::string& reason);
} // namespace Runner
