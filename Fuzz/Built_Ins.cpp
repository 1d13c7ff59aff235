// Sequences of the 47 built-ins and of what a host asks of the registry, with arguments of every kind, through
// callbacks that do anything: destroy, clone, save, load, change rooms, collect, run out of memory.
//
// Input: decisions (Fuzz::Choices). A function that is added to the module's table takes part by itself.

#include "Fuzz/Module_Session.h"

#include "Files/Graphics/Function_Arguments.h"

#include <vector>

namespace
{
using namespace Recording;
using Fuzz::Choices;

constexpr int STEPS_MOST = 96; // of one input, those of callbacks included
constexpr int DEPTH_MOST = 4;  // callbacks in callbacks
constexpr int SCRIPTS = 6;
constexpr int IDENTIFIERS = 24; // that arguments name
constexpr int INSTANCE_FIRST = 100000, INSTANCES = 4, OBJECTS = 2;
constexpr size_t LARGEST_BLOCK = 64 * 1024;
constexpr size_t ARGUMENTS_MOST = 16;

class Walk
{
public:
    explicit Walk(Choices& choices) : m_choices(choices)
    {
        g_CM.SetupLumFunctions();
        RefuseAbove(LARGEST_BLOCK);
        for (int i = 0; i < INSTANCES; ++i)
            m_instances.push_back(NewInstance(INSTANCE_FIRST + i, static_cast<float>(100 * i), 50.0f));
        for (int i = 0; i < OBJECTS; ++i)
            SetObject(i, {nullptr, m_instances[static_cast<size_t>(i)], m_instances.back()});
        m_rooms = {nullptr, NewRoom(1024, 768), NewRoom(64, 48)};
        for (int i = 0; i < SCRIPTS; ++i)
            SetScript(i, [this](ScriptCall& call) { RunCallback(call); });
        for (int i = 0; i < SCRIPTS; ++i)
            m_callables.push_back(NewCallable([this](ScriptCall& call) { RunCallback(call); }));
        m_objects = {NewObject(), nullptr};
    }

    void Run()
    {
        while (!m_choices.IsUsedUp() && m_steps < STEPS_MOST)
            Step();
    }

private:
    void Step()
    {
        static constexpr void (Walk::*DEEDS[])() = {
            &Walk::CallBuiltin, &Walk::CallBuiltin, &Walk::CallBuiltin, &Walk::CallBuiltin, &Walk::CallBuiltin,
            &Walk::DrawThrough, &Walk::DrawThrough, &Walk::DrawViews,   &Walk::Clone,       &Walk::FromView,
            &Walk::Save,        &Walk::Load,        &Walk::ChangeRoom,  &Walk::CollectAll,  &Walk::Refuse,
            &Walk::Switches,    &Walk::Flags,       &Walk::MoveTarget,
        };
        ++m_steps;
        (this->*m_choices.Of(DEEDS))();
        Fuzz::ModuleSession::RequireRules();
    }

    void Nested(int steps)
    {
        if (m_depth >= DEPTH_MOST)
            return;
        ++m_depth;
        for (int i = 0; i < steps && m_steps < STEPS_MOST; ++i)
            Step();
        --m_depth;
    }

    void RunCallback(ScriptCall& call)
    {
        Nested(static_cast<int>(m_choices.Below(4)));
        if (call.result != nullptr && m_choices.OneIn(4))
            *call.result = m_choices.OneIn(3) ? NewString("result") : AnyValue(true); // the module's from now on
    }

    // One request of the module is refused, not those of what this walk makes itself.
    class Refusal
    {
    public:
        explicit Refusal(int& nth)
        {
            RefuseRequest(nth);
            nth = 0;
        }
        ~Refusal() { RefuseRequest(0); }
        Refusal(const Refusal&) = delete;
        Refusal& operator=(const Refusal&) = delete;
    };

    // ---- values ----

    int Identifier()
    {
        return m_choices.OneIn(16) ? m_choices.Bits<int>() : static_cast<int>(m_choices.Below(IDENTIFIERS)) - 1;
    }

    double Number()
    {
        static constexpr double NUMBERS[] = {
            0.0,         -0.0,          1.0,        -1.0,  0.5,  7.0,  90.0, 360.0,  1e39, -1e39,   1e-310,    1e-40,
            2147483648., -2147483649.0, 16777217.0, 320.0, -2.0, 1e15, 1e20, -32768, 9e18, -9.3e18, 1.0 / 3.0, 640.0};
        const size_t flavour = m_choices.Below(4);
        return flavour == 0   ? m_choices.Of(NUMBERS)
               : flavour == 1 ? static_cast<double>(Identifier())
               : flavour == 2 ? static_cast<double>(m_choices.Bits<int16_t>())
                              : m_choices.Bits<double>();
    }

