#include "Runner/Base/Printable.h"

namespace Runner
{
std::string Printable(std::string_view text, size_t limit)
{
    std::string line(text.substr(0, limit));
    for (char& c : line)
    {
        const unsigned char byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || byte == 0x7F)
            c = '?';
    }
    return text.size() > limit ? line + "..." : line;
}

std::string Quoted(std::string_view text) { return "\"" + Printable(text) + "\""; }

std::string PrintableName(std::string_view name)
{
    constexpr size_t END_SHOWN = 120;
    if (name.size() <= 2 * END_SHOWN)
        return Printable(name, name.size());
    return Printable(name, END_SHOWN) + Printable(name.substr(name.size() - END_SHOWN), END_SHOWN);
}
} // namespace Runner
