#include "host/SurfaceMetrics.h"

#include <gtest/gtest.h>

namespace Corvanta::Host {
namespace {

TEST(SurfaceMetrics, CountPhysicalPixelsAndPassTheRatioOnAsScale) {
    EXPECT_EQ(MetricsOf(1280, 720, 2.0), (SurfaceMetrics{2560, 1440, 2.0F}));
}

TEST(SurfaceMetrics, RoundToTheNearestPixel) {
    EXPECT_EQ(MetricsOf(333, 333, 1.5), (SurfaceMetrics{500, 500, 1.5F}));
    EXPECT_EQ(MetricsOf(101, 99, 1.25), (SurfaceMetrics{126, 124, 1.25F}));
}

TEST(SurfaceMetrics, AreNeverEmpty) {
    EXPECT_EQ(MetricsOf(0, 0, 1.0), (SurfaceMetrics{1, 1, 1.0F}));
}

}  // namespace
}  // namespace Corvanta::Host
