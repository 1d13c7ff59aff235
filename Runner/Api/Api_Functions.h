#pragma once
// The functions of Docs/Script_API.md, by subject, and what they are written with. The module's built-ins are not among
// them (Runner/Lua/Bridge.h).

#include "Platform/Matrix.h"
#include "Runner/Lua/Arguments.h"

namespace Runner
{
class Game;

// One call of a function of this runner's, with the game that it is about.
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
    int (*run)(Arguments& call); // answers how many values it has pushed
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

// The painter, for a function that draws; refused while nothing is being drawn.
class Painter;
Painter& DrawingPainter(const Arguments& call);
Painter& OpenedPainter(const Arguments& call); // for what needs no drawing, such as loading

kvMatrix MatrixArgument(const Arguments& call, int i); // a table of 16 numbers
} // namespace Runner
