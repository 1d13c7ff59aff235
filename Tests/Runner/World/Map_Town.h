#pragma once
// One small map that has something of everything, as TMX and as TMJ. In the texts, @TYPE@ stands for "type" or "class",
// @VERSION@ for the format's version, @DATA@ and @CELLS@ for how the cells of the layer "ground" are written.

#include "Tests/Runner/World/Map_Support.h"

namespace MapTest
{
// Cells 1, 2, 3 turned horizontally; none, 4 turned vertically and diagonally, 6.
struct Encoding
{
    const char* name;
    const char* xml;  // the element `data`
    const char* json; // the values of the layer
};

constexpr Encoding ENCODINGS[] = {
    {"csv", "<data encoding=\"csv\">\n1,2,2147483651,\n0,1610612740,6\n</data>",
     R"("data":[1,2,2147483651,0,1610612740,6])"},
    {"base64", "<data encoding=\"base64\">\n   AQAAAAIAAAADAACAAAAAAAQAAGAGAAAA\n  </data>",
     R"("encoding":"base64","compression":"","data":"AQAAAAIAAAADAACAAAAAAAQAAGAGAAAA")"},
    {"zlib", "<data encoding=\"base64\" compression=\"zlib\">eJxjZGBgYAJiZgaGBiDFwMLAkMAGpAEJIADx</data>",
     R"("encoding":"base64","compression":"zlib","data":"eJxjZGBgYAJiZgaGBiDFwMLAkMAGpAEJIADx")"},
    {"gzip",
     "<data encoding=\"base64\" compression=\"gzip\">H4sIAAAAAAACA2NkYGBgAmJmBoYGIMXAwsCQwAakAQVum1kYAAAA</data>",
     R"("data":"H4sIAAAAAAACA2NkYGBgAmJmBoYGIMXAwsCQwAakAQVum1kYAAAA","compression":"gzip","encoding":"base64")"},
    {"zstd", "<data encoding=\"base64\" compression=\"zstd\">KLUv/QBYwQAAAQAAAAIAAAADAACAAAAAAAQAAGAGAAAA</data>",
     R"("compression":"zstd","data":"KLUv/QBYwQAAAQAAAAIAAAADAACAAAAAAAQAAGAGAAAA","encoding":"base64")"},
    {"elements",
     "<data><tile gid=\"1\"/><tile gid=\"2\"/><tile gid=\"2147483651\"/><tile/><tile gid=\"1610612740\"/>"
     "<tile gid=\"6\"/></data>",
     R"("encoding":"csv","data":[1, 2, 2147483651, 0, 1610612740, 6])"},
};

constexpr const char* TOWN_XML = R"(<?xml version="1.0" encoding="UTF-8"?>
<map version="@VERSION@" tiledversion="1.8.2" orientation="orthogonal" renderorder="left-up" width="3" height="2"
 tilewidth="16" tileheight="8" infinite="0" backgroundcolor="#80102030" parallaxoriginx="4" parallaxoriginy="-2.5">
 <editorsettings><export target="town.json" format="json"/></editorsettings>
 <properties>
  <property name="count" type="int" value="-3"/>
  <property name="boss" type="object" value="2"/>
  <property name="glow" type="color" value="#80ff0010"/>
  <property name="music" type="file" value="../music/town.ogg"/>
  <property name="night" type="bool" value="true"/>
  <property name="note" value="a &lt;b&gt; &#228;"/>
  <property name="speed" type="float" value="1.5"/>
  <property name="weather" type="class" propertytype="Weather">
   <properties>
    <property name="kind" value="rain"/>
    <property name="rate" type="float" value="0.25"/>
    <property name="steps" type="int" value="7"/>
    <property name="wind" type="class"><properties><property name="strong" type="bool" value="false"/></properties></property>
   </properties>
  </property>
 </properties>
 <tileset firstgid="1" name="ground" tilewidth="16" tileheight="8" spacing="1" margin="2" tilecount="4" columns="2"
  objectalignment="top" tilerendersize="grid" fillmode="preserve-aspect-fit">
  <tileoffset x="1" y="-2"/>
  <grid orientation="orthogonal" width="16" height="8"/>
  <properties><property name="material" value="mud"/></properties>
  <image source="art/ground.png" trans="ff00ff" width="36" height="20"/>
  <wangsets><wangset name="w" type="corner" tile="-1"><wangtile tileid="0" wangid="0,1,0,1,0,1,0,1"/></wangset></wangsets>
  <tile id="1" @TYPE@="water">
   <properties><property name="depth" type="int" value="2"/><property name="hurts" type="bool" value="0"/></properties>
   <objectgroup draworder="index" id="2"><object id="1" x="0.5" y="1" width="15" height="7"/></objectgroup>
   <animation><frame tileid="1" duration="100"/><frame tileid="3" duration="250"/></animation>
  </tile>
 </tileset>
 <tileset firstgid="5" source="../sets/things.tsx"/>
 <group id="1" name="back" opacity="0.5" tintcolor="#ff8000" offsetx="3" parallaxx="0.5">
  <layer id="2" name="ground" width="3" height="2" opacity="0.5" tintcolor="#80ffffff" offsetx="1" offsety="-1" parallaxx="0.5" parallaxy="2">
   @DATA@
  </layer>
  <imagelayer id="3" name="sky" visible="0" repeatx="1">
   <image source="../art/sky.png" width="64" height="32"/>
   <properties><property name="far" type="bool" value="true"/></properties>
  </imagelayer>
 </group>
 <objectgroup id="4" name="things" draworder="index" color="#ff0000">
  <object id="1" name="door" @TYPE@="exit" x="1.5" y="2" width="16" height="24" rotation="45">
   <properties><property name="to" value="cave"/></properties>
  </object>
  <object id="2" x="8" y="8" width="4" height="2" visible="0"><ellipse/></object>
  <object id="3" name="start" x="3" y="4"><point/></object>
  <object id="4" x="5" y="6"><polygon points="0,0 10,0.5 -3,4"/></object>
  <object id="5" x="5" y="6"><polyline points="0,0 1,2"/></object>
  <object id="6" x="7" y="1" width="80" height="20">
   <text fontfamily="serif" pixelsize="12" wrap="1" color="#00ff00" bold="1" italic="1" underline="1" strikeout="1" kerning="0" halign="center" valign="bottom">Hello
world</text>
  </object>
  <object id="7" gid="2147483650" x="0" y="8"><properties><property name="depth" type="int" value="5"/></properties></object>
  <object id="8" template="../sets/barrel.tx" x="9" y="9"><properties><property name="full" type="bool" value="false"/></properties></object>
  <object id="9" template="../sets/barrel.tx" name="big" x="1" y="1" width="20" height="30" rotation="0"/>
 </objectgroup>
</map>
)";

