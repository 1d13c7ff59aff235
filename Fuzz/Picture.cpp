// PNG files into sprites. Input: the file; the checksums of its chunks are mended first.

#include "Fuzz/Fuzz_Target.h"

#include "Runner/Draw/Png_Reader.h"
#include "Runner/Draw/Sheet.h"

#include <sys/mman.h>
#include <unistd.h>
#include <vector>
#include <zlib.h>

namespace
{
using namespace Runner;

constexpr size_t SIGNATURE = 8, CHUNK_FRAME = 12; // bytes; length, type and checksum
constexpr uint32_t SIDE_LIMIT = 512;              // larger sides that are allowed become smaller: they only take time

uint32_t BigEndian(const uint8_t* bytes)
{
    return static_cast<uint32_t>(bytes[0]) << 24 | static_cast<uint32_t>(bytes[1]) << 16 |
           static_cast<uint32_t>(bytes[2]) << 8 | bytes[3];
}

void PutBigEndian(uint8_t* bytes, uint32_t number)
{
    for (unsigned i = 0; i < 4; ++i)
        bytes[i] = static_cast<uint8_t>(number >> (24 - 8 * i));
}

// Width and height stand first in the first chunk. What is too large for the Runner stays.
void BoundTheSides(std::vector<uint8_t>& file)
{
    for (const size_t at : {SIGNATURE + 8, SIGNATURE + 12})
        if (file.size() >= at + 4)
        {
            const uint32_t side = BigEndian(file.data() + at);
            if (side > SIDE_LIMIT && side <= static_cast<uint32_t>(PICTURE_SIDE_LIMIT))
                PutBigEndian(file.data() + at, side % SIDE_LIMIT);
        }
}

void MendChecksums(std::vector<uint8_t>& file)
{
    for (size_t at = SIGNATURE; at + CHUNK_FRAME <= file.size();)
    {
        const size_t length = BigEndian(file.data() + at);
        if (length > file.size() - at - CHUNK_FRAME)
            return;
        const uLong sum = crc32(0, file.data() + at + 4, static_cast<uInt>(length + 4));
        PutBigEndian(file.data() + at + 8 + length, static_cast<uint32_t>(sum));
        at += CHUNK_FRAME + length;
    }
}

// A file in memory, which has a name while it lives.
class MemoryFile
{
public:
    explicit MemoryFile(const std::vector<uint8_t>& content) : m_file(memfd_create("fuzz", 0))
    {
        const ssize_t written = write(m_file, content.data(), content.size());
        Fuzz::Require(written == static_cast<ssize_t>(content.size()), "this machine has no memory for a file");
    }
    ~MemoryFile() { close(m_file); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    std::string Name() const { return "/proc/self/fd/" + std::to_string(m_file); }

private:
    int m_file;
};

void CutIntoFrames(Picture& picture, const uint8_t* data, size_t size)
{
    Fuzz::Choices choices(data + size - (size < 16 ? size : 16), size < 16 ? size : 16);
    const int width = 1 + static_cast<int>(choices.Below(static_cast<size_t>(picture.width)));
    const int height = 1 + static_cast<int>(choices.Below(static_cast<size_t>(picture.height)));
    const Sheet sheet(picture, width, height);
    for (int frame = 0; frame < sheet.Frames(); ++frame)
        Fuzz::Require(sheet.Area(frame).left >= 0.0f && sheet.Area(frame).right <= 1.0f, "a frame lies outside");
    const FrameLayout layout = {width,
                                height,
                                static_cast<int>(choices.Below(8)),
                                static_cast<int>(choices.Below(8)),
                                1 + static_cast<int>(choices.Below(4)),
                                1 + static_cast<int>(choices.Below(4))};
    JoinFrames(picture, layout);
    const int left = choices.Bits<uint16_t>();
    CropPicture(picture, left, choices.Bits<uint16_t>(), width, height);
    const uint8_t shade = choices.Byte();
    ClearColour(picture, shade, shade, choices.Byte());
    DivideByAlpha(picture);
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const Fuzz::SlowInputWatch watch(data, size);
    std::vector<uint8_t> file(data, data + size);
    BoundTheSides(file);
    MendChecksums(file);
    const MemoryFile stored(file);
    Picture picture;
    std::string error;
    const bool isRead = ReadPng(stored.Name(), picture, error);
    Fuzz::Require(isRead == error.empty(), "a refused picture has no reason, or a good one has");
    Fuzz::Require(error.find_first_of("\r\n") == std::string::npos, "a refused picture is not told in one line");
    Fuzz::Require(picture.rgba.size() == picture.Offset(0, picture.height), "a picture has not its pixels");
    if (isRead)
        CutIntoFrames(picture, data, size);
    return 0;
}
