#pragma once

namespace Runner
{
// Of the bound texture: a pixel shows the nearest entry, and beyond the edge that of the edge.
void NearestAndClamped();

// Gives the texture of the bound framebuffer its size, with entries in the order that windows have, blue first: what is
// copied into a window then is copied as it stands. Where the driver refuses that order, or a framebuffer of it, the
// usual one stays.
void AllotInWindowsOrder(unsigned texture, int width, int height);
} // namespace Runner
