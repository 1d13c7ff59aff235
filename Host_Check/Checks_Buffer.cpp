// Files/Buffer: the stream of saved cameras, and the wrappers around its two operations.

#include "Host_Check/Check.h"
#include "Host_Check/Optional_Names.h"

#include <cstring>
#include <limits>

namespace HostCheck
{
namespace
{

constexpr char HEADER[] = "Files/Buffer/Buffer.h";
constexpr char WRAPPERS[] = "The wrappers pass through one scratch value, as reals; booleans travel as eBuffer_S32.";
constexpr char SEQUENTIAL[] = "A sequential buffer of typed items, little-endian, without tags or padding.";
constexpr char DONE[] = "0 when done, else the host's error code";

// A buffer of ours: notes what the wrappers ask for, and answers one number.
class Listening final : public IBuffer
{
public:
    int WriteTyped(eBuffer_Type asked, RValue& value) override
    {
        Note(asked, value);
        return 0;
    }
    int ReadTyped(eBuffer_Type asked, RValue& value) override
    {
        Note(asked, value);
        value = Real(answer);
        return 0;
    }

    double answer = 0.0;
    int calls = 0;
    eBuffer_Type type = eBuffer_None;
    RValue seen = {};
    const RValue* places[2] = {nullptr, nullptr}; // of the last value and of the one before

private:
    void Note(eBuffer_Type asked, const RValue& value)
    {
        ++calls;
        type = asked;
        seen = value;
        places[1] = places[0];
        places[0] = &value;
    }
};

void ExpectSeen(Trial& trial, const Listening& buffer, eBuffer_Type type, double number, const char* what)
{
    trial.Expect(buffer.calls == 1, "%s makes %d calls", what, buffer.calls);
    trial.Expect(buffer.type == type, "%s asks for type %d, not %d", what, static_cast<int>(buffer.type),
                 static_cast<int>(type));
    trial.Expect(KvKind(buffer.seen) == VALUE_REAL && buffer.seen.val == number,
                 "%s passes a value of kind %u, %g as a real, not the real %g", what,
                 static_cast<unsigned>(KvKind(buffer.seen)), buffer.seen.val, number);
}

void WritersPassReals(Trial& trial)
{
    Listening integer, single, truth, untruth;
    integer.Write(-1234567);
    ExpectSeen(trial, integer, eBuffer_S32, -1234567, "Write(-1234567)");
    single.Write(0.1f);
    ExpectSeen(trial, single, eBuffer_F32, static_cast<double>(0.1f), "Write(0.1f)");
    truth.Write(true);
    ExpectSeen(trial, truth, eBuffer_S32, 1, "Write(true)");
    untruth.Write(false);
    ExpectSeen(trial, untruth, eBuffer_S32, 0, "Write(false)");
}

void ExpectRead(Trial& trial, const Listening& buffer, eBuffer_Type type, double got, const char* what)
{
    trial.Expect(buffer.calls == 1 && buffer.type == type, "%s makes %d calls, the last with type %d, not %d", what,
                 buffer.calls, static_cast<int>(buffer.type), static_cast<int>(type));
    trial.Expect(got == buffer.answer, "%s answers %g of the real %g", what, got, buffer.answer);
}

void ReadersTakeReals(Trial& trial)
{
    Listening integer, single, truth, untruth;
    integer.answer = -7654321;
    const double number = integer.ReadS32();
    ExpectRead(trial, integer, eBuffer_S32, number, "ReadS32");
    single.answer = 0.375;
    const double fraction = static_cast<double>(single.ReadFloat());
    ExpectRead(trial, single, eBuffer_F32, fraction, "ReadFloat");
    truth.answer = 1;
    const double isTrue = truth.ReadBool() ? 1 : 0;
    ExpectRead(trial, truth, eBuffer_S32, isTrue, "ReadBool of 1");
    const double isFalse = untruth.ReadBool() ? 1 : 0;
    ExpectRead(trial, untruth, eBuffer_S32, isFalse, "ReadBool of 0");
}

void OneScratchValueServesAll(Trial& trial)
{
    Listening buffer;
    buffer.Write(1);
    buffer.Write(2.0f);
    trial.Expect(buffer.places[0] == buffer.places[1], "two writes pass two values");
    buffer.ReadS32();
    trial.Expect(buffer.places[0] == buffer.places[1], "a write and a read pass two values");
}

// The host's buffer of a saved state, closed with the scope.
class Opened
{
public:
    explicit Opened(Trial& trial) : m_trial(trial), m_buffer(trial.hooks.buffer(nullptr, BufferStep::Open))
    {
        trial.Expect(m_buffer != nullptr, "the hook buffer could open none");
    }
    ~Opened()
    {
        if (m_buffer != nullptr)
            m_trial.hooks.buffer(m_buffer, BufferStep::Close);
    }
    Opened(const Opened&) = delete;
    Opened& operator=(const Opened&) = delete;

