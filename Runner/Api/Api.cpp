#include "Runner/Api/Api.h"

#include "Runner/Api/Api_Functions.h"
#include "Runner/Draw/Painter.h"
#include "Runner/Game/Game.h"
#include "Runner/Host/Console.h"
#include "Runner/Lua/Script_Engine.h"
#include "Runner/Lua/Settings_Table.h"

#include <array>

namespace Runner
{
namespace
{
constexpr size_t WORK_OF_A_CALL = 20; // in instructions of Lua

struct NamedColour
{
    const char* name;
    int red, green, blue;
};

constexpr NamedColour COLOURS[] = {
    {"white", 255, 255, 255}, {"black", 0, 0, 0},      {"grey", 128, 128, 128}, {"silver", 192, 192, 192},
    {"red", 255, 0, 0},       {"green", 0, 128, 0},    {"blue", 0, 0, 255},     {"yellow", 255, 255, 0},
    {"orange", 255, 160, 64}, {"purple", 128, 0, 128}, {"cyan", 0, 255, 255},   {"brown", 139, 90, 43},
};

// An error of the painter is raised as an error of the call that asked for it.
void RaisePainterError(const Arguments& call)
{
    Painter* painter = call.game.CurrentPainter();
    if (painter != nullptr && painter->HasError())
        call.Fail(painter->TakeError());
}

std::array<ApiTable, 10> AllTables()
{
    return {WorldApi(), RoomApi(),  SystemApi(), DrawApi(), PictureApi(),
            SpaceApi(), InputApi(), PointApi(),  MapApi(),  SaveApi()};
}

int CallApi(lua_State* L)
{
    const auto& function = *static_cast<const ApiFunction*>(lua_touserdata(L, lua_upvalueindex(1)));
    Game& game = *static_cast<Game*>(lua_touserdata(L, lua_upvalueindex(2)));
    const ScriptEngine::RunningGuard guard(game.scripts, L);
    luaL_checkstack(L, LUA_MINSTACK, nullptr);
    luai_work(WORK_OF_A_CALL);
    Arguments call(L, game, function);
    const int results = function.run(call);
    RaisePainterError(call);
    return results;
}

int ApiEntry(lua_State* L) { return RunForLua(L, CallApi); }

void OpenTable(lua_State* L, Game& game, const ApiTable& table)
{
    for (size_t i = 0; i < table.count; ++i)
    {
        lua_pushlightuserdata(L, const_cast<ApiFunction*>(&table.functions[i]));
        lua_pushlightuserdata(L, &game);
        lua_pushcclosure(L, ApiEntry, 2);
        lua_setglobal(L, table.functions[i].name);
    }
}

void OpenColours(lua_State* L)
{
    lua_newtable(L);
    for (const NamedColour& colour : COLOURS)
    {
        lua_pushinteger(L, colour.red | colour.green << 8 | colour.blue << 16);
        lua_setfield(L, -2, colour.name);
    }
    lua_setglobal(L, "colours");
}
} // namespace

void OpenApi(lua_State* L, Game& game)
{
    for (const ApiTable& table : AllTables())
        OpenTable(L, game, table);
    OpenColours(L);
    OpenSettings(L, game.options.settings);
    lua_newtable(L);
    if (game.options.strict)
        WatchVars(L);
    lua_setglobal(L, "vars");
}

std::vector<Signature> ApiSignatures()
{
    std::vector<Signature> signatures;
    for (const ApiTable& table : AllTables())
        for (size_t i = 0; i < table.count; ++i)
            signatures.push_back(table.functions[i].Names());
    return signatures;
}

std::string ShownText(const Arguments& call, int i)
{
    if (lua_type(call.L, i) != LUA_TNUMBER && lua_type(call.L, i) != LUA_TSTRING)
        call.FailArgument(i, "is a string or a number, got " + DescribeAt(call.L, i));
    size_t size = 0;
    const char* text = lua_tolstring(call.L, i, &size);
    return std::string(text, size);
}

int ReturnTold(const Arguments& call, const Answer& answer)
{
    if (!answer.done && !answer.why.empty())
        PrintLine(std::string(call.Name()) + "() - " + answer.why);
    return call.Return(answer.done);
}

Painter& OpenedPainter(const Arguments& call)
{
    Painter* painter = call.game.OpenPainter();
    if (painter == nullptr)
        throw PositionedError(call.game.scripts.TakeFailure());
    return *painter;
}

Painter& DrawingPainter(const Arguments& call)
{
    if (!call.game.IsDrawing())
        call.Fail("only while drawing: in draw, draw_gui or a camera's callback");
    return OpenedPainter(call);
}
} // namespace Runner
