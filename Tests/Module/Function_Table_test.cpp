// The built-ins as the host gets them, against what Docs/Script_API.md tells the authors of games.
#include "Tests/Support/Fixture.h"

#include <algorithm>
#include <cctype>
#include <dlfcn.h>
#include <fstream>
#include <gmock/gmock.h>
#include <iterator>
#include <regex>
#include <set>

namespace
{
using namespace Recording;
using testing::UnorderedElementsAreArray;

struct Documented
{
    std::string name;
    int argc; // the arguments that a call must have
};

void PrintTo(const Documented& row, std::ostream* out) { *out << row.name << '/' << row.argc; }

bool operator==(const Documented& a, const Documented& b) { return a.name == b.name && a.argc == b.argc; }

// Of "camera, x [, angle]": 2.
int CountOf(const std::string& arguments)
{
    const std::string needed = arguments.substr(0, arguments.find('['));
    const bool none = needed.find_first_not_of(' ') == std::string::npos;
    return none ? 0 : 1 + static_cast<int>(std::count(needed.begin(), needed.end(), ','));
}

// The Runner's own functions whose names begin as the built-ins' do.
bool IsOfRunner(const std::string& name)
{
    static const std::set<std::string> names = {"camera_current", "camera_set_name", "camera_find", "view_to_room",
                                                "view_at"};
    return names.count(name) != 0;
}

// Every `camera_...(...)` and `view_...(...)` at the start of a code span, but for the Runner's own.
std::vector<Documented> ReadDocument()
{
    std::ifstream file(SOURCE_DIR "/Docs/Script_API.md");
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    const std::regex signature("`((?:camera|view)_[a-z_]+)\\(([^)]*)\\)[^`]*`");
    std::vector<Documented> rows;
    for (std::sregex_iterator match(text.begin(), text.end(), signature), end; match != end; ++match)
    {
        const Documented row = {(*match)[1], CountOf((*match)[2])};
        if (!IsOfRunner(row.name) && std::find(rows.begin(), rows.end(), row) == rows.end())
            rows.push_back(row);
    }
    return rows;
}

// Of "camera_get_view_x": "F_CameraGetViewX".
std::string HandlerName(const std::string& name)
{
    std::string handler = "F_";
    bool upper = true;
    for (const char letter : name)
    {
        if (letter != '_')
            handler += upper ? static_cast<char>(std::toupper(letter)) : letter;
        upper = letter == '_';
    }
    return handler;
}

std::string SymbolOf(TFunction handler)
{
    Dl_info info = {};
    return dladdr(reinterpret_cast<void*>(handler), &info) != 0 && info.dli_sname != nullptr ? info.dli_sname : "";
}

class FunctionTable : public ModuleTest
{
protected:
    void SetUp() override
    {
        ModuleTest::SetUp();
        g_CM.SetupLumFunctions();
    }
};

TEST_F(FunctionTable, HasTheDocumentsFunctionsWithTheirCounts)
{
    std::vector<Documented> entered;
    for (const Builtin& builtin : Builtins())
        entered.push_back({builtin.name, builtin.argc});
    EXPECT_EQ(entered.size(), 47u);
    EXPECT_THAT(entered, UnorderedElementsAreArray(ReadDocument()));
}

TEST_F(FunctionTable, EntersNothingButFunctionsAllFlagged)
{
    EXPECT_EQ(Log().size(), 47u);
    EXPECT_THAT(Log(), testing::Each(testing::ContainsRegex("^Function_Add\\([a-z_]+,[0-9],true\\)$")));
}

TEST_F(FunctionTable, EachNameLeadsToTheHandlerOfThatName)
{
    for (const Builtin& builtin : Builtins())
    {
        const std::string handler = HandlerName(builtin.name);
        const std::string mangled = "_Z" + std::to_string(handler.size()) + handler + "R";
        EXPECT_EQ(SymbolOf(builtin.handler).substr(0, mangled.size()), mangled) << builtin.name;
    }
}

TEST_F(FunctionTable, LeavesSetViewOut)
{
    EXPECT_EQ(FindBuiltin("camera_set_view"), nullptr);
    for (const Builtin& builtin : Builtins())
        EXPECT_NE(builtin.handler, F_CameraSetView) << builtin.name;
}

TEST_F(FunctionTable, SetUpTwiceEntersEveryNameTwice)
{
    g_CM.SetupLumFunctions();
    EXPECT_EQ(Builtins().size(), 94u);
}

// ---- what a wrong count does, for every handler that checks its own ----

struct Count
{
    std::string name;
    int wrong;
};

// One argument too few and one too many. camera_create_view takes more; three handlers and those of the views take
// whatever comes.
std::vector<Count> WrongCounts()
{
    const std::set<std::string> lenient = {"camera_get_active", "camera_get_default", "camera_set_default"};
    std::vector<Count> counts;
    for (const Documented& row : ReadDocument())
    {
        if (row.name.rfind("view_", 0) == 0 || lenient.count(row.name) != 0)
            continue;
        if (row.argc > 0)
            counts.push_back({row.name, row.argc - 1});
        if (row.name != "camera_create_view")
            counts.push_back({row.name, row.argc + 1});
    }
    return counts;
}

std::string WrongCountMessage(const std::string& name)
{
    if (name == "camera_create")
        return "camera_create() - doesn't take any arguments";
    if (name == "camera_create_view")
        return "camera_create_view() - must have at least 4 arguments";
    return name + "() - wrong number of arguments";
}

class WrongCount : public FunctionTable, public testing::WithParamInterface<Count>
{
};

TEST_P(WrongCount, IsReportedBeforeAnyArgumentIsReadAndTheResultIsMinusOne)
{
    const std::string name = GetParam().name;
    g_CM.CreateCamera();
    RValue args[] = {Real(0), Real(1), Real(2), Real(3), Real(4)};
    RValue result = Real(99);
    Listen(Topic_All);
    TakeLog();
    FindBuiltin(name)->handler(result, nullptr, nullptr, GetParam().wrong, args);
    EXPECT_THAT(TakeLog(), testing::ElementsAre("KvError(" + WrongCountMessage(name) + ")"));
    EXPECT_EQ(Describe(result), "real -1");
    EXPECT_EQ(g_CM.m_cameraListSize, 1);
}

TEST_P(WrongCount, OfNoOrNegativeArgumentsNeedsNoArgumentArray)
{
    const std::string name = GetParam().name;
    for (int argc : {-1, 0})
    {
        if (argc == 0 && name == "camera_create")
            continue;
        RValue result = Real(99);
        Errors().clear();
        FindBuiltin(name)->handler(result, nullptr, nullptr, argc, nullptr);
        EXPECT_THAT(Errors(), testing::ElementsAre(WrongCountMessage(name))) << argc;
        EXPECT_EQ(Describe(result), "real -1") << argc;
    }
}

TEST_P(WrongCount, DoesNotReleaseWhatTheResultHeld)
{
    RValue text = NewString("kept");
    RValue result = text;
    RValue args[] = {Real(0), Real(1), Real(2), Real(3), Real(4)};
    FindBuiltin(GetParam().name)->handler(result, nullptr, nullptr, GetParam().wrong, args);
    EXPECT_EQ(text.pRefString->m_refCount, 1);
    FREE_RValue__Pre(&text);
}

std::string CaseName(const testing::TestParamInfo<Count>& info)
{
    return info.param.name + "_" + std::to_string(info.param.wrong);
}

INSTANTIATE_TEST_SUITE_P(Handlers, WrongCount, testing::ValuesIn(WrongCounts()), CaseName);
} // namespace
