#pragma once

#include <cstring>

namespace Runner
{
// The same bits as another type.
template <typename To, typename From> inline To BitsOf(From from)
{
    static_assert(sizeof(To) == sizeof(From), "the same bits");
    To to;
    std::memcpy(&to, &from, sizeof(to));
    return to;
}
} // namespace Runner
