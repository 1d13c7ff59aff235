#pragma once

#include "Platform/Lock.h"
#include "Platform/Memory_Manager.h"

#include <cstdint>

// A counted record around a thing: the text behind a string value. Lives on the general heap, from the value that
// first refers to it until its count drops to zero. Of texts, dec() is below; the other operations are the host's.
template <typename T> class _RefThing
{
public:
    T m_thing;          // owned; texts come from the value allocator (KvFree)
    int32_t m_refCount; // values that refer to this record
    int32_t m_size;     // length of a text, without its end mark

    _RefThing() = default;
    _RefThing(const _RefThing&) = delete;
    _RefThing& operator=(const _RefThing&) = delete;
    ~_RefThing() { dec(); } // runs at count 0, leaves -1 and frees nothing more

    void inc();
    void dec();
    T get() const;
    int32_t size() const;
    void assign(T thing, int32_t size);
    void remove();
};

typedef _RefThing<const char*> RefString;

// Drops one reference; the last one frees the text and the record. The lock is taken again by the record's destructor.
template <> inline void _RefThing<const char*>::dec()
{
    LOCK_RVALUE_MUTEX();
    if (--m_refCount == 0)
    {
        KvFree(m_thing);
        m_thing = nullptr;
        m_size = 0;
        delete this;
    }
    UNLOCK_RVALUE_MUTEX();
}
