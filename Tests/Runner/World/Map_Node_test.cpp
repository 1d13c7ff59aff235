// Attributes of maps that are of the wrong kind, and the one line that each gives.
#include "Tests/Runner/World/Map_Support.h"

#include <gmock/gmock.h>

namespace
{
using namespace MapTest;
using testing::HasSubstr;
using testing::StartsWith;

std::string Xml(const std::string& attributes, const std::string& content = "")
{
    return ReadAsText({{"m", "<map " + attributes + ">" + content + "</map>"}, {"p.png", Png(8, 8)}}, "m");
}

std::string Json(const std::string& members) { return ReadAsText({{"m", "{\"type\":\"map\"," + members + "}"}}, "m"); }

constexpr char SIZE[] = R"(width="1" height="1" tilewidth="1" tileheight="1" )";
constexpr char JSON_SIZE[] = R"("height":1,"tilewidth":1,"tileheight":1)";

std::string Sized(const std::string& attributes, const std::string& content = "")
{
    return Xml(SIZE + attributes, content);
}

TEST(MapAttributes, ThatAreNoWholeNumbersInTheirRangeAreNamed)
{
    const std::string line = "error: m: \"width\" must be a whole number from 1 to 1048576, and is ";
    const std::string others = R"( height="1" tilewidth="1" tileheight="1")";
    for (const char* value : {"1.5", "0", "-1", "1048577", "1e99", "one", "", "inf", "0x10"})
        EXPECT_EQ(Xml("width=\"" + std::string(value) + "\"" + others), line + "\"" + value + "\"") << value;
    for (const char* value : {"1.5", "true", "false", "0"})
        EXPECT_EQ(Json("\"width\":" + std::string(value) + "," + JSON_SIZE), line + value) << value;
    EXPECT_THAT(Json("\"width\":2," + std::string(JSON_SIZE)), StartsWith("map 2 1 1 1 0"));
    EXPECT_EQ(Xml("width=\"1\""), "error: m: it has no height: save it again from the editor");
}

TEST(MapAttributes, ThatAreNeitherTrueNorFalseOrNoColourAreNamed)
{
    EXPECT_EQ(Sized("infinite=\"yes\""), "error: m: \"infinite\" must be true or false, and is \"yes\"");
    EXPECT_EQ(Json(R"("width":1,"infinite":2,)" + std::string(JSON_SIZE)),
              "error: m: \"infinite\" must be true or false, and is 2");
    for (const char* yes : {"1", "true"})
        EXPECT_THAT(Sized("infinite=\"" + std::string(yes) + "\""), HasSubstr("infinite")) << yes;
    for (const char* no : {"0", "false"})
        EXPECT_EQ(Sized("infinite=\"" + std::string(no) + "\""), Sized("")) << no;
    const std::string colour = "error: m: \"backgroundcolor\" must be a colour, as #rrggbb or #aarrggbb, and is ";
    for (const char* wrong : {"red", "#12345", "#1234567", "#12345g"})
        EXPECT_EQ(Sized("backgroundcolor=\"" + std::string(wrong) + "\""), colour + "\"" + wrong + "\"") << wrong;
    EXPECT_EQ(Json(R"("width":1,"backgroundcolor":5,)" + std::string(JSON_SIZE)), colour + "5");
    EXPECT_EQ(Sized("backgroundcolor=\"\""), Sized("")) << "none";
}

TEST(MapAttributes, TheOrderOfDrawingIsOneOfFour)
{
    const char* const orders[] = {"right-down", "right-up", "left-down", "left-up"};
    for (int i = 0; i < 4; ++i)
        EXPECT_THAT(Sized("renderorder=\"" + std::string(orders[i]) + "\""),
                    StartsWith("map 1 1 1 1 " + std::to_string(i)));
    EXPECT_EQ(Sized("renderorder=\"up\""), "error: m: its renderorder \"up\" is unknown: choose one in the editor");
}

TEST(MapText, MayBeginWithSpaceAndAByteOrderMark)
{
    const std::string map = "<map " + std::string(SIZE) + "/>";
    for (const char* before : {" \t\r\n", "\xEF\xBB\xBF", "\xEF\xBB\xBF \n"})
        EXPECT_EQ(ReadAsText({{"m", before + map}}, "m"), Sized("")) << before;
    for (const char* text : {"", " \n", "map", "\xEF\xBB\xBF"})
        EXPECT_EQ(ReadAsText({{"m", text}}, "m"),
                  "error: m: this is neither XML nor JSON: save it from the editor as TMX or TMJ, in UTF-8");
}

// ---- tilesets ----

std::string Tileset(const std::string& attributes, const std::string& content)
{
    return Sized("", "<tileset firstgid=\"1\" name=\"t\" tilewidth=\"8\" tileheight=\"8\" " + attributes +
                         "><image source=\"p.png\"/>" + content + "</tileset>");
}

TEST(MapTilesetErrors, AreToldWithTheirPlace)
{
    const std::string place = "error: m: tileset 't': ";
    EXPECT_EQ(Tileset("objectalignment=\"middle\"", ""),
              place + "its objectalignment \"middle\" is unknown: choose one in the editor");
    EXPECT_EQ(Tileset("", "<tile id=\"0\"><animation><frame tileid=\"0\"/></animation></tile>"),
              place + "tile 0: no frame of its animation lasts: give them durations");
    EXPECT_EQ(Tileset("", "<tile id=\"0\"><animation><frame tileid=\"5\" duration=\"1\"/></animation></tile>"),
              place + "the animation of tile 0 shows a tile that does not exist: remove that frame");
    EXPECT_EQ(Tileset("", "<tile id=\"3\"/>"),
              place + "tile 3 lies beyond the picture's 1: remove it, or give it another picture");
    EXPECT_EQ(Tileset("", "<tile/>"), place + "tile without id: it has no id: save it again from the editor");
    EXPECT_EQ(Tileset("", "<tile id=\"0\"/><tile id=\"0\"/>"), place + "tile 0 stands there twice: remove one");
    EXPECT_THAT(Tileset("", "<tile id=\"0\"><objectgroup><object id=\"1\" gid=\"1\"/></objectgroup></tile>"),
                HasSubstr("a collision shape cannot be a template or a tile: draw it as a shape"));
    EXPECT_THAT(Tileset("", "<tile id=\"0\"><objectgroup><object id=\"1\" template=\"a\"/></objectgroup></tile>"),
                HasSubstr("a collision shape cannot be a template or a tile: draw it as a shape"));
    EXPECT_THAT(Tileset("spacing=\"-1\"", ""), HasSubstr("\"spacing\" must be a whole number from 0 to 1048576"));
}
} // namespace
