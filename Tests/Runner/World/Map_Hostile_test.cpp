// Maps that are damaged or meant to harm: each is refused in one line that says what, where, and what to do.
#include "Tests/Runner/World/Map_Town.h"

#include "Runner/World/Map_Cells.h"
#include "Runner/World/Map_Fault.h"
#include "Runner/World/Map_Limits.h"
#include "Runner/World/Map_Path.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
using namespace MapTest;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

// The error of the town in a format after one text in one file was exchanged for another.
std::string ErrorAfter(Format format, const std::string& file, const std::string& what, const std::string& with)
{
    auto files = TownFiles(format, ENCODINGS[0]);
    EXPECT_THAT(files[file], HasSubstr(what));
    files[file] = Replaced(files[file], what, with);
    const std::string text = ReadAsText(files, TownPath(format));
    EXPECT_THAT(text, Not(HasSubstr("\n")));
    return text;
}

struct Damage
{
    const char *file, *what, *with, *error;
};

void ExpectErrors(Format format, const std::vector<Damage>& damages)
{
    for (const Damage& damage : damages)
        EXPECT_EQ(ErrorAfter(format, damage.file, damage.what, damage.with), std::string("error: ") + damage.error);
}

TEST(MapErrors, ACellsErrorNamesTheLayerAndThePlace)
{
    ExpectErrors(
        Format::Xml,
        {{"maps/town.tmx", "1,2,2147483651", "1,2,2147483656",
          "maps/town.tmx: layer 'ground': the cell at column 2, row 0 has tile number 8, which no tileset has: erase "
          "it, "
          "or bring the tileset back"},
         {"maps/town.tmx", "0,1610612740,6", "0,7,6",
          "maps/town.tmx: layer 'ground': the cell at column 1, row 1 has tile number 7, which no tileset has: erase "
          "it, "
          "or bring the tileset back"}, // the collection has numbers 6 and 9
         {"maps/town.tmx", "1,2,2147483651", "1,2,4294967296",
          "maps/town.tmx: layer 'ground': its cells are not numbers separated by commas, at \",?0,1610612740,6?\": "
          "save it "
          "again from the editor"},
         {"maps/town.tmx", "1,2,2147483651", "1,two,3",
          "maps/town.tmx: layer 'ground': its cells are not numbers separated by commas, at "
          "\"two,3,?0,1610612740,...\": "
          "save it again from the editor"},
         {"maps/town.tmx", ",6\n", "\n",
          "maps/town.tmx: layer 'ground': it holds 5 cells where its width and height make 6: save it again from the "
          "editor"},
         {"maps/town.tmx", ",6\n", ",6,0\n",
          "maps/town.tmx: layer 'ground': it holds more cells where its width and height make 6: save it again from "
          "the "
          "editor"},
         {"maps/town.tmx", "encoding=\"csv\"", "encoding=\"morse\"",
          "maps/town.tmx: layer 'ground': its encoding \"morse\" is unknown: in the map's properties, choose CSV or "
          "base64"},
         {"maps/town.tmx", "encoding=\"csv\"", "",
          "maps/town.tmx: layer 'ground': it holds 0 cells where its width and height make 6: save it again from the "
          "editor"}});
    ExpectErrors(
        Format::Json,
        {{"maps/town.tmj", ",6]", "]",
          "maps/town.tmj: layer 'ground': it holds 5 cells where its width and height make 6: save it again from "
          "the editor"},
         {"maps/town.tmj", ",6]", ",-6]",
          "maps/town.tmj: \"data\" must be a list of tile numbers: save it again from the editor"},
         {"maps/town.tmj", ",6]", ",6.5]",
          "maps/town.tmj: \"data\" must be a list of tile numbers: save it again from the editor"},
         {"maps/town.tmj", ",6]", ",[6]]",
          "maps/town.tmj: layer 'ground': it holds 5 cells where its width and height make 6: save it again from "
          "the editor"}});
}

