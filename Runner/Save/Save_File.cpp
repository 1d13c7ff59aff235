// The file of a saved game: a header, a table of sections, the sections.

#include "Runner/Save/Save_File.h"

#include "Runner/Base/Hash.h"
#include "Runner/Base/Printable.h"
#include "Runner/Base/Whole_File.h"
#include "Runner/Save/Sections.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace Runner
{
namespace
{
constexpr uint8_t MAGIC[8] = {0x89, 'R', 'S',  'A',
                              'V',  'E', '\r', '\n'}; // a transfer as text would change the first or the last bytes
constexpr size_t HEADER_SIZE = 24;                    // magic, version, sections, checksum
constexpr size_t TABLE_ENTRY_SIZE = 16;               // tag, length, checksum

uint32_t TagNumber(const Section& section)
{
    uint32_t number = 0;
    for (int i = 3; i >= 0; --i)
        number = number << 8 | static_cast<uint8_t>(section.tag[i]);
    return number;
}

// ---- header ----

uint64_t ChecksumAfter(const std::vector<uint8_t>& file, size_t start)
{
    return HashBytes(file.data() + start, file.size() - start);
}

// Checks the header. Afterwards the reader's position is behind it.
bool HeaderIsGood(const std::vector<uint8_t>& file, ByteReader& io, std::string& why)
{
    uint64_t magic = 0, checksum = 0;
    uint32_t version = 0, sections = 0;
    io(magic);
    io(version);
    io(sections);
    io(checksum);
    if (file.size() < sizeof(MAGIC) || std::memcmp(file.data(), MAGIC, sizeof(MAGIC)) != 0)
        why = "it is no saved game";
    else if (io.Failed())
        why = "it is damaged: it ends early";
    else if (version > SAVE_VERSION)
        why = "it was made by a newer runner (its version is " + std::to_string(version) + ", this one reads " +
              std::to_string(SAVE_VERSION) + ")";
    else if (version != SAVE_VERSION || sections != SECTION_COUNT)
        why = "it is damaged: its header makes no sense";
    else if (checksum != ChecksumAfter(file, HEADER_SIZE))
        why = "it is damaged: its checksum is wrong";
    return why.empty();
}

// Reads one section. table: positioned at its entry. content, left: the bytes not read yet; moved behind the section.
bool ReadSection(const Section& section, ByteReader& table, const uint8_t*& content, size_t& left, SavedState& state)
{
    uint32_t tag = 0, length = 0;
    uint64_t checksum = 0;
    table(tag);
    table(length);
    table(checksum);
    if (tag != TagNumber(section) || length > left || checksum != HashBytes(content, length))
        return false;
    ByteReader io(content, length);
    section.read(io, state);
    content += length;
    left -= length;
    return !io.Failed() && io.Left() == 0;
}

bool ReadSections(const std::vector<uint8_t>& file, ByteReader& table, SavedState& state, std::string& why)
{
    constexpr size_t CONTENT_START = HEADER_SIZE + SECTION_COUNT * TABLE_ENTRY_SIZE;
    if (file.size() < CONTENT_START)
    {
        why = "it is damaged: it ends early";
        return false;
    }
    const uint8_t* content = file.data() + CONTENT_START;
    size_t left = file.size() - CONTENT_START;
    for (const Section& section : SECTIONS)
    {
        if (ReadSection(section, table, content, left, state))
            continue;
        why = std::string("it is damaged: section ") + section.tag + " makes no sense";
        return false;
    }
    if (left != 0)
        why = "it is damaged: it is too long";
    return left == 0;
}
} // namespace

bool EncodeState(const SavedState& state, std::vector<uint8_t>& file, std::string& why)
{
    ByteWriter table, header;
    bool tooLong = false;
    std::vector<uint8_t> contents;
    for (const Section& section : SECTIONS)
    {
        ByteWriter content;
        section.write(content, state);
        const std::vector<uint8_t>& bytes = content.Bytes();
        table(TagNumber(section));
        table.Count(bytes.size());
        table(HashBytes(bytes.data(), bytes.size()));
        tooLong = tooLong || content.TooLong();
        contents.insert(contents.end(), bytes.begin(), bytes.end());
    }
    file.assign(HEADER_SIZE, 0);
    file.insert(file.end(), table.Bytes().begin(), table.Bytes().end());
    file.insert(file.end(), contents.begin(), contents.end());
    header(SAVE_VERSION);
    header(SECTION_COUNT);
    header(ChecksumAfter(file, HEADER_SIZE));
    std::copy(std::begin(MAGIC), std::end(MAGIC), file.begin());
    std::copy(header.Bytes().begin(), header.Bytes().end(), file.begin() + sizeof(MAGIC));
    if (tooLong || table.TooLong())
        why = "there is too much to save";
    return why.empty();
}

bool DecodeState(const std::vector<uint8_t>& file, SavedState& state, std::string& why)
{
    ByteReader io(file.data(), file.size());
    state = SavedState();
    why.clear();
    if (!HeaderIsGood(file, io, why) || !ReadSections(file, io, state, why))
        return false;
    if (!CamerasAreConsistent(state.cameras))
        why = "it is damaged: its cameras make no sense";
    else if (!ValuesAreConsistent(state))
        why = "it is damaged: its variables make no sense";
    return why.empty();
}

std::string CannotLoad(const std::string& path, const std::string& reason)
{
    return "cannot load " + PrintableName(path) + ": " + reason;
}

bool ReadSavedGame(const std::string& path, SavedState& state, std::string& why)
{
    std::vector<uint8_t> file;
    return ReadWholeFile(path, file, why) && ReadSavedGame(path, file, state, why);
}

bool ReadSavedGame(const std::string& path, const std::vector<uint8_t>& content, SavedState& state, std::string& why)
{
    std::string reason;
    if (content.size() > SAVE_SIZE_MAX)
        reason = "it is too large for a saved game";
    else
        DecodeState(content, state, reason);
    if (!reason.empty())
        why = CannotLoad(path, reason);
    return reason.empty();
}
} // namespace Runner
