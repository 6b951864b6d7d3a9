#include "host/KeyNames.h"

#include <QtCore/qnamespace.h>
#include <gtest/gtest.h>

namespace Corvanta::Host {
namespace {

struct NamedKey {
    int key;
    const char* name;
};

class KeyNames : public ::testing::TestWithParam<NamedKey> {};

TEST_P(KeyNames, AreThoseTheLibraryKnows) {
    EXPECT_EQ(KeyNameOf(GetParam().key), GetParam().name);
}

INSTANTIATE_TEST_SUITE_P(
    OfEveryKey, KeyNames,
    ::testing::Values(NamedKey{Qt::Key_Shift, "LeftShift"}, NamedKey{Qt::Key_Control, "LeftCtrl"},
                      NamedKey{Qt::Key_Alt, "LeftAlt"}, NamedKey{Qt::Key_Meta, "Command"},
                      NamedKey{Qt::Key_Space, "Space"}, NamedKey{Qt::Key_Backspace, "Back"},
                      NamedKey{Qt::Key_CapsLock, "Capital"}, NamedKey{Qt::Key_Tab, "Tab"},
                      NamedKey{Qt::Key_Return, "Return"}, NamedKey{Qt::Key_Enter, "Return"},
                      NamedKey{Qt::Key_Escape, "Escape"}, NamedKey{Qt::Key_PageUp, "PageUp"},
                      NamedKey{Qt::Key_PageDown, "PageDown"}, NamedKey{Qt::Key_Left, "Left"},
                      NamedKey{Qt::Key_Right, "Right"}, NamedKey{Qt::Key_Up, "Up"},
                      NamedKey{Qt::Key_Down, "Down"}, NamedKey{Qt::Key_Delete, "Delete"},
                      NamedKey{Qt::Key_QuoteLeft, "Oem3"}, NamedKey{Qt::Key_Minus, "OemMinus"},
                      NamedKey{Qt::Key_Equal, "OemPlus"}, NamedKey{Qt::Key_BracketLeft, "OemOpenBrackets"},
                      NamedKey{Qt::Key_BracketRight, "Oem6"}, NamedKey{Qt::Key_Backslash, "Oem5"},
                      NamedKey{Qt::Key_Semicolon, "Oem1"}, NamedKey{Qt::Key_Apostrophe, "OemQuotes"},
                      NamedKey{Qt::Key_Slash, "OemQuestion"}, NamedKey{Qt::Key_Period, "OemPeriod"},
                      NamedKey{Qt::Key_Comma, "OemComma"}, NamedKey{Qt::Key_0, "D0"},
                      NamedKey{Qt::Key_9, "D9"}, NamedKey{Qt::Key_A, "A"}, NamedKey{Qt::Key_Z, "Z"}));

TEST(UnknownKeys, HaveNoName) {
    EXPECT_EQ(KeyNameOf(Qt::Key_F5), "");
    EXPECT_EQ(KeyNameOf(0), "");
    EXPECT_EQ(KeyNameOf(Qt::Key_VolumeUp), "");
}

}  // namespace
}  // namespace Corvanta::Host