TEST(MapErrors, TilesetsAndTheirFilesAreNamed)
{
    ExpectErrors(
        Format::Xml,
        {{"maps/town.tmx", "width=\"16\" tileheight=\"8\" spacing", "width=\"0\" tileheight=\"8\" spacing",
          "maps/town.tmx: tileset 'ground': \"tilewidth\" must be a whole number from 1 to 1048576, and is \"0\""},
         {"maps/town.tmx", "margin=\"2\"", "margin=\"2000000\"",
          "maps/town.tmx: tileset 'ground': \"margin\" must be a whole number from 0 to 1048576, and is \"2000000\""},
         {"maps/town.tmx", "margin=\"2\"", "margin=\"30\"",
          "maps/town.tmx: tileset 'ground': its picture of 36 x 20 has 0 tiles of its size: at least 1 and at most "
          "1048576 "
          "are possible"},
         {"maps/town.tmx", "tileid=\"3\"", "tileid=\"4\"",
          "maps/town.tmx: tileset 'ground': the animation of tile 1 shows a tile that does not exist: remove that "
          "frame"},
         {"maps/town.tmx", "<tile id=\"1\"", "<tile id=\"4\"",
          "maps/town.tmx: tileset 'ground': tile 4 lies beyond the picture's 4: remove it, or give it another picture"},
         {"maps/town.tmx", "firstgid=\"5\"", "firstgid=\"1\"",
          "maps/town.tmx: two tilesets begin with the number 1: save the map again from the editor"},
         {"maps/town.tmx", "firstgid=\"5\"", "firstgid=\"268435455\"",
          "maps/town.tmx: tileset 'things': its numbers go beyond 268435455: save the map again from the editor"},
         {"maps/town.tmx", "art/ground.png", "art/grund.png",
          "maps/town.tmx: tileset 'ground': picture maps/art/grund.png: there is no such file"},
         {"maps/town.tmx", "../sets/things.tsx", "things.tsx", "maps/things.tsx: there is no such file"},
         {"maps/town.tmx", "../sets/things.tsx", "../sets/barrel.tx",
          "sets/barrel.tx: this is no tileset, but \"template\": name another file, or save this one from the editor "
          "as "
          "what it should be"},
         {"maps/art/ground.png", "PNG", "GIF",
          "maps/town.tmx: tileset 'ground': picture maps/art/ground.png: this is no PNG file: convert it, and mend the "
          "name where it is used"},
         {"sets/things.tsx", "<tile id=\"4\"", "<tile id=\"1\"",
          "sets/things.tsx: tile 1 stands there twice: remove one"},
         {"sets/things.tsx", "width=\"5\"", "width=\"7\"",
          "sets/things.tsx: tile 4: \"width\" must be a whole number from 1 to 6, and is \"7\""},
         {"sets/things.tsx", "</tileset>", "",
          "sets/things.tsx: line 6: the XML is damaged (Start-end "
          "tags mismatch): save it again from the editor"}});
}

TEST(MapErrors, ObjectsPropertiesAndTemplatesAreNamed)
{
    ExpectErrors(
        Format::Xml,
        {{"maps/town.tmx", "10,0.5", "10,0.5,",
          "maps/town.tmx: layer 'things': object 4: \"points\" must be numbers as "
          "\"0,0 10,20\", and one is \"10,0.5,\""},
         {"maps/town.tmx", "rotation=\"45\"", "rotation=\"nan\"",
          "maps/town.tmx: layer 'things': object 1 'door': \"rotation\" must be a number, and is \"nan\""},
         {"maps/town.tmx", "x=\"1.5\"", "x=\"1e10\"",
          "maps/town.tmx: layer 'things': object 1 'door': \"x\" must be a number of at most 1e9, and is \"1e10\""},
         {"maps/town.tmx", "<object id=\"3\"", "<object id=\"2\"",
          "maps/town.tmx: two objects have the id 2: give one of them another"},
         {"maps/town.tmx", "gid=\"2147483650\"", "gid=\"2147483656\"",
          "maps/town.tmx: layer 'things': object 7: it shows tile number 8, which no tileset has: give it another tile "
          "in "
          "the editor"},
         {"maps/town.tmx", "type=\"color\" value=\"#80ff0010\"", "type=\"color\" value=\"red\"",
          "maps/town.tmx: property 'glow': \"value\" must be a colour, as #rrggbb or #aarrggbb, and is \"red\""},
         {"maps/town.tmx", "name=\"count\"", "name=\"boss\"",
          "maps/town.tmx: two properties have the name \"boss\": rename one"},
         {"maps/town.tmx", "type=\"int\" value=\"-3\"", "type=\"list\" value=\"-3\"",
          "maps/town.tmx: property 'count': its type \"list\" is unknown: give it one of string, int, float, bool, "
          "color, "
          "file, object, class"},
         {"maps/town.tmx", "value=\"-3\"", "value=\"2147483648\"",
          "maps/town.tmx: property 'count': \"value\" must be a whole number from -2147483648 to 2147483647, and is "
          "\"2147483648\""},
         {"sets/barrel.tx", "<object ", "<object template=\"barrel.tx\" ",
          "sets/barrel.tx: a template cannot use another template: make it again in the editor"},
         {"sets/barrel.tx", "gid=\"2\"", "gid=\"2000000\"",
          "sets/barrel.tx: it shows a tile that its tileset does not have: make the template again in the editor"},
         {"maps/town.tmx", "x=\"0.5\" y=\"1\" width", "template=\"../sets/barrel.tx\" width",
          "maps/town.tmx: tileset 'ground': tile 1: object 1: a collision shape cannot be a template or a tile: draw "
          "it as "
          "a shape"}});
}

