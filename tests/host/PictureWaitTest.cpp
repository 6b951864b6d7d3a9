#include "host/PictureWait.h"

#include <gtest/gtest.h>

namespace Corvanta::Host {
namespace {

using namespace std::chrono_literals;

constexpr PictureWait::Clock::time_point kStart{1h};

TEST(PictureWait, LastsAtLeastTheTimeAskedFor) {
    PictureWait wait(kStart, 2s);
    EXPECT_FALSE(wait.IsOver(kStart, true));
    EXPECT_FALSE(wait.IsOver(kStart + 1999ms, true));
    EXPECT_TRUE(wait.IsOver(kStart + 2s, true));
}

TEST(PictureWait, GivesALatePictureTimeToBeDrawn) {
    PictureWait wait(kStart, 2s);
    EXPECT_FALSE(wait.IsOver(kStart + 2s, false));
    EXPECT_FALSE(wait.IsOver(kStart + 3s, true));
    EXPECT_FALSE(wait.IsOver(kStart + 4499ms, true));
    EXPECT_TRUE(wait.IsOver(kStart + 4500ms, true));
}

TEST(PictureWait, CountsAnewAfterThePictureWasMissingAgain) {
    PictureWait wait(kStart, 2s);
    EXPECT_FALSE(wait.IsOver(kStart + 1s, true));
    EXPECT_FALSE(wait.IsOver(kStart + 1900ms, false));
    EXPECT_FALSE(wait.IsOver(kStart + 2s, true));
    EXPECT_FALSE(wait.IsOver(kStart + 3499ms, true));
    EXPECT_TRUE(wait.IsOver(kStart + 3500ms, true));
}

TEST(PictureWait, EndsWithoutAPictureInTheEnd) {
    PictureWait wait(kStart, 2s);
    EXPECT_FALSE(wait.IsOver(kStart + 11999ms, false));
    EXPECT_TRUE(wait.IsOver(kStart + 12s, false));
}

}  // namespace
}  // namespace Corvanta::Host
