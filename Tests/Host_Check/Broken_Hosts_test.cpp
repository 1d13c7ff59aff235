// Hosts broken on purpose, one promise each: each is caught by the name of the check that tests the promise.

#include "Tests/Host_Check/Small_Hooks.h"
#include "Tests/Host_Check/Small_Host.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace
{
using namespace SmallHost;

struct Case
{
    const char* name;
    Breakage breakage;
    const char* check;
};
constexpr Case CASES[] = {
#define HOST_CASE_OF(name, check) {#name, Breakage::name, check},
    HOST_BREAKAGES(HOST_CASE_OF)
#undef HOST_CASE_OF
};

struct Heard
{
    std::string broken, notTested; // the checks with what they saw, a line each
    std::set<std::string> names;   // of the broken
};

void Hear(const HostCheck::Outcome& outcome, void* context)
{
    Heard& heard = *static_cast<Heard*>(context);
    const std::string line = std::string(outcome.name) + ": " + outcome.saw + "\n";
    if (outcome.verdict == HostCheck::Verdict::Broken)
    {
        heard.broken += line;
        heard.names.insert(outcome.name);
    }
    if (outcome.verdict == HostCheck::Verdict::NotTested)
        heard.notTested += line;
}

Heard RunWith(const HostCheck::Options& options)
{
    Heard heard;
    MakeSaveArea();
    HostCheck::Run(SmallHost::Hooks(), options, Hear, &heard);
    RemoveSaveArea();
    return heard;
}

class BrokenHost : public testing::TestWithParam<Case>
{
protected:
    ~BrokenHost() override { g_broken = Breakage::None; }
};

// In a process of its own each: the breakage may crash, hang or leave a mess behind.
TEST_P(BrokenHost, IsCaughtByName)
{
    HostCheck::Options options;
    options.sameBits = true;
    options.only = GetParam().check;
    EXPECT_EQ(RunWith(options).broken, "") << "the check fails on the host that keeps its promises";
    g_broken = GetParam().breakage;
    if (g_broken == Breakage::TheLockBlocksItsOwner)
        options.seconds = 1; // it never comes back
    const Heard heard = RunWith(options);
    EXPECT_EQ(heard.names.count(GetParam().check), 1u) << "nothing was noticed; not tested: " << heard.notTested;
}

INSTANTIATE_TEST_SUITE_P(OnPurpose, BrokenHost, testing::ValuesIn(CASES),
                         [](const testing::TestParamInfo<Case>& broken) { return std::string(broken.param.name); });

TEST(WholeHost, KeepsEveryPromise)
{
    HostCheck::Options options;
    options.sameBits = true;
    const Heard heard = RunWith(options);
    EXPECT_EQ(heard.broken, "");
    EXPECT_EQ(heard.notTested, "");
}

// Checks clean up after themselves: one process takes them all.
TEST(WholeHost, KeepsEveryPromiseInOneProcess)
{
    HostCheck::Options options;
    options.sameBits = true;
    options.contained = false;
    EXPECT_EQ(RunWith(options).broken, "");
}

TEST(WholeHost, WithoutHooksTheirChecksAreNamed)
{
    HostCheck::Options options;
    Heard heard;
    MakeSaveArea();
    const HostCheck::Totals totals = HostCheck::Run({}, options, Hear, &heard);
    RemoveSaveArea();
    EXPECT_EQ(heard.broken, "");
    EXPECT_NE(heard.notTested.find("collector.frees: the hook collect is null\n"), std::string::npos)
        << heard.notTested;
    EXPECT_NE(heard.notTested.find("hash.null_when_missing: the hook openRoom is null\n"), std::string::npos);
    EXPECT_GT(totals.held, 40);
}

TEST(WholeHost, ALevelTakesInThoseBelowAndNoOther)
{
    std::set<HostCheck::Level> levels;
    HostCheck::Options options;
    options.level = HostCheck::Level::BuiltIns;
    HostCheck::Run(
        SmallHost::Hooks(), options,
        [](const HostCheck::Outcome& outcome, void* context)
        { static_cast<std::set<HostCheck::Level>*>(context)->insert(outcome.level); },
        &levels);
    EXPECT_EQ(levels, (std::set<HostCheck::Level>{HostCheck::Level::Follow, HostCheck::Level::BuiltIns}));
}

TEST(BrokenHosts, NameChecksThatExist)
{
    std::set<std::string> checks;
    HostCheck::ListChecks([](const HostCheck::Outcome& outcome, void* context)
                          { static_cast<std::set<std::string>*>(context)->insert(outcome.name); },
                          &checks);
    for (const Case& broken : CASES)
        EXPECT_EQ(checks.count(broken.check), 1u) << "no check " << broken.check;
}
} // namespace

// The library brings a main of its own, so GoogleTest's would not be taken.
int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