TEST(MapErrors, WhatIsNotSupportedIsSaidInOneLine)
{
    for (const char* orientation : {"isometric", "staggered", "hexagonal"})
        EXPECT_EQ(ErrorAfter(Format::Xml, "maps/town.tmx", "\"orthogonal\" renderorder",
                             "\"" + std::string(orientation) + "\" renderorder"),
                  "error: maps/town.tmx: its orientation is " + std::string(orientation) +
                      ", and only orthogonal maps can be drawn: choose that in the map's properties in the editor");
    ExpectErrors(
        Format::Json,
        {{"maps/town.tmj", "\"properties\":[\n", "\"properties\":{\"old\":1},\"x\":[\n",
          "maps/town.tmj: its properties have a form that editors before 1.2 wrote: save it again from a newer "
          "one"},
         {"maps/town.tmj", "\"type\":\"map\"", "\"type\":\"world\"",
          "maps/town.tmj: this is no map, but \"world\": name another file, or save this one from the editor as "
          "what it should be"}});
    EXPECT_EQ(ReadAsText({{"m", "local map = {}"}}, "m"),
              "error: m: this is neither XML nor JSON: save it from the editor as TMX or TMJ, in UTF-8");
    EXPECT_EQ(ReadAsText({{"m", ""}}, "m"),
              "error: m: this is neither XML nor JSON: save it from the editor as TMX or TMJ, in UTF-8");
}

// ---- paths ----
TEST(MapPaths, StayInTheFolder)
{
    EXPECT_EQ(ResolveMapPath("maps/town.tmx", "../sets/./a.tsx"), "sets/a.tsx");
    EXPECT_EQ(ResolveMapPath("maps/town.tmx", "a//b.png"), "maps/a/b.png");
    EXPECT_EQ(ResolveMapPath("town.tmx", "x/../y.png"), "y.png");
    const char* const REFUSED[] = {"../../a.png",
                                   "/etc/passwd",
                                   "..\\..\\a.png",
                                   "C:/a.png",
                                   "file:///etc/passwd",
                                   "x/../../../a.png",
                                   "//host/a.png",
                                   "",
                                   "..",
                                   "sets/",
                                   "a\nb.png",
                                   ":/icon.png"};
    for (const char* path : REFUSED)
        EXPECT_THROW(ResolveMapPath("maps/town.tmx", path), MapFault) << path;
    EXPECT_THROW(ResolveMapPath("town.tmx", std::string("a\0b", 3)), MapFault);
    EXPECT_THROW(ResolveMapPath("town.tmx", std::string(MapLimits::PATH_BYTES + 1, 'a')), MapFault);
}

TEST(MapPaths, EveryPlaceThatNamesAFileRefusesOneOutside)
{
    const char* const OUTSIDE = "the path \"../../secret\" leaves the game's folder: put the file into it";
    const char* const PLACES[][2] = {{"art/ground.png", "maps/town.tmx: tileset 'ground': "},
                                     {"../sets/things.tsx", "maps/town.tmx: tileset '': "},
                                     {"../art/sky.png", "maps/town.tmx: layer 'sky': "},
                                     {"../sets/barrel.tx", "maps/town.tmx: layer 'things': object 8: "},
                                     {"../music/town.ogg", "maps/town.tmx: property 'music': "}};
    for (const auto& [path, place] : PLACES)
        EXPECT_EQ(ErrorAfter(Format::Xml, "maps/town.tmx", path, "../../secret"),
                  "error: " + std::string(place) + OUTSIDE);
    EXPECT_EQ(ErrorAfter(Format::Xml, "sets/things.tsx", "barrel.png", "../../secret"),
              "error: sets/things.tsx: tile 1: " + std::string(OUTSIDE));
    EXPECT_EQ(ErrorAfter(Format::Xml, "sets/barrel.tx", "things.tsx", "../../secret"),
              "error: sets/barrel.tx: " + std::string(OUTSIDE));
    EXPECT_EQ(ReadAsText({}, "../secret"),
              "error: ../secret: the path \"../secret\" leaves the game's folder: put the file into it");
}

