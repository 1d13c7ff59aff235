// Recordings whose checksums are good and whose content no writer makes: made by hand, block by block.

#include "Runner/Base/Hash.h"
#include "Runner/Save/Input_Coding.h"
#include "Runner/Save/Recording.h"

#include <gtest/gtest.h>

namespace
{
using namespace Runner;

std::vector<uint8_t> Joined(std::vector<uint8_t> first, const std::vector<uint8_t>& second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

// Tag, length, checksum of both and of the content, content.
std::vector<uint8_t> BlockOf(const char (&tag)[5], const std::vector<uint8_t>& content)
{
    uint32_t number = 0;
    for (size_t i = 0; i < 4; ++i)
        number |= uint32_t{static_cast<uint8_t>(tag[i])} << 8 * i;
    Hash hash;
    hash.U32(number);
    hash.U32(static_cast<uint32_t>(content.size()));
    hash.Bytes(content.data(), content.size());
    ByteWriter io;
    io(number);
    io(static_cast<uint32_t>(content.size()));
    io(hash.Value());
    return Joined(io.Bytes(), content);
}

// The content of a block of so many untouched frames that says it has `said`, and the numbers that follow them: those
// of answers and of changes, each list ended by 0.
std::vector<uint8_t> FramesBlock(uint64_t said, size_t frames, const std::vector<uint64_t>& numbers)
{
    ByteWriter io;
    io(uint64_t{0});
    io.Varint(said);
    WriteInputs(io, std::vector<InputFrame>(frames));
    for (const uint64_t number : numbers)
        io.Varint(number);
    return io.Bytes();
}

bool IsTaken(const std::vector<uint8_t>& content)
{
    Recording recording;
    const bool isTaken = recording.AddBlock(content);
    EXPECT_EQ(recording.Frames() > 0, isTaken);
    return isTaken;
}

// A change of camera 0, field "", value 0 stands behind its frame's number as twelve bytes of zero.
TEST(RecordingBlock, TakesWhatAWriterCanHaveWritten)
{
    const std::vector<uint8_t> noBytes(12), end = {0};
    EXPECT_TRUE(IsTaken(FramesBlock(1, 1, {0, 0})));
    EXPECT_TRUE(IsTaken(FramesBlock(60, 60, {0, 0})));
    EXPECT_TRUE(IsTaken(Joined(FramesBlock(2, 2, {0, 2}), Joined(noBytes, end))));
    EXPECT_FALSE(IsTaken(Joined(FramesBlock(2, 2, {0, 2}), noBytes))) << "the list of changes has no end";
    EXPECT_FALSE(IsTaken(Joined(FramesBlock(2, 2, {0, 3}), Joined(noBytes, end)))) << "of a third frame of two";
    const std::vector<uint8_t> first = Joined(Joined(FramesBlock(2, 2, {0, 1}), noBytes), {2});
    const std::vector<uint8_t> second = Joined(Joined(FramesBlock(2, 2, {0, 2}), noBytes), {1});
    EXPECT_TRUE(IsTaken(Joined(Joined(first, noBytes), end)));
    EXPECT_FALSE(IsTaken(Joined(Joined(second, noBytes), end))) << "frame 1 behind frame 2";
}

TEST(RecordingBlock, RefusesWhatNoWriterWrites)
{
    EXPECT_FALSE(IsTaken({})) << "nothing";
    EXPECT_FALSE(IsTaken(FramesBlock(0, 0, {0, 0}))) << "no frame";
    EXPECT_FALSE(IsTaken(FramesBlock(61, 61, {0, 0}))) << "more frames than a block has";
    EXPECT_FALSE(IsTaken({0, 0, 0, 0, 0, 0, 0, 0, 1})) << "it ends before the inputs";
    EXPECT_FALSE(IsTaken(FramesBlock(1, 1, {0}))) << "it ends before the changes";
    EXPECT_FALSE(IsTaken(FramesBlock(1, 1, {0, 0, 0}))) << "a byte too many";
    EXPECT_FALSE(IsTaken(FramesBlock(1, 1, {1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}))) << "an answer to no question";
    EXPECT_FALSE(IsTaken(FramesBlock(1, 1, {1, 99, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}))) << "to one that nobody asks";
}

TEST(RecordingBlock, IsNotTakenBehindFramesThatStandAlone)
{
    Recording recording;
    recording.Add({InputFrame(), {}, {}}, 0);
    EXPECT_FALSE(recording.AddBlock(FramesBlock(1, 1, {0, 0})));
    EXPECT_EQ(recording.Frames(), 1);
}

// Frames 0 to 59 are coded, 60 to 62 are not.
TEST(RecordingChanges, BelongToFramesThatAreCodedAndToThoseThatAreNotYet)
{
    Recording recording;
    for (int i = 0; i < 63; ++i)
        recording.Add({InputFrame(), {}, {}}, 7);
    for (const int frame : {59, 61, 61})
        recording.AddChanges(frame, {{2, "x", static_cast<float>(frame)}});
    EXPECT_EQ(recording.Frame(59).changes.size(), 1u);
    EXPECT_EQ(recording.Frame(61).changes.size(), 2u);
    EXPECT_EQ(recording.Frame(61).changes[1].value, 61.0f);
    EXPECT_TRUE(recording.Frame(60).changes.empty());
    EXPECT_EQ(recording.BlockSum(0), UNKNOWN_SUM);
    ASSERT_TRUE(recording.CloseBlock());
    EXPECT_EQ(recording.BlockSum(1), UNKNOWN_SUM) << "the run has not had the change";
}

class WholeRecording : public ::testing::Test
{
protected:
    WholeRecording()
    {
        recording.head.identity = {"game.lua", 1, 2, true};
        for (int i = 0; i < 100; ++i)
            recording.Add({InputFrame(), {}, {}}, 0);
        recording.CloseBlock();
        file = EncodeRecordingHead(recording.head);
        headEnd = file.size();
        for (const std::vector<uint8_t>& block : recording.Blocks())
            file = Joined(std::move(file), EncodeRecordingBlock(block));
    }

    // How many frames can be played of it.
    int FramesOf(const std::vector<uint8_t>& bytes)
    {
        Recording read;
        EXPECT_TRUE(DecodeRecording(bytes, read, left, why)) << why;
        return read.Frames();
    }

    Recording recording;
    std::vector<uint8_t> file; // without its end
    size_t headEnd = 0;
    std::string left, why;
};

class HeadOfRecording : public WholeRecording
{
protected:
    // Why a recording with this head is refused; empty when it is not.
    std::string Refusal(const RecordingHead& head)
    {
        const std::vector<uint8_t> frames = {file.begin() + static_cast<std::ptrdiff_t>(headEnd), file.end()};
        return Refusal(Joined(EncodeRecordingHead(head), frames));
    }

    std::string Refusal(const std::vector<uint8_t>& bytes)
    {
        Recording read;
        const bool isRead = DecodeRecording(bytes, read, left, why);
        EXPECT_EQ(isRead, why.empty());
        return why;
    }

    // A file whose head has this content.
    std::vector<uint8_t> WithHead(const std::vector<uint8_t>& bytes) const
    {
        const std::vector<uint8_t> start(file.begin(), file.begin() + 12);
        return Joined(Joined(start, BlockOf("HEAD", bytes)),
                      {file.begin() + static_cast<std::ptrdiff_t>(headEnd), file.end()});
    }

    const std::vector<uint8_t> content = {file.begin() + 28, file.begin() + static_cast<std::ptrdiff_t>(headEnd)};
    const std::string senseless = "it is damaged: its head makes no sense";
};

TEST_F(HeadOfRecording, HasASizeThatAPictureCanHaveAndNoNegativeLimit)
{
    RecordingHead head = recording.head;
    EXPECT_EQ(Refusal(head), "");
    const std::pair<int, int> sizes[] = {{-1, -1}, {-1, 5}, {5, -1}, {0, 5}, {5, 0}, {8193, 5}, {5, 8193}};
    for (const auto& [width, height] : sizes)
    {
        head.width = width;
        head.height = height;
        EXPECT_EQ(Refusal(head), senseless) << width << " x " << height;
    }
    head.width = head.height = 8192;
    EXPECT_EQ(Refusal(head), "");
    head.instructions = -1;
    EXPECT_EQ(Refusal(head), senseless);
}

// It ends with the numbers of its files and of its answers, four bytes each.
TEST_F(HeadOfRecording, IsWholeAndHasNothingBehind)
{
    EXPECT_EQ(Refusal(WithHead(content)), "");
    EXPECT_EQ(Refusal(WithHead(Joined(content, {0}))), senseless) << "a byte too many";
    EXPECT_EQ(Refusal(WithHead({content.begin(), content.end() - 1})), senseless) << "a byte less";
    std::vector<uint8_t> files = content, answers = content;
    files[content.size() - 8] = 200;
    answers[content.size() - 4] = 200;
    EXPECT_EQ(Refusal(WithHead(files)), senseless) << "200 files, of which there is none";
    EXPECT_EQ(Refusal(WithHead(answers)), senseless);
}

TEST_F(HeadOfRecording, StandsFirst)
{
    const std::vector<uint8_t> start(file.begin(), file.begin() + 12);
    EXPECT_EQ(Refusal(Joined(start, BlockOf("FRAM", content))), senseless);
}

TEST_F(HeadOfRecording, WithTheEndAloneIsARecordingOfNothing)
{
    const std::vector<uint8_t> start(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(headEnd));
    EXPECT_EQ(Refusal(Joined(start, EncodeRecordingEnd(0))), "it has no frame: nothing was played");
}

TEST_F(WholeRecording, AnEndOfAnotherNumberOfFramesOrOfAnotherLengthIsNotTheEnd)
{
    for (const std::vector<uint8_t>& end :
         {EncodeRecordingEnd(99), BlockOf("END ", {100, 0}), BlockOf("END ", {100, 0, 0, 0, 0}), BlockOf("MORE", {})})
    {
        EXPECT_EQ(FramesOf(Joined(file, end)), 100);
        EXPECT_EQ(left, "it is damaged");
    }
    EXPECT_EQ(FramesOf(Joined(file, BlockOf("END ", {100, 0, 0, 0}))), 100);
    EXPECT_EQ(left, "");
}
} // namespace
