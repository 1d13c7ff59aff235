#include "Runner/World/Map_Cells.h"

#include "Runner/Base/Printable.h"
#include "Runner/World/Map_Fault.h"

#include <array>
#include <cstring>
#include <limits>
#include <zlib.h>
#include <zstd.h>
#include <zstd_errors.h>

namespace Runner
{
namespace
{
constexpr uint8_t NO_DIGIT = 255;

bool IsSpace(char c) { return c == ' ' || c == '\n' || c == '\r' || c == '\t'; }

class CsvCells
{
public:
    explicit CsvCells(std::string_view text) : m_at(text.data()), m_end(text.data() + text.size()) {}

    void Read(size_t count, std::vector<MapCell>& cells)
    {
        const size_t wanted = cells.size() + count;
        cells.reserve(wanted);
        SkipSpace();
        while (m_at != m_end)
        {
            if (cells.size() == wanted)
                WrongCellCount("more", count);
            cells.push_back(Number());
            SkipSpace();
            if (m_at != m_end && *m_at != ',')
                Misfit();
            m_at += m_at != m_end ? 1 : 0;
            SkipSpace();
        }
        if (cells.size() < wanted)
            WrongCellCount(std::to_string(cells.size() + count - wanted), count);
    }

private:
    MapCell Number()
    {
        const char* start = m_at;
        uint64_t value = 0;
        while (m_at != m_end && *m_at >= '0' && *m_at <= '9' && value <= std::numeric_limits<MapCell>::max())
            value = value * 10 + static_cast<uint64_t>(*m_at++ - '0');
        if (m_at == start || value > std::numeric_limits<MapCell>::max())
            Misfit();
        return static_cast<MapCell>(value);
    }

    void SkipSpace()
    {
        while (m_at != m_end && IsSpace(*m_at))
            ++m_at;
    }

    [[noreturn]] void Misfit() const
    {
        const std::string_view rest(m_at, static_cast<size_t>(m_end - m_at));
        throw MapFault("its cells are not numbers separated by commas, at \"" + Printable(rest, 20) +
                       "\": save it again from the editor");
    }

    const char* m_at;
    const char* m_end;
};

constexpr std::array<uint8_t, 256> Base64Values()
{
    std::array<uint8_t, 256> values = {};
    constexpr std::string_view DIGITS = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    for (uint8_t& value : values)
        value = NO_DIGIT;
    for (size_t i = 0; i < DIGITS.size(); ++i)
        values[static_cast<unsigned char>(DIGITS[i])] = static_cast<uint8_t>(i);
    return values;
}

[[noreturn]] void BadBase64()
{
    throw MapFault("its base64 data is damaged or cut short: save it again from the editor");
}

std::vector<uint8_t> DecodeBase64(std::string_view text)
{
    static constexpr std::array<uint8_t, 256> VALUES = Base64Values();
    std::vector<uint8_t> bytes(text.size() / 4 * 3 + 3);
    size_t size = 0, digits = 0, padding = 0;
    uint32_t group = 0;
    for (const char c : text)
    {
        const uint8_t value = VALUES[static_cast<unsigned char>(c)];
        if (value == NO_DIGIT && IsSpace(c))
            continue;
        if (value == NO_DIGIT ? c != '=' : padding > 0)
            BadBase64();
        padding += value == NO_DIGIT ? 1 : 0;
        group = group << 6 | (value & 63u);
        if (++digits % 4 != 0)
            continue;
        bytes[size++] = static_cast<uint8_t>(group >> 16);
        bytes[size++] = static_cast<uint8_t>(group >> 8);
        bytes[size++] = static_cast<uint8_t>(group);
    }
    if (digits % 4 != 0 || padding > 2)
        BadBase64();
    bytes.resize(size - padding);
    return bytes;
}

// The memory of cells, filled with bytes.
struct CellBytes
{
    uint8_t* data;
    size_t size;
    size_t count; // cells

    void Expect(size_t found) const
    {
        if (found != size)
            WrongCellCount(std::to_string(found / sizeof(MapCell)), count);
    }
};

void Copy(const std::vector<uint8_t>& packed, const CellBytes& out)
{
    out.Expect(packed.size());
    if (out.size > 0)
        std::memcpy(out.data, packed.data(), out.size);
}

[[noreturn]] void BadCompression(const char* name)
{
    throw MapFault(std::string("its ") + name + " data is damaged or cut short: save it again from the editor");
}

// zlib's state, which frees itself.
struct Inflater
{
    z_stream stream = {};
    bool ready;

