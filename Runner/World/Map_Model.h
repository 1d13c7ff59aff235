#pragma once
// A map from an editor, read: plain data, whichever of the formats it was written in. Nothing here points at a file
// that is still to be read, but for the pictures, whose paths and sizes are known.
//
// Conventions: x grows to the right, y downwards, in pixels of the map; angles in degrees, clockwise. Paths are
// relative to the game's folder, with '/' between their parts, and never lead out of it.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Runner
{
struct MapColour
{
    uint8_t red = 255, green = 255, blue = 255, alpha = 255; // not multiplied by alpha
    bool operator==(const MapColour& other) const
    {
        return red == other.red && green == other.green && blue == other.blue && alpha == other.alpha;
    }
};

enum class MapPropertyType
{
    String, // text
    Int,    // number, a whole one
    Float,  // number
    Bool,   // number, 0 or 1
    Colour, // colour; text has it as written, empty for none
    File,   // text: a path; empty for none
    Object, // number: an object's id, 0 for none
    Class   // members; className names the class
};

// A custom property. The fields that its type does not name keep their defaults.
struct MapProperty
{
    std::string name;
    MapPropertyType type = MapPropertyType::String;
    std::string className; // of a class, or of an enumeration that is written as String or Int; often empty
    std::string text;
    double number = 0.0;
    MapColour colour;
    std::vector<MapProperty> members; // sorted by name
};

// Sorted by name, each name once.
using MapProperties = std::vector<MapProperty>;

const MapProperty* FindProperty(const MapProperties& properties, const std::string& name); // null when there is none

// ---- cells ----
// A cell is 0, or the number of a tile with the flags of how it is turned. Numbers count through all tilesets of the
// map: a tileset's tiles have firstNumber + their own id. Flags apply in the order diagonal (columns exchanged with
// rows), horizontal, vertical.
using MapCell = uint32_t;
constexpr MapCell MAP_FLIP_HORIZONTAL = 0x80000000u;
constexpr MapCell MAP_FLIP_VERTICAL = 0x40000000u;
constexpr MapCell MAP_FLIP_DIAGONAL = 0x20000000u;
constexpr MapCell MAP_CELL_HEXAGONAL = 0x10000000u; // turns tiles of hexagonal maps: no cell of a read map has it
constexpr MapCell MAP_CELL_FLAGS = 0xF0000000u;
constexpr MapCell MAP_CELL_NUMBER = ~MAP_CELL_FLAGS;

// ---- objects ----
struct MapPoint
{
    double x = 0.0, y = 0.0;
};

enum class MapShape
{
    Rectangle, // x, y is the top left corner of width and height, and so for ellipses and texts
    Ellipse,
    Point,    // x, y
    Polygon,  // points, relative to x, y; closed
    Polyline, // points, relative to x, y; open
    Text,
    Tile // cell, drawn width x height large; its tileset's objectAlignment says which point of it x, y is
};

enum class MapAlignment
{
    TopLeft,
    Top,
    TopRight,
    Left,
    Centre,
    Right,
    BottomLeft,
    Bottom,
    BottomRight
};

struct MapText
{
    std::string text;
    std::string family = "sans-serif";
    int pixelSize = 16;
    bool wrap = false, bold = false, italic = false, underline = false, strikeout = false, kerning = true;
    bool justified = false; // else by alignment
    MapColour colour = {0, 0, 0, 255};
    MapAlignment alignment = MapAlignment::TopLeft;
};

// With its template applied. A tile object without a class has its tile's class, and has its tile's properties
// but those that it sets itself.
struct MapObject
{
    int id = 0; // of a map's objects: each once, or 0 where the file gives none
    std::string name, className;
    MapShape shape = MapShape::Rectangle;
    double x = 0.0, y = 0.0, width = 0.0, height = 0.0;
    double rotation = 0.0; // about x, y
    bool visible = true;
    MapCell cell = 0;             // of a Tile, otherwise 0
    std::vector<MapPoint> points; // of a Polygon or Polyline
    std::optional<MapText> text;  // of a Text
    MapProperties properties;
};

// ---- tilesets ----
struct MapPicture
{
    std::string path; // empty for none
    int width = 0, height = 0;
    std::optional<MapColour> transparent; // pixels of this colour are not drawn
};

struct MapFrame
{
    int tile = 0; // an id in the same tileset
    int milliseconds = 0;
};

struct MapTile
{
    int id = 0;
    std::string className;
    MapPicture picture;                      // in a collection of pictures
    int x = 0, y = 0, width = 0, height = 0; // the part of that picture
    std::vector<MapFrame> animation;         // empty for none
    MapProperties properties;
    std::vector<MapObject> objects; // collision shapes, relative to the tile's top left corner
};

struct MapTileset
{
    MapCell firstNumber = 1;
    std::string name, className;
    std::string path; // the file it was read from: the map's own for an embedded one
    int tileWidth = 0, tileHeight = 0, spacing = 0, margin = 0;
    int columns = 0;   // of the picture; 0 in a collection
    int tileCount = 0; // ids of a picture's tiles are 0 to tileCount - 1; those of a collection may have gaps
    int offsetX = 0, offsetY = 0; // added to where its tiles are drawn
    MapPicture picture;           // no path: a collection of pictures
    MapAlignment objectAlignment = MapAlignment::BottomLeft;
    bool drawnAtGridSize = false; // tiles of layers are scaled to the map's tile size
    bool keepsAspect = false;     // and then keep their proportions, centred in the cell
    std::vector<MapTile> tiles;   // by id, those that have something to say: all of them in a collection
    MapProperties properties;

    bool IsCollection() const { return picture.path.empty(); }
    const MapTile* FindTile(int id) const; // null when there is nothing to say about it
    bool HasTile(int id) const;
};

// ---- layers ----
struct MapLook
{
    bool visible = true;
    double opacity = 1.0; // 0 to 1
    MapColour tint;
    double offsetX = 0.0, offsetY = 0.0;
    double parallaxX = 1.0, parallaxY = 1.0;
};

enum class MapLayerKind
{
    Tiles,
    Objects,
    Picture,
    Group
};

struct MapLayer
{
    MapLayerKind kind = MapLayerKind::Tiles;
    int id = 0; // 0 where the file gives none
    std::string name, className;
    int parent = -1;  // the group that it is in, an index into the map's layers; -1 for none
    MapLook own;      // as the file says
    MapLook resolved; // with those of the groups around it: products, sums of the offsets, and visible only if all are
    MapProperties properties;

    // Tiles: the rectangle of the map's grid that has cells, row by row. What lies outside is empty. An infinite map's
    // layer covers just its chunks, and left and top may be negative.
    int left = 0, top = 0, columns = 0, rows = 0;
    std::vector<MapCell> cells;

    // Objects
    std::vector<MapObject> objects;
    bool drawnByY = true; // from the top down; else in the order of the list
    MapColour objectColour = {160, 160, 164, 255};

    // Picture, whose top left corner is at the layer's offset
    MapPicture picture;
    bool repeatX = false, repeatY = false;
};

enum class MapOrder // of the cells of a layer: where tiles overlap, later ones cover earlier ones
{
    RightDown,
    RightUp,
    LeftDown,
    LeftUp
};

// An orthogonal map.
struct MapModel
{
    std::string path;
    std::string version; // of the format, as the file says
    std::string className;
    bool infinite = false;
    int columns = 0, rows = 0; // of an infinite map as the file says, which bounds nothing
    int tileWidth = 0, tileHeight = 0;
    MapOrder order = MapOrder::RightDown;
    std::optional<MapColour> background;
    double parallaxOriginX = 0.0, parallaxOriginY = 0.0;
    MapProperties properties;
    std::vector<MapTileset> tilesets; // by firstNumber; those that only templates use stand last
    std::vector<MapLayer> layers;     // in the order of drawing; a group stands before what is in it
    std::vector<std::string> files;   // all that were read, the map first, each once; pictures too

    // The tileset that a cell's tile belongs to; null for an empty cell. Every cell of a read map has one.
    const MapTileset* TilesetOf(MapCell cell) const;
};
} // namespace Runner
