// What differs between processors must not show in texts and traces.

#include "Runner/Game/Trace.h"
#include "Runner/Host/Value.h"
#include "Tests/Runner/Support/Game_Support.h"

#include "Files/Graphics/Graphics_Support.h"

#include <cstring>

namespace
{
// The NaN that x86 makes is negative, that of ARM positive.
constexpr uint32_t NANS[] = {0xFFC00000u, 0x7FC00000u};

float FloatOf(uint32_t bits)
{
    float number;
    std::memcpy(&number, &bits, sizeof number);
    return number;
}

class RunnerPortability : public RunnerTest::GameTest
{
};

TEST_F(RunnerPortability, TheSignOfANaNDoesNotReachATrace)
{
    CCamera camera;
    std::string lines[2];
    for (int i = 0; i < 2; ++i)
    {
        camera.SetViewX(FloatOf(NANS[i]));
        camera.m_viewMat._41 = FloatOf(NANS[i]);
        lines[i] = Runner::TraceLine(1, 0, camera);
    }
    EXPECT_EQ(lines[0], lines[1]);
    EXPECT_EQ(lines[0].rfind("1 0 -1 nan ", 0), 0u) << lines[0];
}

TEST_F(RunnerPortability, TheSignOfANaNDoesNotReachADescription)
{
    for (uint32_t bits : NANS)
    {
        RValue value = {};
        value.val = static_cast<double>(FloatOf(bits));
        EXPECT_EQ(Runner::Describe(value), "the number nan");
    }
}

TEST_F(RunnerPortability, TheSignOfANaNDoesNotReachAGamesText)
{
    EXPECT_EQ(Run("for _, v in ipairs{ 0/0, -(0/0) } do\n"
                  "  assert(tostring(v) == 'nan', tostring(v))\n"
                  "  assert(string.format('%s %g %.2f', v, v, v) == 'nan nan nan')\n"
                  "end\n"
                  "assert(tostring(-1/0) == '-inf' and tostring(-0.0) == '-0.0')"),
              "");
}

// The device's long has 32 bits; Lua's integers have 64 everywhere.
TEST_F(RunnerPortability, IntegersOfGamesHave64Bits)
{
    EXPECT_EQ(Run("assert(math.maxinteger == 9223372036854775807)\n"
                  "assert(1 << 40 == 1099511627776 and tostring(1 << 40) == '1099511627776')\n"
                  "assert(math.tointeger(2.0^53) == 9007199254740992)"),
              "");
}

// Conversions that a processor would each do in its own way: every camera identifier below names no camera.
TEST_F(RunnerPortability, NumbersOutOfRangeNameNoCamera)
{
    EXPECT_EQ(
        Run("local c = camera_create()\n"
            "camera_set_view_pos(c, 7, 8)\n"
            "for _, id in ipairs{ 4294967296.0 + c, -4294967296.0 + c, 1e300, -1e300, 1/0, -1/0, (1 << 32) + c } do\n"
            "  assert(camera_get_view_x(id) == -1, tostring(id))\n"
            "end\n"
            "assert(camera_get_view_x(c) == 7)"),
        "");
}

// A byte above 127 is a letter's part in UTF-8 text, not a control character.
TEST_F(RunnerPortability, HighBytesOfTextArePrintable)
{
    RValue value = Runner::MakeString("caf\xC3\xA9\x01");
    EXPECT_EQ(Runner::Describe(value), "the string \"caf\xC3\xA9?\"");
    FREE_RValue__Pre(&value);
}
} // namespace
