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

// The sections of a file of that version: those that it must have, and all.
bool IsSectionCount(uint32_t version, uint32_t count)
{
    const auto isOf = [version](const Section& section) { return section.since <= version; };
    const auto mustBe = [&isOf](const Section& section) { return isOf(section) && section.isThere == nullptr; };
    return count >= static_cast<uint32_t>(std::count_if(std::begin(SECTIONS), std::end(SECTIONS), mustBe)) &&
           count <= static_cast<uint32_t>(std::count_if(std::begin(SECTIONS), std::end(SECTIONS), isOf));
}

struct Header
{
    uint32_t version = 0;
    uint32_t sections = 0;
};

// Checks the header. Afterwards the reader's position is behind it.
bool HeaderIsGood(const std::vector<uint8_t>& file, ByteReader& io, Header& header, std::string& why)
{
    uint64_t magic = 0, checksum = 0;
    io(magic);
    io(header.version);
    io(header.sections);
    io(checksum);
    if (file.size() < sizeof(MAGIC) || std::memcmp(file.data(), MAGIC, sizeof(MAGIC)) != 0)
        why = "it is no saved game";
    else if (io.Failed())
        why = "it is damaged: it ends early";
    else if (header.version > SAVE_VERSION)
        why = "it was made by a newer runner (its version is " + std::to_string(header.version) + ", this one reads " +
              std::to_string(SAVE_VERSION) + ")";
    else if (header.version == 0 || !IsSectionCount(header.version, header.sections))
        why = "it is damaged: its header makes no sense";
    else if (checksum != ChecksumAfter(file, HEADER_SIZE))
        why = "it is damaged: its checksum is wrong";
    return why.empty();
}

struct TableEntry
{
    uint32_t tag = 0, length = 0;
    uint64_t checksum = 0;
};

// The sections of a file, one after the other.
class SectionReader
{
public:
    // table: behind the header. content: what follows the table.
    SectionReader(ByteReader& table, const Header& header, const uint8_t* content, size_t left)
        : m_table(table), m_entries(header.sections), m_content(content), m_left(left)
    {
        Advance();
    }

    // Reads the section if it is the next one. False: it is another one, or its content makes no sense.
    bool Read(const Section& section, SavedState& state)
    {
        if (!IsNext(section) || m_entry.length > m_left || m_entry.checksum != HashBytes(m_content, m_entry.length))
            return false;
        ByteReader io(m_content, m_entry.length);
        section.read(io, state);
        m_content += m_entry.length;
        m_left -= m_entry.length;
        Advance();
        return !io.Failed() && io.Left() == 0;
    }

    bool IsNext(const Section& section) const { return m_hasEntry && m_entry.tag == TagNumber(section); }
    bool IsAtEnd() const { return !m_hasEntry && m_left == 0; }

private:
    void Advance()
    {
        m_hasEntry = m_entries > 0;
        if (!m_hasEntry)
            return;
        --m_entries;
        m_table(m_entry.tag);
        m_table(m_entry.length);
        m_table(m_entry.checksum);
    }

    ByteReader& m_table;
    uint32_t m_entries; // not read yet
    const uint8_t* m_content;
    size_t m_left;
    TableEntry m_entry;
    bool m_hasEntry = false;
};

bool ReadSections(const std::vector<uint8_t>& file, const Header& header, ByteReader& table, SavedState& state,
                  std::string& why)
{
    const size_t start = HEADER_SIZE + size_t{header.sections} * TABLE_ENTRY_SIZE;
    if (file.size() < start)
    {
        why = "it is damaged: it ends early";
        return false;
    }
    SectionReader reader(table, header, file.data() + start, file.size() - start);
    for (const Section& section : SECTIONS)
    {
        const bool mayBeMissing = section.since > header.version || section.isThere != nullptr;
        if ((mayBeMissing && !reader.IsNext(section)) ||
            (section.since <= header.version && reader.Read(section, state)))
            continue;
        why = std::string("it is damaged: section ") + section.tag + " makes no sense";
        return false;
    }
    if (!reader.IsAtEnd())
        why = "it is damaged: it is too long";
    return why.empty();
}
} // namespace

bool EncodeState(const SavedState& state, std::vector<uint8_t>& file, std::string& why)
{
    ByteWriter table, header;
    bool tooLong = false;
    uint32_t sections = 0;
    std::vector<uint8_t> contents;
    for (const Section& section : SECTIONS)
    {
        if (section.isThere != nullptr && !section.isThere(state))
            continue;
        ++sections;
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
    header(sections);
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
    Header header;
    if (!HeaderIsGood(file, io, header, why) || !ReadSections(file, header, io, state, why))
        return false;
    state.fileVersion = header.version;
    if (!ThumbnailIsConsistent(state.thumbnail))
        why = "it is damaged: its thumbnail makes no sense";
    else if (!ShownLayersAreConsistent(state))
        why = "it is damaged: the layers of its map make no sense";
    else if (!CamerasAreConsistent(state.cameras))
        why = "it is damaged: its cameras make no sense";
    else if (!ValuesAreConsistent(state))
        why = "it is damaged: its variables make no sense";
    return why.empty();
}

bool ComparableSave(const std::vector<uint8_t>& file, std::vector<uint8_t>& comparable, std::string& why)
{
    SavedState state;
    if (!DecodeState(file, state, why))
        return false;
    state.thumbnail = SavedThumbnail();
    return EncodeState(state, comparable, why);
}

bool StartsAsSave(const std::string& path, std::string& why)
{
    std::vector<uint8_t> start;
    return ReadFileStart(path, sizeof(MAGIC), start, why) && start.size() == sizeof(MAGIC) &&
           std::memcmp(start.data(), MAGIC, sizeof(MAGIC)) == 0;
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
