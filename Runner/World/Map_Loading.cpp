#include "Runner/World/Map_Loading.h"

#include "Runner/Base/Printable.h"
#include "Runner/World/Map_Fault.h"
#include "Runner/World/Map_Limits.h"
#include "Runner/World/Map_Path.h"

#include <algorithm>
#include <cstring>

namespace Runner
{
namespace
{
// Width and height stand at fixed places of the first block of every PNG file, most significant byte first.
constexpr char PNG_START[] = "\x89PNG\r\n\x1A\n\0\0\0\x0DIHDR";
constexpr size_t PNG_START_SIZE = sizeof PNG_START - 1;
constexpr int PICTURE_SIDE = 0x7FFFFFFF;

int PngNumber(const std::vector<uint8_t>& bytes, size_t at)
{
    uint32_t number = 0;
    for (size_t i = 0; i < 4; ++i)
        number = number << 8 | bytes[at + i];
    if (number == 0 || number > PICTURE_SIDE)
        throw MapFault("its size is damaged");
    return static_cast<int>(number);
}

// "line 12", where a fault knows the byte. The parsers have changed their copy of the file.
std::string Line(const std::vector<uint8_t>& bytes, size_t offset)
{
    const auto end = bytes.begin() + static_cast<std::ptrdiff_t>(std::min(offset, bytes.size()));
    return "line " + std::to_string(1 + std::count(bytes.begin(), end, '\n'));
}
} // namespace

void MapLoading::NoteFile(const std::string& path)
{
    if (std::find(map.files.begin(), map.files.end(), path) == map.files.end())
        map.files.push_back(path);
}

std::vector<uint8_t> MapLoading::ReadFile(const std::string& path)
{
    std::vector<uint8_t> bytes;
    std::string why;
    NoteFile(path);
    if (!files.Read(path, MapLimits::FILE_BYTES, bytes, why))
        throw MapFault(why);
    m_bytes += bytes.size();
    if (m_bytes > MapLimits::ALL_BYTES)
        throw MapFault("the map's files have more than " + std::to_string(MapLimits::ALL_BYTES >> 20) +
                       " MB: split it into several maps");
    return bytes;
}

std::unique_ptr<MapDocument> MapLoading::Open(const std::string& path, const char* root)
{
    try
    {
        auto document = std::make_unique<MapDocument>(ReadFile(path), m_parts);
        if (document->Root().name != root)
            throw MapFault(std::string("this is no ") + root + ", but \"" + Printable(document->Root().name) +
                           "\": name another file, or save this one from the editor as what it should be");
        return document;
    }
    catch (MapFault& fault)
    {
        if (fault.Offset() != MapFault::NOWHERE)
            fault.AddPlace(Line(ReadFile(path), fault.Offset()));
        fault.AddFile(PrintableName(path));
        throw;
    }
}

void MapLoading::MeasurePicture(MapPicture& picture)
{
    const auto known = m_pictures.find(picture.path);
    if (known != m_pictures.end())
    {
        picture.width = known->second.width;
        picture.height = known->second.height;
        return;
    }
    WithinPlace([&] { return "picture " + PrintableName(picture.path); },
                [&]
                {
                    const std::vector<uint8_t> bytes = ReadFile(picture.path);
                    if (bytes.size() < PNG_START_SIZE + 8 || std::memcmp(bytes.data(), PNG_START, PNG_START_SIZE) != 0)
                        throw MapFault("this is no PNG file: convert it, and mend the name where it is used");
                    picture.width = PngNumber(bytes, PNG_START_SIZE);
                    picture.height = PngNumber(bytes, PNG_START_SIZE + 4);
                });
    m_pictures[picture.path] = {picture.width, picture.height};
}

void MapLoading::PayForCopy(size_t bytes)
{
    if (bytes > MapLimits::COPIED_BYTES - m_copied)
        throw MapFault("the objects take over too much from templates and tiles, more than " +
                       std::to_string(MapLimits::COPIED_BYTES >> 20) + " MB: use fewer objects or smaller templates");
    m_copied += bytes;
}

std::string ReadMapClass(const MapNode& node)
{
    std::string name = node.Text("class");
    return name.empty() ? node.Text("type") : name;
}

MapPicture ReadMapPicture(MapLoading& loading, const MapNode& node, const std::string& file)
{
    const MapNode* element = node.Child("image");
    const MapNode& from = element == nullptr ? node : *element;
    const std::string source = from.Text(element == nullptr ? "image" : "source");
    MapPicture picture;
    if (source.empty() && element != nullptr)
        throw MapFault("it embeds a picture: put that into a PNG file of its own");
    if (source.empty())
        return picture;
    picture.path = ResolveMapPath(file, source);
    picture.transparent = from.Colour(element == nullptr ? "transparentcolor" : "trans");
    loading.MeasurePicture(picture);
    return picture;
}
} // namespace Runner