constexpr const char* TOWN_JSON = R"({
 "backgroundcolor":"#80102030", "compressionlevel":-1,
 "editorsettings":{"export":{"format":"json", "target":"town.json"}},
 "height":2, "infinite":false,
 "layers":[
  {"id":1, "name":"back", "opacity":0.5, "tintcolor":"#ff8000", "offsetx":3, "offsety":0, "parallaxx":0.5,
   "type":"group", "visible":true, "x":0, "y":0,
   "layers":[
    {@CELLS@, "height":2, "id":2, "name":"ground", "opacity":0.5, "tintcolor":"#80ffffff", "offsetx":1, "offsety":-1,
     "parallaxx":0.5, "parallaxy":2, "type":"tilelayer", "visible":true, "width":3, "x":0, "y":0},
    {"id":3, "image":"..\/art\/sky.png", "name":"sky", "opacity":1, "repeatx":true, "type":"imagelayer",
     "visible":false, "x":0, "y":0, "properties":[{"name":"far", "type":"bool", "value":true}]}]},
  {"color":"#ff0000", "draworder":"index", "id":4, "name":"things", "opacity":1, "type":"objectgroup",
   "visible":true, "x":0, "y":0,
   "objects":[
    {"id":1, "name":"door", "@TYPE@":"exit", "x":1.5, "y":2, "width":16, "height":24, "rotation":45, "visible":true,
     "properties":[{"name":"to", "type":"string", "value":"cave"}]},
    {"id":2, "name":"", "@TYPE@":"", "x":8, "y":8, "width":4, "height":2, "visible":false, "ellipse":true, "rotation":0},
    {"id":3, "name":"start", "x":3, "y":4, "point":true, "width":0, "height":0},
    {"id":4, "x":5, "y":6, "polygon":[{"x":0, "y":0}, {"x":10, "y":0.5}, {"x":-3, "y":4}]},
    {"id":5, "x":5, "y":6, "polyline":[{"x":0, "y":0}, {"x":1, "y":2}]},
    {"id":6, "x":7, "y":1, "width":80, "height":20, "text":{"fontfamily":"serif", "pixelsize":12, "wrap":true,
     "color":"#00ff00", "bold":true, "italic":true, "underline":true, "strikeout":true, "kerning":false,
     "halign":"center", "valign":"bottom", "text":"Hello\nworld"}},
    {"id":7, "gid":2147483650, "x":0, "y":8, "properties":[{"name":"depth", "type":"int", "value":5}]},
    {"id":8, "template":"..\/sets\/barrel.tj", "x":9, "y":9, "properties":[{"name":"full", "type":"bool", "value":false}]},
    {"id":9, "template":"..\/sets\/barrel.tj", "name":"big", "x":1, "y":1, "width":20, "height":30, "rotation":0}]}],
 "nextlayerid":5, "nextobjectid":10, "orientation":"orthogonal", "parallaxoriginx":4, "parallaxoriginy":-2.5,
 "properties":[
  {"name":"count", "type":"int", "value":-3},
  {"name":"boss", "type":"object", "value":2},
  {"name":"glow", "type":"color", "value":"#80ff0010"},
  {"name":"music", "type":"file", "value":"..\/music\/town.ogg"},
  {"name":"night", "type":"bool", "value":true},
  {"name":"note", "type":"string", "value":"a <b> \u00e4"},
  {"name":"speed", "type":"float", "value":1.5},
  {"name":"weather", "type":"class", "propertytype":"Weather",
   "value":{"kind":"rain", "rate":0.25, "steps":7, "wind":{"strong":false}}}],
 "renderorder":"left-up", "tiledversion":"1.8.2", "tileheight":8,
 "tilesets":[
  {"firstgid":1, "name":"ground", "tilewidth":16, "tileheight":8, "spacing":1, "margin":2, "tilecount":4, "columns":2,
   "objectalignment":"top", "tilerendersize":"grid", "fillmode":"preserve-aspect-fit", "tileoffset":{"x":1, "y":-2},
   "grid":{"orientation":"orthogonal", "width":16, "height":8},
   "image":"art\/ground.png", "imagewidth":36, "imageheight":20, "transparentcolor":"#ff00ff",
   "properties":[{"name":"material", "type":"string", "value":"mud"}],
   "wangsets":[{"name":"w", "wangtiles":[{"tileid":0, "wangid":[0, 1, 0, 1, 0, 1, 0, 1]}]}],
   "tiles":[{"id":1, "@TYPE@":"water",
     "properties":[{"name":"depth", "type":"int", "value":2}, {"name":"hurts", "type":"bool", "value":false}],
     "objectgroup":{"draworder":"index", "id":2, "name":"", "opacity":1, "type":"objectgroup", "visible":true,
      "objects":[{"id":1, "x":0.5, "y":1, "width":15, "height":7, "rotation":0, "visible":true}]},
     "animation":[{"duration":100, "tileid":1}, {"duration":250, "tileid":3}]}]},
  {"firstgid":5, "source":"..\/sets\/things.tsj"}],
 "tilewidth":16, "type":"map", "version":"@VERSION@", "width":3
})";

