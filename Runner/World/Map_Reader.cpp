#include "Runner/World/Map_Reader.h"

#include "Runner/Base/Printable.h"
#include "Runner/World/Map_Fault.h"
#include "Runner/World/Map_Limits.h"
#include "Runner/World/Map_Loading.h"
#include "Runner/World/Map_Path.h"

#include <new>

namespace Runner
{
namespace
{
void CheckOrientation(const MapNode& root)
{
    const std::string orientation = root.Text("orientation", "orthogonal");
    if (orientation != "orthogonal")
        throw MapFault("its orientation is " + Printable(orientation) +
                       ", and only orthogonal maps can be drawn: choose that in the map's properties in the editor");
}

MapOrder ReadOrder(const MapNode& root)
{
    const std::string order = root.Text("renderorder", "right-down");
    if (order == "right-down")
        return MapOrder::RightDown;
    if (order == "right-up")
        return MapOrder::RightUp;
    if (order == "left-down")
        return MapOrder::LeftDown;
    if (order == "left-up")
        return MapOrder::LeftUp;
    throw MapFault("its renderorder \"" + Printable(order) + "\" is unknown: choose one in the editor");
}

int Side(const MapNode& root, const char* name, int least)
{
    if (!root.Has(name))
        throw MapFault(std::string("it has no ") + name + ": save it again from the editor");
    return root.Whole(name, least, least, MapLimits::SIDE);
}

void ReadContent(MapLoading& loading, MapNode& root)
{
    MapModel& map = loading.map;
    CheckOrientation(root);
    map.version = root.Text("version");
    map.className = root.Text("class");
    map.infinite = root.Truth("infinite", false);
    map.columns = Side(root, "width", map.infinite ? 0 : 1);
    map.rows = Side(root, "height", map.infinite ? 0 : 1);
    map.tileWidth = Side(root, "tilewidth", 1);
    map.tileHeight = Side(root, "tileheight", 1);
    map.order = ReadOrder(root);
    map.background = root.Colour("backgroundcolor");
    map.parallaxOriginX = root.Number("parallaxoriginx", 0.0);
    map.parallaxOriginY = root.Number("parallaxoriginy", 0.0);
    map.properties = ReadMapProperties(root, map.path);
    ReadMapTilesets(loading, root);
    ReadMapLayers(loading, root);
}

void Load(const std::string& path, MapFiles& files, MapModel& map)
{
    map.path = ResolveMapPath("", path);
    MapLoading loading(files, map);
    const std::unique_ptr<MapDocument> document = loading.Open(map.path, "map");
    ReadContent(loading, document->Root());
}
} // namespace

bool ReadMap(const std::string& path, MapFiles& files, MapModel& map, std::string& error)
{
    map = {};
    try
    {
        Load(path, files, map);
        return true;
    }
    catch (MapFault& fault)
    {
        fault.AddFile(PrintableName(path));
        error = fault.what();
    }
    catch (const std::bad_alloc&)
    {
        error = PrintableName(path) + ": there is not enough memory for this map: split it into several maps";
    }
    map = {};
    return false;
}
} // namespace Runner
