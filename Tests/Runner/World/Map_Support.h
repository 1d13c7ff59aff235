#pragma once
// Maps as strings: their files in memory, and what was read of them as text.

#include "Runner/World/Map_Reader.h"

#include <map>
#include <sstream>
#include <string>

namespace MapTest
{
using namespace Runner;

// Files by path.
class MemoryFiles : public MapFiles
{
public:
    explicit MemoryFiles(std::map<std::string, std::string> content) : files(std::move(content)) {}

    bool Read(const std::string& path, size_t limit, std::vector<uint8_t>& bytes, std::string& why) override
    {
        const auto found = files.find(path);
        if (found == files.end() || found->second.size() > limit)
        {
            why = found == files.end() ? "there is no such file" : "the file is too large";
            return false;
        }
        bytes.assign(found->second.begin(), found->second.end());
        return true;
    }

    std::map<std::string, std::string> files;
};

// The start of a PNG file, which says its size: no more is read of pictures.
inline std::string Png(unsigned width, unsigned height)
{
    std::string start("\x89PNG\r\n\x1A\n\0\0\0\x0DIHDR", 16);
    for (const unsigned side : {width, height})
        for (int shift = 24; shift >= 0; shift -= 8)
            start += static_cast<char>(side >> shift & 0xFF);
    return start + "\x08\x06";
}

inline std::string Replaced(std::string text, const std::string& what, const std::string& with)
{
    for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + with.size()))
        text.replace(at, what.size(), with);
    return text;
}

// ---- what was read, a line for each thing; what has its default is left out ----
class Describer
{
public:
    explicit Describer(const MapModel& map)
    {
        Line("map", map.columns, map.rows, map.tileWidth, map.tileHeight, static_cast<int>(map.order));
        Note(map.infinite, "infinite");
        Note(!map.className.empty(), "class", map.className);
        if (map.background.has_value())
            Add("background", Text(*map.background));
        Add("origin", map.parallaxOriginX, map.parallaxOriginY);
        Properties(map.properties);
        for (const MapTileset& tileset : map.tilesets)
            Describe(tileset);
        for (const MapLayer& layer : map.layers)
            Describe(layer);
    }

    std::string Result() const { return m_out.str(); }

private:
    template <typename... Items> void Add(const Items&... items) { ((m_out << ' ' << items), ...); }
    template <typename... Items> void Line(const Items&... items)
    {
        m_out << (m_out.tellp() > 0 ? "\n" : "");
        const char* gap = "";
        ((m_out << gap << items, gap = " "), ...);
    }
    template <typename... Items> void Note(bool said, const Items&... items)
    {
        if (said)
            Add(items...);
    }

    static std::string Text(const MapColour& c)
    {
        char text[16];
        std::snprintf(text, sizeof text, "#%02x%02x%02x/%02x", c.red, c.green, c.blue, c.alpha);
        return text;
    }
    static std::string Cell(MapCell cell)
    {
        return std::to_string(cell & MAP_CELL_NUMBER) + ((cell & MAP_FLIP_HORIZONTAL) != 0 ? "h" : "") +
               ((cell & MAP_FLIP_VERTICAL) != 0 ? "v" : "") + ((cell & MAP_FLIP_DIAGONAL) != 0 ? "d" : "");
    }

    void Picture(const MapPicture& picture)
    {
        Note(!picture.path.empty(), picture.path, picture.width, picture.height);
        if (picture.transparent.has_value())
            Add("without", Text(*picture.transparent));
    }

    void Properties(const MapProperties& properties)
    {
        for (const MapProperty& property : properties)
        {
            m_out << " [" << property.name;
            Note(!property.className.empty(), "of", property.className);
            switch (property.type)
            {
            case MapPropertyType::String: Add("=", "'" + property.text + "'"); break;
            case MapPropertyType::Int: Add("int", property.number); break;
            case MapPropertyType::Float: Add("float", property.number); break;
            case MapPropertyType::Bool: Add("bool", property.number); break;
            case MapPropertyType::Colour: Add("colour", Text(property.colour)); break;
            case MapPropertyType::File: Add("file", property.text); break;
            case MapPropertyType::Object: Add("object", property.number); break;
            case MapPropertyType::Class: Properties(property.members); break;
            }
            m_out << ']';
        }
    }

