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
} // namespace Runner
