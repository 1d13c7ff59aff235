#pragma once
// Ownership of values: release, copy and assignment. Included by RValue.h.
//
// A value of kind string, array or object refers to something shared. Whoever stores such a value takes a reference
// of its own; whoever overwrites one releases the old reference first. Objects are not counted: the collector learns
// of a new reference from DeterminePotentialRoot.

#include "Files/LLVM/Arrays.h"
#include "Files/LLVM/RValue.h"

inline uint32_t KvKind(const RValue& value) { return value.kind & VALUE_KIND_MASK; }

// True for strings, arrays and objects. Looks at five bits of the kind only: 0x21 passes for a string here, while
// the release and the copy, which look at 24, do nothing to it.
inline bool KvNeedsRelease(const RValue& value) { return ((0x46u >> (value.kind & 0x1F)) & 1u) != 0; }

// Releases what the value refers to. Fields other than a string's pointer are left as they were.
inline void FREE_RValue__Pre(RValue* value)
{
    switch (KvKind(*value))
    {
    case VALUE_ARRAY:
        if (value->pRefArray != nullptr)
        {
            Array_DecRef(value->pRefArray);
            Array_SetOwner(value->pRefArray);
        }
        break;
    case VALUE_PTR:
        if ((value->flags & VALUE_FLAG_OWNS_PTR) != 0 && value->ptr != nullptr)
            delete static_cast<COwnedObject*>(value->ptr);
        break;
    case VALUE_STRING:
        if (value->pRefString != nullptr)
            value->pRefString->dec();
        value->pRefString = nullptr;
        break;
    default: break;
    }
}

// Completes a copy whose flags and kind are already copied: stores the pointer and takes a reference for dst.
inline void COPY_RValue_do__Post(RValue* dst, const RValue* src)
{
    switch (KvKind(*src))
    {
    case VALUE_ARRAY:
        dst->pRefArray = src->pRefArray;
        if (dst->pRefArray != nullptr)
        {
            Array_IncRef(dst->pRefArray);
            Array_SetOwner(dst->pRefArray);
            DeterminePotentialRoot(GetContextStackTop(), dst->pRefArray);
        }
        break;
    case VALUE_OBJECT:
        dst->pObj = src->pObj;
        if (dst->pObj != nullptr)
            DeterminePotentialRoot(GetContextStackTop(), dst->pObj);
        break;
    case VALUE_STRING:
        if (src->pRefString != nullptr)
            ++src->pRefString->m_refCount;
        dst->pRefString = src->pRefString;
        break;
    default: dst->v64 = src->v64; break; // 0x21 and its like: eight plain bytes
    }
}

// dst = src, with dst holding a reference of its own. A value assigned to itself keeps its one reference.
inline void KvAssign(RValue& dst, const RValue& src)
{
    if (&dst == &src)
        return;
    if (KvNeedsRelease(dst))
        FREE_RValue__Pre(&dst);
    dst.flags = src.flags;
    dst.kind = src.kind;
    if (KvNeedsRelease(dst))
        COPY_RValue_do__Post(&dst, &src);
    else
        dst.v64 = src.v64;
}
