#pragma once

#include <string_view>

namespace Runner
{
inline bool EndsWith(std::string_view text, std::string_view end)
{
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}
} // namespace Runner
