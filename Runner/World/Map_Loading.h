#pragma once
// What the parts of the map reader share: the files that are open, the limits, and the map that comes of them.
// Everything here throws MapFault.

#include "Runner/World/Map_Files.h"
#include "Runner/World/Map_Model.h"
#include "Runner/World/Map_Node.h"

#include <map>

namespace Runner
{
// A template, read once; its cell counts as the map's do.
struct MapTemplate
{
    MapObject object;
    size_t cost = 0; // of a copy, in bytes
};

class MapLoading
{
public:
    MapLoading(MapFiles& source, MapModel& result) : files(source), map(result) {}

    // Reads and parses a file. Its root must be an element of that name (in JSON: have that type).
    std::unique_ptr<MapDocument> Open(const std::string& path, const char* root);

    // The picture's size from the file's header.
    void MeasurePicture(MapPicture& picture);

    // What objects take over from templates and tiles is paid for, because a small file could ask for much of it.
    void PayForCopy(size_t bytes);

    MapFiles& files;
    MapModel& map;
    std::map<std::string, MapTemplate> templates; // by path

private:
    void NoteFile(const std::string& path);
    std::vector<uint8_t> ReadFile(const std::string& path);

    struct Size
    {
        int width, height;
    };

    std::map<std::string, Size> m_pictures;
    size_t m_bytes = 0, m_parts = 0, m_copied = 0;
};

// In the functions below, `file` is the path of the file that the node stands in.

MapProperties ReadMapProperties(const MapNode& node, const std::string& file);
std::string ReadMapClass(const MapNode& node); // "class" or, before 1.9 and since 1.10, "type"

// A picture from an element `image`, or from the attributes that JSON has in its place; without a path where neither
// is.
MapPicture ReadMapPicture(MapLoading& loading, const MapNode& node, const std::string& file);

// All tilesets of the map, in order of their numbers.
void ReadMapTilesets(MapLoading& loading, const MapNode& root);

// The first number of the tileset in a file; one that the map does not have is added to it.
MapCell NumberOfTileset(MapLoading& loading, const std::string& path);

std::vector<MapObject> ReadMapObjects(MapLoading& loading, const MapNode& group, const std::string& file);

// The same without templates and tiles, which collision shapes cannot be.
std::vector<MapObject> ReadMapShapes(const MapNode& group, const std::string& file);

// All layers of the map, whose lists of cells are taken out of the tree. The tilesets must have been read.
void ReadMapLayers(MapLoading& loading, MapNode& root);
} // namespace Runner