    void Describe(const MapTileset& set)
    {
        Line("tileset", set.name, "from", set.path, "first", set.firstNumber, "tiles", set.tileWidth, set.tileHeight,
             "count", set.tileCount);
        Note(set.columns != 0, "columns", set.columns, "spacing", set.spacing, "margin", set.margin);
        Note(set.offsetX != 0 || set.offsetY != 0, "offset", set.offsetX, set.offsetY);
        Note(set.objectAlignment != MapAlignment::BottomLeft, "aligned", static_cast<int>(set.objectAlignment));
        Note(set.drawnAtGridSize, "grid");
        Note(set.keepsAspect, "fit");
        Picture(set.picture);
        Properties(set.properties);
        for (const MapTile& tile : set.tiles)
            Describe(tile);
    }

    void Describe(const MapTile& tile)
    {
        Line("  tile", tile.id, tile.className);
        Picture(tile.picture);
        Note(tile.width != 0, "part", tile.x, tile.y, tile.width, tile.height);
        for (const MapFrame& frame : tile.animation)
            Add("frame", frame.tile, frame.milliseconds);
        Properties(tile.properties);
        for (const MapObject& object : tile.objects)
            Describe(object);
    }

    void Describe(const MapLayer& layer)
    {
        static const char* const KINDS[] = {"tiles", "objects", "picture", "group"};
        Line(KINDS[static_cast<int>(layer.kind)], layer.name, layer.className, "in", layer.parent);
        Describe("own", layer.own);
        Describe("resolved", layer.resolved);
        Properties(layer.properties);
        Picture(layer.picture);
        Note(layer.repeatX, "repeats x");
        Note(layer.repeatY, "repeats y");
        Note(layer.kind == MapLayerKind::Objects, layer.drawnByY ? "by y" : "by order", Text(layer.objectColour));
        Note(layer.columns != 0, "at", layer.left, layer.top, "size", layer.columns, layer.rows, ":");
        for (const MapCell cell : layer.cells)
            Add(Cell(cell));
        for (const MapObject& object : layer.objects)
            Describe(object);
    }

    void Describe(const char* name, const MapLook& look)
    {
        Add(name);
        Note(!look.visible, "hidden");
        Note(look.opacity != 1.0, "opacity", look.opacity);
        Note(!(look.tint == MapColour()), "tint", Text(look.tint));
        Note(look.offsetX != 0.0 || look.offsetY != 0.0, "offset", look.offsetX, look.offsetY);
        Note(look.parallaxX != 1.0 || look.parallaxY != 1.0, "parallax", look.parallaxX, look.parallaxY);
    }

    void Describe(const MapObject& object)
    {
        static const char* const SHAPES[] = {"rectangle", "ellipse", "point", "polygon", "polyline", "text", "tile"};
        Line("  object", object.id, SHAPES[static_cast<int>(object.shape)], object.name, object.className, "at",
             object.x, object.y);
        Note(object.width != 0.0 || object.height != 0.0, "size", object.width, object.height);
        Note(object.rotation != 0.0, "turned", object.rotation);
        Note(!object.visible, "hidden");
        Note(object.cell != 0, "cell", Cell(object.cell));
        for (const MapPoint& point : object.points)
            Add("point", point.x, point.y);
        if (object.text.has_value())
            Describe(*object.text);
        Properties(object.properties);
    }

    void Describe(const MapText& text)
    {
        Add("'" + text.text + "'", text.family, text.pixelSize, Text(text.colour), static_cast<int>(text.alignment));
        Note(text.wrap, "wrap");
        Note(text.bold, "bold");
        Note(text.italic, "italic");
        Note(text.underline, "underline");
        Note(text.strikeout, "strikeout");
        Note(!text.kerning, "unkerned");
        Note(text.justified, "justified");
    }

    std::ostringstream m_out;
};

// The map as text, or the error.
inline std::string ReadAsText(std::map<std::string, std::string> files, const std::string& path)
{
    MemoryFiles source(std::move(files));
    MapModel map;
    std::string error;
    return ReadMap(path, source, map, error) ? Describer(map).Result() : "error: " + error;
}
} // namespace MapTest
