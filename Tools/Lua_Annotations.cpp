// Docs/api.lua: annotations in the notation of the Lua language server.
#include "Tools/Script_Documents.h"

#include "Runner/Api/Api.h"
#include "Runner/Api/Argument_Meanings.h"
#include "Runner/Lua/Bridge.h"
#include "Tools/Built_In_Notes.h"

#include <algorithm>
#include <sstream>

namespace
{
constexpr char HEAD[] = R"(---@meta
-- All that a game's script can call, with kinds and units, for editors that understand the annotations of the Lua
-- language server. Made by script_documents from the tables of functions and from Docs/Script_API.md; do not edit by
-- hand. Docs/Your_Game.md tells how an editor finds it. The Runner never reads it.

---@alias Matrix number[] 16 numbers, row by row
---@alias Target Instance|integer an instance, an object or -1 for none
---@alias Script function|integer a function, a number of script_add, or -1 for none
)";

struct Typed
{
    const char* name;
    const char* type;
};

// Results, by the word behind "->" on the page. Others are arguments of that name, or of any kind.
constexpr Typed RESULT_TYPES[] = {
    {"index", "integer"}, {"id", "integer"},     {"boolean", "boolean"}, {"number", "number"}, {"string", "string"},
    {"text", "string"},   {"self", "Instance?"}, {"x", "number?"},       {"y", "number?"},     {"matrix", "Matrix"},
    {"table", "table?"},  {"list", "table[]"},   {"camera", "integer"},  {"map", "integer"},   {"result", "any"},
};

constexpr Typed KIND_TYPES[] = {
    {"a whole number", "integer"},
    {"a number", "number"},
    {"a string", "string"},
    {"a string or a number", "string|number"},
    {"a function", "function"},
    {"true or false", "boolean"},
    {"a table", "table"},
    {"a table of numbers", "number[]"},
    {"a table of 16 numbers", "Matrix"},
    {"an instance", "Instance|integer"},
    {"a colour (see colour_rgb)", "integer"},
};

// Fields of tables and of instances. One of another name is of any kind.
constexpr Typed FIELD_TYPES[] = {
    {"name", "string"},
    {"bbox", "number[]"},
    {"visible", "boolean"},
    {"solid", "boolean"},
    {"cull", "boolean"},
    {"views", "table<integer, view.fields>"},
    {"instances", "any[][]"},
    {"load", "fun()"},
    {"objects", "table<string, integer>"},
    {"draw_gui", "fun()"},
    {"target", "Target"},
    {"keys", "string[]"},
    {"mouse", "string[]"},
    {"buttons", "string[]"},
    {"axes", "string[]"},
    {"data", "integer[]"},
    {"id", "integer"},
    {"object", "integer"},
    {"sprite", "integer"},
    {"parent", "integer"},
    {"colour", "integer"},
    {"background", "integer"},
    {"columns", "integer"},
    {"rows", "integer"},
    {"destroy", "fun(self: Instance)"},
};
constexpr const char* NUMBER_FIELDS =
    " x y w h xport yport wport hport hborder vborder hspeed vspeed width height depth "
    "frame angle xscale yscale alpha bbox_left bbox_top bbox_right bbox_bottom "
    "tile_width tile_height ";
constexpr const char* EVENT_FIELDS = " create step draw "; // called with self by objects, without arguments by rooms

template <size_t COUNT> const char* Find(const Typed (&table)[COUNT], const std::string& name)
{
    const auto found =
        std::find_if(std::begin(table), std::end(table), [&](const Typed& row) { return name == row.name; });
    return found == std::end(table) ? nullptr : found->type;
}

bool Lists(const char* list, const std::string& name)
{
    return std::string(list).find(" " + name + " ") != std::string::npos;
}

// A comment's text: one line, without the signs that make a table's cell.
std::string Comment(std::string text)
{
    for (size_t at = text.find("\\|"); at != std::string::npos; at = text.find("\\|", at))
        text.erase(at, 1);
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
}

// ---- fields ----

