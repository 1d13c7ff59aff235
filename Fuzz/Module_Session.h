#pragma once
// The module on the recording host, empty before and after each input.

#include "Fuzz/Fuzz_Target.h"
#include "Tests/Support/Recording_Host.h"

#include <new>

namespace Fuzz
{
class ModuleSession
{
public:
    ModuleSession() { StartAgain(); }
    ModuleSession(const ModuleSession&) = delete;
    ModuleSession& operator=(const ModuleSession&) = delete;

    // Everything must have gone: blocks, texts, arrays, roots, contexts; and the module has asked for nothing that is
    // no module's to ask.
    ~ModuleSession()
    {
        Recording::RefuseRequest(0);
        Recording::RefuseAbove(SIZE_MAX);
        Recording::RefuseValueMemory(false);
        RenewManager();
        Recording::Collect();
        if (!Recording::Faults().empty())
            Report(Recording::Faults().front());
        Require(Recording::LiveBlocks() == 2, "a block is left behind");
        Require(Recording::LiveTexts() == 0, "a text is left behind");
        Require(Recording::LiveArrays() == 0, "an array is left behind");
        Require(Recording::LockDepth() == 0, "the value lock is held");
        Require(Recording::ContextDepth() == 0, "a context is left on the stack");
        Require(Recording::RootCount() == 0, "a root is left behind");
    }

    // g_CM as it is when the program starts: one empty slot. Every camera is freed.
    static void RenewManager()
    {
        g_CM.~CCameraManager();
        new (&g_CM) CCameraManager;
        g_CM.m_InitialLoadHighPoint = 0;
    }

    static void RequireRules()
    {
        if (const char* rule = g_CM.Validate())
            Report(rule);
    }

private:
    static void StartAgain()
    {
        Recording::Listen(0);
        RenewManager();
        Recording::Reset();
        Recording::Listen(0);
    }
};
} // namespace Fuzz
