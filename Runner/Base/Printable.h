#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Runner
{
// Text as one line of a message may show it: control characters become '?', and what exceeds the limit becomes "...".
std::string Printable(std::string_view text, size_t limit = 60);

// A file's name likewise; a long one loses its middle, since its start and its end tell most.
std::string PrintableName(std::string_view name);
} // namespace Runner
