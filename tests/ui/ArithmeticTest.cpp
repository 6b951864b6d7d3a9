#include "ui/Arithmetic.h"

#include <gtest/gtest.h>

#include <limits>

namespace Corvanta::UI {
namespace {

TEST(Arithmetic, TruncatesTowardZero) {
    EXPECT_EQ(Truncate(2.9), 2);
    EXPECT_EQ(Truncate(-2.9), -2);
    EXPECT_EQ(Truncate(0.999), 0);
    EXPECT_EQ(Truncate(-0.999), 0);
}

TEST(Arithmetic, GivesTheNearestIntForWhatLiesBeyond) {
    EXPECT_EQ(Truncate(1.0e12), std::numeric_limits<int>::max());
    EXPECT_EQ(Truncate(-1.0e12), std::numeric_limits<int>::min());
    EXPECT_EQ(Truncate(std::numeric_limits<double>::infinity()), std::numeric_limits<int>::max());
    EXPECT_EQ(Truncate(2147483647.0), std::numeric_limits<int>::max());
    EXPECT_EQ(Truncate(2147483646.5), std::numeric_limits<int>::max() - 1);
}

TEST(Arithmetic, GivesNothingForNoNumber) {
    EXPECT_EQ(Truncate(std::numeric_limits<double>::quiet_NaN()), 0);
}

}  // namespace
}  // namespace Corvanta::UI
