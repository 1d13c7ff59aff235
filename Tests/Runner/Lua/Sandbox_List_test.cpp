// What a script can get hold of, held against the list in Docs/Security.md: a name more or less shows with its path.

#include "Runner/Lua/Bridge.h"
#include "Runner/Lua/Signature.h"
#include "Tests/Runner/Support/Game_Support.h"

#include <gmock/gmock.h>

namespace
{
using testing::IsEmpty;

// Prints the path of everything that tables and metatables lead to, with the means of a script. A function's upvalues
// are out of reach without a debug library, which is no name of the list.
constexpr char WALK[] = R"(
    local seen, walk = {}
    local function describe(key) return type(key) == 'string' and '.' .. key or '[' .. tostring(key) .. ']' end
    function walk(value, path)
        local meta = getmetatable(value)
        if type(value) == 'string' and path ~= 'a string' then meta = nil end
        if meta ~= nil and not seen[meta] then
            if type(meta) == 'table' then walk(meta, 'getmetatable(' .. path .. ')')
            else print('getmetatable(' .. path .. ') = ' .. tostring(meta)) end
        end
        if type(value) ~= 'table' or seen[value] then return end
        seen[value] = true
        for key, inner in next, value do
            local name = path == '_G' and describe(key):sub(2) or path .. describe(key)
            print(name)
            walk(inner, name)
            if type(key) ~= 'string' then walk(key, 'key of ' .. path) end
        end
    end
    walk(_G, '_G')
    walk('', 'a string')
    for _, value in ipairs{ 0, 0.5, true, print, coroutine.create(print), pairs{}, string.gmatch('', '') } do
        walk(value, 'a ' .. type(value))
    end
    walk(nil, 'nil'))";

std::set<std::string> Lines(const std::string& text)
{
    std::set<std::string> lines;
    std::stringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.insert(line);
    return lines;
}

// The block of the document: "prefix: name name", where the prefix of names of _G is _G.
std::set<std::string> ListOfTheDocument()
{
    std::ifstream file(std::string(SOURCE_DIR) + "/Docs/Security.md");
    std::set<std::string> names;
    bool isInBlock = false;
    for (std::string line; std::getline(file, line);)
    {
        if (line.rfind("```", 0) == 0)
            isInBlock = line == "```reachable";
        else if (isInBlock)
        {
            std::stringstream words(line.substr(line.find(": ") + 1));
            const std::string prefix = line.substr(0, line.find(": "));
            for (std::string name; words >> name;)
                names.insert(prefix == "_G" ? name : prefix + "." + name);
        }
    }
    return names;
}

std::set<std::string> Without(const std::set<std::string>& from, const std::set<std::string>& these)
{
    std::set<std::string> left;
    std::set_difference(from.begin(), from.end(), these.begin(), these.end(), std::inserter(left, left.end()));
    return left;
}

class SandboxList : public RunnerTest::GameTest
{
};

TEST_F(SandboxList, IsTheDocumentsAndTheFunctionsOfTheScriptDocument)
{
    ASSERT_EQ(Run("ROOM_SELF = instance_get(instance_create(0, 0, object_add{}))\n"
                  "assert(getmetatable(ROOM_SELF) == false) ROOM_SELF = nil\n" +
                  std::string(WALK)),
              "");
    std::set<std::string> found = Lines(Log());
    std::set<std::string> allowed = ListOfTheDocument();
    ASSERT_GT(allowed.size(), 100u);
    for (const auto& signatures : {Runner::ApiSignatures(), Runner::BuiltinSignatures()})
        for (const Runner::Signature& signature : signatures)
            EXPECT_TRUE(allowed.insert(signature.name).second) << signature.name << " is no name of Lua's own";
    EXPECT_THAT(Without(found, allowed), IsEmpty()) << "reachable, and not in Docs/Security.md";
    EXPECT_THAT(Without(allowed, found), IsEmpty()) << "in the documents, and not reachable";
}

TEST_F(SandboxList, AChunkWithAnEnvironmentOfItsOwnSeesNothingElse)
{
    EXPECT_EQ(Run("local env = {} assert(load('return _ENV', 'c', 't', env)() == env)\n"
                  "assert(load('return print', 'c', 't', {})() == nil)\n"
                  "assert(load('local _ENV = {} return function() return _ENV end')()().print == nil)\n"
                  "assert(not pcall(load('x = 1', 'c', 't', 5)))\n"
                  "assert(load('return ...', 'c', 't', nil)(7) == 7)"),
              "");
}
} // namespace
