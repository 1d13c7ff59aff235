// Recordings in memory and as files: what they keep, how many bytes it takes, what damage does.

#include "Runner/Base/Random.h"
#include "Runner/Save/Input_Coding.h"
#include "Runner/Save/Recording.h"

#include <gmock/gmock.h>

namespace
{
using namespace Runner;

constexpr int MINUTE = 3600; // frames

// Somebody who plays, by seeded random numbers.
class Player
{
public:
    InputFrame frame;

    // Each frame some key goes down or up with that chance.
    void PressKeys(double chance)
    {
        for (KeySwitches* keys : {&frame.positions, &frame.names})
            keys->pressed = keys->released = {};
        if (m_random.Next01() >= chance)
            return;
        constexpr size_t KEYS[] = {4, 7, 22, 26, 44, 225}; // a, d, s, w, space, left shift
        const size_t key = KEYS[m_random.Range(0, 5)];
        for (KeySwitches* keys : {&frame.positions, &frame.names})
        {
            const bool isHeld = keys->held[key];
            keys->held.flip(key);
            (isHeld ? keys->released : keys->pressed).set(key);
        }
    }

    // Moves the pointer in every frame, at most so far.
    void MovePointer(int mostUnits)
    {
        frame.mouse.x += static_cast<float>(m_random.Range(-16 * mostUnits, 16 * mostUnits)) * POINTER_STEP;
        frame.mouse.y += static_cast<float>(m_random.Range(-16 * mostUnits, 16 * mostUnits)) * POINTER_STEP;
    }

    void MoveSticks(size_t pads)
    {
        for (size_t pad = 0; pad < pads; ++pad)
        {
            frame.pads[pad].connected = true;
            for (size_t axis = 0; axis < 4; ++axis)
                frame.pads[pad].axes[axis] =
                    static_cast<int16_t>(frame.pads[pad].axes[axis] / 2 + m_random.Range(-9000, 9000));
        }
    }

    // Every part of a frame changes, to anything.
    void ChangeAll()
    {
        PressKeys(1.0);
        frame.positions.pressed.set(static_cast<size_t>(m_random.Range(0, KEY_COUNT - 1)));
        frame.mouse.x = static_cast<float>(m_random.Next01() * 1e6);
        frame.mouse.wheelY = m_random.Range(-3, 3);
        frame.mouse.buttons = {Bits(), Bits(), Bits()};
        MoveSticks(PAD_COUNT);
        frame.pads[5] = PadFrame();
        frame.pads[2].axes[5] = INT16_MIN;
        frame.pads[3].buttons = {Bits(), Bits(), Bits()};
        frame.text = m_random.Range(0, 1) == 0 ? "" : "t" + std::to_string(m_random.Range(0, 99));
    }

private:
    uint32_t Bits() { return static_cast<uint32_t>(m_random.Range(0, 0x7FFFFFFF)); }

