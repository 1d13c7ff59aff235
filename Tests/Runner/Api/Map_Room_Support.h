#pragma once
// Small maps and their tiles as text, and games whose room is made of one.

#include "Tests/Runner/Support/Game_Support.h"

#include <png.h>

#include <ostream>
#include <string>
#include <vector>

namespace RunnerTest
{
// ---- pictures and maps as text ----

struct Rgb
{
    int red, green, blue;
    bool operator==(const Rgb& o) const { return red == o.red && green == o.green && blue == o.blue; }
};

inline std::ostream& operator<<(std::ostream& out, const Rgb& c)
{
    return out << "rgb(" << c.red << ", " << c.green << ", " << c.blue << ")";
}

constexpr Rgb RED = {255, 0, 0}, GREEN = {0, 255, 0}, BLUE = {0, 0, 255}, YELLOW = {255, 255, 0}, GREY = {40, 40, 40};

// Four tiles of 8 x 8 in a row. The first has a quarter of each colour: red, green, blue, yellow from the top left, row
// by row; the others are red, green and blue.
inline void WriteTiles(const std::string& path)
{
    constexpr int WIDTH = 32, HEIGHT = 8;
    std::vector<uint8_t> rgba;
    for (int y = 0; y < HEIGHT; ++y)
        for (int x = 0; x < WIDTH; ++x)
        {
            const Rgb quarters[] = {RED, GREEN, BLUE, YELLOW}, plain[] = {RED, GREEN, BLUE};
            const Rgb colour = x < 8 ? quarters[(y / 4) * 2 + x / 4] : plain[x / 8 - 1];
            for (const int channel : {colour.red, colour.green, colour.blue, 255})
                rgba.push_back(static_cast<uint8_t>(channel));
        }
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    image.width = WIDTH;
    image.height = HEIGHT;
    image.format = PNG_FORMAT_RGBA;
    ASSERT_NE(png_image_write_to_file(&image, path.c_str(), 0, rgba.data(), 0, nullptr), 0);
}

constexpr char MAP_TILESET[] =
    R"(<tileset version="1.8" name="tiles" tilewidth="8" tileheight="8" tilecount="4" columns="4">
 <image source="tiles.png" width="32" height="8"/>
 <tile id="1"><properties><property name="solid" type="bool" value="true"/></properties></tile>
 <tile id="3"><animation><frame tileid="3" duration="100"/><frame tileid="1" duration="50"/></animation></tile>
</tileset>)";

// A map of 4 x 2 cells. properties: of the map; layers: what follows the tileset.
inline std::string MapText(const std::string& layers, const std::string& properties = "")
{
    return R"(<map version="1.8" orientation="orthogonal" renderorder="right-down" width="4" height="2" tilewidth="8" )"
           R"(tileheight="8" infinite="0" backgroundcolor="#282828">)" +
           properties + R"(<tileset firstgid="1" source="tiles.tsx"/>)" + layers + "</map>";
}

// attributes: of the layer. cells: eight numbers.
inline std::string Layer(const std::string& cells, const std::string& attributes = "")
{
    return "<layer name=\"cells\" width=\"4\" height=\"2\" " + attributes + "><data encoding=\"csv\">" + cells +
           "</data></layer>";
}

// The text with one part of it exchanged; that it holds the part is expected.
inline std::string Replaced(std::string text, const std::string& part, const std::string& by)
{
    const size_t at = text.find(part);
    EXPECT_NE(at, std::string::npos) << part;
    return at == std::string::npos ? text : text.replace(at, part.size(), by);
}

class RoomFromMapTest : public GameTest
{
protected:
    // Plays a game whose first room is the map, with these fields.
    std::string PlayMap(const std::string& map, const std::string& fields = "", const std::string& before = "")
    {
        WriteTiles(directory.Path("tiles.png"));
        directory.Write("tiles.tsx", MAP_TILESET);
        directory.Write("room.tmx", map);
        return Play(before + "\nROOM = room_from_map('room.tmx', {" + fields + "})");
    }

    // The same, drawn on a screen of 32 x 16 that shows the whole map.
    std::string DrawMap(const std::string& map, const std::string& fields = "")
    {
        options.draw = true;
        return PlayMap(map, fields, "screen_set_size(32, 16)");
    }

    Rgb Pixel(int x, int y)
    {
        const Runner::Picture screen = game->Screen();
        const uint8_t* pixel = &screen.rgba[screen.Offset(x, y)];
        return {pixel[0], pixel[1], pixel[2]};
    }

    // The four quarters of a cell.
    std::vector<Rgb> Quarters(int column, int row)
    {
        const int x = column * 8, y = row * 8;
        return {Pixel(x + 1, y + 1), Pixel(x + 6, y + 1), Pixel(x + 1, y + 6), Pixel(x + 6, y + 6)};
    }
};
} // namespace RunnerTest
