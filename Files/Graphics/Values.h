#pragma once
// Values that the module makes.

#include "Files/LLVM/RValue.h"

namespace CameraModule
{

// Writes a real over a value that holds no reference, or whose reference is somebody else's to release.
// The flags stay as they are: they belong to whoever made the value.
inline void SetReal(RValue& value, double number)
{
    value.kind = VALUE_REAL;
    value.val = number;
}

inline RValue RealValue(double number)
{
    RValue value;
    value.val = number;
    value.flags = 0;
    value.kind = VALUE_REAL;
    return value;
}

inline RValue EmptyValue(uint32_t kind)
{
    RValue value;
    value.v64 = 0;
    value.flags = 0;
    value.kind = kind;
    return value;
}

constexpr int NO_SCRIPT_INDEX = -1;

// What cameras hold at first for a callback, told without asking the host. Other values may mean the same to it.
inline bool IsNoScript(const RValue& callback)
{
    return callback.kind == VALUE_REAL && callback.val == NO_SCRIPT_INDEX;
}

inline void ReleaseValue(RValue& value)
{
    if (KvNeedsRelease(value))
        FREE_RValue__Pre(&value);
}

} // namespace CameraModule
