#pragma once

#include "Runner/Host/Collector.h"
#include "Runner/Host/Memory.h"
#include "Runner/Host/Value.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace Runner
{
// An object with two variables, which tells what becomes of it.
class Thing : public KvObjectBase
{
public:
    explicit Thing(std::vector<std::string>* log, std::string name)
        : KvObjectBase(2, 0), m_log(log), m_name(std::move(name))
    {
        m_variables[0] = m_variables[1] = MakeUndefined();
        EXPECT_TRUE(Collector::Place(this));
    }
    ~Thing() override { m_log->push_back("~" + m_name); }

    RValue* InternalGetKvVarRef(int variable) override
    {
        return variable >= 0 && variable < 2 ? &m_variables[variable] : nullptr;
    }
    void PreFree() override
    {
        m_log->push_back("pre " + m_name);
        if (m_onPreFree)
            m_onPreFree();
    }

    void Refer(KvObjectBase* object) { m_variables[0] = MakeObject(object); }

    std::vector<std::string>* m_log;
    std::string m_name;
    RValue m_variables[2];
    std::function<void()> m_onPreFree;
};

class HostCollector : public testing::Test
{
protected:
    void SetUp() override
    {
        Collector::Collect(true); // what earlier tests left
        m_live = Collector::GetStats().live;
    }

    void TearDown() override
    {
        ExpectChecked();
        Collector::Collect(true);
        EXPECT_EQ(Live(), 0) << "objects left behind";
    }

    Thing* New(const std::string& name) { return new Thing(&m_log, name); }

    Thing* NewRoot(const std::string& name)
    {
        Thing* thing = New(name);
        AddGlobalObject(thing);
        return thing;
    }

    int Live() const { return Collector::GetStats().live - m_live; }

    static void ExpectChecked()
    {
        std::string why;
        EXPECT_TRUE(Collector::Check(why)) << why;
        EXPECT_TRUE(CheckMemory(why)) << why;
    }

    std::vector<std::string> m_log;
    int m_live = 0;
};
} // namespace Runner
