#pragma once
// What the Runner's Lua does in its own way. luaconf.h includes this at its end, so every source of Lua sees it.

#include <cstddef>

// Hashes of strings, and the pivots of table.sort, come from no clock and no address.
#define luai_makeseed(L) 0x5EEDu
#define l_randomizePivot() (~0u)

// x ^ y and the texts of numbers come from the Runner (Runner/Lua/Lua_Numbers.cpp).
#define luai_numpow(L, a, b) ((void)L, Runner::LuaPower(a, b))
#define luai_onenan(n) Runner::OneNaN(n)

#undef lua_number2str
#define lua_number2str(s, sz, n) Runner::LuaNumberText((s), (sz), (n))

#undef lua_number2strx
#define lua_number2strx(L, b, sz, f, n) ((void)L, Runner::LuaHexText((b), static_cast<size_t>(sz), (f), (n)))

#undef lua_getlocaledecpoint
#define lua_getlocaledecpoint() '.'

namespace Runner
{
double LuaPower(double base, double exponent);

// The number itself, and for each NaN the same one: x86 makes negative ones, ARM positive ones.
double OneNaN(double number);

// tostring of a float, but for the ".0" that Lua appends. Answer the length, as snprintf.
int LuaNumberText(char* text, size_t size, double number);

// The conversions %a and %A, with flags, width and precision, as the GNU C library writes them; others begin with
// another digit.
int LuaHexText(char* text, size_t size, const char* format, double number);
} // namespace Runner
