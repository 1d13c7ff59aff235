// The part of Docs/api.lua about the camera kit, from the tables of its pages.
#include "Tools/Script_Documents.h"

#include <algorithm>
#include <set>
#include <sstream>

namespace
{
// Arguments, fields and results, by their names. Others are of any kind: the kit checks them itself.
constexpr const char* TYPES[][2] = {
    {"view", "integer"},
    {"number", "integer"},
    {"frames", "number"},
    {"ease", "string"},
    {"name", "string"},
    {"on", "boolean"},
    {"list", "table[]"},
    {"done", "integer"},
    {"amount", "number"},
    {"style", "string"},
    {"smoothing", "string"},
    {"zoom", "number"},
    {"angle", "number"},
    {"acceleration", "number"},
    {"priority", "number"},
    {"camera", "integer"},
    {"width", "number"},
    {"height", "number"},
    {"zones", "table[]"},
    {"group", "table"},
    {"screen", "table"},
    {"path", "table"},
    {"x", "number"},
    {"y", "number"},
    {"strength", "number"},
    {"level", "number"},
    {"speed", "number"},
    {"target", "Target"},
    {"point", "table"},
    {"way", "string"},
    {"to", "number"},
    {"colour", "integer"},
    {"after", "integer"},
    {"boolean", "boolean"},
    {"blending", "boolean"},
    {"grid", "string"},
    {"scale", "number"},
    {"integer_zoom", "boolean"},
    {"soft_half_life", "number"},
};

std::string TypeOf(const std::string& name)
{
    for (const auto& [known, type] : TYPES)
        if (name == known)
            return type;
    return "any";
}

bool IsName(const std::string& text)
{
    return !text.empty() && text.find_first_not_of("abcdefghijklmnopqrstuvwxyz_") == std::string::npos;
}

// "[Following](Kit_Follow.md)" as "Following".
std::string Plain(const std::string& text)
{
    std::string plain;
    for (size_t i = 0; i < text.size(); ++i)
    {
        const bool isLink = text.compare(i, 2, "](") == 0;
        if (isLink)
            i = text.find(')', i);
        else if (text[i] != '[' || text.find("](", i) == std::string::npos)
            plain += text[i];
    }
    return plain;
}

std::string Doc(const std::string& text) { return text.empty() ? "" : "---" + Plain(text) + "\n"; }

std::string Field(const std::string& name, const std::string& meaning)
{
    return "---@field " + name + "? " + TypeOf(name) + (meaning.empty() ? "" : " ") + Plain(meaning) + "\n";
}

// ---- one call, as a page shows it: "camera:cancel(number [, frames, ease]) -> boolean" ----

struct Call
{
    std::string owner; // "kit." or "camera:"
    std::string name;
    std::vector<std::string> arguments;
    size_t least = 0;
    std::vector<std::string> results;
    bool takesFields = false; // one table of named fields
};

// Of a list with commas; the brackets around what may be left out go.
std::vector<std::string> Words(const std::string& list)
{
    std::vector<std::string> words;
    std::istringstream parts(list);
    for (std::string part; std::getline(parts, part, ',');)
    {
        const size_t begin = part.find_first_not_of(" []");
        if (begin != std::string::npos)
            words.push_back(part.substr(begin, part.find_last_not_of(" []") + 1 - begin));
    }
    return words;
}

void ReadArguments(const std::string& text, Call& call)
{
    const size_t open = call.owner.size() + call.name.size();
    call.takesFields = text.compare(open, 5, "{...}") == 0;
    if (text.compare(open, 1, "{") == 0)
        call.arguments = {call.takesFields ? "fields" : "list"};
    else
        call.arguments = Words(text.substr(open + 1, text.find(')') - open - 1));
    const size_t optional = text.find('[');
    call.least = optional == std::string::npos || call.takesFields
                     ? call.arguments.size()
                     : Words(text.substr(open + 1, optional - open - 1)).size();
    for (std::string& argument : call.arguments)
        argument = argument == "{...}" ? "fields" : IsName(argument) ? argument : "value";
}

// False for a span that shows no call.
bool ReadCall(const std::string& span, Call& call)
{
    for (const char* owner : {"kit.", "camera:"})
        if (span.rfind(owner, 0) == 0)
            call.owner = owner;
    const size_t end = span.find_first_of("({");
    if (call.owner.empty() || end == std::string::npos)
        return false;
    call.name = span.substr(call.owner.size(), end - call.owner.size());
    ReadArguments(span, call);
    const size_t arrow = span.find(" -> ");
    call.results = Words(arrow == std::string::npos ? "" : span.substr(arrow + 4));
    return IsName(call.name);
}

std::string ResultType(const Call& call, const std::string& result)
{
    if (call.owner == "kit." && result == "camera")
        return "KitCamera";
    return result == "number" ? "number" : TypeOf(result);
}

std::string Function(const Call& call, const std::string& does, const std::string& fields)
{
    std::string text = "\n" + Doc(does), list;
    for (size_t i = 0; i < call.arguments.size(); ++i)
    {
        const std::string& name = call.arguments[i];
        const std::string type = name == "fields" ? fields : TypeOf(name);
        text += "---@param " + name + (i < call.least ? " " : "? ") + type + "\n";
        list += (list.empty() ? "" : ", ") + name;
    }
    for (const std::string& result : call.results)
        text += "---@return " + ResultType(call, result) + " " + result + "\n";
    return text + "function " + (call.owner == "kit." ? "Kit." : "KitCamera:") + call.name + "(" + list + ") end\n";
}

// ---- the pages ----

std::vector<std::string> SpansOf(const std::string& text)
{
    std::vector<std::string> spans;
    std::istringstream parts(text);
    int number = 0;
    for (std::string part; std::getline(parts, part, '`'); ++number)
        if (number % 2 == 1)
            spans.push_back(part);
    return spans;
}

std::string FieldsUnder(const std::string& page, const std::string& heading)
{
    std::string text;
    for (const PageRow& row : RowsOf(page))
        if (row.heading == heading)
            for (const std::string& span : row.spans)
                text += Field(span, row.last);
    return text;
}

// What kit.camera{...} and shots take, and a setter of a camera for each.
std::string CameraFields(const KitPages& pages, std::set<std::string>& done)
{
    std::string fields = FieldsUnder(pages.fields, "Field");
    std::string setters;
    for (const PageRow& row : RowsOf(pages.fields))
        if (row.heading == "Field" && done.insert(row.spans.front()).second)
            setters += "\n" + Doc(row.last) + "---@param value " + TypeOf(row.spans.front()) +
                       "\nfunction KitCamera:" + row.spans.front() + "(value) end\n";
    for (const char* name : {"width", "height", "pixels", "soft_half_life"})
        if (done.insert(name).second)
            setters += "\n---@param value " + TypeOf(name) + "\nfunction KitCamera:" + name + "(value) end\n";
    return "\n---@class kit.pixels\n" + FieldsUnder(pages.pixels, "Field") + "\n---@class kit.shot\n" + fields +
           Field("soft_half_life", "of the soft zone, frames") +
           Field("priority", "the live shot is the one of the highest") + Field("on", "whether it takes part") +
           "\n---@class kit.fields: kit.shot\n" + Field("view", "a view, 0 to 7") +
           Field("camera", "a camera's number, in place of a view") +
           Field("width", "of the view at zoom 1, room units") + Field("height", "of the view at zoom 1, room units") +
           "---@field pixels? boolean|kit.pixels\n" + setters;
}

// An effect: its own options stand in its row, those of all in a table of their own.
std::string Effect(const Call& call, const PageRow& row, const std::string& common)
{
    std::string text = "\n---@class kit." + call.name + ".options\n";
    std::set<std::string> done;
    for (const std::string& span : SpansOf(row.last))
        if (IsName(span) && done.insert(span).second)
            text += Field(span, "");
    Call answering = call;
    answering.results = {"number"}; // of the effect: the page says so above its table
    return text + common + Function(answering, row.second, "kit." + call.name + ".options");
}

std::string CallsOf(const std::string& page, const std::string& common, std::set<std::string>& done)
{
    std::string text;
    for (const PageRow& row : RowsOf(page))
        for (const std::string& span : row.spans)
        {
            Call call;
            const bool isNew = ReadCall(span, call) && done.insert(call.owner + call.name).second;
            if (!isNew)
                continue;
            const bool isEffect = call.takesFields && row.second != row.last;
            text += isEffect ? Effect(call, row, common)
                             : Function(call, row.second, call.owner == "kit." ? "kit.fields|integer" : "kit.shot");
        }
    return text;
}
} // namespace

std::string KitAnnotations(const KitPages& pages)
{
    std::set<std::string> fieldSetters, done = {"camera:blend"};
    std::string text = "\n---The camera kit (Docs/Kit.md): local kit = include(\"kit/camera_kit.lua\")\n---@class Kit\n"
                       "---@field version integer\n---@field easing table\nlocal Kit = {}\n"
                       "\n---A camera of the kit.\n---@class KitCamera\nlocal KitCamera = {}\n";
    text += CameraFields(pages, fieldSetters);
    const std::string common = FieldsUnder(pages.effects, "Option");
    for (const std::string& page : {pages.kit, pages.effects, pages.shots})
        text += CallsOf(page, common, done);
    // What tables do not show: calls within sentences, and one whose fields stand there.
    for (const std::string& page : {pages.fields, pages.pixels, pages.shots})
        for (const std::string& span : SpansOf(page))
        {
            Call call;
            if (ReadCall(span, call) && call.owner == "camera:" && done.insert("camera:" + call.name).second)
                text += Function(call, "", "table");
        }
    return text +
           "\n---How shots go over into each other.\n---@param fields {from?: string, to?: string, frames?: number, "
           "ease?: string}\nfunction KitCamera:blend(fields) end\n";
}
