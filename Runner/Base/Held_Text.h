#pragma once

#include <string>
#include <utility>

namespace Runner
{
// A text as an alternative of a std::variant. Where all alternatives are plain values or std::string, GCC 12's library
// takes it that the variant always holds one, because moving them cannot fail. Copying a text can, for want of memory,
// and then what was never copied is destroyed. Of a type of our own it takes nothing for granted.
struct HeldText : std::string
{
    using std::string::string;
    HeldText() = default;
    HeldText(std::string text) noexcept : std::string(std::move(text)) {}
};
} // namespace Runner
