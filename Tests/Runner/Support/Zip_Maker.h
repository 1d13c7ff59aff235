#pragma once
// Zip archives of any content, damaged ones too, written from the description of the format.

#include <cstdint>
#include <string>
#include <vector>

#include <zlib.h>

namespace RunnerTest
{
struct ZipEntry
{
    std::string name, text;
    uint32_t method = 0; // 8: deflated
    uint32_t flags = 0;
    uint32_t mode = 0100644;   // of Unix
    int64_t claimed = -1;      // bytes unpacked that the record tells; -1: the truth
    std::string inHeader = {}; // another name there; empty: the same
};

class ZipMaker
{
public:
    ZipMaker& Add(const ZipEntry& entry)
    {
        const std::string packed = entry.method == 8 ? Deflated(entry.text) : entry.text;
        const std::string& inHeader = entry.inHeader.empty() ? entry.name : entry.inHeader;
        const auto size =
            static_cast<uint32_t>(entry.claimed < 0 ? static_cast<int64_t>(entry.text.size()) : entry.claimed);
        const auto sum = static_cast<uint32_t>(
            crc32(0, reinterpret_cast<const Bytef*>(entry.text.data()), static_cast<uInt>(entry.text.size())));
        const std::string common = Number(entry.flags, 2) + Number(entry.method, 2) + Number(0, 4) + Number(sum, 4) +
                                   Number(packed.size(), 4) + Number(size, 4);
        m_directory += "PK\1\2" + Number(20, 1) + Number(3, 1) + Number(20, 2) + common + Number(entry.name.size(), 2) +
                       Number(0, 8) + Number(0, 2) + Number(entry.mode, 2) + Number(m_files.size(), 4) + entry.name;
        m_files += "PK\3\4" + Number(20, 2) + common + Number(inHeader.size(), 2) + Number(0, 2) + inHeader + packed;
        ++m_count;
        return *this;
    }

    ZipMaker& Add(const std::string& name, const std::string& text) { return Add({name, text}); }

    std::string Text() const
    {
        return m_files + m_directory + "PK\5\6" + Number(0, 4) + Number(m_count, 2) + Number(m_count, 2) +
               Number(m_directory.size(), 4) + Number(m_files.size(), 4) + Number(0, 2);
    }

private:
    // The lowest byte first.
    static std::string Number(uint64_t number, int bytes)
    {
        std::string text;
        for (int i = 0; i < bytes; ++i, number >>= 8u)
            text += static_cast<char>(number & 0xFFu);
        return text;
    }

    static std::string Deflated(const std::string& text)
    {
        z_stream stream = {};
        deflateInit2(&stream, 9, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY);
        std::string source = text, packed(deflateBound(&stream, static_cast<uLong>(text.size())), '\0');
        stream.next_in = reinterpret_cast<Bytef*>(source.data());
        stream.avail_in = static_cast<uInt>(source.size());
        stream.next_out = reinterpret_cast<Bytef*>(packed.data());
        stream.avail_out = static_cast<uInt>(packed.size());
        deflate(&stream, Z_FINISH);
        packed.resize(stream.total_out);
        deflateEnd(&stream);
        return packed;
    }

    std::string m_files, m_directory;
    size_t m_count = 0;
};
} // namespace RunnerTest
