#include "Runner/Save/Recording.h"

#include "Runner/Base/Printable.h"
#include "Runner/Base/Whole_File.h"
#include "Runner/Draw/Picture.h"
#include "Runner/Save/Input_Coding.h"

#include <algorithm>
#include <utility>

namespace Runner
{
namespace
{
// ---- what a block holds ----

void WriteAnswer(ByteWriter& io, const RecordedAnswer& recorded)
{
    io.Varint(static_cast<uint64_t>(recorded.question));
    io(recorded.answer.done);
    io(recorded.answer.why);
    io(recorded.answer.content);
}

void ReadAnswer(ByteReader& io, RecordedAnswer& recorded)
{
    const uint64_t question = io.Varint();
    if (question == 0 || question > static_cast<uint64_t>(LAST_QUESTION))
        return io.Fail();
    recorded.question = static_cast<Question>(question);
    io(recorded.answer.done);
    io(recorded.answer.why);
    io(recorded.answer.content);
}

template <typename Io, typename Change> void TransferChange(Io& io, Change& change)
{
    io(change.camera);
    io(change.field);
    io(change.value);
}

void WriteItem(ByteWriter& io, const RecordedAnswer& answer) { WriteAnswer(io, answer); }
void WriteItem(ByteWriter& io, const HandChange& change) { TransferChange(io, change); }
void ReadItem(ByteReader& io, RecordedAnswer& answer) { ReadAnswer(io, answer); }
void ReadItem(ByteReader& io, HandChange& change) { TransferChange(io, change); }

// Answers and changes are rare: each stands after the number of its frame, counted from 1 in the block, and 0 ends the
// list.
template <typename Item>
void WriteRare(ByteWriter& io, const std::vector<RecordedFrame>& frames, std::vector<Item> RecordedFrame::*items)
{
    for (size_t i = 0; i < frames.size(); ++i)
        for (const Item& item : frames[i].*items)
        {
            io.Varint(i + 1);
            WriteItem(io, item);
        }
    io.Varint(0);
}

template <typename Item>
void ReadRare(ByteReader& io, std::vector<RecordedFrame>& frames, std::vector<Item> RecordedFrame::*items)
{
    for (uint64_t last = 1;;)
    {
        const uint64_t number = io.Varint();
        if (io.Failed() || number == 0)
            return;
        if (number < last || number > frames.size())
            return io.Fail();
        last = number;
        ReadItem(io, (frames[static_cast<size_t>(number - 1)].*items).emplace_back());
    }
}

std::vector<uint8_t> EncodeFrames(const std::vector<RecordedFrame>& frames, uint64_t sum)
{
    ByteWriter io;
    std::vector<InputFrame> inputs;
    inputs.reserve(frames.size());
    for (const RecordedFrame& frame : frames)
        inputs.push_back(frame.input);
    io(sum);
    io.Varint(frames.size());
    WriteInputs(io, inputs);
    WriteRare(io, frames, &RecordedFrame::answers);
    WriteRare(io, frames, &RecordedFrame::changes);
    return io.Bytes();
}

bool DecodeFrames(const std::vector<uint8_t>& content, std::vector<RecordedFrame>& frames, uint64_t& sum)
{
    ByteReader io(content.data(), content.size());
    std::vector<InputFrame> inputs;
    io(sum);
    const uint64_t stored = io.Varint();
    if (io.Failed() || stored == 0 || stored > BLOCK_FRAMES)
        return false;
    const auto count = static_cast<size_t>(stored);
    ReadInputs(io, count, inputs);
    if (io.Failed())
        return false;
    frames.assign(count, RecordedFrame());
    for (size_t i = 0; i < count; ++i)
        frames[i].input = std::move(inputs[i]);
    ReadRare(io, frames, &RecordedFrame::answers);
    ReadRare(io, frames, &RecordedFrame::changes);
    return !io.Failed() && io.Left() == 0;
}

// ---- blocks of the file: tag, length, checksum of both and of the content, content ----

// 89 "RPLAY" 0D 0A: a transfer as text would change the first or the last bytes.
constexpr uint64_t MAGIC = 0x0A0D59414C505289;
constexpr size_t PREAMBLE_SIZE = 12; // with the version
constexpr size_t BLOCK_HEAD_SIZE = 16;

enum Tag : uint32_t
{
    TAG_HEAD = 0x44414548,   // "HEAD"
    TAG_FRAMES = 0x4D415246, // "FRAM"
    TAG_END = 0x20444E45,    // "END "
};

uint64_t BlockChecksum(uint32_t tag, const uint8_t* content, size_t size)
{
    Hash hash;
    hash.U32(tag);
    hash.U32(static_cast<uint32_t>(size));
    hash.Bytes(content, size);
    return hash.Value();
}

std::vector<uint8_t> EncodeBlock(Tag tag, const std::vector<uint8_t>& content)
{
    ByteWriter io;
    io(uint32_t{tag});
    io.Count(content.size());
    io(BlockChecksum(tag, content.data(), content.size()));
    std::vector<uint8_t> bytes = io.Bytes();
    bytes.insert(bytes.end(), content.begin(), content.end());
    return bytes;
}

enum class Found
{
    Block,
    CutOff, // the file ends within the block
    Damage,
};

// The blocks of a file, one after the other.
class BlockReader
{
public:
    BlockReader(const uint8_t* data, size_t size) : m_data(data), m_left(size) {}

