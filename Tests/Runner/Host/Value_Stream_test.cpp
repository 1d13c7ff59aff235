#include "Files/Object/Object_Base.h"
#include "Runner/Base/Random.h"
#include "Runner/Host/Buffer.h"
#include "Runner/Host/Memory.h"
#include "Runner/Host/Value.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

namespace
{
using namespace Runner;

class HostValueStream : public testing::Test
{
protected:
    void TearDown() override { EXPECT_EQ(CurrentMemoryUse().blocks, m_blocks) << "blocks leaked"; }
    size_t m_blocks = CurrentMemoryUse().blocks;
};

RValue ThroughStream(const RValue& value)
{
    TypedBuffer buffer;
    value.Serialise(&buffer);
    buffer.Seek(0);
    RValue back = MakeUndefined();
    back.DeSerialise(&buffer);
    EXPECT_EQ(buffer.Tell(), buffer.Size());
    EXPECT_EQ(buffer.Error(), BUFFER_DONE);
    return back;
}

bool Same(const RValue& a, const RValue& b)
{
    if (a.kind != b.kind)
        return false;
    switch (a.kind)
    {
    case VALUE_STRING:
        return a.pRefString->m_size == b.pRefString->m_size &&
               std::memcmp(a.pRefString->m_thing, b.pRefString->m_thing, static_cast<size_t>(a.pRefString->m_size)) ==
                   0;
    case VALUE_ARRAY:
    {
        bool same = a.pRefArray->m_length == b.pRefArray->m_length;
        for (int32_t i = 0; same && i < a.pRefArray->m_length; ++i)
            same = Same(a.pRefArray->m_array[i], b.pRefArray->m_array[i]);
        return same;
    }
    case VALUE_INT32: return a.v32 == b.v32;
    case VALUE_UNDEFINED: return true;
    default: return a.v64 == b.v64;
    }
}

RValue Integer(uint32_t kind, int64_t number)
{
    RValue value = MakeReal(0);
    value.kind = kind;
    if (kind == VALUE_INT32)
        value.v32 = static_cast<int32_t>(number);
    else
        value.v64 = number;
    return value;
}

// One of everything, arrays in arrays included.
RValue Sample()
{
    RValue inner = MakeArray(3);
    inner.pRefArray->m_array[0] = MakeString(std::string("t\0xt", 4));
    inner.pRefArray->m_array[1] = MakeReal(-0.0);
    RValue outer = MakeArray(7);
    RValue* elements = outer.pRefArray->m_array;
    elements[0] = MakeReal(1.0 / 3);
    elements[1] = MakeBool(true);
    elements[2] = Integer(VALUE_INT32, INT32_MIN);
    elements[3] = Integer(VALUE_INT64, INT64_MIN + 1);
    elements[4] = inner;
    elements[5] = MakeString("");
    elements[6] = MakeArray(0);
    return outer;
}

TEST_F(HostValueStream, EverySavedKindComesBack)
{
    RValue sample = Sample();
    RValue back = ThroughStream(sample);
    EXPECT_TRUE(Same(sample, back));
    Release(sample);
    Release(back);
    EXPECT_TRUE(std::isnan(ThroughStream(MakeReal(NAN)).val));
}

TEST_F(HostValueStream, TheBytesAreKindThenContents)
{
    TypedBuffer buffer;
    RValue text = MakeString("hi");
    text.Serialise(&buffer);
    Integer(VALUE_INT32, -2).Serialise(&buffer);
    MakeUndefined().Serialise(&buffer);
    Release(text);
    const std::vector<int> bytes(buffer.Data(), buffer.Data() + buffer.Size());
    EXPECT_THAT(bytes, testing::ElementsAre(1, 0, 0, 0, 2, 0, 0, 0, 'h', 'i',   //
                                            7, 0, 0, 0, 0xFE, 0xFF, 0xFF, 0xFF, //
                                            5, 0, 0, 0));
}

TEST_F(HostValueStream, WhatBelongsToTheRunningGameIsSavedAsUndefined)
{
    KvObjectBase object(0, 0);
    EXPECT_EQ(ThroughStream(MakeObject(&object)).kind, VALUE_UNDEFINED);
    RValue pointer = MakeUndefined();
    pointer.kind = VALUE_PTR;
    pointer.ptr = &object;
    EXPECT_EQ(ThroughStream(pointer).kind, VALUE_UNDEFINED);
    EXPECT_EQ(ThroughStream(Integer(VALUE_UNSET, 0)).kind, VALUE_UNDEFINED);
}

TEST_F(HostValueStream, ReadingReleasesWhatWasThere)
{
    TypedBuffer buffer;
    MakeReal(4).Serialise(&buffer);
    buffer.Seek(0);
    RValue value = MakeString("old");
    value.DeSerialise(&buffer);
    EXPECT_EQ(value.val, 4.0);
}

TEST_F(HostValueStream, ArraysAreSavedAsDeepAsTheLimit)
{
    RValue value = MakeReal(7);
    for (int depth = 0; depth < VALUE_DEPTH_MAX + 5; ++depth)
    {
        RValue outer = MakeArray(1);
        outer.pRefArray->m_array[0] = value;
        value = outer;
    }
    RValue back = ThroughStream(value);
    int depth = 0;
    const RValue* level = &back;
    for (; level->kind == VALUE_ARRAY; level = &level->pRefArray->m_array[0])
        ++depth;
    EXPECT_EQ(depth, VALUE_DEPTH_MAX);
    EXPECT_EQ(level->kind, VALUE_UNDEFINED);
    Release(value);
    Release(back);
}

TEST_F(HostValueStream, ATruncatedStreamGivesUndefined)
{
    RValue sample = Sample();
    TypedBuffer whole;
    sample.Serialise(&whole);
    Release(sample);
    for (size_t size = 0; size < whole.Size(); ++size)
    {
        TypedBuffer part;
        part.WriteBytes(whole.Data(), size);
        part.Seek(0);
        RValue value = MakeReal(1);
        value.DeSerialise(&part);
        EXPECT_EQ(value.kind, VALUE_UNDEFINED) << size;
        Release(value);
    }
}

TEST_F(HostValueStream, AHugeCountCostsNoMemory)
{
    for (const int32_t count : {4 * 1024 * 1024, INT32_MAX, -1})
        for (const int32_t kind : {1, 2})
        {
            TypedBuffer buffer;
            for (int i = 0; i < 10; ++i) // arrays in arrays, each with that count
            {
                buffer.IBuffer::Write(kind);
                buffer.IBuffer::Write(count);
            }
            buffer.Seek(0);
            const size_t before = CurrentMemoryUse().allocations;
            RValue value = MakeUndefined();
            value.DeSerialise(&buffer);
            EXPECT_EQ(value.kind, VALUE_UNDEFINED);
            EXPECT_EQ(CurrentMemoryUse().allocations, before);
        }
}

TEST_F(HostValueStream, DamagedStreamsAreSafe)
{
    RValue sample = Sample();
    TypedBuffer whole;
    sample.Serialise(&whole);
    Release(sample);
    Random random(11);
    for (int round = 0; round < 20000; ++round)
    {
        std::vector<uint8_t> bytes(whole.Data(), whole.Data() + whole.Size());
        for (int changes = random.Range(1, 4); changes > 0; --changes)
            bytes[static_cast<size_t>(random.Range(0, static_cast<int>(bytes.size()) - 1))] =
                static_cast<uint8_t>(random.Range(0, 255));
        TypedBuffer buffer;
        buffer.WriteBytes(bytes.data(), bytes.size());
        buffer.Seek(0);
        RValue value = MakeUndefined();
        value.DeSerialise(&buffer);
        Release(value);
    }
}

TEST_F(HostValueStream, WithoutMemoryAnArrayIsUndefined)
{
    RValue sample = Sample();
    TypedBuffer whole;
    sample.Serialise(&whole);
    Release(sample);
    for (int refused = 0; refused < 12; ++refused)
    {
        whole.Seek(0);
        RValue value = MakeUndefined();
        FailAllocationAfter(refused);
        value.DeSerialise(&whole);
        FailAllocationAfter(-1);
        Release(value);
    }
}
} // namespace
