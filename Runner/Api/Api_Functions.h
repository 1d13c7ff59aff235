#pragma once
// The tables of the Runner's functions, by subject, and what the functions share. Runner/Lua/Bridge.h has the module's
// built-ins.

#include "Platform/Matrix.h"
#include "Runner/Lua/Arguments.h"
#include "Runner/Lua/Script_Engine.h"

#include <array>
#include <string>

namespace Runner
{
class Game;

// The arguments of one call of a function of the Runner, with the game that called it.
class Arguments : public ScriptArguments
{
public:
    Arguments(lua_State* state, Game& owner, const FunctionHead& function)
        : ScriptArguments(state, function), game(owner)
    {
    }

    Game& game;
};

struct ApiFunction : FunctionHead
{
    int (*run)(Arguments& call); // pushes its results and answers their number
};

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
ApiTable InputApi();   // keyboard, mouse, gamepads, actions
ApiTable MapApi();     // rooms from an editor's maps
ApiTable PointApi();   // from the screen to the room and back
ApiTable SaveApi();    // the game's version, saves, names of cameras

// The painter. DrawingPainter refuses the call while nothing is being drawn.
class Painter;
Painter& DrawingPainter(const Arguments& call);
Painter& OpenedPainter(const Arguments& call); // also while nothing is being drawn: for loading

kvMatrix MatrixArgument(const Arguments& call, int i); // reads a table of 16 numbers
std::string ShownText(const Arguments& call, int i);   // of a string, or of a number as tostring shows it

// Returns to the script whether it was done. The reason of a failure goes to the console, and the game goes on.
struct Answer;
int ReturnTold(const Arguments& call, const Answer& answer);

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
        T entry = read(L, -1);
        lua_pop(L, 1);
        return entry;
    }
    catch (const ScriptError& error)
    {
        fields.Fail(name, error.what());
    }
}
} // namespace Runner
