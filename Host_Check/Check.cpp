#include "Host_Check/Check.h"

#include <cstdarg>
#include <cstdio>

namespace HostCheck
{

bool Trial::Expect(bool holds, const char* format, ...)
{
    if (holds || verdict == Verdict::Broken)
        return holds;
    verdict = Verdict::Broken;
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(saw, sizeof saw, format, arguments);
    va_end(arguments);
    return false;
}

void Trial::NotTested(const char* why)
{
    if (verdict == Verdict::Broken)
        return;
    verdict = Verdict::NotTested;
    std::snprintf(saw, sizeof saw, "%s", why);
}

RValue OfKind(uint32_t kind)
{
    RValue value = {};
    value.kind = kind;
    return value;
}

RValue Real(double number)
{
    RValue value = OfKind(VALUE_REAL);
    value.val = number;
    return value;
}

RValue Integer64(int64_t number)
{
    RValue value = OfKind(VALUE_INT64);
    value.v64 = number;
    return value;
}

void ForgetErrors(const Trial& trial)
{
    char text[2];
    if (trial.hooks.takeError != nullptr)
        trial.hooks.takeError(text, sizeof text);
}

OpenRoom::OpenRoom(Trial& trial) : m_hooks(trial.hooks), m_isOpen(m_hooks.openRoom(WIDTH, HEIGHT, m_objects))
{
    trial.Expect(m_isOpen, "the hook openRoom could open no room");
}

OpenRoom::~OpenRoom()
{
    int ignored[3];
    if (m_isOpen)
        m_hooks.openRoom(0, 0, ignored);
}

} // namespace HostCheck