    RValue AnyArray()
    {
        const size_t length = m_choices.OneIn(4) ? m_choices.Below(20) : 16;
        std::vector<RValue> elements;
        for (size_t i = 0; i < length; ++i)
            elements.push_back(m_choices.OneIn(8) ? AnyValue(true) : Real(Number()));
        return Kept(OfArray(NewArray(elements)));
    }

    RValue AnyValue(bool isInner = false)
    {
        switch (m_choices.Below(isInner ? 8 : 12))
        {
        case 0: return Int32(Identifier());
        case 1: return Int64(m_choices.Bits<int64_t>());
        case 2: return Bool(m_choices.OneIn(2));
        case 3: return g_undefined;
        case 4: return OfKind(static_cast<uint32_t>(VALUE_UNSET));
        case 5:
            return OfKind(m_choices.OneIn(2) ? static_cast<uint32_t>(VALUE_ARRAY) : static_cast<uint32_t>(VALUE_NULL));
        case 6:
        case 7: return Real(Number());
        case 8: return Kept(NewString(m_choices.OneIn(2) ? "12" : "left"));
        case 9: return AnyArray();
        case 10: return OfObject(m_objects[m_choices.Below(m_objects.size())]);
        default: return OfObject(m_callables[m_choices.Below(m_callables.size())]);
        }
    }

    static RValue OfKind(uint32_t kind)
    {
        RValue value = {};
        value.kind = kind;
        return value;
    }

    // Released when the step that made it has ended. An element's reference is the array's.
    RValue Kept(const RValue& value)
    {
        m_kept.push_back(value);
        return value;
    }

    // The module does not look at the kind of an array argument; it refuses words that cannot be addresses. A host
    // must not hand over another thing's address, and a number that looks like one is the host's to refuse.
    RValue MatrixValue()
    {
        if (!m_choices.OneIn(6))
            return AnyArray();
        RValue value = m_choices.OneIn(2) ? Int64(m_choices.Bits<int64_t>()) : Real(Number());
        value.v64 |= 1;
        return value;
    }

    RValue Argument(const KvSignature& signature, int index)
    {
        const eArgument kind = index < signature.count ? signature.arguments[index].kind : eArgument_Number;
        if (kind == eArgument_Matrix)
            return MatrixValue();
        if (m_choices.OneIn(10))
            return AnyValue();
        switch (kind)
        {
        case eArgument_Camera: return Real(Identifier());
        case eArgument_View: return Real(static_cast<double>(m_choices.Below(8)));
        case eArgument_Script:
            return m_choices.OneIn(3) ? Real(static_cast<double>(m_choices.Below(SCRIPTS + 2)) - 1.0)
                                      : OfObject(m_callables[m_choices.Below(m_callables.size())]);
        case eArgument_Instance:
            return Real(static_cast<double>(m_choices.OneIn(2) ? m_choices.Below(OBJECTS + 1)
                                                               : INSTANCE_FIRST + m_choices.Below(INSTANCES + 1)));
        default: return Real(Number());
        }
    }

    // ---- deeds ----

    void CallBuiltin()
    {
        const size_t index = m_choices.Below(std::size(KvArguments::SIGNATURES));
        const KvSignature& signature = KvArguments::SIGNATURES[index];
        const Builtin& builtin = Builtins()[index]; // both tables have the same order: the module asserts it
        const size_t count =
            m_choices.OneIn(12) ? m_choices.Below(ARGUMENTS_MOST) : static_cast<size_t>(signature.count);
        const size_t keptBefore = m_kept.size();
        std::vector<RValue> arguments(ARGUMENTS_MOST, g_undefined); // hosts pad
        for (size_t i = 0; i < count; ++i)
            arguments[i] = Argument(signature, static_cast<int>(i));
        RValue result = Real(12345.0);
        const Refusal refusal(m_refused);
        builtin.handler(result, nullptr, nullptr, static_cast<int>(count), arguments.data());
        if (KvNeedsRelease(result))
            FREE_RValue__Pre(&result);
        ReleaseSince(keptBefore);
    }

    void ReleaseSince(size_t before)
    {
        while (m_kept.size() > before)
        {
            RValue value = m_kept.back();
            m_kept.pop_back();
            FREE_RValue__Pre(&value);
        }
    }

