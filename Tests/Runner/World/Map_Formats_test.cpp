// One map in every format, encoding and version: each reads to the same model, which was written down by hand.
#include "Tests/Runner/World/Map_Town.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
using namespace MapTest;

TEST(MapFormats, EveryEncodingOfBothFormatsReadsToTheSameMap)
{
    for (const Encoding& encoding : ENCODINGS)
        for (const Format format : {Format::Xml, Format::Json})
            EXPECT_EQ(ReadAsText(TownFiles(format, encoding), TownPath(format)), TownText(format)) << encoding.name;
}

TEST(MapFormats, TheClassOfObjectsAndTilesIsReadByEitherName)
{
    for (const char* version : {"1.9", "1.10"})
        for (const Format format : {Format::Xml, Format::Json})
            EXPECT_EQ(ReadAsText(TownFiles(format, ENCODINGS[0], version), TownPath(format)), TownText(format))
                << version;
}

TEST(MapFormats, TheVersionAndTheFilesAreKept)
{
    MemoryFiles files(TownFiles(Format::Json, ENCODINGS[0], "1.10"));
    MapModel map;
    std::string error;
    ASSERT_TRUE(ReadMap("maps/town.tmj", files, map, error)) << error;
    EXPECT_EQ(map.version, "1.10");
    EXPECT_EQ(map.path, "maps/town.tmj");
    EXPECT_THAT(map.files, testing::ElementsAre("maps/town.tmj", "maps/art/ground.png", "sets/things.tsj",
                                                "sets/barrel.png", "sets/lamp.png", "art/sky.png", "sets/barrel.tj"));
}

TEST(MapFormats, AMapInXmlMayUseTilesetsAndTemplatesInJson)
{
    auto files = TownFiles(Format::Xml, ENCODINGS[0]);
    files["sets/barrel.tx"] = files["sets/barrel.tj"];
    files["maps/town.tmx"] = Replaced(files["maps/town.tmx"], "things.tsx", "things.tsj");
    EXPECT_EQ(ReadAsText(files, "maps/town.tmx"), Replaced(TownText(Format::Xml), "things.tsx", "things.tsj"));
}

TEST(MapFormats, ClassesOfMapsLayersAndTilesetsAreRead)
{
    auto files = TownFiles(Format::Json, ENCODINGS[0], "1.10");
    std::string& text = files["maps/town.tmj"];
    text = Replaced(text, "\"infinite\":false", "\"infinite\":false, \"class\":\"outside\"");
    text = Replaced(text, "\"name\":\"things\"", "\"name\":\"things\", \"class\":\"actors\"");
    text =
        Replaced(text, "\"name\":\"ground\", \"tilewidth\"", "\"name\":\"ground\", \"class\":\"soil\", \"tilewidth\"");
    MemoryFiles source(files);
    MapModel map;
    std::string error;
    ASSERT_TRUE(ReadMap("maps/town.tmj", source, map, error)) << error;
    EXPECT_EQ(map.className, "outside");
    EXPECT_EQ(map.layers[3].className, "actors");
    EXPECT_EQ(map.tilesets[0].className, "soil");
}

// ---- infinite maps ----
constexpr const char* CHUNKS_XML = R"(<map version="1.10" orientation="orthogonal" width="2" height="2" tilewidth="16"
 tileheight="8" infinite="1"><tileset firstgid="1" name="t" tilewidth="16" tileheight="8"><image source="t.png"/></tileset>
<layer id="1" name="l" width="2" height="2"><data@HOW@><chunk x="-2" y="-2" width="2" height="2">@A@</chunk>
<chunk x="2" y="0" width="2" height="2">@B@</chunk></data></layer>
<layer id="2" name="empty" width="2" height="2"><data encoding="csv"></data></layer></map>)";

constexpr const char* CHUNKS_JSON = R"({"type":"map", "width":2, "height":2, "tilewidth":16, "tileheight":8,
"infinite":true, "tilesets":[{"firstgid":1, "name":"t", "tilewidth":16, "tileheight":8, "image":"t.png"}],
"layers":[{"type":"tilelayer", "id":1, "name":"l", "startx":-2, "starty":-2, "width":6, "height":4, "x":0, "y":0,
"chunks":[{"x":-2, "y":-2, "width":2, "height":2, "data":@A@}, {"x":2, "y":0, "width":2, "height":2, "data":@B@}]@HOW@},
{"type":"tilelayer", "id":2, "name":"empty", "chunks":[], "width":2, "height":2, "x":0, "y":0}]})";

// The chunks' rectangles joined are columns -2 to 3 and rows -2 to 1.
constexpr const char* CHUNKS = R"(map 2 2 16 8 0 infinite origin 0 0
tileset t from m first 1 tiles 16 8 count 4 columns 2 spacing 0 margin 0 t.png 32 16
tiles l  in -1 own resolved at -2 -2 size 6 4 : 1 2 0 0 0 0 3 4 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 2
tiles empty  in -1 own resolved)";

