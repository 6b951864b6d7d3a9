#include "host/HostWindow.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QTest>

#include "tests/host/RecordedInterface.h"

namespace Corvanta::Host {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

class HostWindowTest : public ::testing::Test {
protected:
    HostWindowTest() {
        window_.show();
        window_.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window_));
        window_.Room().setFocus();
        static_cast<void>(TakePushed());
    }

    // Pressed and released, as the toolkit delivers a key: shortcuts first.
    void Click(Qt::Key key) { QTest::keyClick(&window_.Room(), key); }

    HostWindow window_{"A room", 640, 360};
};

TEST_F(HostWindowTest, LeavesEscapeToTheRoom) {
    Click(Qt::Key_Escape);
    EXPECT_THAT(TakePushed(), ElementsAre("key 0 Escape", "key up 0 Escape"));
}

TEST_F(HostWindowTest, LeavesFullScreenByEscape) {
    window_.SetFullscreen(true);
    EXPECT_TRUE(window_.isFullScreen());
    EXPECT_THAT(TakePushed(), Contains("full screen true"));
    Click(Qt::Key_Escape);
    EXPECT_FALSE(window_.isFullScreen());
    const auto pushed = TakePushed();
    EXPECT_THAT(pushed, Contains("full screen false"));
    EXPECT_THAT(pushed, Not(Contains(HasSubstr("Escape"))));
    // And the key is the room's again.
    Click(Qt::Key_Escape);
    EXPECT_THAT(TakePushed(), ElementsAre("key 0 Escape", "key up 0 Escape"));
}

TEST_F(HostWindowTest, TurnsFullScreenOnAndOffByItsKey) {
    Click(Qt::Key_F11);
    EXPECT_TRUE(window_.isFullScreen());
    Click(Qt::Key_F11);
    EXPECT_FALSE(window_.isFullScreen());
}

}  // namespace
}  // namespace Corvanta::Host
