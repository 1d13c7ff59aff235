// Objects of a map: read from their layer or from a template, with what the layer changes of it.
#include "Runner/Base/Printable.h"
#include "Runner/World/Map_Fault.h"
#include "Runner/World/Map_Limits.h"
#include "Runner/World/Map_Loading.h"
#include "Runner/World/Map_Path.h"

#include <algorithm>
#include <limits>

namespace Runner
{
namespace
{
// Points as "x,y x,y".
std::vector<MapPoint> PointsOf(std::string_view text)
{
    std::vector<MapPoint> points;
    while (!text.empty())
    {
        const std::string_view pair = text.substr(0, std::min(text.find(' '), text.size()));
        text.remove_prefix(std::min(pair.size() + 1, text.size()));
        if (pair.empty())
            continue;
        const size_t comma = std::min(pair.find(','), pair.size());
        MapPoint point;
        if (comma == pair.size() || !ReadNumber(pair.substr(0, comma), point.x) ||
            !ReadNumber(pair.substr(comma + 1), point.y))
            throw MapFault("\"points\" must be numbers as \"0,0 10,20\", and one is \"" + Printable(pair) + "\"");
        points.push_back(point);
    }
    return points;
}

// In XML a text, in JSON a list of nodes with x and y.
std::vector<MapPoint> ReadPoints(const MapNode& object, std::string_view name)
{
    const MapNode* first = object.Child(name);
    if (const MapAttribute* text = first->Find("points"))
        return PointsOf(text->text);
    std::vector<MapPoint> points;
    for (const MapNode& child : object.children)
        if (child.name == name)
            points.push_back({child.Number("x", 0.0), child.Number("y", 0.0)});
    return points;
}

// 0 for left or top, 1 for the centre, 2 for right or bottom.
int Third(const std::string& name) { return name == "center" ? 1 : name == "right" || name == "bottom" ? 2 : 0; }

MapText ReadText(const MapNode& node)
{
    MapText text;
    text.text = node.Text("text");
    text.family = node.Text("fontfamily", "sans-serif");
    text.pixelSize = node.Whole("pixelsize", text.pixelSize, 1, 10000);
    text.wrap = node.Truth("wrap", text.wrap);
    text.bold = node.Truth("bold", text.bold);
    text.italic = node.Truth("italic", text.italic);
    text.underline = node.Truth("underline", text.underline);
    text.strikeout = node.Truth("strikeout", text.strikeout);
    text.kerning = node.Truth("kerning", text.kerning);
    text.colour = node.Colour("color").value_or(text.colour);
    const std::string across = node.Text("halign");
    text.justified = across == "justify";
    text.alignment = static_cast<MapAlignment>(Third(node.Text("valign")) * 3 + Third(across));
    return text;
}

void SetShape(MapObject& object, MapShape shape)
{
    object.shape = shape;
    object.points.clear();
    object.text.reset();
    object.cell = 0;
}

// An element in XML, a value in JSON.
bool HasMark(const MapNode& node, const char* name) { return node.Child(name) != nullptr || node.Truth(name, false); }

void ReadShape(const MapNode& node, MapObject& object)
{
    if (HasMark(node, "ellipse"))
        SetShape(object, MapShape::Ellipse);
    else if (HasMark(node, "point"))
        SetShape(object, MapShape::Point);
    else if (const MapNode* text = node.Child("text"))
    {
        SetShape(object, MapShape::Text);
        object.text = ReadText(*text);
    }
    for (const auto& [name, shape] :
         {std::pair("polygon", MapShape::Polygon), std::pair("polyline", MapShape::Polyline)})
        if (node.Child(name) != nullptr)
        {
            SetShape(object, shape);
            object.points = ReadPoints(node, name);
        }
    if (node.Has("gid"))
    {
        SetShape(object, MapShape::Tile);
        object.cell = node.Cell("gid");
    }
}

// The first properties, and those of the second that the first do not name.
MapProperties Joined(MapProperties own, const MapProperties& inherited)
{
    if (inherited.empty())
        return own;
    MapProperties all;
    const auto less = [](const MapProperty& a, const MapProperty& b) { return a.name < b.name; };
    std::set_union(std::make_move_iterator(own.begin()), std::make_move_iterator(own.end()), inherited.begin(),
                   inherited.end(), std::back_inserter(all), less);
    return all;
}

// What the node does not say stays as it is in `object`.
void ReadObject(const MapNode& node, const std::string& file, MapObject& object)
{
    object.id = node.Whole("id", 0, 0, std::numeric_limits<int>::max());
    object.name = node.Text("name", object.name.c_str());
    const std::string className = ReadMapClass(node);
    if (!className.empty())
        object.className = className;
    ReadShape(node, object);
    object.x = node.Number("x", 0.0);
    object.y = node.Number("y", 0.0);
    object.width = node.Number("width", object.width);
    object.height = node.Number("height", object.height);
    object.rotation = node.Number("rotation", object.rotation);
    object.visible = node.Truth("visible", object.visible);
    object.properties = Joined(ReadMapProperties(node, file), object.properties);
}

std::string PlaceOf(const MapNode& node)
{
    const std::string name = node.Text("name");
    return "object " + node.Text("id", "without id") + (name.empty() ? "" : " '" + Printable(name) + "'");
}

size_t CostOf(const MapProperties& properties)
{
    size_t cost = 0;
    for (const MapProperty& property : properties)
        cost += sizeof property + property.name.size() + property.className.size() + property.text.size() +
                CostOf(property.members);
    return cost;
}

size_t CostOf(const MapObject& object)
{
    return object.name.size() + object.className.size() + object.points.size() * sizeof(MapPoint) +
           (object.text.has_value() ? object.text->text.size() + object.text->family.size() : 0) +
           CostOf(object.properties);
}

// The cell of a template counts through the tileset that the template names.
MapCell CellInMap(MapLoading& loading, const MapNode& root, const std::string& path, MapCell cell)
{
    const MapNode* tileset = root.Child("tileset");
    const std::string source = tileset == nullptr ? "" : tileset->Text("source");
    if (source.empty())
        throw MapFault("it shows a tile and names no tileset file: make the template again in the editor");
    const auto first = static_cast<MapCell>(tileset->Whole("firstgid", 1, 1, static_cast<int>(MAP_CELL_NUMBER)));
    const MapCell number = cell & MAP_CELL_NUMBER;
    const MapCell id = number - first;
    if (number < first || id >= static_cast<MapCell>(MapLimits::TILES))
        throw MapFault("it shows a tile that its tileset does not have: make the template again in the editor");
    return (NumberOfTileset(loading, ResolveMapPath(path, source)) + id) | (cell & MAP_CELL_FLAGS);
}

MapTemplate ReadTemplate(MapLoading& loading, const std::string& path)
{
    MapTemplate result;
    const std::unique_ptr<MapDocument> document = loading.Open(path, "template");
    const MapNode* node = document->Root().Child("object");
    try
    {
        if (node == nullptr)
            throw MapFault("the template has no object: make it again in the editor");
        if (node->Has("template"))
            throw MapFault("a template cannot use another template: make it again in the editor");
        ReadObject(*node, path, result.object);
        if (result.object.shape == MapShape::Tile)
            result.object.cell = CellInMap(loading, document->Root(), path, result.object.cell);
    }
    catch (MapFault& fault)
    {
        fault.AddFile(PrintableName(path));
        throw;
    }
    result.cost = CostOf(result.object);
    return result;
}

const MapTemplate& TemplateAt(MapLoading& loading, const std::string& path)
{
    const auto known = loading.templates.find(path);
    if (known != loading.templates.end())
        return known->second;
    return loading.templates[path] = ReadTemplate(loading, path);
}

// A tile object is as large as its tile unless it says otherwise, and has the tile's class and properties besides its
// own.
void TakeFromTile(MapLoading& loading, MapObject& object)
{
    const MapCell number = object.cell & MAP_CELL_NUMBER;
    const MapTileset* tileset = loading.map.TilesetOf(object.cell);
    if (tileset == nullptr)
        throw MapFault("it shows tile number " + std::to_string(number) +
                       ", which no tileset has: give it another tile in the editor");
    object.cell &= ~MAP_CELL_HEXAGONAL;
    const MapTile* tile = tileset->FindTile(static_cast<int>(number - tileset->firstNumber));
    const bool hasPicture = tile != nullptr && tileset->IsCollection();
    if (object.width == 0.0)
        object.width = hasPicture ? tile->width : tileset->tileWidth;
    if (object.height == 0.0)
        object.height = hasPicture ? tile->height : tileset->tileHeight;
    if (tile == nullptr)
        return;
    loading.PayForCopy(tile->className.size() + CostOf(tile->properties));
    if (object.className.empty())
        object.className = tile->className;
    object.properties = Joined(std::move(object.properties), tile->properties);
}

MapObject ReadWhole(MapLoading& loading, const MapNode& node, const std::string& file)
{
    MapObject object;
    const std::string source = node.Text("template");
    if (!source.empty())
    {
        const MapTemplate& from = TemplateAt(loading, ResolveMapPath(file, source));
        loading.PayForCopy(from.cost);
        object = from.object;
    }
    ReadObject(node, file, object);
    if (object.shape == MapShape::Tile)
        TakeFromTile(loading, object);
    return object;
}

template <typename Read> std::vector<MapObject> ReadEach(const MapNode& group, Read read)
{
    std::vector<MapObject> objects;
    for (const MapNode& child : group.children)
        if (child.name == "object")
            WithinPlace([&] { return PlaceOf(child); }, [&] { objects.push_back(read(child)); });
    return objects;
}
} // namespace

std::vector<MapObject> ReadMapObjects(MapLoading& loading, const MapNode& group, const std::string& file)
{
    return ReadEach(group, [&](const MapNode& node) { return ReadWhole(loading, node, file); });
}

std::vector<MapObject> ReadMapShapes(const MapNode& group, const std::string& file)
{
    const auto read = [&](const MapNode& node)
    {
        MapObject object;
        if (node.Has("template") || node.Has("gid"))
            throw MapFault("a collision shape cannot be a template or a tile: draw it as a shape");
        ReadObject(node, file, object);
        return object;
    };
    return ReadEach(group, read);
}
} // namespace Runner
