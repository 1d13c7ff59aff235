#pragma once
// The functions of Docs/Script_API.md, by subject. The built-ins of the module are not among them (Bridge.h).

#include "Platform/Matrix.h"
#include "Runner/Lua/Arguments.h"

namespace Runner
{
struct ApiTable
{
    const ApiFunction* functions;
    size_t count;
};

ApiTable WorldApi();   // objects and instances
ApiTable RoomApi();    // rooms and the screen
ApiTable SystemApi();  // scripts, random numbers, files, the game itself
ApiTable DrawApi();    // shapes, text, colours
ApiTable PictureApi(); // sprites, surfaces, tile maps
ApiTable SpaceApi();   // matrices and 3D

// Makes all of them global functions, with the tables vars and colours.
void OpenApi(lua_State* L, Game& game);

// The painter, for a function that draws; refused while nothing is being drawn.
class Painter;
Painter& DrawingPainter(const Arguments& call);
Painter& OpenedPainter(const Arguments& call); // for what needs no drawing, such as loading

kvMatrix MatrixArgument(const Arguments& call, int i); // a table of 16 numbers
} // namespace Runner
