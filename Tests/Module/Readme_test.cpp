// The C++ that README.md shows, compiled as it stands, on the recording host.
#include "Tests/Module/Manager_Fixture.h"

#include <functional>
#include <string>

using namespace Recording;

namespace
{
std::function<void()> s_drawRoom;

void DrawRoom() { s_drawRoom(); }

#include "Readme_Block.inc" // DrawView(int cameraID)

constexpr int BEGIN = 1, UPDATE = 2, END = 3;

class Readme : public ManagerTest
{
protected:
    Readme()
    {
        RunRoom({0});
        g_CM.StartRoom();
        CCamera& camera = *g_CM.CreateCamera();
        m_id = camera.GetID();
        Give(&CCamera::SetBeginScript, BEGIN, "begin");
        Give(&CCamera::SetUpdateScript, UPDATE, "update");
        Give(&CCamera::SetEndScript, END, "end");
        s_drawRoom = [this] { Happen("room"); };
        Listen(Topic_Graphics);
    }
    ~Readme() override { s_drawRoom = nullptr; }

    // Draws the view; the camera is destroyed when the named moment comes. What happened, in order.
    std::string DrawAndDestroyAt(const std::string& moment)
    {
        m_last = moment;
        TakeLog();
        DrawView(m_id);
        return m_happened;
    }

    int m_id = -1;

private:
    void Give(void (CCamera::*set)(RValue*), int number, const char* moment)
    {
        SetScript(number, [this, moment](ScriptCall&) { Happen(moment); });
        RValue value = Int32(number);
        (g_CM.GetCamera(m_id)->*set)(&value);
    }

    void Happen(const std::string& moment)
    {
        for (const std::string& line : TakeLog())
            m_happened += line.rfind("SetViewExtents", 0) == 0 ? "applied " : "";
        m_happened += moment + " ";
        if (moment == m_last)
            g_CM.DestroyCamera(m_id);
    }

    std::string m_last, m_happened;
};

TEST_F(Readme, DrawsAViewInOrder) { EXPECT_EQ(DrawAndDestroyAt("never"), "begin update applied room end "); }

TEST_F(Readme, ToleratesACameraThatItsBeginDestroys) { EXPECT_EQ(DrawAndDestroyAt("begin"), "begin "); }

TEST_F(Readme, ToleratesACameraThatItsUpdateDestroys) { EXPECT_EQ(DrawAndDestroyAt("update"), "begin update "); }

TEST_F(Readme, ToleratesACameraThatTheRoomDestroys)
{
    EXPECT_EQ(DrawAndDestroyAt("room"), "begin update applied room ");
}

TEST_F(Readme, ToleratesACameraThatItsEndDestroys)
{
    EXPECT_EQ(DrawAndDestroyAt("end"), "begin update applied room end ");
    EXPECT_EQ(g_CM.GetCamera(m_id), nullptr);
}

TEST_F(Readme, ToleratesANumberWithoutACamera)
{
    g_CM.DestroyCamera(m_id);
    EXPECT_EQ(DrawAndDestroyAt("never"), "");
}
} // namespace
