#include "Tests/Support/Fixture.h"

#include <gmock/gmock.h>

namespace
{
using namespace Recording;
using testing::ElementsAre;

struct Property
{
    const char* name; // as the host's accessors spell it
    TFunction get;
    TFunction set;
};

void PrintTo(const Property& property, std::ostream* out) { *out << property.name; }

const Property PROPERTIES[] = {
    {"Camera", F_ViewGetCamera, F_ViewSetCamera},
    {"Visible", F_ViewGetVisible, F_ViewSetVisible},
    {"Xport", F_ViewGetXport, F_ViewSetXport},
    {"Yport", F_ViewGetYport, F_ViewSetYport},
    {"Wport", F_ViewGetWport, F_ViewSetWport},
    {"Hport", F_ViewGetHport, F_ViewSetHport},
    {"SurfaceID", F_ViewGetSurfaceId, F_ViewSetSurfaceId},
};

class ViewProperty : public ModuleTest, public testing::WithParamInterface<Property>
{
protected:
    void SetUp() override
    {
        ModuleTest::SetUp();
        self = NewInstance(100007, 0, 0);
        other = NewInstance(100008, 0, 0);
        Listen(Topic_All);
        TakeLog();
    }

    Lines Get(RValue& result, RValue view)
    {
        GetParam().get(result, self, other, 1, &view);
        return TakeLog();
    }

    Lines Set(RValue& result, RValue view, RValue value)
    {
        RValue args[] = {view, value};
        GetParam().set(result, self, other, 2, args);
        return TakeLog();
    }

    std::string Getter(const char* arguments) const
    {
        return "GV_View" + std::string(GetParam().name) + "(" + arguments + ")";
    }
    std::string Setter(const char* arguments) const
    {
        return "SV_View" + std::string(GetParam().name) + "(" + arguments + ")";
    }

    CInstance* self = nullptr;
    CInstance* other = nullptr;
};

TEST_P(ViewProperty, GetterConvertsTheViewAndAsksTheHost)
{
    RValue result = Real(99);
    EXPECT_THAT(Get(result, Real(3)), ElementsAre("KvGetInt32(0)", Getter("I100007,3")));
}

TEST_P(ViewProperty, GetterReturnsWhatTheHostWrote)
{
    ViewValue(GetParam().name, 5) = Int32(41);
    ViewValue(GetParam().name, 0) = Bool(true);
    RValue result = Real(99);
    Get(result, Int32(5));
    EXPECT_EQ(Describe(result), "int32 41");
    Get(result, Int32(0));
    EXPECT_EQ(Describe(result), "bool 1");
}

TEST_P(ViewProperty, GetterLeavesTheResultToTheHost)
{
    RValue result = Real(99);
    Get(result, Real(-3)); // no such view: the host writes nothing
    EXPECT_EQ(Describe(result), "real 99");
}

TEST_P(ViewProperty, SetterConvertsTheValueThenTheView)
{
    RValue result = Real(99);
    EXPECT_THAT(Set(result, Real(0), Real(32)),
                ElementsAre("KvGetReal(1)", "KvGetInt32(0)", Setter("I100007,0,real 32")));
}

TEST_P(ViewProperty, SetterPassesEveryValueAsAReal)
{
    RValue result = Real(99);
    EXPECT_EQ(Set(result, Real(1), Bool(true)).back(), Setter("I100007,1,real 1"));
    EXPECT_EQ(Set(result, Real(1), Int32(-7)).back(), Setter("I100007,1,real -7"));
    EXPECT_EQ(Set(result, Real(1), Int64(123456789)).back(), Setter("I100007,1,real 123456789"));
    EXPECT_EQ(Set(result, Real(1), Real(2.5)).back(), Setter("I100007,1,real 2.5"));
}

TEST_P(ViewProperty, SetterReachesTheHostsView)
{
    RValue result = Real(99);
    Set(result, Real(6), Real(12));
    EXPECT_EQ(Describe(ViewValue(GetParam().name, 6)), "real 12");
}

TEST_P(ViewProperty, SetterLeavesTheResultAlone)
{
    RValue result = Real(99);
    result.flags = 0x55;
    Set(result, Real(2), Real(1));
    EXPECT_EQ(Describe(result), "real 99");
    EXPECT_EQ(result.flags, 0x55u);
}

TEST_P(ViewProperty, SetterLeavesTheArgumentsAlone)
{
    RValue result = Real(99);
    RValue args[] = {Int32(2), Bool(true)};
    GetParam().set(result, self, other, 2, args);
    EXPECT_EQ(Describe(args[0]), "int32 2");
    EXPECT_EQ(Describe(args[1]), "bool 1");
}

TEST_P(ViewProperty, ViewNumbersAreTheHostsToCheck)
{
    RValue result = Real(99);
    EXPECT_EQ(Get(result, Real(8)).back(), Getter("I100007,8"));
    EXPECT_EQ(Set(result, Real(-1), Real(1)).back(), Setter("I100007,-1,real 1"));
    EXPECT_THAT(Errors(), testing::ElementsAre(testing::StartsWith("there is no view 8 "),
                                               testing::StartsWith("there is no view -1 "))); // the host's words
}

TEST_P(ViewProperty, CountsAreNotChecked)
{
    RValue result = Real(99);
    RValue args[] = {Real(4), Real(16), Real(5)};
    GetParam().get(result, self, other, 3, args);
    GetParam().set(result, self, other, 0, args);
    EXPECT_THAT(TakeLog(), ElementsAre("KvGetInt32(0)", Getter("I100007,4"), "KvGetReal(1)", "KvGetInt32(0)",
                                       Setter("I100007,4,real 16")));
}

TEST_P(ViewProperty, WorksWithoutAnInstance)
{
    RValue result = Real(99);
    RValue args[] = {Real(4), Real(16)};
    GetParam().get(result, nullptr, nullptr, 1, args);
    GetParam().set(result, nullptr, nullptr, 2, args);
    EXPECT_THAT(TakeLog(), ElementsAre("KvGetInt32(0)", Getter("null,4"), "KvGetReal(1)", "KvGetInt32(0)",
                                       Setter("null,4,real 16")));
}

INSTANTIATE_TEST_SUITE_P(Properties, ViewProperty, testing::ValuesIn(PROPERTIES),
                         [](const testing::TestParamInfo<Property>& row) { return row.param.name; });
} // namespace
