// Files/Script and Files/Javascript: scripts by number and callable objects; Files/Run: who runs.

#include "Host_Check/Check.h"
#include "Host_Check/Probe.h"

namespace HostCheck
{
namespace
{

constexpr char SCRIPT[] = "Files/Script/Script.h";
constexpr char CALLABLE[] = "Files/Javascript/Callable.h";
constexpr char RUN[] = "Files/Run/Run_Globals.h";
constexpr int NO_SUCH_SCRIPT = 2000000000;

// What the body of the last check saw. A body has no context of its own.
struct Seen
{
    int calls, argc;
    double sum; // of the arguments
    int currentObject;
    KvObjectBase* callable; // of the call: whether it was still in its slot when the body ended
    bool stayed;
    void (*collect)();
    CCamera* camera;
};
Seen s_seen;

void NoteCall(KvObjectBase*, RValue* result, int argc, RValue* args)
{
    ++s_seen.calls;
    s_seen.argc = argc;
    for (int i = 0; i < argc && args != nullptr; ++i)
        s_seen.sum += KvGetReal(args, i);
    s_seen.currentObject = Current_Object;
    if (result != nullptr)
        *result = Real(25);
}

void Fail(KvObjectBase*, RValue*, int, RValue*)
{
    ++s_seen.calls;
    KvError("host check: an error in a script, on purpose");
}

bool Make(Trial& trial, ScriptBody body, bool callable, RValue& out)
{
    s_seen = {};
    out = OfKind(VALUE_UNDEFINED);
    return trial.Expect(trial.hooks.makeScript(body, callable, &out), "the hook makeScript could make no %s",
                        callable ? "callable" : "script");
}

bool IsInItsSlot(const KvObjectBase* object, int slot)
{
    return slot >= 0 && slot < g_slotObjects.m_nCapacity && g_slotObjects.m_ppEntries[slot] == object;
}

void ScriptsRun(Trial& trial)
{
    RValue number;
    if (!Make(trial, NoteCall, false, number))
        return;
    RValue result = OfKind(VALUE_UNSET);
    trial.Expect(Script_Perform(KvGetInt32(&number, 0), nullptr, nullptr, 0, &result, nullptr),
                 "Script_Perform of a script that exists answers false");
    trial.Expect(s_seen.calls == 1, "the script ran %d times", s_seen.calls);
}

void MissingScriptsAreFalse(Trial& trial)
{
    for (const int missing : {NO_SUCH_SCRIPT, -2, -2000000000})
    {
        RValue result = OfKind(VALUE_UNSET);
        trial.Expect(!Script_Perform(missing, nullptr, nullptr, 0, &result, nullptr), "Script_Perform(%d) answers true",
                     missing);
    }
    ForgetErrors(trial);
}

void ErrorsOfScriptsStayInside(Trial& trial)
{
    RValue number;
    if (!Make(trial, Fail, false, number))
        return;
    RValue result = OfKind(VALUE_UNSET);
    Script_Perform(KvGetInt32(&number, 0), nullptr, nullptr, 0, &result, nullptr);
    trial.Expect(s_seen.calls == 1, "the failing script ran %d times", s_seen.calls);
    ForgetErrors(trial);
}

void NullIsNotCallable(Trial& trial)
{
    trial.Expect(!JS_IsCallable_Object(nullptr), "JS_IsCallable_Object(null) answers true");
}

void CallablesAreCallable(Trial& trial)
{
    RValue callable;
    if (!Make(trial, NoteCall, true, callable))
        return;
    trial.Expect(KvKind(callable) == VALUE_OBJECT && callable.pObj != nullptr, "a callable is a value of kind %u",
                 static_cast<unsigned>(KvKind(callable)));
    trial.Expect(JS_IsCallable_Object(callable.pObj), "JS_IsCallable_Object of a callable answers false");
}

void ContainersAreNotCallable(Trial& trial)
{
    Probe::Fate fate;
    Probe* probe = Probe::Make(fate);
    if (probe == nullptr)
        return;
    trial.Expect(!JS_IsCallable_Object(probe), "JS_IsCallable_Object of a container answers true");
    probe->Discard();
}

void CallablesHaveTheirKind(Trial& trial)
{
    RValue callable;
    if (!Make(trial, NoteCall, true, callable))
        return;
    trial.Expect(callable.pObj->m_kind == OBJECT_KIND_SCRIPT_FUNCTION, "m_kind of a callable is %d, not %d",
                 callable.pObj->m_kind, OBJECT_KIND_SCRIPT_FUNCTION);
}

void CallablesGetTheirArguments(Trial& trial)
{
    RValue callable;
    if (!Make(trial, NoteCall, true, callable))
        return;
    RValue args[3] = {Real(4), Real(8), Real(1000)};
    RValue result = OfKind(VALUE_UNSET);
    Call_RValue(nullptr, &result, &callable, 2, args);
    trial.Expect(s_seen.calls == 1, "the callable ran %d times", s_seen.calls);
    trial.Expect(s_seen.argc == 2 && s_seen.sum == 12, "called with 4 and 8, it got %d arguments whose sum is %g",
                 s_seen.argc, s_seen.sum);
    trial.Expect(KvKind(result) == VALUE_UNSET || KvGetReal(&result, 0) == 25,
                 "the result is a value of kind %u, not the 25 that it wrote", static_cast<unsigned>(KvKind(result)));
}

void CallablesMayHaveNoArguments(Trial& trial)
{
    RValue callable;
    if (!Make(trial, NoteCall, true, callable))
        return;
    RValue result = OfKind(VALUE_UNSET);
    Call_RValue(nullptr, &result, &callable, 0, nullptr);
    trial.Expect(s_seen.calls == 1 && s_seen.argc == 0, "called without arguments, it ran %d times with %d",
                 s_seen.calls, s_seen.argc);
}

// The camera that runs the callback is told to hold another, and a collection follows: nothing but the running call
// refers to the callable then.
void DropYourself(KvObjectBase*, RValue*, int, RValue*)
{
    ++s_seen.calls;
    const int slot = s_seen.callable->m_slot;
    RValue none = Real(-1);
    s_seen.camera->SetBeginScript(&none);
    s_seen.collect();
    s_seen.stayed = IsInItsSlot(s_seen.callable, slot);
}

void CallablesOutliveTheirCall(Trial& trial)
{
    RValue callable;
    CCamera* camera = g_CM.CreateCamera();
    if (camera == nullptr || !Make(trial, DropYourself, true, callable))
        return;
    s_seen.callable = callable.pObj;
    s_seen.collect = trial.hooks.collect;
    s_seen.camera = camera;
    camera->SetBeginScript(&callable);
    camera->Begin();
    trial.Expect(s_seen.calls == 1, "a camera's begin callback ran %d times", s_seen.calls);
    trial.Expect(s_seen.calls != 1 || s_seen.stayed, "a collection inside the call has taken the running callable");
    g_CM.DestroyCamera(camera->GetID());
}

// Scripts by number run in the cameras' script instance, which is there while a room runs.
void CamerasRunTheirCallbacks(Trial& trial)
{
    RValue number;
    const OpenRoom room(trial);
    CCamera* camera = g_CM.CreateCamera();
    if (!room.IsOpen() || camera == nullptr || !Make(trial, NoteCall, false, number))
        return;
    const bool starts = g_CM.m_pScriptInstance == nullptr; // the hook may have told the module, or not
    if (starts)
        g_CM.StartRoom();
    const int before = Current_Object;
    camera->SetUpdateScript(&number);
    camera->CameraUpdate();
    trial.Expect(s_seen.calls == 1, "a camera's update script ran %d times", s_seen.calls);
    trial.Expect(s_seen.calls != 1 || s_seen.currentObject == camera->GetID(),
                 "Current_Object is %d during the callback of camera %d", s_seen.currentObject, camera->GetID());
    trial.Expect(Current_Object == before, "Current_Object is %d after the callback, %d before", Current_Object,
                 before);
    g_CM.DestroyCamera(camera->GetID());
    if (starts)
        g_CM.EndRoom();
}

constexpr Check CHECKS[] = {
    {"script.runs", Level::Callbacks, SCRIPT, "Runs the script of that index.", Need_Script, ScriptsRun},
    {"script.missing", Level::Callbacks, SCRIPT, "False when there is none; errors inside it are the host's to report.",
     Need_Nothing, MissingScriptsAreFalse},
    {"script.error", Level::Callbacks, SCRIPT, "False when there is none; errors inside it are the host's to report.",
     Need_Script, ErrorsOfScriptsStayInside},
    {"script.current_object", Level::Callbacks, RUN, "who runs now: an object, or a camera during its callbacks",
     Need_Script | Need_Room, CamerasRunTheirCallbacks},
    {"callable.null", Level::Callbacks, CALLABLE, "takes null: not callable", Need_Nothing, NullIsNotCallable},
    {"callable.is_callable", Level::Callbacks, CALLABLE,
     "Calls a callable object with argc arguments; it may write the "
     "result.",
     Need_Script, CallablesAreCallable},
    {"callable.arguments", Level::Callbacks, CALLABLE,
     "Calls a callable object with argc arguments; it may write the "
     "result.",
     Need_Script, CallablesGetTheirArguments},
    {"callable.no_arguments", Level::Callbacks, CALLABLE,
     "Calls a callable object with argc arguments; it may write the "
     "result.",
     Need_Script, CallablesMayHaveNoArguments},
    {"callable.stays_alive", Level::Callbacks, CALLABLE,
     "The callable stays alive until the call is back, whatever the script does to its holder.",
     Need_Script | Need_Collect, CallablesOutliveTheirCall},
    {"callable.kind", Level::Callbacks, "Files/Object/Object_Base.h", "callable", Need_Script, CallablesHaveTheirKind},
    {"callable.container_is_none", Level::Callbacks, "Files/Object/Object_Base.h",
     "holds values, is not seen by scripts: the cameras' proxies", Need_Nothing, ContainersAreNotCallable},
};

} // namespace

Checks ScriptChecks() { return Table(CHECKS); }

} // namespace HostCheck
