#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Runner
{
// The text made safe for one line of a message: control characters become '?', and a text of more than `limit` bytes is
// cut there and ends with "...".
std::string Printable(std::string_view text, size_t limit = 60);
std::string Quoted(std::string_view text); // the same between quotation marks

// A file's name likewise; a long one loses its middle, since its start and its end tell most.
std::string PrintableName(std::string_view name);
} // namespace Runner
