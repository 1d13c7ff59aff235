#pragma once
// What the Runner's Lua does in its own way. luaconf.h includes this at its end, so every source of Lua sees it.

#include <cmath>
#include <cstddef>

struct lua_State;

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

// What Lua's own functions do is counted in units of about one instruction, which the limit on instructions counts as
// well (Runner/Lua/Script_Limits.cpp). luai_work lets the function finish and stops the script at its next instruction;
// luai_workorstop raises the error at once and is for loops whose end nobody knows. luai_runs tells which coroutine
// runs from now on, and answers which one did.
#define luai_work(n) ((Runner::luaWorkLeft -= static_cast<long long>(n)) < 0 ? Runner::CountLuaWork() : (void)0)
#define luai_workorstop(L, n)                                                                                          \
    ((Runner::luaWorkLeft -= static_cast<long long>(n)) < 0 ? Runner::CountLuaWorkAndStop(L) : (void)0)
#define luai_fmodwork(a, b) Runner::LuaRemainderWork((a), (b))
#define luai_runs(L) Runner::LuaRuns(L)

// A coroutine has failed; its error is on the top of its stack, and the functions that ran in it can still be looked
// at.
#define luai_failed(L) Runner::LuaCoroutineFailed(L)

#define LUAI_MAXCALLCHAIN 10000 // arguments at which a __call that is no function is taken for one that never ends
#define LUAI_MAXNUMERAL 65536   // characters of a text that can be a number

namespace Runner
{
extern long long luaWorkLeft; // before the limits are looked at
void CountLuaWork();
void CountLuaWorkAndStop(lua_State* L);
lua_State* LuaRuns(lua_State* L);
void LuaCoroutineFailed(lua_State* L);

// fmod subtracts bit by bit, up to 2,000 times.
inline int LuaRemainderWork(double a, double b) { return std::fabs(a) > std::fabs(b) * 1e6 ? 200 : 0; }

double LuaPower(double base, double exponent);

// The number itself, and for each NaN the same one: x86 makes negative ones, ARM positive ones.
double OneNaN(double number);

// tostring of a float, but for the ".0" that Lua appends. Answer the length, as snprintf.
int LuaNumberText(char* text, size_t size, double number);

// The conversions %a and %A, with flags, width and precision, as the GNU C library writes them; others begin with
// another digit.
int LuaHexText(char* text, size_t size, const char* format, double number);
} // namespace Runner