std::string FieldType(const std::string& owner, const std::string& field)
{
    if (Lists(EVENT_FIELDS, field))
        return owner.rfind("room_", 0) == 0 ? "fun()" : "fun(self: Instance)";
    if (Lists(NUMBER_FIELDS, field))
        return "number";
    const char* const known = Find(FIELD_TYPES, field);
    return known != nullptr ? known : "any";
}

std::string Field(const std::string& owner, const std::string& field, const std::string& meaning, bool isOptional)
{
    return "---@field " + field + (isOptional ? "? " : " ") + FieldType(owner, field) + (meaning.empty() ? "" : " ") +
           Comment(meaning) + "\n";
}

bool IsName(const std::string& text)
{
    return !text.empty() && text.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789_") == std::string::npos;
}

// The fields of a table stand in a table of the page's own, or behind "Fields: " where the function is told.
std::string FieldsOf(const std::vector<PageRow>& rows, const std::string& owner, const std::string& heading,
                     const std::string& meaning)
{
    std::string fields = "\n---@class " + owner + ".fields\n";
    for (const PageRow& row : rows)
        if (row.heading == heading)
            for (const std::string& span : row.spans)
                fields += Field(owner, span, row.last, true);
    const size_t list = meaning.find("Fields: ");
    std::istringstream parts(list == std::string::npos ? "" : meaning.substr(list));
    int number = 0;
    for (std::string part; std::getline(parts, part, '`'); ++number)
        if (number % 2 == 1 && IsName(part))
            fields += Field(owner, part, "", true);
    return fields;
}

std::string InstanceClass(const std::vector<PageRow>& rows)
{
    std::string text = "\n---An instance, as events get it.\n---@class Instance\n";
    for (const PageRow& row : rows)
        if (row.heading == "Field")
            for (const std::string& span : row.spans)
                text += Field("object_add", span, row.last, false);
    return text + "---@field [string] any\n";
}

// ---- functions ----

// Of the arguments' names, one is a word of Lua.
std::string ParameterName(const std::string& argument) { return argument == "function" ? "callback" : argument; }

std::string End(const std::string& name, const std::vector<const char*>& arguments)
{
    std::string list;
    for (const char* argument : arguments)
        list += (list.empty() ? "" : ", ") + ParameterName(argument);
    return "function " + name + "(" + list + ") end\n";
}

std::string Parameter(const std::string& name, const std::string& type, bool isOptional, const std::string& meaning)
{
    return "---@param " + ParameterName(name) + (isOptional ? "? " : " ") + type + " " + Comment(meaning) + "\n";
}

const char* BuiltInType(eArgument kind)
{
    switch (kind)
    {
    case eArgument_Flag: return "boolean|number";
    case eArgument_Camera:
    case eArgument_View:
    case eArgument_Surface: return "integer";
    case eArgument_Instance: return "Target";
    case eArgument_Matrix: return "Matrix";
    case eArgument_Script: return "Script";
    case eArgument_Number: break;
    }
    return "number";
}

// A getter of a target or of a visible flag gives its number.
std::string BuiltInResult(const KvArgument& result)
{
    const bool isNumber = result.kind == eArgument_Instance || result.kind == eArgument_Flag;
    return "---@return " + std::string(isNumber ? "integer" : BuiltInType(result.kind)) + " " + result.name + " " +
           result.meaning + "\n";
}

std::string BuiltIn(const KvSignature& function, const BuiltInNote& note)
{
    std::string text = "\n---" + Comment(note.does) + "\n";
    std::vector<const char*> names;
    for (int i = 0; i < function.count; ++i)
    {
        const KvArgument& argument = function.arguments[i];
        text += Parameter(argument.name, BuiltInType(argument.kind), i >= function.least, argument.meaning);
        names.push_back(argument.name);
    }
    if (*function.result.name != '\0')
        text += BuiltInResult(function.result);
    return text + End(function.name, names);
}

