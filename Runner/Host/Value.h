#pragma once
// Making, releasing and describing script values.
//
// A value made here holds one reference of its own: hand it on, or give it to Release.

#include "Files/LLVM/RValue.h"

#include <string>
#include <string_view>

namespace Runner
{
RValue MakeReal(double number);
RValue MakeString(std::string_view text); // copied, may hold zero bytes; without memory an empty string
RValue MakeBool(bool truth);              // VALUE_BOOL, held as the real 0 or 1
RValue MakeUndefined();
RValue MakeObject(KvObjectBase* object); // takes null. Objects are not counted: see Host_Collector.h

// An array of undefined elements. A negative length or refused memory gives undefined.
RValue MakeArray(int length);

void Release(RValue& value); // releases what it refers to and makes it undefined

// The value as an error line names it, in the words of scripts: the number 3.5, the string "abc", a table, nil. Never
// more than one short line, whatever a string holds.
std::string Describe(const RValue& value);

constexpr int VALUE_DEPTH_MAX = 32;                  // arrays in arrays, as far as they are saved
constexpr int32_t SAVED_TEXT_MAX = 16 << 20;         // bytes
constexpr int32_t SAVED_ARRAY_MAX = 4 * 1024 * 1024; // elements
} // namespace Runner

// The operations on texts, besides dec().
template <> void _RefThing<const char*>::inc();
template <> const char* _RefThing<const char*>::get() const;
template <> int32_t _RefThing<const char*>::size() const;
template <> void _RefThing<const char*>::assign(const char* thing, int32_t size); // takes the text over, frees the old
template <> void _RefThing<const char*>::remove();                                // frees the text, the record stays
