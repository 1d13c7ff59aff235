#pragma once
// Documents that are made from the tables of functions, so that they cannot go stale: tests compare both.

#include <string>
#include <vector>

// Docs/Built_Ins.md: each of the module's built-ins with its arguments, defaults, result, errors and an example.
std::string BuiltInsPage();

// Docs/api.lua: every function that scripts can call, with kinds and units, for editors that complete Lua. page: the
// text of Docs/Script_API.md, which tells what each function does and answers, and the fields of tables.
std::string LuaAnnotations(const std::string& page);

// The part of Docs/api.lua about the camera kit, whose functions have no table but those of its pages.
struct KitPages
{
    std::string kit, effects;
    std::string fields; // the pages whose tables of fields are those of kit.camera{...}
    std::string pixels, shots;
};
std::string KitAnnotations(const KitPages& pages);

// ---- the tables of Docs/Script_API.md ----

struct PageRow
{
    std::string heading;            // the first cell of the row above the table: "Function", "Field of `room_add`"
    std::string first;              // cell, as it stands
    std::string second, last;       // cell: the meaning
    std::vector<std::string> spans; // of the first cell: what stands between backticks
};

std::vector<PageRow> RowsOf(const std::string& page);
