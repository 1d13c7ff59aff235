#pragma once
// Documents that are made from the tables of functions, so that they cannot go stale: tests compare both.

#include <string>
#include <vector>

// Docs/Built_Ins.md: each of the module's built-ins with its arguments, defaults, result, errors and an example.
std::string BuiltInsPage();

// Docs/api.lua: every function that scripts can call, with kinds and units, for editors that complete Lua. page: the
// text of Docs/Script_API.md, which tells what each function does and answers, and the fields of tables.
std::string LuaAnnotations(const std::string& page);

// ---- the tables of Docs/Script_API.md ----

struct PageRow
{
    std::string heading;            // the first cell of the row above the table: "Function", "Field of `room_add`"
    std::string first;              // cell, as it stands
    std::string last;               // cell: the meaning
    std::vector<std::string> spans; // of the first cell: what stands between backticks
};

std::vector<PageRow> RowsOf(const std::string& page);