constexpr const char* THINGS_XML = R"(<?xml version="1.0" encoding="UTF-8"?>
<tileset version="@VERSION@" name="things" tilewidth="12" tileheight="10" tilecount="2" columns="0">
 <grid orientation="orthogonal" width="1" height="1"/>
 <tile id="1"><image width="12" height="10" source="barrel.png"/></tile>
 <tile id="4" @TYPE@="lamp" x="2" y="1" width="5" height="6"><image width="8" height="8" source="lamp.png"/></tile>
</tileset>
)";

constexpr const char* THINGS_JSON = R"({"columns":0, "grid":{"height":1, "orientation":"orthogonal", "width":1},
 "name":"things", "tilecount":2, "tileheight":10, "tilewidth":12, "type":"tileset", "version":"@VERSION@",
 "tiles":[{"id":1, "image":"barrel.png", "imagewidth":12, "imageheight":10},
  {"id":4, "@TYPE@":"lamp", "x":2, "y":1, "width":5, "height":6, "image":"lamp.png", "imagewidth":8, "imageheight":8}]})";

constexpr const char* BARREL_XML = R"(<?xml version="1.0" encoding="UTF-8"?>
<template>
 <tileset firstgid="1" source="things.tsx"/>
 <object name="barrel" @TYPE@="container" gid="2" width="12" height="10" rotation="90">
  <properties><property name="full" type="bool" value="true"/><property name="weight" type="float" value="3"/></properties>
 </object>
</template>
)";

