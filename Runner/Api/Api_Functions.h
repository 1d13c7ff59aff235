#pragma once
// The tables of the Runner's functions, by subject, and what the functions share. Runner/Lua/Bridge.h has the module's
// built-ins.

#include "Platform/Matrix.h"
#include "Runner/Lua/Arguments.h"

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

// The painter. DrawingPainter refuses the call while nothing is being drawn.
class Painter;
Painter& DrawingPainter(const Arguments& call);
Painter& OpenedPainter(const Arguments& call); // also while nothing is being drawn: for loading

kvMatrix MatrixArgument(const Arguments& call, int i); // reads a table of 16 numbers
} // namespace Runner
