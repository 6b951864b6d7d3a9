#include "host/WindowLayout.h"

#include <gtest/gtest.h>

namespace Corvanta::Host {
namespace {

TEST(WindowLayout, GivesTheRoomEverythingWhenItIsAlone) {
    EXPECT_EQ(LayOut(1280, 720, {}).room, (Place{0, 0, 1280, 720}));
}

TEST(WindowLayout, StandsThePanelAtTheRight) {
    const WindowLayout layout = LayOut(1280, 720, {.panel = true});
    EXPECT_EQ(layout.room, (Place{0, 0, 980, 720}));
    EXPECT_EQ(layout.panel, (Place{980, 0, 300, 720}));
}

TEST(WindowLayout, StandsTheBarAboveTheRoomAlone) {
    const WindowLayout layout = LayOut(1280, 720, {.panel = true, .barHeight = 32});
    EXPECT_EQ(layout.bar, (Place{0, 0, 980, 32}));
    EXPECT_EQ(layout.room, (Place{0, 32, 980, 688}));
    EXPECT_EQ(layout.panel, (Place{980, 0, 300, 720}));
}

TEST(WindowLayout, LeavesTheRoomMostOfANarrowWindow) {
    const WindowLayout layout = LayOut(640, 480, {.panel = true});
    EXPECT_EQ(layout.panel.width, 256);
    EXPECT_EQ(layout.room.width, 384);
}

TEST(WindowLayout, KeepsEveryPartInTheSmallestWindow) {
    for (const int side : {0, 1, 2, 5}) {
        const WindowLayout layout = LayOut(side, side, {.panel = true, .barHeight = 32});
        for (const Place& place : {layout.room, layout.bar, layout.panel}) {
            EXPECT_GE(place.width, 1) << side;
            EXPECT_GE(place.height, 1) << side;
        }
    }
}

}  // namespace
}  // namespace Corvanta::Host