constexpr const char* BARREL_JSON = R"({"type":"template", "tileset":{"firstgid":1, "source":"things.tsj"},
 "object":{"gid":2, "height":10, "id":1, "name":"barrel", "@TYPE@":"container", "rotation":90, "visible":true, "width":12,
  "properties":[{"name":"full", "type":"bool", "value":true}, {"name":"weight", "type":"float", "value":3}]}})";

// The same by hand.
constexpr const char* TOWN =
    R"(map 3 2 16 8 3 background #102030/80 origin 4 -2.5 [boss object 2] [count int -3] [glow colour #ff0010/80] [music file music/town.ogg] [night bool 1] [note = 'a <b> ä'] [speed float 1.5] [weather of Weather [kind = 'rain'] [rate float 0.25] [steps int 7] [wind [strong bool 0]]]
tileset ground from maps/town.@EXTENSION@ first 1 tiles 16 8 count 4 columns 2 spacing 1 margin 2 offset 1 -2 aligned 1 grid fit maps/art/ground.png 36 20 without #ff00ff/ff [material = 'mud']
  tile 1 water frame 1 100 frame 3 250 [depth int 2] [hurts bool 0]
  object 1 rectangle   at 0.5 1 size 15 7
tileset things from sets/things.@TILESET@ first 5 tiles 12 10 count 2
  tile 1  sets/barrel.png 12 10 part 0 0 12 10
  tile 4 lamp sets/lamp.png 8 8 part 2 1 5 6
group back  in -1 own opacity 0.5 tint #ff8000/ff offset 3 0 parallax 0.5 1 resolved opacity 0.5 tint #ff8000/ff offset 3 0 parallax 0.5 1
tiles ground  in 0 own opacity 0.5 tint #ffffff/80 offset 1 -1 parallax 0.5 2 resolved opacity 0.25 tint #ff8000/80 offset 4 -1 parallax 0.25 2 at 0 0 size 3 2 : 1 2 3h 0 4vd 6
picture sky  in 0 own hidden resolved hidden opacity 0.5 tint #ff8000/ff offset 3 0 parallax 0.5 1 [far bool 1] art/sky.png 64 32 repeats x
objects things  in -1 own resolved by order #ff0000/ff
  object 1 rectangle door exit at 1.5 2 size 16 24 turned 45 [to = 'cave']
  object 2 ellipse   at 8 8 size 4 2 hidden
  object 3 point start  at 3 4
  object 4 polygon   at 5 6 point 0 0 point 10 0.5 point -3 4
  object 5 polyline   at 5 6 point 0 0 point 1 2
  object 6 text   at 7 1 size 80 20 'Hello
world' serif 12 #00ff00/ff 7 wrap bold italic underline strikeout unkerned
  object 7 tile  water at 0 8 size 16 8 cell 2h [depth int 5] [hurts bool 0]
  object 8 tile barrel container at 9 9 size 12 10 turned 90 cell 6 [full bool 0] [weight float 3]
  object 9 tile big container at 1 1 size 20 30 cell 6 [full bool 1] [weight float 3])";

enum class Format
{
    Xml,
    Json
};

inline std::string TownPath(Format format) { return format == Format::Xml ? "maps/town.tmx" : "maps/town.tmj"; }

// All files of the town, its map in one format, written by a version of the editor.
inline std::map<std::string, std::string> TownFiles(Format format, const Encoding& encoding,
                                                    const std::string& version = "1.8")
{
    std::map<std::string, std::string> files = {{"sets/things.tsx", THINGS_XML},
                                                {"sets/things.tsj", THINGS_JSON},
                                                {"sets/barrel.tx", BARREL_XML},
                                                {"sets/barrel.tj", BARREL_JSON}};
    files[TownPath(format)] = format == Format::Xml ? Replaced(TOWN_XML, "@DATA@", encoding.xml)
                                                    : Replaced(TOWN_JSON, "@CELLS@", encoding.json);
    for (auto& [path, text] : files)
        text = Replaced(Replaced(text, "@VERSION@", version), "@TYPE@", version == "1.9" ? "class" : "type");
    files["maps/art/ground.png"] = Png(36, 20);
    files["art/sky.png"] = Png(64, 32);
    files["sets/barrel.png"] = Png(12, 10);
    files["sets/lamp.png"] = Png(8, 8);
    return files;
}

inline std::string TownText(Format format)
{
    const bool xml = format == Format::Xml;
    return Replaced(Replaced(TOWN, "@EXTENSION@", xml ? "tmx" : "tmj"), "@TILESET@", xml ? "tsx" : "tsj");
}
} // namespace MapTest