// ---- sizes ----
std::string WithSize(const std::string& width, const std::string& height, const std::string& layers = "")
{
    const std::string size = " width=\"" + width + "\" height=\"" + height + "\"";
    const std::string layer = "<layer name=\"l\"" + size +
                              "><data encoding=\"base64\" compression=\"zlib\">eJxjYBgFo2AUjFQAAAQAAAE=</data></layer>";
    return ReadAsText({{"m", "<map" + size + " tilewidth=\"1\" tileheight=\"1\">" + layer + layers + "</map>"}}, "m");
}

TEST(MapLimitsTest, ALayerOfTooManyCellsTakesNoMemory)
{
    const std::string line = " tiles: a layer may have 16777216, all layers 33554432, so split the map";
    EXPECT_EQ(WithSize("65536", "65536"), "error: m: layer 'l': it covers 65536 x 65536" + line);
    EXPECT_EQ(WithSize("4097", "4096"), "error: m: layer 'l': it covers 4097 x 4096" + line);
    EXPECT_EQ(WithSize("2147483648", "1"),
              "error: m: \"width\" must be a whole number from 1 to 1048576, and is \"2147483648\"");
    EXPECT_EQ(WithSize("-1", "1"), "error: m: \"width\" must be a whole number from 1 to 1048576, and is \"-1\"");
}

TEST(MapLimitsTest, ChunksFarApartOrOnTopOfEachOtherAreRefused)
{
    const auto chunked = [](const std::string& chunks)
    {
        return ReadAsText({{"m", "<map infinite=\"1\" width=\"1\" height=\"1\" tilewidth=\"1\" tileheight=\"1\">"
                                 "<layer name=\"l\"><data encoding=\"csv\">" +
                                     chunks + "</data></layer></map>"}},
                          "m");
    };
    const std::string first = R"(<chunk x="-1000000" y="0" width="1" height="1">0</chunk>)";
    EXPECT_EQ(
        chunked(first + R"(<chunk x="1000000" y="100" width="1" height="1">0</chunk>)"),
        "error: m: layer 'l': it covers 2000001 x 101 tiles: a layer may have 16777216, all layers 33554432, so split "
        "the map");
    EXPECT_EQ(chunked(first + first), "error: m: layer 'l': its chunks overlap: save the map again from the editor");
}

// A kilobyte of zeros as compressed cells for a map of one cell: more than it needs, and no more is unpacked.
TEST(MapLimitsTest, CompressedDataIsUnpackedOnlyAsFarAsTheLayerReaches)
{
    const std::string line = "it holds more cells where its width and height make 1: save it again from the editor";
    EXPECT_EQ(WithSize("1", "1"), "error: m: layer 'l': " + line);
    const char* const BOMBS[][2] = {{"zlib", "eJxjYBgFo2AUjFQAAAQAAAE="},
                                    {"gzip", "H4sIAAAAAAACA2NgGAWjYBSMVAAALq+17wAEAAA="},
                                    {"zstd", "KLUv/QBYTQAAEAAAAQD7K4AF"}};
    for (const auto& [compression, data] : BOMBS)
    {
        std::vector<MapCell> cells;
        try
        {
            DecodeMapCells(data, "base64", compression, 1, cells);
            ADD_FAILURE() << compression;
        }
        catch (const MapFault& fault)
        {
            EXPECT_EQ(fault.what(), line) << compression;
        }
        EXPECT_LE(cells.capacity(), 4u) << compression;
        cells.clear();
        DecodeMapCells(data, "base64", compression, 256, cells);
        EXPECT_THAT(cells, testing::Each(0u)) << compression;
    }
}

