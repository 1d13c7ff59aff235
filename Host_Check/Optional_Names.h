#pragma once
// Host operations that the module never calls: a host may leave them out, and still links. Where the object format has
// weak references, they are reached by their linker names and are null when missing; elsewhere they count as missing.

#include "Files/LLVM/RValue.h"

#if defined(__ELF__) && defined(__GNUC__)
#define HOST_OPTIONAL(result, name, linkerName, ...)                                                                   \
    extern "C" result name(__VA_ARGS__) __asm__(linkerName) __attribute__((weak));
#else
#define HOST_OPTIONAL(result, name, linkerName, ...) static result (*const name)(__VA_ARGS__) = nullptr;
#endif

HOST_OPTIONAL(const char*, HostCheck_GetString, "_ZNK6RValue9GetStringEv", const RValue*)
HOST_OPTIONAL(int64_t, HostCheck_AsInt64, "_ZNK6RValue7asInt64Ev", const RValue*)
HOST_OPTIONAL(double, HostCheck_AsReal, "_ZNK6RValue6asRealEv", const RValue*)
HOST_OPTIONAL(bool, HostCheck_AsBool, "_ZNK6RValue6asBoolEv", const RValue*)
HOST_OPTIONAL(CInstance*, HostCheck_AsObject, "_ZNK6RValue8asObjectEv", const RValue*)
HOST_OPTIONAL(void, HostCheck_Serialise, "_ZNK6RValue9SerialiseEP7IBuffer", const RValue*, IBuffer*)
HOST_OPTIONAL(void, HostCheck_DeSerialise, "_ZN6RValue11DeSerialiseEP7IBuffer", RValue*, IBuffer*)
HOST_OPTIONAL(bool, HostCheck_GetBool, "_Z9KvGetBoolPK6RValuei", const RValue*, int)
HOST_OPTIONAL(const char*, HostCheck_TextGet, "_ZNK9_RefThingIPKcE3getEv", const RefString*)
HOST_OPTIONAL(int32_t, HostCheck_TextSize, "_ZNK9_RefThingIPKcE4sizeEv", const RefString*)
HOST_OPTIONAL(void, HostCheck_TextInc, "_ZN9_RefThingIPKcE3incEv", RefString*)
