#pragma once
// Making, releasing and describing script values.
//
// A value made here holds one reference of its own. Its receiver stores it or gives it to Release.

#include "Files/LLVM/RValue.h"

#include <string>
#include <string_view>

namespace Runner
{
RValue MakeReal(double number);
RValue MakeString(std::string_view text); // copied; may contain zero bytes; an empty string when memory is refused
RValue MakeBool(bool truth);              // VALUE_BOOL, stored as the real 0 or 1
RValue MakeUndefined();
RValue MakeObject(KvObjectBase* object); // may be null. Objects are not reference-counted: see Collector.h

// An array of undefined elements. Undefined when the length is negative or memory is refused.
RValue MakeArray(int length);

void Release(RValue& value); // drops its reference and makes it undefined

// The value as an error line names it, in the words of scripts: the number 3.5, the string "abc", a table, nil. Never
// more than one short line, whatever a string holds.
std::string Describe(const RValue& value);

constexpr int VALUE_DEPTH_MAX = 32;                  // of arrays in arrays, in a saved value
constexpr int32_t SAVED_TEXT_MAX = 16 << 20;         // bytes
constexpr int32_t SAVED_ARRAY_MAX = 4 * 1024 * 1024; // elements
} // namespace Runner

// The operations on strings, except dec(), which the module defines.
template <> void _RefThing<const char*>::inc();
template <> const char* _RefThing<const char*>::get() const;
template <> int32_t _RefThing<const char*>::size() const;
template <>
void _RefThing<const char*>::assign(const char* thing, int32_t size); // takes ownership of the text, frees the old one
template <> void _RefThing<const char*>::remove();                    // frees the text, keeps the record
