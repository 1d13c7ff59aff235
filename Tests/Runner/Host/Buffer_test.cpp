#include "Runner/Base/Bits.h"
#include "Runner/Host/Buffer.h"
#include "Runner/Host/Code.h"
#include "Runner/Host/Convert.h"
#include "Runner/Host/Memory.h"
#include "Runner/Host/Value.h"
#include "Tests/Support/Numbers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <climits>
#include <cmath>
#include <cstring>
#include <random>

namespace
{
using namespace Runner;
using testing::ElementsAre;

const double INF = std::numeric_limits<double>::infinity();

std::vector<int> Bytes(const TypedBuffer& buffer) { return {buffer.Data(), buffer.Data() + buffer.Size()}; }

int Write(TypedBuffer& buffer, eBuffer_Type type, RValue value) { return buffer.WriteTyped(type, value); }

std::vector<int> BytesOf(eBuffer_Type type, double number)
{
    TypedBuffer buffer;
    EXPECT_EQ(Write(buffer, type, MakeReal(number)), BUFFER_DONE);
    return Bytes(buffer);
}

TEST(HostBuffer, IntegersAreLittleEndianOfTheirWidth)
{
    EXPECT_THAT(BytesOf(eBuffer_U8, 200), ElementsAre(200));
    EXPECT_THAT(BytesOf(eBuffer_S8, -2), ElementsAre(0xFE));
    EXPECT_THAT(BytesOf(eBuffer_U16, 0x1234), ElementsAre(0x34, 0x12));
    EXPECT_THAT(BytesOf(eBuffer_S16, -2), ElementsAre(0xFE, 0xFF));
    EXPECT_THAT(BytesOf(eBuffer_U32, 0x89ABCDEF), ElementsAre(0xEF, 0xCD, 0xAB, 0x89));
    EXPECT_THAT(BytesOf(eBuffer_S32, -2), ElementsAre(0xFE, 0xFF, 0xFF, 0xFF));
    EXPECT_THAT(BytesOf(eBuffer_U64, 0x1p40 + 1), ElementsAre(1, 0, 0, 0, 0, 1, 0, 0));
}

TEST(HostBuffer, FloatsAreTheirBits)
{
    EXPECT_THAT(BytesOf(eBuffer_F16, 1.5), ElementsAre(0x00, 0x3E));
    EXPECT_THAT(BytesOf(eBuffer_F32, 1.0), ElementsAre(0, 0, 0x80, 0x3F));
    EXPECT_THAT(BytesOf(eBuffer_F32, 1e300), ElementsAre(0, 0, 0x80, 0x7F));
    EXPECT_THAT(BytesOf(eBuffer_D64, -2.0), ElementsAre(0, 0, 0, 0, 0, 0, 0, 0xC0));
}

TEST(HostBuffer, IntegersStayInRangeAndNotANumberIsZero)
{
    struct Case
    {
        eBuffer_Type type;
        double number, expected;
    };
    const Case cases[] = {{eBuffer_U8, 300, 255},
                          {eBuffer_U8, -3, 0},
                          {eBuffer_S8, 300, 127},
                          {eBuffer_S8, -300, -128},
                          {eBuffer_U16, 1e9, 65535},
                          {eBuffer_S16, -1e9, -32768},
                          {eBuffer_U32, 1e18, 4294967295.0},
                          {eBuffer_U32, -1, 0},
                          {eBuffer_S32, INF, 2147483647.0},
                          {eBuffer_S32, -INF, -2147483648.0},
                          {eBuffer_S32, NOT_A_NUMBER_64, 0},
                          {eBuffer_U8, NOT_A_NUMBER_64, 0},
                          {eBuffer_S32, -7.9, -7},
                          {eBuffer_Bool, 0.5, 0},
                          {eBuffer_Bool, 0.6, 1}};
    for (const Case& c : cases)
    {
        TypedBuffer buffer;
        Write(buffer, c.type, MakeReal(c.number));
        buffer.Seek(0);
        RValue value = MakeUndefined();
        EXPECT_EQ(buffer.ReadTyped(c.type, value), BUFFER_DONE);
        EXPECT_EQ(value.val, c.expected) << "type " << c.type << ", " << c.number;
        EXPECT_EQ(value.kind, c.type == eBuffer_Bool ? VALUE_BOOL : VALUE_REAL);
    }
}

TEST(HostBuffer, U64TakesRealsAndTheBitsOfInt64s)
{
    for (const int64_t number : {INT64_MIN, int64_t{-1}, int64_t{0}, INT64_MAX, (int64_t{1} << 53) + 1})
    {
        RValue value = MakeReal(0);
        value.kind = VALUE_INT64;
        value.v64 = number;
        TypedBuffer buffer;
        Write(buffer, eBuffer_U64, value);
        buffer.Seek(0);
        RValue back = MakeUndefined();
        buffer.ReadTyped(eBuffer_U64, back);
        EXPECT_EQ(back.kind, VALUE_INT64);
        EXPECT_EQ(back.v64, number);
    }
    EXPECT_THAT(BytesOf(eBuffer_U64, 1e30), ElementsAre(255, 255, 255, 255, 255, 255, 255, 255));
    EXPECT_THAT(BytesOf(eBuffer_U64, -1), ElementsAre(0, 0, 0, 0, 0, 0, 0, 0));
}

TEST(HostBuffer, FloatsComeBackBitForBit)
{
    for (const float number : {0.0f, -0.0f, 1.0f / 3, FLT_MAX, FLT_TRUE_MIN, -FLT_MIN / 2, HUGE_VALF, -HUGE_VALF})
    {
        TypedBuffer buffer;
        buffer.IBuffer::Write(number);
        buffer.Seek(0);
        const float back = buffer.ReadFloat();
        EXPECT_EQ(std::memcmp(&back, &number, sizeof(back)), 0) << number;
    }
    TypedBuffer buffer;
    buffer.IBuffer::Write(std::numeric_limits<float>::quiet_NaN());
    buffer.Seek(0);
    EXPECT_TRUE(std::isnan(buffer.ReadFloat()));
    EXPECT_FALSE(HasError());
}

TEST(HostBuffer, WrappersTravelAsFourByteItems)
{
    TypedBuffer buffer;
    buffer.IBuffer::Write(INT_MIN);
    buffer.IBuffer::Write(1.5f);
    buffer.IBuffer::Write(true);
    buffer.IBuffer::Write(false);
    EXPECT_THAT(Bytes(buffer), ElementsAre(0, 0, 0, 0x80, 0, 0, 0xC0, 0x3F, 1, 0, 0, 0, 0, 0, 0, 0));
    buffer.Seek(0);
    EXPECT_EQ(buffer.ReadS32(), INT_MIN);
    EXPECT_EQ(buffer.ReadFloat(), 1.5f);
    EXPECT_TRUE(buffer.ReadBool());
    EXPECT_FALSE(buffer.ReadBool());
}

// Another host's buffer: it notes what arrives and gives what it was told to.
class OtherBuffer final : public IBuffer
{
public:
    struct Item
    {
        eBuffer_Type type;
        uint32_t kind;
        double number;
    };