    explicit Inflater(int windowBits) : ready(inflateInit2(&stream, windowBits) == Z_OK) {}
    ~Inflater() { inflateEnd(&stream); }
    Inflater(const Inflater&) = delete;
    Inflater& operator=(const Inflater&) = delete;
};

constexpr int ZLIB_HEADER = MAX_WBITS;
constexpr int GZIP_HEADER = MAX_WBITS + 16;

// A byte is added to the room for the output: whatever reaches it was too much, and is not unpacked any further.
void Inflate(const std::vector<uint8_t>& packed, const CellBytes& out, int windowBits, const char* name)
{
    Inflater inflater(windowBits);
    z_stream& stream = inflater.stream;
    stream.next_in = const_cast<Bytef*>(packed.data()); // zlib reads it only
    stream.avail_in = static_cast<uInt>(packed.size());
    stream.next_out = out.data;
    stream.avail_out = static_cast<uInt>(out.size);
    int result = inflater.ready ? inflate(&stream, Z_FINISH) : Z_MEM_ERROR;
    Bytef spare = 0;
    if (result == Z_BUF_ERROR && stream.avail_out == 0)
    {
        stream.next_out = &spare;
        stream.avail_out = 1;
        result = inflate(&stream, Z_FINISH);
        if (stream.avail_out == 0)
            WrongCellCount("more", out.count);
    }
    if (result != Z_STREAM_END)
        BadCompression(name);
    out.Expect(stream.total_out);
}

void Unzstd(const std::vector<uint8_t>& packed, const CellBytes& out)
{
    const size_t size = ZSTD_decompress(out.data, out.size, packed.data(), packed.size());
    if (ZSTD_isError(size) == 0)
        return out.Expect(size);
    if (ZSTD_getErrorCode(size) == ZSTD_error_dstSize_tooSmall)
        WrongCellCount("more", out.count);
    BadCompression("zstd");
}

void Unpack(const std::vector<uint8_t>& packed, std::string_view compression, const CellBytes& out)
{
    if (compression.empty())
        return Copy(packed, out);
    if (compression == "zlib")
        return Inflate(packed, out, ZLIB_HEADER, "zlib");
    if (compression == "gzip")
        return Inflate(packed, out, GZIP_HEADER, "gzip");
    if (compression == "zstd")
        return Unzstd(packed, out);
    throw MapFault("its compression \"" + Printable(compression) +
                   "\" is unknown: in the map's properties, choose CSV, zlib, gzip or zstd");
}

// From little-endian to the machine's order.
void OrderBytes(MapCell* cells, size_t count)
{
    for (size_t i = 0; i < count; ++i)
    {
        std::array<uint8_t, sizeof(MapCell)> bytes = {};
        std::memcpy(bytes.data(), cells + i, bytes.size());
        cells[i] = static_cast<MapCell>(bytes[0]) | static_cast<MapCell>(bytes[1]) << 8 |
                   static_cast<MapCell>(bytes[2]) << 16 | static_cast<MapCell>(bytes[3]) << 24;
    }
}
} // namespace

void DecodeMapCells(std::string_view text, std::string_view encoding, std::string_view compression, size_t count,
                    std::vector<MapCell>& cells)
{
    if (encoding == "csv")
        return CsvCells(text).Read(count, cells);
    if (encoding != "base64")
        throw MapFault("its encoding \"" + Printable(encoding) +
                       "\" is unknown: in the map's properties, choose CSV or base64");
    const size_t before = cells.size();
    const std::vector<uint8_t> packed = DecodeBase64(text);
    cells.resize(before + count);
    Unpack(packed, compression, {reinterpret_cast<uint8_t*>(cells.data() + before), count * sizeof(MapCell), count});
    OrderBytes(cells.data() + before, count);
}

void WrongCellCount(const std::string& found, size_t count)
{
    throw MapFault("it holds " + found + " cells where its width and height make " + std::to_string(count) +
                   ": save it again from the editor");
}
} // namespace Runner
