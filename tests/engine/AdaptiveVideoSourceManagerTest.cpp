#include <gtest/gtest.h>

#include "platform/VideoFrameAdaptation.h"

namespace Corvanta {
namespace {

constexpr VideoFrameAdaptation kInitial{1, 240, 786432};

TEST(AdaptiveVideoSourceManager, KeepsTheInitialAdaptationForAThumbnail) {
    const auto manager = AdaptiveVideoSourceManagerInterface::Create("camera", kInitial, true);
    EXPECT_EQ(manager->GetAdaptation(), kInitial);
    manager->SetMainStream("somebody");
    EXPECT_EQ(manager->GetAdaptation(), kInitial);
}

TEST(AdaptiveVideoSourceManager, LeavesTheRateToTheCameraWhileItIsTheMainVideo) {
    const auto manager = AdaptiveVideoSourceManagerInterface::Create("camera", kInitial, true);
    manager->SetMainStream("camera");
    EXPECT_EQ(manager->GetAdaptation(), (VideoFrameAdaptation{1, 240, 0}));
    manager->OnRemoteStreamRemoved("somebody");
    EXPECT_EQ(manager->GetAdaptation().bitrate, 0U);
    manager->SetMainStream("");
    EXPECT_EQ(manager->GetAdaptation(), kInitial);
}

TEST(AdaptiveVideoSourceManager, KeepsToTheInitialAdaptationWhenItIsOff) {
    const auto manager = AdaptiveVideoSourceManagerInterface::Create("camera", kInitial, false);
    manager->SetMainStream("camera");
    EXPECT_EQ(manager->GetAdaptation(), kInitial);
}

}  // namespace
}  // namespace Corvanta
