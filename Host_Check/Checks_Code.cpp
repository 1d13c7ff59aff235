// Files/Code/Function.h: the registry of built-ins and the error report.

#include "Host_Check/Check.h"

#include <cstring>

namespace HostCheck
{
namespace
{

constexpr char HEADER[] = "Files/Code/Function.h";
constexpr char ERROR_RETURNS[] =
    "Returns: the handler goes on, and the host raises the error once the handler is back.";

void FirstHandler(RValue&, CInstance*, CInstance*, int, RValue*) {}
void SecondHandler(RValue& result, CInstance*, CInstance*, int, RValue*) { result = Real(2); }

void BuiltInsAreFound(Trial& trial)
{
    Function_Add("host_check_first", FirstHandler, 2, false);
    Function_Add("host_check_second", SecondHandler, 0, true);
    trial.Expect(trial.hooks.findFunction("host_check_first") == &FirstHandler,
                 "the built-in host_check_first is not found, or is another handler");
    trial.Expect(trial.hooks.findFunction("host_check_second") == &SecondHandler,
                 "the built-in host_check_second is not found, or is another handler");
}

void NamesAreWhole(Trial& trial)
{
    Function_Add("host_check_first", FirstHandler, 2, false);
    for (const char* name : {"host_check_firs", "host_check_first_", "Host_check_first"})
        trial.Expect(trial.hooks.findFunction(name) == nullptr, "there is a built-in %s", name);
}

void TheModulesBuiltInsAreFound(Trial& trial)
{
    if (trial.hooks.findFunction("camera_create") == nullptr)
        g_CM.SetupLumFunctions();
    trial.Expect(trial.hooks.findFunction("camera_create") == &F_CameraCreate,
                 "SetupLumFunctions has entered no camera_create, or another handler");
    trial.Expect(trial.hooks.findFunction("view_get_xport") == &F_ViewGetXport,
                 "SetupLumFunctions has entered no view_get_xport, or another handler");
}

// A host that raises its error inside KvError never comes back here.
void ErrorsReturn(Trial& trial)
{
    KvError("host check: an error on purpose");
    KvError("host check: %s %d", "another", 2);
    ForgetErrors(trial);
}

void ErrorsAreReported(Trial& trial)
{
    char text[120] = "";
    ForgetErrors(trial);
    trial.Expect(!trial.hooks.takeError(text, sizeof text), "an error is reported although there was none: %.80s",
                 text);
    KvError("host check: %s() - wrong number of arguments: %d", "camera_probe", 41);
    if (trial.Expect(trial.hooks.takeError(text, sizeof text), "KvError reports nothing"))
        trial.Expect(std::strstr(text, "camera_probe() - wrong number of arguments: 41") != nullptr,
                     "the error's text is \"%.80s\"", text);
    trial.Expect(!trial.hooks.takeError(text, sizeof text), "an error that was taken is reported again");
}

// A built-in goes on after its error: what it does then must work.
void WorkGoesOnAfterAnError(Trial& trial)
{
    KvError("host check: an error on purpose");
    void* block = MemoryManager::Alloc(16, "Host_Check", __LINE__, true);
    trial.Expect(block != nullptr, "after KvError memory is refused");
    MemoryManager::Free(block);
    const RValue number = Real(5);
    trial.Expect(KvGetInt32(&number, 0) == 5, "after KvError, KvGetInt32 makes %d of 5",
                 static_cast<int>(KvGetInt32(&number, 0)));
    ForgetErrors(trial);
}

constexpr Check CHECKS[] = {
    {"error.returns", Level::BuiltIns, HEADER, ERROR_RETURNS, Need_Nothing, ErrorsReturn},
    {"error.work_goes_on", Level::BuiltIns, HEADER, ERROR_RETURNS, Need_Nothing, WorkGoesOnAfterAnError},
    {"error.reported", Level::BuiltIns, HEADER, "Reports a script error.", Need_Error, ErrorsAreReported},
    {"builtin.found", Level::BuiltIns, HEADER, "From then on scripts call the handler by that name.", Need_Function,
     BuiltInsAreFound},
    {"builtin.whole_name", Level::BuiltIns, HEADER, "From then on scripts call the handler by that name.",
     Need_Function, NamesAreWhole},
    {"builtin.of_the_module", Level::BuiltIns, HEADER,
     "The registry of built-ins, the conversions of their arguments, and the error report.", Need_Function,
     TheModulesBuiltInsAreFound},
};

} // namespace

Checks CodeChecks() { return Table(CHECKS); }

} // namespace HostCheck
