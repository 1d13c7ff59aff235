#include "Files/Graphics/Graphics_Support.h"

#include <gtest/gtest.h>
#include <string>

namespace
{
TEST(Version, TheArchiveAnswersWhatTheHeaderSays) { EXPECT_EQ(CameraModule::Version(), CAMERA_MODULE_VERSION); }

TEST(Version, TextAndNumberAreMadeOfTheThreeParts)
{
    const std::string dot = ".";
    EXPECT_EQ(CAMERA_MODULE_VERSION_TEXT, std::to_string(CAMERA_MODULE_VERSION_MAJOR) + dot +
                                              std::to_string(CAMERA_MODULE_VERSION_MINOR) + dot +
                                              std::to_string(CAMERA_MODULE_VERSION_PATCH));
    EXPECT_EQ(CAMERA_MODULE_VERSION / 10000, CAMERA_MODULE_VERSION_MAJOR);
    EXPECT_EQ(CAMERA_MODULE_VERSION / 100 % 100, CAMERA_MODULE_VERSION_MINOR);
    EXPECT_EQ(CAMERA_MODULE_VERSION % 100, CAMERA_MODULE_VERSION_PATCH);
}
} // namespace
