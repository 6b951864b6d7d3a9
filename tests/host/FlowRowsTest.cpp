#include "host/FlowRows.h"

#include <array>

#include <gtest/gtest.h>

namespace Corvanta::Host {
namespace {

constexpr std::array kThree{GroupSize{100, 30}, GroupSize{60, 20}, GroupSize{40, 30}};

TEST(FlowRows, PutEverythingIntoOneRowWhereItFits) {
    const FlowRows flow = FlowInto(kThree, 220, 10);
    EXPECT_EQ(flow.width, 220);
    EXPECT_EQ(flow.height, 30);
    EXPECT_EQ(flow.places, (std::vector<Place>{{0, 0, 100, 30}, {110, 5, 60, 20}, {180, 0, 40, 30}}));
}

TEST(FlowRows, BeginARowWithWhatDoesNotFit) {
    const FlowRows flow = FlowInto(kThree, 219, 10);
    EXPECT_EQ(flow.width, 170);
    EXPECT_EQ(flow.height, 70);
    EXPECT_EQ(flow.places, (std::vector<Place>{{0, 0, 100, 30}, {110, 5, 60, 20}, {65, 40, 40, 30}}));
}

TEST(FlowRows, GiveTheWidestARowOfItsOwn) {
    const FlowRows flow = FlowInto(kThree, 1, 10);
    EXPECT_EQ(flow.width, 100);
    EXPECT_EQ(flow.height, 100);
    EXPECT_EQ(flow.places, (std::vector<Place>{{0, 0, 100, 30}, {20, 40, 60, 20}, {30, 70, 40, 30}}));
}

TEST(FlowRows, AreEmptyWithoutGroups) {
    const FlowRows flow = FlowInto({}, 100, 10);
    EXPECT_TRUE(flow.places.empty());
    EXPECT_EQ(flow.width, 0);
    EXPECT_EQ(flow.height, 0);
}

}  // namespace
}  // namespace Corvanta::Host
