#pragma once
// Reading the values that a script hands over. Every reader throws ScriptError for a value that does not fit.

#include "Runner/Lua/Signature.h"

#include <lua.hpp>

#include <string>
#include <vector>

namespace Runner
{
class Instance;
class ObjectType;

// ---- single values: an error says "is a whole number, got nil"; the caller puts the name of the value before it ----
double NumberAt(lua_State* L, int index);
float FloatAt(lua_State* L, int index);  // the nearest float; infinite beyond the range of a float
float FiniteAt(lua_State* L, int index); // refuses infinities and NaN
int WholeAt(lua_State* L, int index);    // 32 bits; takes 3.0 as 3
bool FlagAt(lua_State* L, int index);    // true, false, or a number (above one half is true)
unsigned ColourAt(lua_State* L, int index);
std::string TextAt(lua_State* L, int index);
int FunctionAt(lua_State* L, int index); // a reference (ScriptEngine::Keep)
void CheckTableAt(lua_State* L, int index);
int InstanceNumberAt(lua_State* L, int index);       // a number, or the self of an instance
std::string DescribeAt(lua_State* L, int index);     // one short line: nil, a table, the string "left", the number 5
std::string DescribeListAt(lua_State* L, int index); // the same, and a table with its length: a table of 15

// The name and the argument names of a function that scripts can call. Errors and documents take both from here.
struct FunctionHead
{
    static constexpr size_t ARGUMENTS_MAX = 14;

    const char* name;
    int least;                            // arguments that a call must have; the others are optional
    const char* arguments[ARGUMENTS_MAX]; // their names, null after the last

    Signature Names() const;
};

// The arguments of one call, counted from 1. Each reader throws an error that names the function and the argument.
class ScriptArguments
{
public:
    // Checks the number of arguments; throws when it is wrong.
    ScriptArguments(lua_State* state, const FunctionHead& function);

    lua_State* const L;

    bool Has(int i) const { return lua_type(L, i) > LUA_TNIL; }
    double Number(int i) const;
    float Float(int i) const; // finite
    float Float(int i, float otherwise) const { return Has(i) ? Float(i) : otherwise; }
    int Whole(int i) const;
    int Whole(int i, int otherwise) const { return Has(i) ? Whole(i) : otherwise; }
    bool Flag(int i, bool otherwise) const;
    unsigned Colour(int i) const;
    unsigned Colour(int i, unsigned otherwise) const { return Has(i) ? Colour(i) : otherwise; }
    std::string Text(int i) const;
    int Function(int i) const; // a reference (ScriptEngine::Keep)
    void Table(int i) const;   // checks that it is one

    // An entry of the table that is argument i, counted from 1. Errors name both.
    double NumberEntry(int i, lua_Integer entry) const;
    float FloatEntry(int i, lua_Integer entry) const; // finite

    Instance* FindInstance(int i) const; // named by its identifier or self; null when it does not exist
    ObjectType& Object(int i) const;     // named by its index; throws when there is none

    int Return(double number) const;
    int Return(int number) const;
    int Return(bool truth) const;
    int Return(const std::string& text) const;

    const char* Name() const { return m_function.name; }
    [[noreturn]] void Fail(const std::string& text) const;                // throws "draw_line() - text"
    [[noreturn]] void FailArgument(int i, const std::string& text) const; // throws "draw_line: argument 2 (y1) text"

private:
    template <typename T> T Checked(int i, T (*read)(lua_State*, int)) const;
    template <typename T> T Entry(int i, lua_Integer entry, T (*read)(lua_State*, int)) const;

    const FunctionHead& m_function;
};

// The named fields of a table. Reading a field makes its name known; Finish refuses every name that is not known, so
// that a misspelt one is noticed.
class Fields
{
public:
    // where: what errors put before the name of a field, such as "views[0].".
    Fields(const ScriptArguments& call, int table, std::string where = "");

    bool Has(const char* name);
    float Float(const char* name, float otherwise);
    int Whole(const char* name, int otherwise);
    int Whole(const char* name, int otherwise, int least, int most);
    bool Flag(const char* name, bool otherwise);
    unsigned Colour(const char* name, unsigned otherwise);
    std::string Text(const char* name, const std::string& otherwise);
    int Function(const char* name, int otherwise); // a reference (ScriptEngine::Keep)
    bool PushTable(const char* name);              // false when the field is missing; nothing is pushed then

    void Finish() const;
    [[noreturn]] void Fail(const std::string& name, const std::string& text) const;

private:
    template <typename T> T Read(const char* name, T otherwise, T (*read)(lua_State*, int));
    template <typename T> T Checked(const char* name, T (*read)(lua_State*, int)) const; // reads the value at the top
    bool Push(const char* name);

    const ScriptArguments& m_call;
    int m_table;
    std::string m_where;
    std::vector<const char*> m_known;
};
} // namespace Runner
