#pragma once

#include "Files/LLVM/RValue.h"

enum eBuffer_Type
{
    eBuffer_None = 0,
    eBuffer_U8 = 1,
    eBuffer_S8 = 2,
    eBuffer_U16 = 3,
    eBuffer_S16 = 4,
    eBuffer_U32 = 5,
    eBuffer_S32 = 6,
    eBuffer_F16 = 7,
    eBuffer_F32 = 8,
    eBuffer_D64 = 9,
    eBuffer_Bool = 10,
    eBuffer_String = 11,
    eBuffer_U64 = 12,
    eBuffer_Text = 13,
};

// A sequential buffer of typed items, little-endian, without tags or padding. Reads past the end give zero.
// The wrappers pass through one scratch value, as reals; booleans travel as eBuffer_S32. All operations are the host's.
class IBuffer
{
public:
    virtual int WriteTyped(eBuffer_Type type, RValue& value) = 0; // 0 when done, else the host's error code
    virtual int ReadTyped(eBuffer_Type type, RValue& value) = 0;

    void Write(int value);
    void Write(float value);
    void Write(bool value);
    int ReadS32();
    float ReadFloat();
    bool ReadBool();

protected:
    ~IBuffer() = default; // nobody deletes a buffer through this interface

    RValue m_scratch = {};
};
