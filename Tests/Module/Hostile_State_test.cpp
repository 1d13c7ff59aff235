// Damaged streams: cut at every length, each byte changed, and many at random. Whatever comes out, no access is wrong,
// the registry keeps its rules, and no block is lost (the fixture counts them).
#include "Tests/Module/State_Fixture.h"

#include <cstdlib>
#include <random>

namespace
{
using namespace Recording;

class HostileState : public StateTest
{
protected:
    void SetUp() override
    {
        StateTest::SetUp();
        RefuseAbove(64 * 1024); // a memory cap: identifiers up to about 8000 find a place
    }

    // Three cameras, an empty slot between them; nothing but numbers differs from a stream of a real game.
    static std::vector<uint8_t> ThreeCameras()
    {
        const Saved first = SavedAs(0);
        const Saved second = SavedAs(2);
        const Saved third = SavedAs(3);
        return StreamOf({&first, nullptr, &second, &third}).bytes;
    }

    // A reader cannot see the end of a buffer and asks as often as the count says. Counts are kept low enough to wait.
    static void BoundTheCount(std::vector<uint8_t>& bytes)
    {
        if (bytes.size() >= 4 && bytes[3] < 0x80)
            bytes[2] = bytes[3] = 0;
    }

    // Loads over two cameras that are already there, and saves what came out.
    static void LoadAndSave(const std::vector<uint8_t>& bytes)
    {
        RenewManager();
        CreateCameras(2);
        Load(bytes);
        const char* rule = g_CM.Validate();
        ASSERT_EQ(rule, nullptr) << rule;
        ManagerBytes();
        ASSERT_EQ(LiveBlocks(), 2 + CamerasInTable());
    }

    static size_t CamerasInTable()
    {
        size_t cameras = 0;
        for (int slot = 0; slot < g_CM.m_cameraListSize; ++slot)
            cameras += g_CM.m_cameras[slot] != nullptr;
        return cameras;
    }
};

TEST_F(HostileState, EveryTruncationLoadsWhatIsThere)
{
    const std::vector<uint8_t> whole = ThreeCameras();
    for (size_t length = 0; length <= whole.size(); ++length)
    {
        LoadAndSave({whole.begin(), whole.begin() + static_cast<ptrdiff_t>(length)});
        ASSERT_FALSE(HasFatalFailure()) << length << " bytes";
    }
}

TEST_F(HostileState, ATruncationIsReadToTheEndThatItsCountPromises)
{
    std::vector<uint8_t> bytes = ThreeCameras();
    bytes.resize(8); // the count, the first flag
    Buffer buffer;
    buffer.bytes = bytes;
    g_CM.DeSerialize(&buffer);
    EXPECT_EQ(buffer.reads, 1 + 1 + RECORD_ITEMS + 3);
    EXPECT_NE(g_CM.GetCamera(0), nullptr); // a record of zeros
}

TEST_F(HostileState, EverySingleByteMayBeAnything)
{
    const std::vector<uint8_t> whole = ThreeCameras();
    for (size_t at = 0; at < whole.size(); ++at)
        for (const unsigned change : {0x01u, 0x02u, 0x04u, 0x08u, 0x10u, 0x20u, 0x40u, 0x80u, 0xFFu})
        {
            std::vector<uint8_t> bytes = whole;
            bytes[at] = static_cast<uint8_t>(bytes[at] ^ change);
            BoundTheCount(bytes);
            LoadAndSave(bytes);
            ASSERT_FALSE(HasFatalFailure()) << "byte " << at << " changed by " << change;
        }
}

// How many random streams are tried: HOSTILE_STREAMS in the environment, or what the suite has time for.
long StreamsAskedFor()
{
    const char* text = std::getenv("HOSTILE_STREAMS");
    return text != nullptr ? std::atol(text) : 200000;
}

// The same three cameras with 1 to 8 words or bytes replaced, cut or not; the generator is the same every time.
TEST_F(HostileState, RandomStreamsByTheHundredThousand)
{
    const std::vector<uint8_t> whole = ThreeCameras();
    const uint8_t favourites[] = {0x00, 0x01, 0x02, 0x03, 0x04, 0x7F, 0x80, 0xFF, 0xC0, 0x3F};
    std::mt19937 random(20240607);
    const auto below = [&](size_t limit) { return static_cast<size_t>(random()) % limit; };
    for (long round = 0, rounds = StreamsAskedFor(); round < rounds; ++round)
    {
        std::vector<uint8_t> bytes = whole;
        for (size_t changes = 1 + below(8); changes > 0; --changes)
        {
            const size_t at = below(2) == 0 ? below(bytes.size()) : 4 * below(bytes.size() / 4);
            bytes[at] = below(2) == 0 ? static_cast<uint8_t>(random()) : favourites[below(sizeof favourites)];
        }
        if (below(4) == 0)
            bytes.resize(below(bytes.size()));
        BoundTheCount(bytes);
        LoadAndSave(bytes);
        ASSERT_FALSE(HasFatalFailure()) << "round " << round;
    }
}

TEST_F(HostileState, EveryRequestMayBeRefused)
{
    const std::vector<uint8_t> whole = ThreeCameras();
    for (int nth = 1; nth <= 8; ++nth)
    {
        RenewManager();
        CreateCameras(2);
        RefuseRequest(nth);
        Load(whole);
        RefuseRequest(0);
        ASSERT_EQ(g_CM.Validate(), nullptr) << nth;
        ASSERT_EQ(LiveBlocks(), 2 + CamerasInTable()) << nth;
    }
}

TEST_F(HostileState, NoMemoryAtAllLeavesTheOldCameras)
{
    CreateCameras(2);
    RefuseAbove(0);
    Load(ThreeCameras());
    EXPECT_EQ(Slots(), (std::vector<int>{-2, 1}));
}
} // namespace