    Random m_random{17};
};

std::vector<InputFrame> Decoded(const std::vector<uint8_t>& bytes, size_t count, bool& isWhole)
{
    ByteReader io(bytes.data(), bytes.size());
    std::vector<InputFrame> frames;
    ReadInputs(io, count, frames);
    isWhole = !io.Failed() && io.Left() == 0;
    return frames;
}

void ExpectRoundTrip(const std::vector<InputFrame>& frames)
{
    ByteWriter io;
    WriteInputs(io, frames);
    bool isWhole = false;
    EXPECT_EQ(Decoded(io.Bytes(), frames.size(), isWhole), frames);
    EXPECT_TRUE(isWhole);
}

TEST(InputCoding, GivesEveryPartOfAFrameBack)
{
    Player player;
    std::vector<InputFrame> frames;
    for (int i = 0; i < 200; ++i)
    {
        player.ChangeAll();
        frames.push_back(player.frame);
    }
    ExpectRoundTrip(frames);
}

TEST(InputCoding, KeepsThePointerExactlyOnItsStepsAndBetweenThem)
{
    for (const float place : {0.0f, -0.0f, 12.5f, -0.0625f, 0.1f, POINTER_FAR, -POINTER_FAR, 3e38f})
    {
        InputFrame frame;
        frame.mouse.x = place;
        ExpectRoundTrip({frame, InputFrame(), frame});
    }
}

// Flag, end of columns, end of texts.
TEST(InputCoding, AnUntouchedSecondTakesThreeBytes)
{
    ByteWriter io;
    WriteInputs(io, std::vector<InputFrame>(60));
    EXPECT_EQ(io.Bytes().size(), 3u);
}

TEST(InputCoding, DamagedBytesNeverReadPastTheirEnd)
{
    Player player;
    std::vector<InputFrame> frames;
    for (int i = 0; i < 3; ++i)
    {
        player.PressKeys(1.0);
        player.MovePointer(9);
        frames.push_back(player.frame);
    }
    frames[1].text = "typed";
    ByteWriter io;
    WriteInputs(io, frames);
    bool isWhole = false;
    for (size_t size = 0; size < io.Bytes().size(); ++size)
    {
        Decoded({io.Bytes().begin(), io.Bytes().begin() + static_cast<std::ptrdiff_t>(size)}, 3, isWhole);
        EXPECT_FALSE(isWhole) << "cut after " << size << " bytes";
    }
    for (size_t place = 0; place < io.Bytes().size(); ++place)
        for (const int value : {0, 1, 0x7F, 0x80, 0xFF})
        {
            std::vector<uint8_t> bytes = io.Bytes();
            bytes[place] = static_cast<uint8_t>(value);
            const std::vector<InputFrame> read = Decoded(bytes, 3, isWhole);
            EXPECT_TRUE(!isWhole || read.size() == 3) << place;
        }
}

// ---- whole recordings ----

Recording Recorded(int frames, void (*play)(Player& player))
{
    Player player;
    Recording recording;
    recording.head.identity = {"game.lua", 1, 2, true};
    for (int i = 0; i < frames; ++i)
    {
        play(player);
        recording.Add({player.frame, {}, {}}, static_cast<uint64_t>(i));
    }
    recording.CloseBlock();
    return recording;
}

std::vector<uint8_t> FileOf(const Recording& recording)
{
    std::vector<uint8_t> file = EncodeRecordingHead(recording.head);
    for (const std::vector<uint8_t>& block : recording.Blocks())
    {
        const std::vector<uint8_t> bytes = EncodeRecordingBlock(block);
        file.insert(file.end(), bytes.begin(), bytes.end());
    }
    const std::vector<uint8_t> end = EncodeRecordingEnd(recording.Frames());
    file.insert(file.end(), end.begin(), end.end());
    return file;
}

// The pointer moves in every frame by up to 40 units, and three keys go down or up each second.
TEST(RecordingSize, AMinuteOfKeyboardAndMouseIsUnderTwentyKilobytes)
{
    const auto play = [](Player& player)
    {
        player.PressKeys(0.05);
        player.MovePointer(40);
    };
    const size_t size = FileOf(Recorded(MINUTE, play)).size();
    RecordProperty("bytes", static_cast<int>(size));
    EXPECT_LT(size, 20000u);
}

// Both sticks of each pad never rest: two bytes for each of sixteen axes and frame at most, and a second's head.
TEST(RecordingSize, AMinuteOfFourRestlessGamepadsIsUnderOneHundredAndFortyKilobytes)
{
    const size_t size = FileOf(Recorded(MINUTE, [](Player& player) { player.MoveSticks(4); })).size();
    RecordProperty("bytes", static_cast<int>(size));
    EXPECT_LT(size, 140000u);
}

TEST(RecordingFile, GivesBackEverything)
{
    Recording recording = Recorded(130, [](Player& player) { player.ChangeAll(); });
    recording.head.files = {{"game.lua", 7}, {"a.png", 8}};
    recording.head.width = 64;
    recording.head.height = 48;
    recording.head.instructions = 5;
    recording.head.save = {1, 2, 3};
    recording.head.answers = {{Question::Load, {false, "no such file", {}}}};
    recording.Add({InputFrame(), {{Question::Screenshot, {true, "", {}}}, {Question::Load, {true, "", {9, 8}}}}, {}},
                  5);
    ASSERT_FALSE(recording.Frames() == 130);
    recording.CloseBlock();

    // a block after the short one could not be: its frames would not be where they are looked for
    Recording read;
    std::string left, why;
    ASSERT_TRUE(DecodeRecording(FileOf(recording), read, left, why)) << why;
    EXPECT_EQ(left, "it is damaged");
    EXPECT_EQ(read.Frames(), 130);

    EXPECT_EQ(read.head.identity.name, "game.lua");
    EXPECT_EQ(read.head.identity.seed, 2u);
    EXPECT_EQ(read.head.files.at(1).name, "a.png");
    EXPECT_EQ(read.head.files.at(1).hash, 8u);
    EXPECT_EQ(std::pair(read.head.width, read.head.height), std::pair(64, 48));
    EXPECT_EQ(read.head.instructions, 5);
    EXPECT_EQ(read.head.save, (std::vector<uint8_t>{1, 2, 3}));
    EXPECT_EQ(read.head.answers.at(0).answer.why, "no such file");
    for (const int number : {0, 59, 60, 129})
        EXPECT_EQ(read.Frame(number).input, recording.Frame(number).input) << number;
    for (size_t block = 0; block < 3; ++block)
        EXPECT_EQ(read.BlockSum(block), recording.BlockSum(block)) << block;
}

TEST(RecordingFile, AnswersAndChangesBelongToTheirFrames)
{
    Recording recording;
    for (int i = 0; i < 5; ++i)
        recording.Add({InputFrame(), {}, {}}, 0);
    recording.Add({InputFrame(), {{Question::Screenshot, {true, "", {}}}, {Question::Load, {true, "", {9, 8}}}}, {}},
                  5);
    recording.Add({InputFrame(), {}, {{3, "angle", 12.5f}}}, 0);
    recording.CloseBlock();
    Recording read;
    std::string left, why;
    ASSERT_TRUE(DecodeRecording(FileOf(recording), read, left, why)) << why;
    EXPECT_EQ(left, "");
    EXPECT_TRUE(read.Frame(5).changes.empty());
    ASSERT_EQ(read.Frame(6).changes.size(), 1u);
    EXPECT_EQ(read.Frame(6).changes[0].camera, 3);
    EXPECT_EQ(read.Frame(6).changes[0].field, "angle");
    EXPECT_EQ(read.Frame(6).changes[0].value, 12.5f);
    EXPECT_TRUE(read.Frame(4).answers.empty());
    ASSERT_EQ(read.Frame(5).answers.size(), 2u);
    EXPECT_EQ(read.Frame(5).answers[0].question, Question::Screenshot);
    EXPECT_EQ(read.Frame(5).answers[1].answer.content, (std::vector<uint8_t>{9, 8}));
}

class DamagedRecording : public ::testing::Test
{
protected:
    // The frames that can be played of it: -1 when it is refused, or one line about what is left out.
    int FramesOf(const std::vector<uint8_t>& bytes)
    {
        Recording read;
        const bool isRead = DecodeRecording(bytes, read, left, why);
        EXPECT_EQ(why.empty(), isRead);
        EXPECT_EQ((why + left).find('\n'), std::string::npos);
        for (int i = 0; i < read.Frames() && isRead; i += 20)
            EXPECT_EQ(read.Frame(i).input, recording.Frame(i).input);
        return isRead ? read.Frames() : -1;
    }

