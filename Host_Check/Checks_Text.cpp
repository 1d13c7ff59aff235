// Files/LLVM/Ref_Thing.h: the record behind a string. Files/LLVM/RValue.h: reading text and objects out of values.

#include "Host_Check/Check.h"
#include "Host_Check/Optional_Names.h"
#include "Host_Check/Probe.h"

#include <cstring>

namespace HostCheck
{
namespace
{

constexpr char HEADER[] = "Files/LLVM/Ref_Thing.h";
constexpr char VALUE_HEADER[] = "Files/LLVM/RValue.h";
constexpr char LEFT_OUT[] = "the host leaves this operation out; the module never calls it";

bool MakeText(Trial& trial, const char* text, RValue& out)
{
    out = {};
    return trial.Expect(trial.hooks.makeText(text, &out) && KvKind(out) == VALUE_STRING && out.pRefString != nullptr,
                        "the hook makeText made no string of \"%s\"", text);
}

void TextsHaveOneReference(Trial& trial)
{
    RValue text, copy = {};
    if (!MakeText(trial, "camera", text))
        return;
    trial.Expect(text.pRefString->m_refCount == 1, "a new text has %d references",
                 static_cast<int>(text.pRefString->m_refCount));
    KvAssign(copy, text);
    trial.Expect(copy.pRefString == text.pRefString && text.pRefString->m_refCount == 2,
                 "a text with a copy has %d references", static_cast<int>(text.pRefString->m_refCount));
    FREE_RValue__Pre(&copy);
    trial.Expect(text.pRefString->m_refCount == 1, "a text whose copy went has %d references",
                 static_cast<int>(text.pRefString->m_refCount));
    FREE_RValue__Pre(&text);
}

// The records of two values go at different times: an allocator that is not the general heap's fails in the deletion.
void TextsLiveUntilTheLastValue(Trial& trial)
{
    RValue text, copy = {};
    if (!MakeText(trial, "until the last", text))
        return;
    KvAssign(copy, text);
    FREE_RValue__Pre(&text);
    trial.Expect(std::strcmp(copy.pRefString->m_thing, "until the last") == 0,
                 "a text that a value refers to is \"%.40s\"", copy.pRefString->m_thing);
    FREE_RValue__Pre(&copy);
}

void TextsHaveTheirLength(Trial& trial)
{
    for (const char* sample : {"camera", "", "a b"})
    {
        RValue text;
        if (!MakeText(trial, sample, text))
            return;
        trial.Expect(text.pRefString->m_size == static_cast<int32_t>(std::strlen(sample)), "m_size of \"%s\" is %d",
                     sample, static_cast<int>(text.pRefString->m_size));
        FREE_RValue__Pre(&text);
    }
}

// The last release gives the text to KvFree: a host whose texts come from elsewhere fails in there.
void TextsComeFromTheValueAllocator(Trial& trial)
{
    for (int i = 0; i < 100; ++i)
    {
        RValue text;
        if (!MakeText(trial, "a text that is long enough to lie in a block of its own", text))
            return;
        trial.Expect(std::strcmp(text.pRefString->m_thing, "a text that is long enough to lie in a block of its own") ==
                         0,
                     "m_thing is \"%.40s\"", text.pRefString->m_thing);
        FREE_RValue__Pre(&text);
        trial.Expect(text.pRefString == nullptr, "a released value still points at its text");
    }
}

void TextOperations(Trial& trial)
{
    if (HostCheck_TextGet == nullptr && HostCheck_TextSize == nullptr && HostCheck_TextInc == nullptr)
        return trial.NotTested(LEFT_OUT);
    RValue text;
    if (!MakeText(trial, "abc", text))
        return;
    if (HostCheck_TextGet != nullptr)
        trial.Expect(std::strcmp(HostCheck_TextGet(text.pRefString), "abc") == 0, "get() answers \"%s\"",
                     HostCheck_TextGet(text.pRefString));
    if (HostCheck_TextSize != nullptr)
        trial.Expect(HostCheck_TextSize(text.pRefString) == 3, "size() answers %d",
                     static_cast<int>(HostCheck_TextSize(text.pRefString)));
    if (HostCheck_TextInc != nullptr)
    {
        HostCheck_TextInc(text.pRefString);
        if (trial.Expect(text.pRefString->m_refCount == 2, "after inc() there are %d references",
                         static_cast<int>(text.pRefString->m_refCount)))
            text.pRefString->dec();
    }
    FREE_RValue__Pre(&text);
}

void GetStringOfText(Trial& trial)
{
    if (HostCheck_GetString == nullptr)
        return trial.NotTested(LEFT_OUT);
    RValue text;
    if (!MakeText(trial, "left", text))
        return;
    trial.Expect(std::strcmp(HostCheck_GetString(&text), "left") == 0, "GetString answers \"%s\"",
                 HostCheck_GetString(&text));
    FREE_RValue__Pre(&text);
}

void GetStringOfOthers(Trial& trial)
{
    if (HostCheck_GetString == nullptr)
        return trial.NotTested(LEFT_OUT);
    for (const RValue& value : {Real(3), OfKind(VALUE_UNDEFINED), OfKind(VALUE_STRING), OfKind(VALUE_OBJECT)})
    {
        const char* text = HostCheck_GetString(&value);
        trial.Expect(text != nullptr && text[0] == '\0', "GetString of a value of kind %u answers %s%s",
                     static_cast<unsigned>(value.kind), text == nullptr ? "null" : "the text ",
                     text == nullptr ? "" : text);
    }
    ForgetErrors(trial);
}

void AsObjectOfOthers(Trial& trial)
{
    if (HostCheck_AsObject == nullptr)
        return trial.NotTested(LEFT_OUT);
    for (const RValue& value : {Real(100000), OfKind(VALUE_UNDEFINED), OfKind(VALUE_OBJECT)})
        trial.Expect(HostCheck_AsObject(&value) == nullptr, "asObject of a value of kind %u answers an instance",
                     static_cast<unsigned>(value.kind));
    Probe::Fate fate;
    Probe* probe = Probe::Make(fate);
    if (probe == nullptr)
        return;
    const RValue value = ObjectValue(probe);
    trial.Expect(HostCheck_AsObject(&value) == nullptr, "asObject of a container answers an instance");
    probe->Discard();
    ForgetErrors(trial);
}

void AsObjectOfInstances(Trial& trial)
{
    if (HostCheck_AsObject == nullptr)
        return trial.NotTested(LEFT_OUT);
    const OpenRoom room(trial);
    CInstance* instance = room.IsOpen() ? trial.hooks.makeInstance(room.Parent(), 1, 2) : nullptr;
    if (instance == nullptr)
        return;
    const RValue value = ObjectValue(instance);
    trial.Expect(HostCheck_AsObject(&value) == instance, "asObject of an instance's value answers another");
}

constexpr char AN_INSTANCE[] = "null unless the value is an instance";
constexpr char THE_TEXT[] = "the text of a string, else \"\"";

constexpr Check CHECKS[] = {
    {"text.references", Level::BuiltIns, HEADER, "values that refer to this record", Need_Text, TextsHaveOneReference},
    {"text.lives", Level::BuiltIns, HEADER,
     "Lives on the general heap, from the value that first refers to it until its count drops to zero.", Need_Text,
     TextsLiveUntilTheLastValue},
    {"text.length", Level::BuiltIns, HEADER, "length of a text, without its end mark", Need_Text, TextsHaveTheirLength},
    {"text.allocator", Level::BuiltIns, HEADER, "owned; texts come from the value allocator (KvFree)", Need_Text,
     TextsComeFromTheValueAllocator},
    {"text.operations", Level::BuiltIns, HEADER, "Of texts, dec() is below; the other operations are the host's.",
     Need_Text, TextOperations},
    {"value.get_string", Level::BuiltIns, VALUE_HEADER, THE_TEXT, Need_Text, GetStringOfText},
    {"value.get_string_of_others", Level::BuiltIns, VALUE_HEADER, THE_TEXT, Need_Nothing, GetStringOfOthers},
    {"value.as_object", Level::BuiltIns, VALUE_HEADER, AN_INSTANCE, Need_Instance, AsObjectOfInstances},
    {"value.as_object_of_others", Level::Callbacks, VALUE_HEADER, AN_INSTANCE, Need_Nothing, AsObjectOfOthers},
};

} // namespace

Checks TextChecks() { return Table(CHECKS); }

} // namespace HostCheck
