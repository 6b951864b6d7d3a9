#include "host/KeyNames.h"

#include <QtCore/qnamespace.h>
#include <gtest/gtest.h>

#include <ostream>
#include <set>
#include <string>

#include "ui/KeyNames.h"

namespace Corvanta::Host {
namespace {

struct NamedKey {
    int key;
    const char* name;
};

void PrintTo(const NamedKey& named, std::ostream* stream) {
    *stream << named.name << " of " << named.key;
}

class KeyNames : public ::testing::TestWithParam<NamedKey> {};

TEST_P(KeyNames, AreThoseTheLibraryKnows) {
    EXPECT_EQ(KeyNameOf(GetParam().key), GetParam().name);
    EXPECT_NE(UI::GetKeyCodeFromName(GetParam().name), 0);
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

INSTANTIATE_TEST_SUITE_P(
    OfKeysWithShift, KeyNames,
    ::testing::Values(NamedKey{Qt::Key_Exclam, "D1"}, NamedKey{Qt::Key_At, "D2"},
                      NamedKey{Qt::Key_NumberSign, "D3"}, NamedKey{Qt::Key_Dollar, "D4"},
                      NamedKey{Qt::Key_Percent, "D5"}, NamedKey{Qt::Key_AsciiCircum, "D6"},
                      NamedKey{Qt::Key_Ampersand, "D7"}, NamedKey{Qt::Key_Asterisk, "D8"},
                      NamedKey{Qt::Key_ParenLeft, "D9"}, NamedKey{Qt::Key_ParenRight, "D0"},
                      NamedKey{Qt::Key_AsciiTilde, "Oem3"}, NamedKey{Qt::Key_Underscore, "OemMinus"},
                      NamedKey{Qt::Key_Plus, "OemPlus"}, NamedKey{Qt::Key_BraceLeft, "OemOpenBrackets"},
                      NamedKey{Qt::Key_BraceRight, "Oem6"}, NamedKey{Qt::Key_Bar, "Oem5"},
                      NamedKey{Qt::Key_Colon, "Oem1"}, NamedKey{Qt::Key_QuoteDbl, "OemQuotes"},
                      NamedKey{Qt::Key_Question, "OemQuestion"}, NamedKey{Qt::Key_Greater, "OemPeriod"},
                      NamedKey{Qt::Key_Less, "OemComma"}, NamedKey{Qt::Key_Backtab, "Tab"}));

// Whatever the toolkit calls a key, the library knows the name that it gets.
TEST(KeyNamesOfAllKeys, HaveCodesInTheLibrary) {
    std::set<std::string> names;
    const auto look = [&names](int key) {
        const std::string name = KeyNameOf(key);
        if (name.empty()) return;
        names.insert(name);
        EXPECT_GT(UI::GetKeyCodeFromName(name.c_str()), 0) << name;
    };
    for (int key = 0; key < 0x2000; ++key) look(key);
    for (int key = Qt::Key_Escape; key < Qt::Key_Escape + 0x2000; ++key) look(key);
    // Letters, digits, marks, and the keys that are neither.
    EXPECT_EQ(names.size(), 26U + 10U + 11U + 17U);
}

TEST(UnknownKeys, HaveNoName) {
    EXPECT_EQ(KeyNameOf(Qt::Key_F5), "");
    EXPECT_EQ(KeyNameOf(0), "");
    EXPECT_EQ(KeyNameOf(Qt::Key_VolumeUp), "");
}

}  // namespace
}  // namespace Corvanta::Host