    // As a host draws a view: it looks again after each call, because a callback may have destroyed the camera.
    void Draw(int id)
    {
        using Call = void (CCamera::*)();
        for (const Call call : {&CCamera::Begin, &CCamera::CameraUpdate, &CCamera::ApplyMatrices, &CCamera::End})
            if (CCamera* camera = g_CM.GetCamera(id))
                (camera->*call)();
    }

    void DrawThrough() { Draw(Identifier()); }

    void DrawViews()
    {
        for (int view = 0; Run_Room != nullptr && view < ROOM_VIEWS; ++view)
            Draw(Run_Room->r_view[view]->cameraID);
        Draw(g_DefaultCameraID);
    }

    void Clone()
    {
        const Refusal refusal(m_refused);
        CCamera* const clone = g_CM.CloneCamera(Identifier());
        if (clone != nullptr && m_choices.OneIn(4))
            clone->SetPersistent(true);
    }

    void FromView()
    {
        KvRoomView view = {1, 0, 0, 320, 240, 0, 0, 320, 240, 0, 0, -1, -1, -1};
        view.xview = m_choices.Bits<int16_t>();
        view.wview = m_choices.Bits<int16_t>();
        view.hborder = m_choices.Bits<int8_t>();
        view.hspeed = m_choices.Bits<int8_t>();
        view.index = static_cast<int>(m_choices.Below(OBJECTS + 1)) - 1;
        const Refusal refusal(m_refused);
        g_CM.CreateCameraFromView(m_choices.OneIn(8) ? nullptr : &view);
    }

    void Save()
    {
        Buffer buffer;
        g_CM.Serialize(&buffer);
        m_saved.push_back(buffer.bytes);
        if (m_saved.size() > 4)
            m_saved.erase(m_saved.begin());
    }

    void Load()
    {
        if (m_saved.empty())
            return;
        Buffer buffer;
        buffer.bytes = m_saved[m_choices.Below(m_saved.size())];
        const Refusal refusal(m_refused);
        g_CM.DeSerialize(&buffer);
    }

    void ChangeRoom()
    {
        if (m_choices.OneIn(3))
            return g_CM.BuildRoomCameraList();
        g_CM.EndRoom();
        Run_Room = m_rooms[m_choices.Below(m_rooms.size())];
        if (Run_Room == nullptr)
            return;
        for (CViewGM* view : Run_Room->r_view)
            if (m_choices.OneIn(3))
                view->cameraID = Identifier();
        g_CM.StartRoom();
    }

    void CollectAll()
    {
        Collect();
        if (m_choices.OneIn(4))
            PopSlotStack();
    }

    void Refuse() { m_refused = static_cast<int>(m_choices.Below(6)); }

    void Switches()
    {
        static constexpr int TARGETS[] = {-1, 0, 3};
        g_RenderTargetActive = m_choices.Of(TARGETS);
        g_fIsJSProject = m_choices.OneIn(2);
        g_fGarbageCollection = m_choices.OneIn(2);
        g_DefaultCameraID = Identifier();
        g_CM.SetActiveCamera(Identifier());
        if (m_choices.OneIn(4))
            g_CM.SetInitialLoadHighPoint();
    }

    void Flags()
    {
        CCamera* const camera = g_CM.GetCamera(Identifier());
        if (camera == nullptr)
            return;
        camera->SetCloned(m_choices.OneIn(2));
        camera->SetPersistent(m_choices.OneIn(2));
        if (m_choices.OneIn(2))
            camera->SetViewDirty();
    }

    void MoveTarget()
    {
        CInstance& instance = *m_instances[m_choices.Below(m_instances.size())];
        instance.x = static_cast<float>(m_choices.Bits<int16_t>());
        instance.y = m_choices.OneIn(8) ? m_choices.Bits<float>() : static_cast<float>(m_choices.Bits<int16_t>());
        instance.m_flags = m_choices.Byte();
    }

    Choices& m_choices;
    int m_steps = 0, m_depth = 0;
    int m_refused = 0; // the request of the next call that is refused; 0: none
    std::vector<CInstance*> m_instances;
    std::vector<CRoom*> m_rooms;
    std::vector<KvObjectBase*> m_callables, m_objects;
    std::vector<RValue> m_kept;
    std::vector<std::vector<uint8_t>> m_saved;
};
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const Fuzz::SlowInputWatch watch(data, size);
    const Fuzz::ModuleSession session;
    Choices choices(data, size);
    Walk walk(choices);
    walk.Run();
    Fuzz::ModuleSession::RenewManager(); // the last callbacks' objects go before what they stand in
    return 0;
}