    int WriteTyped(eBuffer_Type type, RValue& value) override
    {
        written.push_back({type, value.kind, value.val});
        return BUFFER_DONE;
    }

    int ReadTyped(eBuffer_Type type, RValue& value) override
    {
        read.push_back(type);
        value = gives;
        return BUFFER_DONE;
    }

    std::vector<Item> written;
    std::vector<eBuffer_Type> read;
    RValue gives = MakeReal(0);
};

TEST(HostBuffer, WrappersOfAnotherBufferGoThroughItsOperations)
{
    OtherBuffer buffer;
    buffer.gives = MakeString("2.5"); // leaves the scratch value a string, which the next write must not find
    EXPECT_EQ(buffer.ReadS32(), 2);
    EXPECT_EQ(buffer.ReadFloat(), 2.5f);
    EXPECT_TRUE(buffer.ReadBool());
    EXPECT_THAT(buffer.read, ElementsAre(eBuffer_S32, eBuffer_F32, eBuffer_S32));
    buffer.IBuffer::Write(-7);
    buffer.IBuffer::Write(0.1f);
    buffer.IBuffer::Write(true);
    const OtherBuffer::Item expected[] = {
        {eBuffer_S32, VALUE_REAL, -7.0}, {eBuffer_F32, VALUE_REAL, 0.1f}, {eBuffer_S32, VALUE_REAL, 1.0}};
    ASSERT_EQ(buffer.written.size(), std::size(expected));
    for (size_t i = 0; i < std::size(expected); ++i)
    {
        EXPECT_EQ(buffer.written[i].type, expected[i].type) << i;
        EXPECT_EQ(buffer.written[i].kind, expected[i].kind) << i;
        EXPECT_EQ(buffer.written[i].number, expected[i].number) << i;
    }
    Release(buffer.gives);
}

TEST(HostBuffer, AnotherBufferCanStandBeforeOurs)
{
    class Before final : public IBuffer
    {
    public:
        int WriteTyped(eBuffer_Type type, RValue& value) override { return behind.WriteTyped(type, value); }
        int ReadTyped(eBuffer_Type type, RValue& value) override { return behind.ReadTyped(type, value); }

        TypedBuffer behind;
    } buffer;
    buffer.IBuffer::Write(5);
    buffer.IBuffer::Write(1.5f);
    buffer.behind.Seek(0);
    EXPECT_EQ(buffer.ReadS32(), 5);
    EXPECT_EQ(buffer.ReadFloat(), 1.5f);
    EXPECT_EQ(buffer.ReadFloat(), 0.0f);
    EXPECT_EQ(buffer.behind.Error(), BUFFER_PAST_END);
}

// ---- the wrappers give what the typed operations give ----

std::vector<uint32_t> WordsOfAllKinds()
{
    std::vector<uint32_t> words = {0x00000000, 0x80000000, 0x00000001, 0x807FFFFF, 0x00800000, 0x7F7FFFFF,
                                   0xFF7FFFFF, 0x7F800000, 0xFF800000, 0x7F800001, 0xFF812345, 0x7FBFFFFF,
                                   0x7FC00000, 0xFFC12345, 0xFFFFFFFF, 0x7FFFFFFF, 0x00000002, 0xFFFFFFFE};
    std::mt19937 random(20240611);
    for (int i = 0; i < 100000; ++i)
        words.push_back(static_cast<uint32_t>(random()) | (i % 4 == 0 ? 0x7F800000 : 0)); // a quarter is not a number
    return words;
}

TEST(HostBuffer, WrappersWriteWhatTheTypedOperationWrites)
{
    for (const uint32_t word : WordsOfAllKinds())
    {
        TypedBuffer wrapped, typed;
        wrapped.IBuffer::Write(0); // there is room from the second item on
        wrapped.IBuffer::Write(BitsOf<float>(word));
        wrapped.IBuffer::Write(BitsOf<int32_t>(word));
        Write(typed, eBuffer_S32, MakeReal(0));
        Write(typed, eBuffer_F32, MakeReal(static_cast<double>(BitsOf<float>(word))));
        Write(typed, eBuffer_S32, MakeReal(BitsOf<int32_t>(word)));
        ASSERT_EQ(Bytes(wrapped), Bytes(typed)) << std::hex << word;
    }
}

TEST(HostBuffer, WrappersReadWhatTheTypedOperationReads)
{
    for (const uint32_t word : WordsOfAllKinds())
    {
        TypedBuffer buffer;
        for (int i = 0; i < 3; ++i)
            buffer.WriteBytes(&word, sizeof word); // the tests' machines are little-endian, too
        const auto typed = [&](eBuffer_Type type)
        {
            RValue value = MakeUndefined();
            buffer.Seek(0);
            buffer.ReadTyped(type, value);
            return value.val;
        };
        const auto number = static_cast<float>(typed(eBuffer_F32));
        const double integer = typed(eBuffer_S32);
        buffer.Seek(0);
        ASSERT_EQ(BitsOf<uint32_t>(buffer.ReadFloat()), BitsOf<uint32_t>(number)) << std::hex << word;
        ASSERT_EQ(buffer.ReadS32(), integer) << std::hex << word;
        ASSERT_EQ(buffer.ReadBool(), integer > 0.5) << std::hex << word;
        ASSERT_EQ(buffer.Tell(), 12u);
    }
}

TEST(HostBuffer, ASignallingNaNTurnsQuietOnBothWays)
{
    constexpr uint32_t SIGNALLING = 0x7F812345, QUIET = 0x7FC12345;
    TypedBuffer buffer;
    buffer.IBuffer::Write(0);
    buffer.IBuffer::Write(BitsOf<float>(SIGNALLING));
    uint32_t written;
    std::memcpy(&written, buffer.Data() + 4, sizeof written);
    EXPECT_EQ(written, QUIET);
    buffer.Seek(0);
    buffer.WriteBytes(&SIGNALLING, sizeof SIGNALLING);
    buffer.Seek(0);
    EXPECT_EQ(BitsOf<uint32_t>(buffer.ReadFloat()), QUIET);
    EXPECT_EQ(buffer.Tell(), 4u);
    EXPECT_EQ(BitsOf<uint32_t>(buffer.ReadFloat()), QUIET); // and the one that was written
}

// ---- a walk beside bytes in a vector ----

struct Model
{
    std::vector<uint8_t> bytes;
    size_t position = 0;
    int error = BUFFER_DONE;

