#include "Fuzz/Parted_File.h"

#include "Runner/Base/Hash.h"
#include "Runner/Save/Byte_Stream.h"

#include <algorithm>
#include <random>

// libFuzzer's own mutation; missing where another engine runs the targets.
extern "C" __attribute__((weak)) size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t maxSize);

namespace Fuzz
{
namespace
{
using Runner::ByteReader;
using Runner::ByteWriter;
using Runner::HashBytes;

void Append(Bytes& to, const Bytes& bytes) { to.insert(to.end(), bytes.begin(), bytes.end()); }

void PutNumber(Bytes& file, size_t at, uint64_t number, size_t size)
{
    for (size_t i = 0; i < size && at + i < file.size(); ++i)
        file[at + i] = static_cast<uint8_t>(number >> (8 * i));
}

uint32_t NumberAt(const Bytes& file, size_t at)
{
    uint32_t number = 0;
    ByteReader io(file.data() + std::min(at, file.size()), file.size() - std::min(at, file.size()));
    io(number);
    return number;
}

// ---- saved games: magic, version, number of sections, checksum; a table of tag, length, checksum; the sections ----

constexpr size_t SAVE_HEAD = 12, SAVE_COUNT = 12, SAVE_CHECKSUM = 16, SAVE_TABLE = 24, SAVE_ENTRY = 16;
constexpr size_t SECTIONS_MOST = 64;

size_t SectionCount(const Bytes& file) { return std::min<size_t>(NumberAt(file, SAVE_COUNT), SECTIONS_MOST); }

void MendSave(Bytes& file)
{
    if (file.size() < SAVE_TABLE)
        return;
    size_t at = SAVE_TABLE + SAVE_ENTRY * SectionCount(file);
    for (size_t section = 0; section < SectionCount(file) && at <= file.size(); ++section)
    {
        const size_t entry = SAVE_TABLE + SAVE_ENTRY * section;
        const size_t length = std::min<size_t>(NumberAt(file, entry + 4), file.size() - at);
        PutNumber(file, entry + 8, HashBytes(file.data() + at, length), 8);
        at += length;
    }
    PutNumber(file, SAVE_CHECKSUM, HashBytes(file.data() + SAVE_TABLE, file.size() - SAVE_TABLE), 8);
}

bool TakeSaveApart(const Bytes& file, std::vector<Part>& parts)
{
    const size_t count = file.size() < SAVE_TABLE ? 0 : SectionCount(file);
    size_t at = SAVE_TABLE + SAVE_ENTRY * count;
    for (size_t section = 0; section < count; ++section)
    {
        const size_t entry = SAVE_TABLE + SAVE_ENTRY * section, length = NumberAt(file, entry + 4);
        if (at > file.size() || length > file.size() - at)
            return false;
        const auto first = file.begin() + static_cast<ptrdiff_t>(at);
        parts.push_back({NumberAt(file, entry), Bytes(first, first + static_cast<ptrdiff_t>(length))});
        at += length;
    }
    return !parts.empty();
}

Bytes JoinSave(const Bytes& head, const std::vector<Part>& parts)
{
    ByteWriter table;
    table(static_cast<uint32_t>(parts.size()));
    table(uint64_t{0});
    for (const Part& part : parts)
    {
        table(part.tag);
        table(static_cast<uint32_t>(part.content.size()));
        table(uint64_t{0});
    }
    Bytes file = head;
    Append(file, table.Bytes());
    for (const Part& part : parts)
        Append(file, part.content);
    MendSave(file);
    return file;
}

// ---- recordings: magic, version; blocks of tag, length, checksum of both and of the content, content ----

constexpr size_t RECORDING_HEAD = 12, BLOCK_HEAD = 16;

uint64_t BlockChecksum(uint32_t tag, const uint8_t* content, size_t length)
{
    Runner::Hash hash;
    hash.U32(tag);
    hash.U32(static_cast<uint32_t>(length));
    hash.Bytes(content, length);
    return hash.Value();
}

// Calls visit with the place of each whole block. False: the last one is cut off.
template <typename Visit> bool VisitBlocks(const Bytes& file, const Visit& visit)
{
    size_t at = RECORDING_HEAD;
    while (at + BLOCK_HEAD <= file.size())
    {
        const size_t length = NumberAt(file, at + 4);
        if (length > file.size() - at - BLOCK_HEAD)
            return false;
        visit(at, length);
        at += BLOCK_HEAD + length;
    }
    return at == file.size();
}

void MendRecording(Bytes& file)
{
    const auto mend = [&file](size_t at, size_t length)
    { PutNumber(file, at + 8, BlockChecksum(NumberAt(file, at), file.data() + at + BLOCK_HEAD, length), 8); };
    VisitBlocks(file, mend);
}

bool TakeRecordingApart(const Bytes& file, std::vector<Part>& parts)
{
    const auto take = [&file, &parts](size_t at, size_t length)
    {
        const auto first = file.begin() + static_cast<ptrdiff_t>(at + BLOCK_HEAD);
        parts.push_back({NumberAt(file, at), Bytes(first, first + static_cast<ptrdiff_t>(length))});
    };
    return VisitBlocks(file, take) && !parts.empty();
}

Bytes JoinRecording(const Bytes& head, const std::vector<Part>& parts)
{
    Bytes file = head;
    for (const Part& part : parts)
    {
        ByteWriter block;
        block(part.tag);
        block(static_cast<uint32_t>(part.content.size()));
        block(BlockChecksum(part.tag, part.content.data(), part.content.size()));
        Append(file, block.Bytes());
        Append(file, part.content);
    }
    return file;
}

// ---- mutation ----

void MutateContent(Part& part, size_t room)
{
    const size_t size = part.content.size();
    part.content.resize(size + room);
    part.content.resize(LLVMFuzzerMutate(part.content.data(), size, size + room));
}

void MutateParts(std::vector<Part>& parts, size_t room, std::minstd_rand& random)
{
    const size_t chosen = random() % parts.size(), other = random() % parts.size();
    switch (random() % 16)
    {
    case 0: std::swap(parts[chosen], parts[other]); break;
    case 1: parts.insert(parts.begin() + static_cast<ptrdiff_t>(other), Part(parts[chosen])); break;
    case 2: parts.erase(parts.begin() + static_cast<ptrdiff_t>(chosen)); break;
    default: MutateContent(parts[chosen], room); break;
    }
}
} // namespace

const PartedFormat SAVED_GAME = {SAVE_HEAD, MendSave, TakeSaveApart, JoinSave};
const PartedFormat RECORDING = {RECORDING_HEAD, MendRecording, TakeRecordingApart, JoinRecording};

size_t MutatePart(const PartedFormat& format, uint8_t* data, size_t size, size_t maxSize, unsigned seed)
{
    std::minstd_rand random(seed);
    const Bytes file(data, data + size);
    std::vector<Part> parts;
    if (random() % 8 == 0 || size < format.headSize || !format.takeApart(file, parts))
        return LLVMFuzzerMutate(data, size, maxSize);
    MutateParts(parts, maxSize - size, random);
    const Bytes head(file.begin(), file.begin() + static_cast<ptrdiff_t>(format.headSize));
    const Bytes joined = format.join(head, parts);
    if (joined.size() > maxSize)
        return LLVMFuzzerMutate(data, size, maxSize);
    std::copy(joined.begin(), joined.end(), data);
    return joined.size();
}
} // namespace Fuzz
