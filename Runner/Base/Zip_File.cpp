#include "Runner/Base/Zip_File.h"

#include "Runner/Base/Printable.h"

#include <algorithm>
#define ZLIB_CONST // what is read is const
#include <zlib.h>

namespace Runner
{
namespace
{
// The parts of an archive: for each file a header and its data, then the directory with a record of each file, then
// the end record, which says where the directory is. All numbers have their lowest byte first.
constexpr uint32_t FILE_HEADER = 0x04034b50, RECORD = 0x02014b50, END_RECORD = 0x06054b50;
constexpr size_t FILE_HEADER_SIZE = 30, RECORD_SIZE = 46, END_RECORD_SIZE = 22;
constexpr size_t COMMENT_MAX = 0xFFFF; // behind the end record
constexpr size_t NAME_MAX_BYTES = 240;
constexpr uint32_t ENCRYPTED = 1; // a bit of the flags
constexpr int STORED = 0, DEFLATED = 8;
constexpr int MADE_BY_UNIX = 3; // such records hold the file's mode
constexpr uint32_t KIND_OF_FILE = 0170000, ORDINARY_FILE = 0100000, FOLDER = 0040000;

struct Record
{
    std::string name;
    uint32_t flags = 0, method = 0, checksum = 0, mode = 0;
    size_t packedSize = 0, size = 0, header = 0; // header: where the file's header stands
};

class Reader
{
public:
    Reader(const std::vector<uint8_t>& archive, const ZipLimits& limits, FileContents& files, std::string& why)
        : m_archive(archive), m_limits(limits), m_files(files), m_why(why)
    {
    }

    bool Read()
    {
        size_t end = 0;
        return FindEnd(end) && ReadDirectory(end);
    }

private:
    bool Refuse(const std::string& why)
    {
        m_why = why;
        return false;
    }

    bool RefuseFile(const std::string& name, const char* why) { return Refuse(PrintableName(name) + ": " + why); }

    bool Holds(size_t place, size_t size) const
    {
        return place <= m_archive.size() && size <= m_archive.size() - place;
    }

    // The caller has made sure that they are there.
    uint32_t Number(size_t place, int bytes) const
    {
        uint32_t number = 0;
        for (int i = bytes - 1; i >= 0; --i)
            number = number << 8u | m_archive[place + static_cast<size_t>(i)];
        return number;
    }

    // A comment of any content may follow the end record, so the last one counts whose comment ends with the archive.
    bool FindEnd(size_t& end)
    {
        const size_t size = m_archive.size();
        const size_t deepest = size < END_RECORD_SIZE ? size : size - std::min(size, END_RECORD_SIZE + COMMENT_MAX);
        for (end = size < END_RECORD_SIZE ? 0 : size - END_RECORD_SIZE + 1; end-- > deepest;)
            if (Number(end, 4) == END_RECORD && end + END_RECORD_SIZE + Number(end + 20, 2) == size)
                return true;
        return Refuse("this is no zip archive, or its end is missing");
    }

    bool ReadDirectory(size_t end)
    {
        const size_t count = Number(end + 10, 2);
        size_t place = Number(end + 16, 4);
        const bool isInParts = Number(end + 4, 2) != 0 || Number(end + 6, 2) != 0 || Number(end + 8, 2) != count;
        if (isInParts || place > end || Number(end + 12, 4) != end - place)
            return Refuse("its directory is damaged, or larger than this reader takes");
        if (count > m_limits.files)
            return Refuse("it holds " + std::to_string(count) + " files, and a game may have " +
                          std::to_string(m_limits.files));
        m_directory = place;
        for (size_t i = 0; i < count; ++i)
            if (!ReadRecord(place, end))
                return false;
        return place == end || Refuse("its directory is damaged");
    }

    // place: of the record; afterwards of the next one.
    bool ReadRecord(size_t& place, size_t end)
    {
        if (end - place < RECORD_SIZE || Number(place, 4) != RECORD)
            return Refuse("its directory is damaged");
        Record record;
        record.flags = Number(place + 8, 2);
        record.method = Number(place + 10, 2);
        record.checksum = Number(place + 16, 4);
        record.packedSize = Number(place + 20, 4);
        record.size = Number(place + 24, 4);
        record.mode = Number(place + 5, 1) == MADE_BY_UNIX ? Number(place + 40, 2) : 0;
        record.header = Number(place + 42, 4);
        const size_t nameSize = Number(place + 28, 2);
        const size_t size = RECORD_SIZE + nameSize + Number(place + 30, 2) + Number(place + 32, 2);
        if (size > end - place)
            return Refuse("its directory is damaged");
        record.name = TextAt(place + RECORD_SIZE, nameSize);
        place += size;
        return Take(record);
    }

    std::string TextAt(size_t place, size_t size) const
    {
        const auto start = m_archive.begin() + static_cast<std::ptrdiff_t>(place);
        return {start, start + static_cast<std::ptrdiff_t>(size)};
    }

