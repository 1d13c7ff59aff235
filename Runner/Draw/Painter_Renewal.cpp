// A painter's new device in place of a lost one.

#include "Runner/Draw/Painter_Parts.h"

#include "Runner/Host/Console.h"

namespace Runner
{
namespace
{
unsigned Upload(Device& device, const Sheet& sheet)
{
    const Picture& packed = sheet.Packed();
    return device.CreateTexture(packed.width, packed.height, packed.rgba.data());
}
} // namespace

void Painter::Parts::DropPixels(Sheet& sheet) const
{
    if (openDevice == nullptr)
        sheet.DropPixels();
}

bool Painter::Parts::HasLostDevice() const { return openDevice != nullptr && device != nullptr && device->IsLost(); }

// The old device goes first: a window has room for its context alone.
void Painter::Parts::Renew()
{
    PrintLine("the graphics driver was reset: pictures are uploaded anew, surfaces are empty");
    std::string why;
    device.reset();
    device = openDevice(width, height, why);
    batch.Restart(device.get());
    for (const auto& map : tileMaps.All())
        if (map != nullptr)
            for (TileGrid::Chunk& chunk : map->Chunks())
                chunk = TileGrid::Chunk();
    for (const auto& layer : mapLayers.All())
        if (layer != nullptr)
            layer->ForgetMeshes();
    if (device == nullptr)
    {
        Fail(std::move(why));
        return;
    }
    fontTexture = Upload(*device, font);
    for (const auto& sprite : sprites.All())
        if (sprite != nullptr)
            sprite->texture = Upload(*device, sprite->sheet);
    for (const auto& entry : surfaces.All())
        if (entry != nullptr)
            entry->target = device->CreateTarget(entry->width, entry->height, entry->texture);
}
} // namespace Runner