    Found Next(uint32_t& tag, std::vector<uint8_t>& content)
    {
        uint32_t length = 0;
        uint64_t checksum = 0;
        if (m_left < BLOCK_HEAD_SIZE)
            return Found::CutOff;
        ByteReader io(m_data, BLOCK_HEAD_SIZE);
        io(tag);
        io(length);
        io(checksum);
        if (length > m_left - BLOCK_HEAD_SIZE)
            return tag == TAG_HEAD || tag == TAG_FRAMES || tag == TAG_END ? Found::CutOff : Found::Damage;
        const uint8_t* first = m_data + BLOCK_HEAD_SIZE;
        if (checksum != BlockChecksum(tag, first, length))
            return Found::Damage;
        content.assign(first, first + length);
        m_data = first + length;
        m_left -= BLOCK_HEAD_SIZE + length;
        return Found::Block;
    }

    size_t Left() const { return m_left; }

private:
    const uint8_t* m_data;
    size_t m_left;
};

// ---- the head ----

template <typename Io, typename Head> void TransferPlain(Io& io, Head& head)
{
    io(head.identity.name);
    io(head.identity.files);
    io(head.identity.seed);
    io(head.identity.usesSeed);
    io(head.width);
    io(head.height);
    io(head.instructions);
    io(head.settings);
    io(head.save);
}

bool DecodeHead(const std::vector<uint8_t>& content, RecordingHead& head)
{
    ByteReader io(content.data(), content.size());
    TransferPlain(io, head);
    for (size_t left = io.Count(); left > 0 && !io.Failed(); --left)
    {
        GameFile& file = head.files.emplace_back();
        io(file.name);
        io(file.hash);
    }
    for (size_t left = io.Count(); left > 0 && !io.Failed(); --left)
        ReadAnswer(io, head.answers.emplace_back());
    const bool isSize = head.width >= 0 && head.height >= 0 && (head.width == 0) == (head.height == 0) &&
                        head.width <= PICTURE_SIDE_LIMIT && head.height <= PICTURE_SIDE_LIMIT && head.instructions >= 0;
    return !io.Failed() && io.Left() == 0 && isSize;
}

bool ReadPreamble(const std::vector<uint8_t>& file, std::string& why)
{
    uint64_t magic = 0;
    uint32_t version = 0;
    ByteReader io(file.data(), file.size());
    io(magic);
    io(version);
    if (magic != MAGIC)
        why = "it is no recording";
    else if (io.Failed())
        why = "it is damaged: it ends early";
    else if (version > RECORDING_VERSION)
        why = "it was made by a newer runner (its version is " + std::to_string(version) + ", this one reads " +
              std::to_string(RECORDING_VERSION) + ")";
    else if (version == 0)
        why = "it is damaged: its version makes no sense";
    return why.empty();
}

bool IsEnd(const std::vector<uint8_t>& content, int frames)
{
    ByteReader io(content.data(), content.size());
    int32_t counted = 0;
    io(counted);
    return !io.Failed() && io.Left() == 0 && counted == frames;
}

// Reads the blocks of frames up to the end or to the first that is not whole. Empty when all are there.
std::string ReadFrames(BlockReader& reader, Recording& recording)
{
    for (;;)
    {
        uint32_t tag = 0;
        std::vector<uint8_t> content;
        const Found found = reader.Next(tag, content);
        if (found == Found::CutOff)
            return "it ends early";
        if (found == Found::Block && tag == TAG_END && IsEnd(content, recording.Frames()) && reader.Left() == 0)
            return "";
        if (found != Found::Block || tag != TAG_FRAMES || !recording.AddBlock(std::move(content)))
            return "it is damaged";
    }
}
} // namespace

// ---- in memory ----

void AddFrameSum(Hash& blockSum, uint64_t frameSum)
{
    blockSum.U32(static_cast<uint32_t>(frameSum));
    blockSum.U32(static_cast<uint32_t>(frameSum >> 32));
}

bool Recording::Add(RecordedFrame frame, uint64_t sum)
{
    m_open.push_back(std::move(frame));
    AddFrameSum(m_openSum, sum);
    if (m_open.size() < BLOCK_FRAMES)
        return false;
    return CloseBlock();
}

// Takes the frames from `first` on, which starts a block, out of the recording. Answers those before `last`.
std::vector<RecordedFrame> Recording::TakeFrom(int first, int last)
{
    std::vector<RecordedFrame> frames;
    for (int number = first; number < last; ++number)
        frames.push_back(Frame(number));
    m_blocks.resize(std::min(m_blocks.size(), static_cast<size_t>(first / BLOCK_FRAMES)));
    m_coded = first;
    m_open.clear();
    m_openSum = Hash();
    m_openIsKnown = true;
    m_decodedBlock = SIZE_MAX;
    return frames;
}

void Recording::AddAgain(std::vector<RecordedFrame> frames, const std::vector<uint64_t>& sums)
{
    for (RecordedFrame& frame : frames)
    {
        const auto number = static_cast<size_t>(Frames());
        m_openIsKnown = m_openIsKnown && number < sums.size();
        Add(std::move(frame), number < sums.size() ? sums[number] : 0);
    }
}

void Recording::SetSums(const std::vector<uint64_t>& sums)
{
    std::vector<RecordedFrame> frames = TakeFrom(0, Frames());
    for (RecordedFrame& frame : frames)
        frame.changes.clear();
    AddAgain(std::move(frames), sums);
}

void Recording::AddChanges(int frame, const std::vector<HandChange>& changes)
{
    const bool isCoded = frame < m_coded;
    const auto block = static_cast<size_t>(frame / BLOCK_FRAMES);
    std::vector<RecordedFrame> decoded;
    if (isCoded)
        DecodeFrames(m_blocks[block], decoded, m_decodedSum);
    const int first = isCoded ? frame / BLOCK_FRAMES * BLOCK_FRAMES : m_coded;
    std::vector<HandChange>& all = (isCoded ? decoded : m_open)[static_cast<size_t>(frame - first)].changes;
    all.insert(all.end(), changes.begin(), changes.end());
    m_openIsKnown = m_openIsKnown && isCoded;
    if (isCoded)
        m_blocks[block] = EncodeFrames(decoded, UNKNOWN_SUM);
    m_decodedBlock = SIZE_MAX;
}

void Recording::Cut(int frames, const std::vector<uint64_t>& sums)
{
    AddAgain(TakeFrom(frames / BLOCK_FRAMES * BLOCK_FRAMES, frames), sums);
}

bool Recording::CloseBlock()
{
    if (m_open.empty())
        return false;
    m_blocks.push_back(EncodeFrames(m_open, m_openIsKnown ? m_openSum.Value() : UNKNOWN_SUM));
    m_coded += static_cast<int>(m_open.size());
    m_open.clear();
    m_openSum = Hash();
    m_openIsKnown = true;
    return true;
}

bool Recording::AddBlock(std::vector<uint8_t> content)
{
    if (m_coded % BLOCK_FRAMES != 0 || m_coded > INT32_MAX - BLOCK_FRAMES || !m_open.empty())
        return false;
    std::vector<RecordedFrame> frames;
    uint64_t sum = 0;
    if (!DecodeFrames(content, frames, sum))
        return false;
    m_blocks.push_back(std::move(content));
    m_coded += static_cast<int>(frames.size());
    return true;
}

void Recording::Decode(size_t block) const
{
    if (m_decodedBlock == block)
        return;
    DecodeFrames(m_blocks[block], m_decoded, m_decodedSum);
    m_decodedBlock = block;
}

const RecordedFrame& Recording::Frame(int number) const
{
    if (number >= m_coded)
        return m_open[static_cast<size_t>(number - m_coded)];
    Decode(static_cast<size_t>(number / BLOCK_FRAMES));
    return m_decoded[static_cast<size_t>(number % BLOCK_FRAMES)];
}

uint64_t Recording::BlockSum(size_t block) const
{
    Decode(block);
    return m_decodedSum;
}

// ---- the file ----

std::vector<uint8_t> EncodeRecordingHead(const RecordingHead& head)
{
    ByteWriter io, preamble;
    TransferPlain(io, head);
    io.Count(head.files.size());
    for (const GameFile& file : head.files)
    {
        io(file.name);
        io(file.hash);
    }
    io.Count(head.answers.size());
    for (const RecordedAnswer& answer : head.answers)
        WriteAnswer(io, answer);
    preamble(MAGIC);
    preamble(RECORDING_VERSION);
    std::vector<uint8_t> bytes = preamble.Bytes();
    const std::vector<uint8_t> block = EncodeBlock(TAG_HEAD, io.Bytes());
    bytes.insert(bytes.end(), block.begin(), block.end());
    return bytes;
}

std::vector<uint8_t> EncodeRecordingBlock(const std::vector<uint8_t>& content)
{
    return EncodeBlock(TAG_FRAMES, content);
}

std::vector<uint8_t> EncodeRecordingEnd(int frames)
{
    ByteWriter io;
    io(int32_t{frames});
    return EncodeBlock(TAG_END, io.Bytes());
}

bool DecodeRecording(const std::vector<uint8_t>& file, Recording& recording, std::string& left, std::string& why)
{
    recording = Recording();
    left.clear();
    why.clear();
    if (!ReadPreamble(file, why))
        return false;
    BlockReader reader(file.data() + PREAMBLE_SIZE, file.size() - PREAMBLE_SIZE);
    uint32_t tag = 0;
    std::vector<uint8_t> content;
    const Found found = reader.Next(tag, content);
    if (found == Found::CutOff)
        why = "it is damaged: it ends early";
    else if (found == Found::Damage || tag != TAG_HEAD || !DecodeHead(content, recording.head))
        why = "it is damaged: its head makes no sense";
    if (!why.empty())
        return false;
    left = ReadFrames(reader, recording);
    if (recording.Frames() == 0)
        why = left.empty() ? "it has no frame: nothing was played" : left + " before its first whole second";
    return why.empty();
}

bool ReadRecording(const std::string& path, Recording& recording, std::string& left, std::string& why)
{
    std::vector<uint8_t> file;
    std::string reason;
    if (!ReadWholeFile(path, file, why))
        return false;
    if (!DecodeRecording(file, recording, left, reason))
        why = CannotReplay(path, reason);
    return reason.empty();
}

std::string CannotReplay(const std::string& path, const std::string& reason)
{
    return "cannot replay " + PrintableName(path) + ": " + reason;
}
} // namespace Runner