    bool Take(const Record& record)
    {
        if (!NameIsGood(record.name))
            return Refuse("\"" + PrintableName(record.name) +
                          "\" is no name of a file in a game: names are relative, without \"..\" and \"\\\"");
        const uint32_t kind = record.mode & KIND_OF_FILE;
        const bool isFolder = record.name.back() == '/';
        if (kind != 0 && kind != (isFolder ? FOLDER : ORDINARY_FILE))
            return RefuseFile(record.name, "this is a link or a device: put the file itself into the archive");
        if ((record.flags & ENCRYPTED) != 0)
            return RefuseFile(record.name, "it is encrypted: pack the game without a password");
        if (record.method != STORED && record.method != DEFLATED)
            return RefuseFile(record.name, "it is packed in a way that is not read: pack it with \"deflate\"");
        if (isFolder)
            return record.size == 0 || RefuseFile(record.name, "this folder is damaged");
        if (record.size > m_limits.bytes - m_bytes)
            return Refuse("its files have more than " + std::to_string(m_limits.bytes >> 20u) +
                          " MB unpacked: this is no game");
        m_bytes += record.size;
        return !IsThereAlready(record.name) ? Unpack(record)
                                            : RefuseFile(record.name, "two files have this name: pack the game anew");
    }

    static bool NameIsGood(const std::string& name)
    {
        const bool isPlain =
            std::all_of(name.begin(), name.end(), [](unsigned char c) { return c >= ' ' && c != 0x7F && c != '\\'; });
        if (name.empty() || name.size() > NAME_MAX_BYTES || !isPlain || (name.size() > 1 && name[1] == ':'))
            return false;
        for (size_t start = 0; start < name.size();)
        {
            const size_t end = std::min(name.find('/', start), name.size());
            const std::string part = name.substr(start, end - start);
            if (part.empty() || part == "." || part == "..")
                return false;
            start = end + 1;
        }
        return true;
    }

    // The same name, or a file where the other one needs a folder.
    bool IsThereAlready(const std::string& name) const
    {
        const auto next = m_files.lower_bound(name + "/");
        bool isThere = m_files.count(name) > 0 || (next != m_files.end() && next->first.rfind(name + "/", 0) == 0);
        for (size_t slash = name.find('/'); slash != std::string::npos; slash = name.find('/', slash + 1))
            isThere = isThere || m_files.count(name.substr(0, slash)) > 0;
        return isThere;
    }

    // The header repeats what the record says, but for its own length; only that is taken from it.
    bool Unpack(const Record& record)
    {
        if (!Holds(record.header, FILE_HEADER_SIZE) || Number(record.header, 4) != FILE_HEADER)
            return RefuseFile(record.name, "it is damaged");
        const size_t nameSize = Number(record.header + 26, 2);
        const size_t data = record.header + FILE_HEADER_SIZE + nameSize + Number(record.header + 28, 2);
        const bool isWhole = data <= m_directory && record.packedSize <= m_directory - data &&
                             nameSize == record.name.size() &&
                             TextAt(record.header + FILE_HEADER_SIZE, nameSize) == record.name;
        std::vector<uint8_t> content;
        const bool isGood =
            isWhole && (record.method == STORED ? Copy(record, data, content) : Inflate(record, data, content));
        if (!isGood || Checksum(content) != record.checksum)
            return RefuseFile(record.name, "it is damaged");
        m_files[record.name] = std::move(content);
        return true;
    }

    bool Copy(const Record& record, size_t data, std::vector<uint8_t>& content) const
    {
        const auto start = m_archive.begin() + static_cast<std::ptrdiff_t>(data);
        if (record.packedSize == record.size)
            content.assign(start, start + static_cast<std::ptrdiff_t>(record.size));
        return record.packedSize == record.size;
    }

    // The room for the result has the size that the record claims: what would be more is damage.
    bool Inflate(const Record& record, size_t data, std::vector<uint8_t>& content) const
    {
        z_stream stream = {};
        if (inflateInit2(&stream, -MAX_WBITS) != Z_OK) // negative: without a header of zlib's own
            return false;
        uint8_t nothing = 0;
        content.resize(record.size);
        stream.next_in = m_archive.data() + data;
        stream.avail_in = static_cast<uInt>(record.packedSize);
        stream.next_out = content.empty() ? &nothing : content.data();
        stream.avail_out = static_cast<uInt>(record.size);
        const int result = inflate(&stream, Z_FINISH);
        const bool isWhole = result == Z_STREAM_END && stream.avail_out == 0 && stream.avail_in == 0;
        inflateEnd(&stream);
        return isWhole;
    }

    static uint32_t Checksum(const std::vector<uint8_t>& content)
    {
        return static_cast<uint32_t>(crc32(crc32(0, nullptr, 0), content.data(), static_cast<uInt>(content.size())));
    }

    const std::vector<uint8_t>& m_archive;
    const ZipLimits& m_limits;
    FileContents& m_files;
    std::string& m_why;
    size_t m_directory = 0; // where it starts; the files end before it
    size_t m_bytes = 0;     // of the files so far, unpacked
};
} // namespace

bool ReadZip(const std::vector<uint8_t>& archive, const ZipLimits& limits, FileContents& files, std::string& why)
{
    files.clear();
    const bool isRead = Reader(archive, limits, files, why).Read();
    if (!isRead)
        files.clear();
    return isRead;
}
} // namespace Runner
