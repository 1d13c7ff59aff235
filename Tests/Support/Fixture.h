#pragma once
// What every test of the module starts from and is checked for at its end.

#include "Tests/Support/Recording_Host.h"

#include <gtest/gtest.h>

#include <cstring>
#include <new>
#include <ostream>

// ---- printers: found by GoogleTest through the argument's namespace ----
inline void PrintTo(const RValue& value, std::ostream* out) { *out << Recording::Describe(value); }

inline void PrintTo(const kvMatrix& matrix, std::ostream* out)
{
    for (int i = 0; i < 16; ++i)
        *out << (i % 4 == 0 ? "\n" : "  ") << Recording::Describe(matrix.m[i]);
}

// Matrices are equal when their bits are: tests that allow more say how much.
inline bool operator==(const kvMatrix& a, const kvMatrix& b) { return std::memcmp(&a, &b, sizeof a) == 0; }
inline bool operator!=(const kvMatrix& a, const kvMatrix& b) { return !(a == b); }

namespace Recording
{
// A reference that a test holds: released at the end of its scope.
struct Owned : RValue
{
    explicit Owned(const RValue& value) : RValue(value) {}
    Owned(const Owned&) = delete;
    Owned& operator=(const Owned&) = delete;
    ~Owned()
    {
        if (KvNeedsRelease(*this))
            FREE_RValue__Pre(this);
    }
};

inline kvMatrix Identity()
{
    kvMatrix matrix = {};
    matrix._11 = matrix._22 = matrix._33 = matrix._44 = 1.0f;
    return matrix;
}

inline Lines None() { return {}; }

class ModuleTest : public testing::Test
{
protected:
    ModuleTest() { StartAgain(); }
    ~ModuleTest() override { StartAgain(); }

    // Nothing of a test may outlive it: every camera goes, then the counts must be those of an empty manager.
    void TearDown() override
    {
        Listen(0);
        RefuseRequest(0);
        RefuseAbove(SIZE_MAX);
        RenewManager();
        Collect();
        EXPECT_EQ(Faults(), None());
        EXPECT_EQ(LiveBlocks(), 2u) << "an empty manager has its table and its room list";
        EXPECT_EQ(LiveTexts(), 0u);
        EXPECT_EQ(LiveArrays(), 0u);
        EXPECT_EQ(LockDepth(), 0);
        EXPECT_EQ(ContextDepth(), 0);
        EXPECT_EQ(RootCount(), 0u);
        EXPECT_EQ(OpenFiles(), 0);
    }

    // g_CM as it is when the program starts: one empty slot. Every camera is freed.
    static void RenewManager()
    {
        g_CM.~CCameraManager();
        new (&g_CM) CCameraManager;
        g_CM.m_InitialLoadHighPoint = 0;
    }

    // After Clean: the entries that point at freed cameras become empty.
    static void ForgetStaleEntries()
    {
        for (int i = 0; i < g_CM.m_cameraListSize; ++i)
            g_CM.m_cameras[i] = nullptr;
        for (int i = 0; i < ROOM_CAMERAS; ++i)
            g_CM.m_roomcameras[i] = nullptr;
    }

    static void StartAgain()
    {
        Listen(0);
        RefuseRequest(0);
        RefuseAbove(SIZE_MAX);
        RenewManager();
        Reset();
    }

    // Calls a built-in's handler with these arguments; the result starts as the host left it.
    static void Call(TFunction handler, std::vector<RValue> args, RValue& result, CInstance* self = nullptr)
    {
        const int argc = static_cast<int>(args.size());
        args.resize(args.size() + 16, g_undefined); // hosts pad, so that no handler reads past the end
        handler(result, self, nullptr, argc, args.data());
    }
    static RValue Call(TFunction handler, const std::vector<RValue>& args)
    {
        RValue result = Real(12345.0);
        Call(handler, args, result);
        return result;
    }
};
} // namespace Recording
