// The cameras of the kit show what they follow without jitter. Tools/Jitter_Proof.cpp does the same over 10,000 paths.

#include "Runner/Host/Console.h"
#include "Tests/Runner/Support/Jitter.h"
#include "Tests/Runner/Support/Jitter_Path.h"

#include <gtest/gtest.h>

#include <cmath>

namespace
{
using namespace RunnerTest;

#ifdef NDEBUG
constexpr int STYLES_TOGETHER = 8;
#else // sanitizers and emulated machines are slow: the styles take turns
constexpr int STYLES_TOGETHER = 2;
#endif

class CameraJitter : public testing::TestWithParam<JitterBatch>
{
};

TEST_P(CameraJitter, KeepsWhatEachStylePromises)
{
    JitterRun run;
    run.batch = GetParam();
    run.paths = GetParam() == JitterBatch::Smooth ? 200 : 100;
    run.together = STYLES_TOGETHER;
    std::string why;
    const std::vector<JitterFigures> figures = MeasureJitter(run, why);
    ASSERT_EQ(why, "");
    for (size_t i = 0; i < figures.size(); ++i)
        EXPECT_EQ(JitterBroken(run.batch, StylesOf(run.batch)[i], figures[i]), "");
}

INSTANTIATE_TEST_SUITE_P(Of, CameraJitter, testing::Values(JitterBatch::Smooth, JitterBatch::Snapped));

// The measure notices what is there to be noticed.
TEST(JitterMeasure, ThePlainFollowOfTutorialsBreaksWhatTheKitKeeps)
{
    JitterRun run;
    run.batch = JitterBatch::Plain;
    run.paths = 30;
    std::string why;
    const std::vector<JitterFigures> figures = MeasureJitter(run, why);
    ASSERT_EQ(why, "");
    EXPECT_NE(JitterBroken(run.batch, StylesOf(run.batch)[1], figures[1]), "");
}

TEST(JitterMeasure, PathsAreSmoothWithinTheirPhasesAndStayInTheRoom)
{
    for (uint64_t seed = 1; seed <= 50; ++seed)
    {
        const std::vector<PathFrame> path = RandomPath(seed, 2048, 480);
        ASSERT_EQ(path.size(), 480u);
        for (size_t i = 1; i < path.size(); ++i)
        {
            ASSERT_GE(path[i].x, 0.0f);
            ASSERT_LE(path[i].x, 2048.0f);
            ASSERT_NEAR(path[i].x - path[i - 1].x, path[i].speedX, 0.001) << "seed " << seed << " frame " << i;
            ASSERT_LE(std::abs(path[i].speedX), 10.0);
        }
    }
}
} // namespace
