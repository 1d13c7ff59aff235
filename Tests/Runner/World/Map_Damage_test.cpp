// A small map with each byte changed, and cut at each length: it reads, or is refused in one line. What a mistake of
// the reader would do here, the sanitizers report.
#include "Tests/Runner/World/Map_Town.h"

#include <gtest/gtest.h>

namespace
{
using namespace MapTest;

class Damager
{
public:
    Damager(std::map<std::string, std::string> files, std::string path)
        : m_files(std::move(files)), m_path(std::move(path))
    {
    }

    // Reads the map after a file was replaced.
    void Try(const std::string& file, std::string content)
    {
        std::swap(m_files.files[file], content);
        MapModel map;
        std::string error;
        const bool read = ReadMap(m_path, m_files, map, error);
        std::swap(m_files.files[file], content);
        EXPECT_EQ(read, error.empty());
        EXPECT_EQ(error.find_first_of("\n\r"), std::string::npos) << error;
        EXPECT_TRUE(read || (map.layers.empty() && map.tilesets.empty()));
        ++(read ? m_read : m_refused);
    }

    // Changes one bit of each byte, cuts before each byte, and makes each fifth a character that means something.
    void TryEach(const std::string& file)
    {
        const std::string whole = m_files.files.at(file);
        const std::string telling = std::string("\0<>&\"{}[],-9", 12);
        for (size_t i = 0; i < whole.size(); ++i)
        {
            std::string changed = whole;
            changed[i] = static_cast<char>(changed[i] ^ 1 << i % 8);
            Try(file, changed);
            Try(file, whole.substr(0, i));
            if (i % 5 != 0)
                continue;
            changed[i] = telling[i / 5 % telling.size()];
            Try(file, changed);
        }
    }

    int m_read = 0, m_refused = 0;

private:
    MemoryFiles m_files;
    std::string m_path;
};

TEST(MapDamage, TheMapInXml)
{
    Damager damager(TownFiles(Format::Xml, ENCODINGS[5]), "maps/town.tmx");
    damager.TryEach("maps/town.tmx");
    EXPECT_GT(damager.m_read, 500); // a changed name or number is another map
    EXPECT_GT(damager.m_refused, 5000);
}

TEST(MapDamage, TheMapInJson)
{
    Damager damager(TownFiles(Format::Json, ENCODINGS[2]), "maps/town.tmj");
    damager.TryEach("maps/town.tmj");
    EXPECT_GT(damager.m_read, 500);
    EXPECT_GT(damager.m_refused, 5000);
}

TEST(MapDamage, TilesetsTemplatesAndPictures)
{
    Damager xml(TownFiles(Format::Xml, ENCODINGS[0]), "maps/town.tmx");
    for (const char* file : {"sets/things.tsx", "sets/barrel.tx", "maps/art/ground.png"})
        xml.TryEach(file);
    Damager json(TownFiles(Format::Json, ENCODINGS[0]), "maps/town.tmj");
    for (const char* file : {"sets/things.tsj", "sets/barrel.tj"})
        json.TryEach(file);
    EXPECT_GT(xml.m_refused + json.m_refused, 1000);
}

// Only the cells, every bit of every byte, since these few bytes go through the decoders.
TEST(MapDamage, CompressedCells)
{
    const std::string small =
        "<map width=\"3\" height=\"2\" tilewidth=\"1\" tileheight=\"1\"><tileset firstgid=\"1\" name=\"t\" "
        "tilewidth=\"1\" tileheight=\"1\"><image source=\"t.png\"/></tileset><layer name=\"l\" "
        "width=\"3\" height=\"2\">";
    for (const Encoding& encoding : ENCODINGS)
    {
        const std::string data = encoding.xml;
        Damager damager({{"t.png", Png(4, 4)}}, "m");
        for (size_t i = 0; i < data.size(); ++i)
            for (int bit = 0; bit < 8; ++bit)
            {
                std::string changed = data;
                changed[i] = static_cast<char>(changed[i] ^ 1 << bit);
                damager.Try("m", small + changed + "</layer></map>");
            }
        EXPECT_GT(damager.m_refused, 100) << encoding.name;
        damager.Try("m", small + data + "</layer></map>");
        EXPECT_GT(damager.m_read, 0) << encoding.name;
    }
}
} // namespace
