#pragma once
// The functions of Docs/Script_API.md, by subject. The built-ins of the module are not among them (Bridge.h).

#include "Platform/Matrix.h"
#include "Runner/Lua/Arguments.h"
#include "Runner/Lua/Script_Engine.h"

#include <array>

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
std::string ShownText(const Arguments& call, int i);   // of a string, or of a number as tostring shows it

// So many finite numbers from argument first on, read one after the other: of several bad ones the first is named,
// whereas a compiler may evaluate the arguments of a call in any order.
template <size_t COUNT> std::array<float, COUNT> Floats(const Arguments& call, int first)
{
    std::array<float, COUNT> numbers = {};
    for (size_t i = 0; i < COUNT; ++i)
        numbers[i] = call.Float(first + static_cast<int>(i));
    return numbers;
}

// Pops an entry of a list. The error for one that does not fit names it: "data[3] must be a number, got nil".
template <typename T>
T PopEntry(const Fields& fields, lua_State* L, const std::string& name, T (*read)(lua_State*, int))
{
    try
    {
        const T entry = read(L, -1);
        lua_pop(L, 1);
        return entry;
    }
    catch (const ScriptError& error)
    {
        fields.Fail(name, error.what());
    }
}
} // namespace Runner
