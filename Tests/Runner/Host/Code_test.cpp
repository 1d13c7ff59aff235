#include "Runner/Host/Code.h"

#include <gtest/gtest.h>

namespace
{
using namespace Runner;

void First(RValue&, CInstance*, CInstance*, int, RValue*) {}
void Second(RValue&, CInstance*, CInstance*, int, RValue*) {}

class HostCode : public testing::Test
{
protected:
    ~HostCode() override { ForgetBuiltinsAfter(m_count); }

    const size_t m_count = Builtins().size();
};

TEST_F(HostCode, BuiltinsAreFoundByName)
{
    Function_Add("host_code_test_first", First, 3, false);
    const Builtin* found = FindBuiltin("host_code_test_first");
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->handler, First);
    EXPECT_EQ(found->argc, 3);
    EXPECT_EQ(FindBuiltin("host_code_test_none"), nullptr);
    EXPECT_EQ(FindBuiltin(""), nullptr);
}

TEST_F(HostCode, ANameEnteredAgainIsReplaced)
{
    Function_Add("host_code_test_again", First, 1, false);
    const size_t count = Builtins().size();
    Function_Add("host_code_test_again", Second, 2, true);
    EXPECT_EQ(Builtins().size(), count);
    EXPECT_EQ(FindBuiltin("host_code_test_again")->handler, Second);
    EXPECT_EQ(FindBuiltin("host_code_test_again")->argc, 2);
}

TEST_F(HostCode, BuiltinsKeepTheirOrder)
{
    const size_t start = Builtins().size();
    Function_Add("host_code_test_z", First, 0, false);
    Function_Add("host_code_test_a", First, 0, false);
    ASSERT_EQ(Builtins().size(), start + 2);
    EXPECT_EQ(Builtins()[start].name, "host_code_test_z");
    EXPECT_EQ(Builtins()[start + 1].name, "host_code_test_a");
}

TEST_F(HostCode, NothingIsEnteredWithoutANameOrAHandler)
{
    const size_t count = Builtins().size();
    Function_Add(nullptr, First, 0, false);
    Function_Add("host_code_test_null", nullptr, 0, false);
    EXPECT_EQ(Builtins().size(), count);
}

TEST_F(HostCode, TheFirstErrorWaitsUntilItIsTaken)
{
    TakeError();
    EXPECT_FALSE(HasError());
    KvError("%s :: %d", "first", 1);
    KvError("second");
    EXPECT_TRUE(HasError());
    EXPECT_EQ(TakeError(), "first :: 1");
    EXPECT_FALSE(HasError());
    EXPECT_EQ(TakeError(), "");
    KvError("third");
    EXPECT_EQ(TakeError(), "third");
}

TEST_F(HostCode, AnErrorIsOneLineOfBoundedLength)
{
    TakeError();
    KvError("one\ntwo\r\n");
    EXPECT_EQ(TakeError(), "one two");
    KvError("%s", std::string(100000, 'x').c_str());
    const std::string text = TakeError();
    EXPECT_GT(text.size(), 500u);
    EXPECT_LT(text.size(), 2000u);
    EXPECT_EQ(text, std::string(text.size(), 'x'));
    KvError("%s", "");
    EXPECT_TRUE(HasError());
    EXPECT_EQ(TakeError(), "");
}
} // namespace