struct ChunkEncoding
{
    const char *name, *a, *b;
};

constexpr ChunkEncoding CHUNK_ENCODINGS[] = {
    {"", "AQAAAAIAAAADAAAABAAAAA==", "AAAAAAAAAAAAAAAAAgAAAA=="},
    {"zlib", "eJxjZGBgYAJiZiBmAWIAAGAACw==", "eJxjYEAAJiAGAAAYAAM="},
    {"gzip", "H4sIAAAAAAACA2NkYGBgAmJmIGYBYgDv1AWvEAAAAA==", "H4sIAAAAAAACA2NgQAAmIAYA3oOyRhAAAAA="},
    {"zstd", "KLUv/QBYgQAAAQAAAAIAAAADAAAABAAAAA==", "KLUv/QBYZQAAMAAAAgAAAAEAG8AC"}};

std::string Chunks(const char* form, const std::string& how, const std::string& a, const std::string& b)
{
    const std::string text = Replaced(Replaced(Replaced(form, "@HOW@", how), "@A@", a), "@B@", b);
    return ReadAsText({{"m", text}, {"t.png", Png(32, 16)}}, "m");
}

TEST(MapFormats, ChunksAreJoinedWhateverTheirEncoding)
{
    EXPECT_EQ(Chunks(CHUNKS_XML, " encoding=\"csv\"", "1,2,\n3,4", "0,0,\n0,2"), CHUNKS);
    EXPECT_EQ(Chunks(CHUNKS_XML, "", R"(<tile gid="1"/><tile gid="2"/><tile gid="3"/><tile gid="4"/>)",
                     R"(<tile/><tile gid="0"/><tile/><tile gid="2"/>)"),
              CHUNKS);
    EXPECT_EQ(Chunks(CHUNKS_JSON, "", "[1,2,3,4]", "[0,0,0,2]"), CHUNKS);
    for (const ChunkEncoding& encoding : CHUNK_ENCODINGS)
    {
        const std::string name = encoding.name;
        EXPECT_EQ(Chunks(CHUNKS_XML, " encoding=\"base64\" compression=\"" + name + "\"", encoding.a, encoding.b),
                  CHUNKS);
        EXPECT_EQ(Chunks(CHUNKS_JSON, ", \"encoding\":\"base64\", \"compression\":\"" + name + "\"",
                         "\"" + std::string(encoding.a) + "\"", "\"" + std::string(encoding.b) + "\""),
                  CHUNKS);
    }
}

TEST(MapFormats, ATextMayBePartedByCommentsAndCdata)
{
    const std::string map = R"(<map width="1" height="1" tilewidth="1" tileheight="1"><objectgroup name="o">
<object id="1"><text>a<!-- not this --><![CDATA[<b>]]>c</text></object>
<object id="2"><properties><property name="p">two
lines</property></properties></object></objectgroup></map>)";
    EXPECT_EQ(ReadAsText({{"m", map}}, "m"), "map 1 1 1 1 0 origin 0 0\nobjects o  in -1 own resolved by y #a0a0a4/ff\n"
                                             "  object 1 text   at 0 0 'a<b>c' sans-serif 16 #000000/ff 0\n"
                                             "  object 2 rectangle   at 0 0 [p = 'two\nlines']");
}

TEST(MapFormats, AByteOrderMarkIsSkipped)
{
    const std::string mark = "\xEF\xBB\xBF", bare = "map 1 1 1 1 0 origin 0 0";
    EXPECT_EQ(ReadAsText({{"m", mark + R"(<map width="1" height="1" tilewidth="1" tileheight="1"/>)"}}, "m"), bare);
    EXPECT_EQ(ReadAsText({{"m", mark + R"({"type":"map","width":1,"height":1,"tilewidth":1,"tileheight":1})"}}, "m"),
              bare);
}

TEST(MapFormats, ATemplatesTilesetThatTheMapLacksIsAddedAfterItsOwn)
{
    auto files = TownFiles(Format::Xml, ENCODINGS[0]);
    std::string& text = files["maps/town.tmx"];
    text = Replaced(Replaced(text, " <tileset firstgid=\"5\" source=\"../sets/things.tsx\"/>\n", ""), "1610612740,6",
                    "0,0");
    MemoryFiles source(files);
    MapModel map;
    std::string error;
    ASSERT_TRUE(ReadMap("maps/town.tmx", source, map, error)) << error;
    ASSERT_EQ(map.tilesets.size(), 2u);
    EXPECT_EQ(map.tilesets[1].path, "sets/things.tsx");
    EXPECT_EQ(map.tilesets[1].firstNumber, 5u); // tiles 1 to 4 are the first one's
    EXPECT_EQ(map.layers[3].objects[7].cell, 6u);
}
} // namespace
