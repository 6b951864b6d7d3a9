#include "host/RoomState.h"

#include <gtest/gtest.h>

namespace Corvanta::Host {
namespace {

TEST(RoomStateText, SaysWhatIsOn) {
    EXPECT_EQ(StatusText({.microphone = true, .camera = false, .sound = true}),
              "Microphone on, camera off, sound on");
    EXPECT_EQ(StatusText({.microphone = false, .camera = true, .sound = false}),
              "Microphone off, camera on, sound off");
}

TEST(PushToTalkText, NamesTheKey) {
    EXPECT_EQ(PushToTalkText("V"), "Hold V to talk");
    EXPECT_EQ(PushToTalkText("D3"), "Hold 3 to talk");
    EXPECT_EQ(PushToTalkText(""), "");
}

TEST(KeyLabel, IsWhatAPersonCallsTheKey) {
    EXPECT_EQ(KeyLabelOf("LeftCtrl"), "Ctrl");
    EXPECT_EQ(KeyLabelOf("Oem3"), "`");
    EXPECT_EQ(KeyLabelOf("D0"), "0");
    EXPECT_EQ(KeyLabelOf("D"), "D");
    EXPECT_EQ(KeyLabelOf("Space"), "Space");
    EXPECT_EQ(KeyLabelOf("Unknown"), "Unknown");
}

TEST(ConnectionText, TellsALossFromALeave) {
    EXPECT_EQ(ConnectionText(true, false), "The connection was lost. Trying again...");
    EXPECT_EQ(ConnectionText(false, false), "The connection was lost.");
    EXPECT_EQ(ConnectionText(false, true), "You have left the room.");
    EXPECT_EQ(ConnectionText(true, true), "You have left the room.");
}

}  // namespace
}  // namespace Corvanta::Host
