#pragma once
// Camera state streams, written by hand byte by byte.

#include "Tests/Module/Manager_Fixture.h"

#include <cstdint>
#include <cstring>
#include <gmock/gmock.h>
#include <utility>

namespace Recording
{
constexpr size_t RECORD_BYTES = 448;
constexpr size_t RECORD_ITEMS = 112;

class Stream
{
public:
    Stream& Word(uint32_t word)
    {
        for (unsigned shift = 0; shift < 32; shift += 8)
            bytes.push_back(static_cast<uint8_t>(word >> shift));
        return *this;
    }
    Stream& S32(int32_t number) { return Word(static_cast<uint32_t>(number)); }
    Stream& F32(float number)
    {
        uint32_t word;
        std::memcpy(&word, &number, sizeof word);
        return Word(word);
    }

    std::vector<uint8_t> bytes;
};

// What a record says, in its order. Every field differs from every other and from a new camera's.
struct Saved
{
    int32_t id = 0;
    float firstElement = 100.0f; // of 96, each 0.5 larger than the one before
    float view[9] = {-1.5f, 2.5f, 640.25f, 480.75f, -3.0f, 4.0f, 32.5f, 33.5f, 271.0f};
    int32_t target = 100017;
    int32_t scripts[3] = {7, 8, 9}; // begin, end, update
    int32_t is2D = 0;
    int32_t isDirty = 1;

    void AppendTo(Stream& stream) const
    {
        stream.S32(id);
        for (int i = 0; i < 96; ++i)
            stream.F32(firstElement + 0.5f * static_cast<float>(i));
        for (float value : view)
            stream.F32(value);
        stream.S32(target);
        for (int32_t script : scripts)
            stream.S32(script);
        stream.S32(is2D).S32(isDirty);
    }

    std::vector<uint8_t> Bytes() const
    {
        Stream stream;
        AppendTo(stream);
        return stream.bytes;
    }
};

inline Saved SavedAs(int32_t id)
{
    Saved saved;
    saved.id = id;
    return saved;
}

// The stream of a manager whose slots hold these cameras; null for an empty slot.
inline Stream StreamOf(const std::vector<const Saved*>& slots)
{
    Stream stream;
    stream.S32(static_cast<int32_t>(slots.size()));
    for (const Saved* slot : slots)
    {
        stream.S32(slot != nullptr ? 1 : 0);
        if (slot != nullptr)
            slot->AppendTo(stream);
    }
    return stream;
}

class StateTest : public ManagerTest
{
protected:
    static std::vector<uint8_t> BytesOf(CCamera& camera)
    {
        Buffer buffer;
        camera.Serialize(&buffer);
        return buffer.bytes;
    }

    static std::vector<uint8_t> ManagerBytes()
    {
        Buffer buffer;
        g_CM.Serialize(&buffer);
        return buffer.bytes;
    }

    // Reads a manager stream; the bytes that were consumed.
    static size_t Load(std::vector<uint8_t> bytes)
    {
        Buffer buffer;
        buffer.bytes = std::move(bytes);
        EXPECT_TRUE(g_CM.DeSerialize(&buffer));
        return buffer.position;
    }
    static size_t Load(const Stream& stream) { return Load(stream.bytes); }

    static void ReadRecord(CCamera& camera, const Saved& saved)
    {
        Buffer buffer;
        buffer.bytes = saved.Bytes();
        camera.DeSerialize(&buffer);
        EXPECT_EQ(buffer.position, RECORD_BYTES);
    }
};
} // namespace Recording
