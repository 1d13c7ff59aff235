#pragma once

#include "Runner/Draw/Device.h"

namespace Runner
{
// The device on the canvas of the page, whose WebGL 2 context the page has made current before the program starts.
// There is one at a time: with a device goes all that the canvas' context holds.
std::unique_ptr<Device> OpenCanvasDevice(int width, int height, std::string& error);

// What was made in the context is gone: every open device is lost. The page calls it once the context is back.
void LoseCanvasDevices();
} // namespace Runner