const Runner::ArgumentMeaning* MeaningOf(const std::string& name)
{
    for (const Runner::ArgumentMeaning& row : Runner::ARGUMENT_MEANINGS)
        if (name == row.name)
            return &row;
    return nullptr;
}

std::string TypeOf(const std::string& argument)
{
    const Runner::ArgumentMeaning* const meaning = MeaningOf(argument);
    const char* const type = meaning == nullptr ? nullptr : Find(KIND_TYPES, meaning->kind);
    return type != nullptr ? type : "any";
}

// "-> x, y" behind the function on the page.
std::string Results(const std::string& span)
{
    const size_t arrow = span.find(" -> ");
    std::string text;
    std::istringstream words(arrow == std::string::npos ? "" : span.substr(arrow + 4));
    for (std::string word; std::getline(words >> std::ws, word, ',');)
    {
        const char* const known = Find(RESULT_TYPES, word);
        text += "---@return " + (known != nullptr ? std::string(known) : TypeOf(word)) + " " + word + "\n";
    }
    return text;
}

struct Told
{
    std::string span, meaning;
};

// Where the page tells of a function: its span begins with the function's signature.
Told FindTold(const std::vector<PageRow>& rows, const std::string& signature)
{
    for (const PageRow& row : rows)
        for (const std::string& span : row.spans)
            if (span.substr(0, span.find(" -> ")) == signature)
                return {span, row.last};
    return {};
}

std::string Function(const Runner::Signature& function, const std::vector<PageRow>& rows)
{
    const Told told = FindTold(rows, function.Text());
    const std::string own =
        FieldsOf(rows, function.name, "Field of `" + std::string(function.name) + "`", told.meaning);
    const bool isToldOfFields = own.find("@field") != std::string::npos;
    std::string fields, parameters;
    for (int i = 0; i < function.Most(); ++i)
    {
        const std::string argument = function.arguments[static_cast<size_t>(i)];
        const bool hasFields = argument == Runner::FIELDS_ARGUMENT && isToldOfFields;
        const Runner::ArgumentMeaning* const meaning = MeaningOf(argument);
        parameters += Parameter(argument, hasFields ? std::string(function.name) + ".fields" : TypeOf(argument),
                                i >= function.least, meaning == nullptr ? "" : meaning->meaning);
        if (hasFields)
            fields += own;
    }
    if (function.name == std::string("include"))
        parameters = "---@overload fun(file: \"kit/camera_kit.lua\"): Kit\n" + parameters;
    const std::string does = told.meaning.empty() ? "" : "---" + Comment(told.meaning) + "\n";
    return fields + "\n" + does + parameters + Results(told.span) + End(function.name, function.arguments);
}

// ---- tables ----

std::string Global(const std::vector<PageRow>& rows, const std::string& name, const std::string& type)
{
    return "\n---" + Comment(FindTold(rows, name).meaning) + "\n---@type " + type + "\n" + name + " = {}\n";
}

std::string Colours(const std::vector<PageRow>& rows)
{
    std::string text = "\n---@class Colours\n";
    const std::string meaning = FindTold(rows, "colours").meaning;
    const size_t open = meaning.find('`') + 1;
    std::istringstream names(meaning.substr(open, meaning.find('`', open) - open));
    for (std::string name; names >> name;)
        text += "---@field " + name + " integer\n";
    return text;
}
} // namespace

std::string LuaAnnotations(const std::string& page)
{
    const std::vector<PageRow> rows = RowsOf(page);
    std::string text = HEAD + InstanceClass(rows) + FieldsOf(rows, "view", "Field of a view", "") + Colours(rows);
    text += Global(rows, "vars", "table<string, any>") + Global(rows, "colours", "Colours") +
            Global(rows, "settings", "table<string, string|number|boolean>");
    for (size_t i = 0; i < std::size(KvArguments::SIGNATURES); ++i)
        text += BuiltIn(KvArguments::SIGNATURES[i], BUILT_IN_NOTES[i]);
    for (const Runner::Signature& function : Runner::ApiSignatures())
        text += Function(function, rows);
    return text;
}
