#pragma once
// Files of parts with lengths and checksums, as saved games and recordings are. A fuzzer that changes bytes blindly
// gets no further than the first checksum: these functions mend checksums, and change a part with its length and
// checksum.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Fuzz
{
using Bytes = std::vector<uint8_t>;

struct Part
{
    uint32_t tag = 0;
    Bytes content;
};

// How one kind of file has its parts.
struct PartedFormat
{
    size_t headSize; // bytes that stand before the first part's tag, and stay
    void (*mend)(Bytes& file);
    bool (*takeApart)(const Bytes& file, std::vector<Part>& parts); // false: the lengths make no sense
    Bytes (*join)(const Bytes& head, const std::vector<Part>& parts);
};

extern const PartedFormat SAVED_GAME, RECORDING;

// A libFuzzer mutator: changes a part's content, or doubles, drops or exchanges parts. Bytes are changed blindly where
// the file has no parts, and now and then where it has.
size_t MutatePart(const PartedFormat& format, uint8_t* data, size_t size, size_t maxSize, unsigned seed);
} // namespace Fuzz