    bool IsOpen() const { return m_buffer != nullptr; }
    IBuffer* operator->() const { return m_buffer; }
    IBuffer* Get() const { return m_buffer; }
    void Rewind() { m_buffer = m_trial.hooks.buffer(m_buffer, BufferStep::Rewind); }

private:
    Trial& m_trial;
    IBuffer* m_buffer;
};

void WhatIsWrittenIsRead(Trial& trial)
{
    constexpr int INTEGERS[] = {0, 1, -1, 16000, INT32_MAX, INT32_MIN};
    constexpr float SINGLES[] = {0.0f, -0.0f, 1.5f, 479.99997f, 1e-45f, 3.4028235e38f};
    Opened buffer(trial);
    if (!buffer.IsOpen())
        return;
    for (const int number : INTEGERS)
        buffer->Write(number);
    for (const float number : SINGLES)
        buffer->Write(number);
    buffer->Write(true);
    buffer->Write(false);
    buffer.Rewind();
    for (const int number : INTEGERS)
    {
        const int got = buffer->ReadS32();
        trial.Expect(got == number, "%d was written and %d is read", number, got);
    }
    for (const float number : SINGLES)
    {
        const float got = buffer->ReadFloat();
        trial.Expect(std::memcmp(&got, &number, sizeof got) == 0, "%.9g was written and %.9g is read",
                     static_cast<double>(number), static_cast<double>(got));
    }
    trial.Expect(buffer->ReadBool(), "true was written and false is read");
    trial.Expect(!buffer->ReadBool(), "false was written and true is read");
}

void EndlessNumbersPass(Trial& trial)
{
    Opened buffer(trial);
    if (!buffer.IsOpen())
        return;
    const float unbounded = std::numeric_limits<float>::infinity();
    buffer->Write(unbounded);
    buffer->Write(-unbounded);
    buffer.Rewind();
    const float high = buffer->ReadFloat(), low = buffer->ReadFloat();
    trial.Expect(high == unbounded && low == -unbounded, "infinities are read as %g and %g", static_cast<double>(high),
                 static_cast<double>(low));
}

void PastTheEndIsZero(Trial& trial)
{
    Opened buffer(trial);
    if (!buffer.IsOpen())
        return;
    buffer->Write(77);
    buffer.Rewind();
    buffer->ReadS32();
    const int integer = buffer->ReadS32();
    const float single = buffer->ReadFloat();
    const bool truth = buffer->ReadBool();
    trial.Expect(integer == 0, "ReadS32 past the end answers %d", integer);
    trial.Expect(single == 0.0f, "ReadFloat past the end answers %g", static_cast<double>(single));
    trial.Expect(!truth, "ReadBool past the end answers true");
}

void DoneIsZero(Trial& trial)
{
    Opened buffer(trial);
    if (!buffer.IsOpen())
        return;
    for (const eBuffer_Type type : {eBuffer_S32, eBuffer_F32})
    {
        RValue value = Real(5);
        const int error = buffer->WriteTyped(type, value);
        trial.Expect(error == 0, "WriteTyped of type %d answers %d", static_cast<int>(type), error);
    }
    buffer.Rewind();
    for (const eBuffer_Type type : {eBuffer_S32, eBuffer_F32})
    {
        RValue value = Real(0);
        const int error = buffer->ReadTyped(type, value);
        trial.Expect(error == 0, "ReadTyped of type %d answers %d", static_cast<int>(type), error);
        trial.Expect(KvGetReal(&value, 0) == 5, "ReadTyped of type %d reads %g where 5 was written",
                     static_cast<int>(type), KvGetReal(&value, 0));
    }
}

// Bytes of a 32-bit item, seen as items of one byte: for hosts that have those.
void ItemsAreLittleEndian(Trial& trial)
{
    Opened buffer(trial);
    if (!buffer.IsOpen())
        return;
    buffer->Write(0x04030201);
    buffer->Write(1.0f); // 0x3F800000
    buffer.Rewind();
    constexpr int BYTES[] = {1, 2, 3, 4, 0, 0, 0x80, 0x3F};
    for (int i = 0; i < 8; ++i)
    {
        RValue value = Real(0);
        if (buffer->ReadTyped(eBuffer_U8, value) != 0)
            return trial.NotTested("ReadTyped has no items of one byte (eBuffer_U8)");
        trial.Expect(KvGetInt32(&value, 0) == BYTES[i], "byte %d of a saved state is %d, not %d", i,
                     static_cast<int>(KvGetInt32(&value, 0)), BYTES[i]);
    }
}

void CamerasComeBack(Trial& trial)
{
    Opened buffer(trial);
    CCamera* camera = buffer.IsOpen() ? g_CM.CreateCamera() : nullptr;
    if (camera == nullptr)
        return;
    const int id = camera->GetID();
    camera->m_viewX = 123.25f;
    camera->m_viewWidth = 640.0f;
    const float x = camera->m_viewX, width = camera->m_viewWidth;
    g_CM.Serialize(buffer.Get());
    buffer.Rewind();
    g_CM.DeSerialize(buffer.Get());
    camera = g_CM.GetCamera(id);
    if (!trial.Expect(camera != nullptr, "a saved camera %d is not there after loading", id))
        return;
    trial.Expect(camera->m_viewX == x && camera->m_viewWidth == width,
                 "a camera saved at x %g with width %g has %g and %g", static_cast<double>(x),
                 static_cast<double>(width), static_cast<double>(camera->m_viewX),
                 static_cast<double>(camera->m_viewWidth));
    g_CM.DestroyCamera(id);
}

void ValuesComeBack(Trial& trial)
{
    if (HostCheck_Serialise == nullptr || HostCheck_DeSerialise == nullptr)
        return trial.NotTested("the host leaves this operation out; the module never calls it");
    Opened buffer(trial);
    if (!buffer.IsOpen())
        return;
    const RValue values[] = {Real(2.75), OfKind(VALUE_UNDEFINED), Integer64(9007199254740993)};
    for (const RValue& value : values)
        HostCheck_Serialise(&value, buffer.Get());
    buffer.Rewind();
    for (const RValue& value : values)
    {
        RValue got = OfKind(VALUE_UNDEFINED);
        HostCheck_DeSerialise(&got, buffer.Get());
        trial.Expect(KvKind(got) == KvKind(value), "a value of kind %u is read as one of kind %u",
                     static_cast<unsigned>(KvKind(value)), static_cast<unsigned>(KvKind(got)));
        trial.Expect(KvKind(value) == VALUE_UNDEFINED || got.v64 == value.v64, "the bits of a value of kind %u differ",
                     static_cast<unsigned>(KvKind(value)));
    }
}

constexpr Check CHECKS[] = {
    {"buffer.writers", Level::Saves, HEADER, WRAPPERS, Need_Nothing, WritersPassReals},
    {"buffer.readers", Level::Saves, HEADER, WRAPPERS, Need_Nothing, ReadersTakeReals},
    {"buffer.scratch", Level::Saves, HEADER, WRAPPERS, Need_Nothing, OneScratchValueServesAll},
    {"buffer.round_trip", Level::Saves, HEADER, SEQUENTIAL, Need_Buffer, WhatIsWrittenIsRead},
    {"buffer.infinities", Level::Saves, HEADER, SEQUENTIAL, Need_Buffer, EndlessNumbersPass},
    {"buffer.little_endian", Level::Saves, HEADER, SEQUENTIAL, Need_Buffer, ItemsAreLittleEndian},
    {"buffer.cameras", Level::Saves, HEADER, SEQUENTIAL, Need_Buffer, CamerasComeBack},
    {"buffer.past_the_end", Level::Saves, HEADER, "Reads past the end give zero.", Need_Buffer, PastTheEndIsZero},
    {"buffer.done", Level::Saves, HEADER, DONE, Need_Buffer, DoneIsZero},
    {"value.serialise", Level::Saves, "Files/LLVM/RValue.h", "DeSerialise reads an equal value back", Need_Buffer,
     ValuesComeBack},
};

} // namespace

Checks BufferChecks() { return Table(CHECKS); }

} // namespace HostCheck
