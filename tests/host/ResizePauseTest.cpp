#include "host/ResizePause.h"

#include <gtest/gtest.h>

namespace Corvanta::Host {
namespace {

using namespace std::chrono_literals;

constexpr ResizePause::Clock::time_point kStart{1h};

TEST(ResizePause, BeginsOnceAndEndsOnceTheSizeStandsStill) {
    ResizePause pause;
    EXPECT_TRUE(pause.Begin(kStart));
    EXPECT_FALSE(pause.Begin(kStart + 150ms));
    EXPECT_FALSE(pause.TakeEnd(kStart + 300ms));
    EXPECT_TRUE(pause.TakeEnd(kStart + 400ms));
    EXPECT_FALSE(pause.TakeEnd(kStart + 500ms));
    EXPECT_TRUE(pause.Begin(kStart + 600ms));
}

TEST(ResizePause, DoesNotEndBeforeItBegins) {
    ResizePause pause;
    EXPECT_FALSE(pause.TakeEnd(kStart));
}

}  // namespace
}  // namespace Corvanta::Host