TEST(MapLimitsTest, DepthIsBounded)
{
    const auto nested = [](const std::string& open, const std::string& close, int times)
    {
        std::string text;
        for (int i = 0; i < times; ++i)
            text += open;
        for (int i = 0; i < times; ++i)
            text += close;
        return text;
    };
    const std::string size = " width=\"1\" height=\"1\" tilewidth=\"1\" tileheight=\"1\"";
    const auto groups = [&](int n) {
        return ReadAsText({{"m", "<map" + size + ">" + nested("<group>", "</group>", n) + "</map>"}}, "m");
    };
    const std::string deep = " stand deeper than 64 in each other: use fewer groups in groups";
    EXPECT_THAT(groups(63), StartsWith("map 1 1"));
    EXPECT_EQ(groups(64), "error: m: its elements" + deep);
    EXPECT_EQ(groups(100000), "error: m: its elements" + deep);
    EXPECT_EQ(ReadAsText({{"m", nested("{\"a\":", "}", 100000)}}, "m"), "error: m: its values" + deep);
    EXPECT_EQ(ReadAsText({{"m", nested("{\"a\":[", "]}", 100000)}}, "m"), "error: m: its values" + deep);
    EXPECT_THAT(ReadAsText({{"m", "{\"a\":" + nested("[", "]", 100000) + "}"}}, "m"),
                StartsWith("error: m: this is no map"));
}

TEST(MapLimitsTest, TheNumberOfPartsIsBounded)
{
    const std::string line = " more than 1000000 objects, properties and attributes: split it into several maps";
    std::string elements, values;
    for (int i = 0; i < 1000001; ++i)
    {
        elements += "<o/>";
        values += "{},";
    }
    EXPECT_EQ(ReadAsText({{"m", "<map>" + elements + "</map>"}}, "m"), "error: m: the map and its files have" + line);
    EXPECT_EQ(ReadAsText({{"m", "{\"a\":[" + values + "{}]}"}}, "m"), "error: m: the map and its files have" + line);
    const std::string many(4000000, '<');
    EXPECT_THAT(ReadAsText({{"m", many}}, "m"), StartsWith("error: m: this has too many XML elements: "));
}

TEST(MapLimitsTest, TheNumberOfLayersIsBounded)
{
    const auto layers = [](int count)
    {
        std::string text = "<map width=\"1\" height=\"1\" tilewidth=\"1\" tileheight=\"1\">";
        for (int i = 0; i < count; ++i)
            text += "<objectgroup name=\"o\"/>";
        return ReadAsText({{"m", text + "</map>"}}, "m");
    };
    EXPECT_THAT(layers(1000), StartsWith("map 1 1"));
    EXPECT_EQ(layers(1001), "error: m: layer 'o': the map has more than 1000 layers: join some");
}

// A small file that asks for twice the limit: a template's text of 4 MB in 64 objects.
TEST(MapLimitsTest, WhatObjectsTakeFromATemplateIsBounded)
{
    std::string objects;
    for (int i = 0; i < 64; ++i)
        objects += "<object template=\"t\"/>";
    const std::string large(size_t{4} << 20, 'x');
    EXPECT_EQ(
        ReadAsText({{"m", "<map width=\"1\" height=\"1\" tilewidth=\"1\" tileheight=\"1\"><objectgroup name=\"o\">" +
                              objects + "</objectgroup></map>"},
                    {"t", "<template><object><text>" + large + "</text></object></template>"}},
                   "m"),
        "error: m: layer 'o': object without id: the objects take over too much from templates and tiles, more than "
        "128 MB: use fewer objects or smaller templates");
}

TEST(MapErrors, EntitiesAreRefusedAndAPlainDoctypeIsNot)
{
    const std::string map = "<map width=\"1\" height=\"1\" tilewidth=\"1\" tileheight=\"1\"/>";
    EXPECT_EQ(ReadAsText({{"m", "<!DOCTYPE map SYSTEM \"http://example.invalid/map.dtd\">" + map}}, "m"),
              "map 1 1 1 1 0 origin 0 0");
    EXPECT_EQ(ReadAsText({{"m", "<!DOCTYPE map [<!ENTITY a \"aa\"><!ENTITY b \"&a;&a;\">]>" + map}}, "m"),
              "error: m: this declares XML entities, which maps have no use for: remove its DOCTYPE");
}
} // namespace