    const Recording recording = Recorded(100, [](Player& player) { player.PressKeys(0.1); });
    const std::vector<uint8_t> file = FileOf(recording);
    const size_t headEnd = EncodeRecordingHead(recording.head).size();
    const size_t firstEnd = headEnd + EncodeRecordingBlock(recording.Blocks()[0]).size();
    const size_t secondEnd = firstEnd + EncodeRecordingBlock(recording.Blocks()[1]).size();
    std::string left, why;
};

TEST_F(DamagedRecording, CutAnywhereItGivesTheWholeBlocksBefore)
{
    for (size_t size = 0; size < file.size(); ++size)
    {
        const int frames = FramesOf({file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size)});
        EXPECT_EQ(frames, size < firstEnd ? -1 : size < secondEnd ? 60 : 100) << size;
        EXPECT_EQ(left.empty(), size < headEnd) << size;
    }
}

TEST_F(DamagedRecording, AChangedByteIsNoticedWhereverItStands)
{
    for (size_t place = 0; place < file.size(); ++place)
        for (const int bits : {1, 0x80, 0xFF})
        {
            std::vector<uint8_t> bytes = file;
            bytes[place] = static_cast<uint8_t>(bytes[place] ^ bits);
            const int frames = FramesOf(bytes);
            EXPECT_EQ(frames, place < firstEnd ? -1 : place < secondEnd ? 60 : 100) << place;
            EXPECT_NE(left + why, "") << place;
        }
}

TEST_F(DamagedRecording, BytesBehindTheEndAreNoticed)
{
    std::vector<uint8_t> bytes = file;
    bytes.push_back(0);
    EXPECT_EQ(FramesOf(bytes), 100);
    EXPECT_EQ(left, "it is damaged");
}

TEST_F(DamagedRecording, ANewerVersionIsNamed)
{
    std::vector<uint8_t> bytes = file;
    bytes[8] = 9;
    EXPECT_EQ(FramesOf(bytes), -1);
    EXPECT_EQ(why, "it was made by a newer runner (its version is 9, this one reads 2)");
}

TEST_F(DamagedRecording, AVersionThatNeverWasMakesNoSense)
{
    std::vector<uint8_t> bytes = file;
    bytes[8] = 0;
    EXPECT_EQ(FramesOf(bytes), -1);
    EXPECT_EQ(why, "it is damaged: its version makes no sense");
}

TEST_F(DamagedRecording, AFileThatIsNotThereIsNamed)
{
    Recording read;
    EXPECT_FALSE(ReadRecording("/no/such/folder/it.rec", read, left, why));
    EXPECT_THAT(why, testing::HasSubstr("/no/such/folder/it.rec"));
}
} // namespace
