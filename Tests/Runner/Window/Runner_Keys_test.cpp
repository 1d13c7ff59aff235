#include "Runner/Window/Runner_Keys.h"

#include "Runner/Input/Input_Names.h"

#include <gtest/gtest.h>

namespace
{
using namespace Runner;

TEST(RunnerKeys, EachCommandHasAKeyOfItsOwn)
{
    const RunnerKeys keys;
    for (int i = 0; i < COMMAND_COUNT; ++i)
    {
        Command found = Command::Help;
        ASSERT_TRUE(keys.Find(FindKey(COMMANDS[i].key), found)) << COMMANDS[i].name;
        EXPECT_EQ(static_cast<int>(found), i);
    }
}

TEST(RunnerKeys, AMovedKeyLeavesTheOldOneToTheGame)
{
    RunnerKeys keys;
    EXPECT_EQ(keys.Move("pause=p,help="), "");
    Command found = Command::Help;
    EXPECT_TRUE(keys.Find(FindKey("p"), found));
    EXPECT_EQ(found, Command::Pause);
    EXPECT_FALSE(keys.Find(FindKey("f10"), found));
    EXPECT_FALSE(keys.Find(FindKey("f12"), found));
    EXPECT_FALSE(keys.Find(NO_NAME, found)) << "a key without a name is no command without a key";
}

TEST(RunnerKeys, WhatMovesNoKeySaysWhy)
{
    RunnerKeys keys;
    EXPECT_NE(keys.Move("paus=p").find("\"paus=p\" moves no key"), std::string::npos) << keys.Move("paus=p");
    EXPECT_NE(keys.Move("pause").find("moves no key"), std::string::npos);
    EXPECT_NE(keys.Move("").find("moves no key"), std::string::npos);
    EXPECT_EQ(keys.Move("pause=nope"), "there is no key \"nope\"");
}
} // namespace
