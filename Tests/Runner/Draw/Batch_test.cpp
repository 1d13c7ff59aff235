// What the device is given for polygons of one state.
#include "Runner/Draw/Batch.h"
#include "Tests/Runner/Support/Scripted_Window.h"

#include <gtest/gtest.h>

using namespace Runner;

namespace
{
struct Given
{
    size_t vertices;
    std::vector<uint16_t> indices;
};

class ListeningDevice : public RunnerTest::BlankDevice
{
public:
    void DrawTriangles(const DrawState&, const std::vector<Vertex>& vertices,
                       const std::vector<uint16_t>& indices) override
    {
        given.push_back({vertices.size(), indices});
    }

    std::vector<Given> given;
};

class DrawBatch : public testing::Test
{
protected:
    void Add(int corners) { m_batch.Add(m_state, m_corners, corners, {255, 255, 255, 255}); }

    ListeningDevice m_device;
    Batch m_batch{&m_device};
    DrawState m_state;
    const Corner m_corners[5] = {};
};

TEST_F(DrawBatch, QuadsAloneNeedNoIndices)
{
    Add(4);
    Add(4);
    m_batch.Flush();
    ASSERT_EQ(m_device.given.size(), 1u);
    EXPECT_EQ(m_device.given[0].vertices, 8u);
    EXPECT_TRUE(m_device.given[0].indices.empty());
}

TEST_F(DrawBatch, AnotherPolygonGivesIndicesToTheQuadsBeforeAndBehindIt)
{
    Add(4);
    Add(4);
    Add(3);
    Add(4);
    m_batch.Flush();
    ASSERT_EQ(m_device.given.size(), 1u);
    EXPECT_EQ(m_device.given[0].vertices, 15u);
    EXPECT_EQ(m_device.given[0].indices, (std::vector<uint16_t>{0,  1,  2,  0,  2,  3, // a quad
                                                                4,  5,  6,  4,  6,  7, // another one
                                                                8,  9,  10,            // the triangle
                                                                11, 12, 13, 11, 13, 14}));
}

TEST_F(DrawBatch, AFanOfFiveCornersHasThreeTriangles)
{
    Add(5);
    m_batch.Flush();
    EXPECT_EQ(m_device.given.at(0).indices, (std::vector<uint16_t>{0, 1, 2, 0, 2, 3, 0, 3, 4}));
}

TEST_F(DrawBatch, AFlushForgetsThatThereWereOtherPolygons)
{
    Add(3);
    m_batch.Flush();
    Add(4);
    m_batch.Flush();
    ASSERT_EQ(m_device.given.size(), 2u);
    EXPECT_EQ(m_device.given[0].indices.size(), 3u);
    EXPECT_TRUE(m_device.given[1].indices.empty());
}

TEST_F(DrawBatch, IsFullWithAsManyQuadsAsAMesh)
{
    for (int i = 0; i <= MESH_QUADS_LIMIT; ++i)
        Add(4);
    m_batch.Flush();
    ASSERT_EQ(m_device.given.size(), 2u);
    EXPECT_EQ(m_device.given[0].vertices, size_t{MESH_QUADS_LIMIT} * 4);
    EXPECT_EQ(m_device.given[1].vertices, 4u);
}
} // namespace