    void Write(const void* data, size_t size)
    {
        bytes.resize(std::max(bytes.size(), position + size));
        std::copy_n(static_cast<const uint8_t*>(data), size, bytes.data() + position);
        position += size;
    }

    int32_t ReadS32()
    {
        int32_t word = 0;
        if (bytes.size() - position < sizeof word)
        {
            position = bytes.size();
            error = BUFFER_PAST_END;
            return 0;
        }
        std::memcpy(&word, bytes.data() + position, sizeof word);
        position += sizeof word;
        return word;
    }

    bool Seek(size_t to)
    {
        if (to > bytes.size())
            return false;
        position = to;
        return true;
    }
};

void Step(std::mt19937& random, TypedBuffer& buffer, Model& model)
{
    const auto word = static_cast<int32_t>(random());
    const float number = static_cast<float>(word) / 256.0f;
    const size_t kind = random() % 1000;
    if (kind < 300)
    {
        buffer.IBuffer::Write(word);
        model.Write(&word, sizeof word);
    }
    else if (kind < 500)
    {
        buffer.IBuffer::Write(number);
        model.Write(&number, sizeof number);
    }
    else if (kind < 650)
    {
        buffer.WriteBytes(&word, kind % 4); // so that items stand at odd places
        model.Write(&word, kind % 4);
    }
    else if (kind < 800)
        EXPECT_EQ(buffer.ReadS32(), model.ReadS32());
    else if (kind < 997)
    {
        const size_t to = random() % (model.bytes.size() + 3);
        EXPECT_EQ(buffer.Seek(to), model.Seek(to));
    }
    else
    {
        buffer.Clear();
        model = Model();
    }
}

TEST(HostBuffer, KeepsBytesSizeAndPositionOnAnyWalk)
{
    constexpr unsigned SEED = 4711;
    SCOPED_TRACE(SEED);
    std::mt19937 random(SEED);
    TypedBuffer buffer;
    Model model;
    for (int step = 0; step < 30000; ++step)
    {
        Step(random, buffer, model);
        ASSERT_EQ(buffer.Tell(), model.position) << step;
        ASSERT_EQ(buffer.Size(), model.bytes.size()) << step;
        ASSERT_EQ(buffer.Error(), model.error) << step;
        ASSERT_EQ(Bytes(buffer), std::vector<int>(model.bytes.begin(), model.bytes.end())) << step;
    }
}

TEST(HostBuffer, ReadingPastTheEndGivesZeroAndAnErrorThatStays)
{
    TypedBuffer buffer;
    buffer.IBuffer::Write(0x01020304);
    buffer.Seek(2);
    EXPECT_EQ(buffer.ReadS32(), 0); // two bytes are left
    EXPECT_EQ(buffer.Error(), BUFFER_PAST_END);
    EXPECT_EQ(buffer.Tell(), 4u); // so that nothing reads the rest as something else
    buffer.Seek(0);
    EXPECT_EQ(buffer.ReadS32(), 0x01020304);
    EXPECT_EQ(buffer.Error(), BUFFER_PAST_END);
    buffer.ClearError();
    EXPECT_EQ(buffer.Error(), BUFFER_DONE);
    EXPECT_EQ(buffer.ReadFloat(), 0.0f);
    EXPECT_FALSE(buffer.ReadBool());
    RValue value = MakeReal(9);
    EXPECT_EQ(buffer.ReadTyped(eBuffer_D64, value), BUFFER_PAST_END);
    EXPECT_EQ(value.val, 0.0);
}

TEST(HostBuffer, SeekStaysInside)
{
    TypedBuffer buffer;
    EXPECT_TRUE(buffer.Seek(0));
    EXPECT_FALSE(buffer.Seek(1));
    buffer.IBuffer::Write(1);
    EXPECT_TRUE(buffer.Seek(4));
    EXPECT_FALSE(buffer.Seek(5));
    EXPECT_EQ(buffer.Tell(), 4u);
}

TEST(HostBuffer, WritingInTheMiddleOverwritesAndThenAppends)
{
    TypedBuffer buffer;
    buffer.IBuffer::Write(1);
    buffer.Seek(2);
    buffer.IBuffer::Write(-1);
    EXPECT_THAT(Bytes(buffer), ElementsAre(1, 0, 255, 255, 255, 255));
    EXPECT_EQ(buffer.Tell(), 6u);
}

TEST(HostBuffer, StringsEndWithAZeroByteAndTextsDoNot)
{
    TypedBuffer buffer;
    RValue text = MakeString(std::string("ab\0c", 4));
    EXPECT_EQ(buffer.WriteTyped(eBuffer_String, text), BUFFER_DONE);
    EXPECT_EQ(buffer.WriteTyped(eBuffer_Text, text), BUFFER_DONE);
    EXPECT_THAT(Bytes(buffer), ElementsAre('a', 'b', 0, 'a', 'b', 0, 'c'));
    buffer.Seek(0);
    RValue back = MakeReal(0);
    EXPECT_EQ(buffer.ReadTyped(eBuffer_String, back), BUFFER_DONE);
    EXPECT_STREQ(back.GetString(), "ab");
    EXPECT_EQ(buffer.Tell(), 3u);
    buffer.Seek(6);
    EXPECT_EQ(buffer.ReadTyped(eBuffer_Text, back), BUFFER_DONE); // releases the string before
    EXPECT_STREQ(back.GetString(), "c");
    EXPECT_EQ(buffer.Error(), BUFFER_DONE);
    Release(back);
    Release(text);
}

TEST(HostBuffer, AStringWithoutItsEndIsPastTheEnd)
{
    TypedBuffer buffer;
    buffer.WriteBytes("abc", 3);
    buffer.Seek(0);
    RValue back = MakeReal(0);
    EXPECT_EQ(buffer.ReadTyped(eBuffer_String, back), BUFFER_PAST_END);
    EXPECT_STREQ(back.GetString(), "");
    EXPECT_EQ(buffer.Tell(), 3u);
    EXPECT_EQ(buffer.ReadTyped(eBuffer_String, back), BUFFER_PAST_END); // nothing left at all
    Release(back);
    TypedBuffer empty;
    EXPECT_EQ(empty.ReadTyped(eBuffer_String, back), BUFFER_PAST_END);
    Release(back);
    EXPECT_EQ(empty.ReadTyped(eBuffer_Text, back), BUFFER_DONE);
    Release(back);
}

TEST(HostBuffer, WhatIsNoTextIsRefusedAsText)
{
    TypedBuffer buffer;
    EXPECT_EQ(Write(buffer, eBuffer_String, MakeReal(1)), BUFFER_BAD_VALUE);
    RValue large = MakeString(std::string(BUFFER_TEXT_MAX + 1, 'x'));
    EXPECT_EQ(buffer.WriteTyped(eBuffer_String, large), BUFFER_BAD_VALUE);
    Release(large);
    EXPECT_EQ(buffer.Size(), 0u);
    EXPECT_EQ(buffer.Error(), BUFFER_BAD_VALUE);
}

TEST(HostBuffer, TypesThatDoNotExistAreRefused)
{
    TypedBuffer buffer;
    buffer.IBuffer::Write(1);
    buffer.Seek(0);
    RValue value = MakeReal(5);
    for (const int type : {0, 14})
    {
        EXPECT_EQ(buffer.WriteTyped(static_cast<eBuffer_Type>(type), value), BUFFER_BAD_TYPE);
        EXPECT_EQ(buffer.ReadTyped(static_cast<eBuffer_Type>(type), value), BUFFER_BAD_TYPE);
    }
    EXPECT_EQ(value.val, 5.0);
    EXPECT_EQ(buffer.Tell(), 0u);
}

TEST(HostBuffer, AValueThatIsNoNumberIsWrittenAsZeroAndReported)
{
    TakeError();
    TypedBuffer buffer;
    EXPECT_EQ(Write(buffer, eBuffer_S32, MakeUndefined()), BUFFER_DONE);
    EXPECT_THAT(Bytes(buffer), ElementsAre(0, 0, 0, 0));
    EXPECT_EQ(TakeError(), "expected a number, got nil");
}

TEST(HostBuffer, ManyItemsTakeFewAllocations)
{
    TypedBuffer buffer;
    const size_t before = CurrentMemoryUse().allocations;
    for (int i = 0; i < 100000; ++i)
        buffer.IBuffer::Write(i);
    EXPECT_LE(CurrentMemoryUse().allocations - before, 12u); // 256 bytes doubled eleven times hold 400,000
    buffer.Seek(0);
    for (int i = 0; i < 100000; ++i)
        ASSERT_EQ(buffer.ReadS32(), i);
}

TEST(HostBuffer, WithoutMemoryNothingIsWritten)
{
    TypedBuffer buffer;
    FailAllocationAfter(0);
    EXPECT_EQ(Write(buffer, eBuffer_S32, MakeReal(1)), BUFFER_NO_MEMORY);
    EXPECT_EQ(buffer.Size(), 0u);
    EXPECT_EQ(buffer.Tell(), 0u);
    EXPECT_EQ(Write(buffer, eBuffer_S32, MakeReal(1)), BUFFER_DONE);
    EXPECT_EQ(buffer.Error(), BUFFER_NO_MEMORY);
    EXPECT_EQ(buffer.Size(), 4u);
}

TEST(HostBuffer, WrappersWithoutMemoryWriteNothingAndKeepWhatIsThere)
{
    TypedBuffer buffer;
    for (int i = 0; i < 64; ++i)
        buffer.IBuffer::Write(i); // the first memory is full
    FailAllocationAfter(0);
    buffer.IBuffer::Write(1.0f);
    EXPECT_EQ(buffer.Error(), BUFFER_NO_MEMORY);
    EXPECT_EQ(buffer.Size(), 256u);
    EXPECT_EQ(buffer.Tell(), 256u);
    buffer.IBuffer::Write(1.0f);
    EXPECT_EQ(buffer.Size(), 260u);
    buffer.Seek(252);
    EXPECT_EQ(buffer.ReadS32(), 63);
    EXPECT_EQ(buffer.ReadFloat(), 1.0f);
}

TEST(HostBuffer, BytesGoInAndOut)
{
    TypedBuffer buffer;
    EXPECT_EQ(buffer.WriteBytes("abcdef", 6), BUFFER_DONE);
    EXPECT_EQ(buffer.WriteBytes(nullptr, 0), BUFFER_DONE);
    EXPECT_EQ(buffer.WriteBytes("x", SIZE_MAX), BUFFER_NO_MEMORY);
    buffer.Seek(4);
    char two[2];
    EXPECT_EQ(buffer.ReadBytes(two, 2), BUFFER_DONE);
    EXPECT_EQ(std::string(two, 2), "ef");
    EXPECT_EQ(buffer.ReadBytes(two, 2), BUFFER_PAST_END);
    EXPECT_EQ(std::string(two, 2), std::string(2, '\0'));
}

TEST(HostBuffer, AClearedBufferIsAsNew)
{
    TypedBuffer buffer;
    buffer.IBuffer::Write(1);
    buffer.ReadS32();
    buffer.Clear();
    EXPECT_EQ(buffer.Size(), 0u);
    EXPECT_EQ(buffer.Tell(), 0u);
    EXPECT_EQ(buffer.Error(), BUFFER_DONE);
}
} // namespace
