#include "host/InputForwarder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEnterEvent>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QString>
#include <QWheelEvent>

#include "tests/host/RecordedInterface.h"

namespace Corvanta::Host {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr int kWidth = 200;
constexpr int kHeight = 100;
constexpr QPointF kPlace(50, 75);
constexpr const char* kMovedToPlace = "move 0 0.25 0.75";
// Some keys' places on a keyboard.
constexpr quint32 kOneScanCode = 10;
constexpr quint32 kAScanCode = 38;
constexpr quint32 kLeftShiftScanCode = 50;
constexpr quint32 kRightShiftScanCode = 62;

class InputForwarderTest : public ::testing::Test {
protected:
    InputForwarderTest() {
        surface_.resize(kWidth, kHeight);
        static_cast<void>(TakePushed());
    }

    void Send(QEvent&& event) { QCoreApplication::sendEvent(&surface_, &event); }
    void Button(QEvent::Type type, Qt::MouseButton button) {
        Send(QMouseEvent(type, kPlace, kPlace, button, button, Qt::NoModifier));
    }
    void Wheel(int x, int y) {
        Send(QWheelEvent(kPlace, kPlace, QPoint(), QPoint(x, y), Qt::NoButton, Qt::NoModifier,
                         Qt::NoScrollPhase, false));
    }
    void Key(QEvent::Type type, int key, quint32 scanCode, bool repeated = false) {
        Send(QKeyEvent(type, key, Qt::NoModifier, scanCode, 0, 0, QString(), repeated));
    }
    void Press(int key, quint32 scanCode) { Key(QEvent::KeyPress, key, scanCode); }
    void Release(int key, quint32 scanCode) { Key(QEvent::KeyRelease, key, scanCode); }
    void Focus(QEvent::Type type) { Send(QFocusEvent(type)); }

    QWidget surface_;
    const InputForwarder forwarder_{surface_, 0};
};

TEST_F(InputForwarderTest, TellsThePointersPlaceAsFractionsOfTheSurface) {
    const auto moveTo = [this](QPointF place) {
        Send(QMouseEvent(QEvent::MouseMove, place, place, Qt::NoButton, Qt::NoButton, Qt::NoModifier));
    };
    moveTo({0, 0});
    moveTo(kPlace);
    moveTo({200, 100});
    moveTo({-100, 150});
    EXPECT_THAT(TakePushed(), ElementsAre("move 0 0 0", kMovedToPlace, "move 0 1 1", "move 0 -0.5 1.5"));
    surface_.resize(400, 300);
    moveTo(kPlace);
    EXPECT_THAT(TakePushed(), ElementsAre("move 0 0.125 0.25"));
}

TEST_F(InputForwarderTest, TellsWhereThePointerEntersAndThatItLeaves) {
    Send(QEnterEvent(kPlace, kPlace, kPlace));
    EXPECT_THAT(TakePushed(), ElementsAre(kMovedToPlace));
    Send(QEvent(QEvent::Leave));
    EXPECT_THAT(TakePushed(), ElementsAre("move 0 -1 -1"));
}

TEST_F(InputForwarderTest, SendsThePlaceOfAPressBeforeThePress) {
    Button(QEvent::MouseButtonPress, Qt::LeftButton);
    EXPECT_THAT(TakePushed(), ElementsAre(kMovedToPlace, "down 0"));
    Button(QEvent::MouseButtonRelease, Qt::LeftButton);
    EXPECT_THAT(TakePushed(), ElementsAre("up 0"));
}

TEST_F(InputForwarderTest, TakesADoubleClickForTwoPresses) {
    Button(QEvent::MouseButtonPress, Qt::LeftButton);
    Button(QEvent::MouseButtonRelease, Qt::LeftButton);
    Button(QEvent::MouseButtonDblClick, Qt::LeftButton);
    Button(QEvent::MouseButtonRelease, Qt::LeftButton);
    EXPECT_THAT(TakePushed(), ElementsAre(kMovedToPlace, "down 0", "up 0", kMovedToPlace, "down 0", "up 0"));
}

TEST_F(InputForwarderTest, HasOneButtonTheLeftOne) {
    for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton, Qt::BackButton}) {
        Button(QEvent::MouseButtonPress, button);
        Button(QEvent::MouseButtonDblClick, button);
        Button(QEvent::MouseButtonRelease, button);
    }
    EXPECT_THAT(TakePushed(), IsEmpty());
}

TEST_F(InputForwarderTest, GathersSmallTurnsOfTheWheelToSteps) {
    Wheel(0, 5);
    EXPECT_THAT(TakePushed(), IsEmpty());
    Wheel(0, 5);
    EXPECT_THAT(TakePushed(), ElementsAre("wheel 0 0 1"));
    Wheel(0, -25);
    EXPECT_THAT(TakePushed(), ElementsAre("wheel 0 0 -2"));
    Wheel(0, -5);
    EXPECT_THAT(TakePushed(), ElementsAre("wheel 0 0 -1"));
}

TEST_F(InputForwarderTest, MakesTwelveStepsOfANotch) {
    Wheel(0, 120);
    EXPECT_THAT(TakePushed(), ElementsAre("wheel 0 0 12"));
}

TEST_F(InputForwarderTest, TellsSidewaysTurnsOfTheWheel) {
    Wheel(-20, 0);
    EXPECT_THAT(TakePushed(), ElementsAre("wheel 0 -2 0"));
    Wheel(10, -10);
    EXPECT_THAT(TakePushed(), ElementsAre("wheel 0 1 -1"));
}

TEST_F(InputForwarderTest, TellsKeysByTheirNames) {
    Press(Qt::Key_A, kAScanCode);
    EXPECT_THAT(TakePushed(), ElementsAre("key 0 A"));
    Release(Qt::Key_A, kAScanCode);
    EXPECT_THAT(TakePushed(), ElementsAre("key up 0 A"));
}

TEST_F(InputForwarderTest, TellsOfAHeldKeyOnce) {
    Press(Qt::Key_A, kAScanCode);
    for (const auto type : {QEvent::KeyRelease, QEvent::KeyPress, QEvent::KeyRelease, QEvent::KeyPress}) {
        Key(type, Qt::Key_A, kAScanCode, true);
    }
    EXPECT_THAT(TakePushed(), ElementsAre("key 0 A"));
    Release(Qt::Key_A, kAScanCode);
    EXPECT_THAT(TakePushed(), ElementsAre("key up 0 A"));
}

TEST_F(InputForwarderTest, TellsNothingOfKeysWithoutAName) {
    Press(Qt::Key_F5, 71);
    Release(Qt::Key_F5, 71);
    EXPECT_THAT(TakePushed(), IsEmpty());
}

TEST_F(InputForwarderTest, ReleasesAKeyUnderTheNameOfItsPress) {
    // On this layout Shift makes a quotation mark of the key, whose name is that of another key.
    Press(Qt::Key_Shift, kLeftShiftScanCode);
    Press(Qt::Key_QuoteDbl, kOneScanCode);
    Release(Qt::Key_Shift, kLeftShiftScanCode);
    Release(Qt::Key_1, kOneScanCode);
    EXPECT_THAT(TakePushed(), ElementsAre("key 0 LeftShift", "key 0 OemQuotes", "key up 0 LeftShift",
                                          "key up 0 OemQuotes"));
}

TEST_F(InputForwarderTest, ReleasesOnlyWhatWasPressedHere) {
    Release(Qt::Key_A, kAScanCode);
    EXPECT_THAT(TakePushed(), IsEmpty());
    Press(Qt::Key_A, kAScanCode);
    Release(Qt::Key_A, kAScanCode);
    Release(Qt::Key_A, kAScanCode);
    EXPECT_THAT(TakePushed(), ElementsAre("key 0 A", "key up 0 A"));
}

TEST_F(InputForwarderTest, TellsKeysApartThatNoKeyboardMade) {
    Press(Qt::Key_A, 0);
    Press(Qt::Key_B, 0);
    Release(Qt::Key_A, 0);
    Release(Qt::Key_B, 0);
    EXPECT_THAT(TakePushed(), ElementsAre("key 0 A", "key 0 B", "key up 0 A", "key up 0 B"));
}

TEST_F(InputForwarderTest, LetsTheLibraryTakeTextWhileTheSurfaceHasTheFocus) {
    Focus(QEvent::FocusIn);
    EXPECT_THAT(TakePushed(), ElementsAre("text true"));
    Focus(QEvent::FocusOut);
    EXPECT_THAT(TakePushed(), ElementsAre("text false"));
}

TEST_F(InputForwarderTest, ReleasesHeldKeysAfterTheFocusHasGone) {
    Press(Qt::Key_A, kAScanCode);
    Press(Qt::Key_Shift, kRightShiftScanCode);
    static_cast<void>(TakePushed());
    Focus(QEvent::FocusOut);
    // Switching text off discards the keys that wait, so the releases come after it.
    EXPECT_THAT(TakePushed(), ElementsAre("text false", "key up 0 A", "key up 0 LeftShift"));
    Release(Qt::Key_A, kAScanCode);
    Focus(QEvent::FocusOut);
    EXPECT_THAT(TakePushed(), ElementsAre("text false"));
}

class TypingTest : public InputForwarderTest {
protected:
    TypingTest() { Drawing().textOpen = true; }
    ~TypingTest() override { Drawing().textOpen = false; }

    // Whether the surface keeps the key from the shortcuts.
    bool Keeps(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QKeyEvent event(QEvent::ShortcutOverride, key, modifiers);
        event.ignore();
        QCoreApplication::sendEvent(&surface_, &event);
        return event.isAccepted();
    }
};

TEST_F(TypingTest, KeepsWhatIsTypedFromTheShortcuts) {
    for (const int key : {static_cast<int>(Qt::Key_A), static_cast<int>(Qt::Key_1),
                          static_cast<int>(Qt::Key_Space), static_cast<int>(Qt::Key_Return),
                          static_cast<int>(Qt::Key_Backspace), static_cast<int>(Qt::Key_AsciiTilde)}) {
        EXPECT_TRUE(Keeps(key)) << key;
    }
    EXPECT_TRUE(Keeps(Qt::Key_A, Qt::ShiftModifier));
    for (const int key :
         {static_cast<int>(Qt::Key_F2), static_cast<int>(Qt::Key_Escape), static_cast<int>(Qt::Key_Left)}) {
        EXPECT_FALSE(Keeps(key)) << key;
    }
    EXPECT_FALSE(Keeps(Qt::Key_Z, Qt::ControlModifier));
    Drawing().textOpen = false;
    EXPECT_FALSE(Keeps(Qt::Key_A));
}

TEST_F(TypingTest, WritesNoLetterOfACommand) {
    const auto chord = [this](Qt::KeyboardModifier modifier) {
        Send(QKeyEvent(QEvent::KeyPress, Qt::Key_C, modifier, kAScanCode, 0, 0));
        Send(QKeyEvent(QEvent::KeyRelease, Qt::Key_C, modifier, kAScanCode, 0, 0));
        return TakePushed();
    };
    for (const auto modifier : {Qt::ControlModifier, Qt::AltModifier, Qt::MetaModifier}) {
        EXPECT_THAT(chord(modifier), IsEmpty());
    }
    EXPECT_THAT(chord(Qt::ShiftModifier), ElementsAre("key 0 C", "key up 0 C"));
    Drawing().textOpen = false;
    EXPECT_THAT(chord(Qt::ControlModifier), ElementsAre("key 0 C", "key up 0 C"));
}

TEST_F(TypingTest, WritesNoOtherSignThanTheKeypads) {
    const auto stroke = [this](Qt::Key key) {
        Send(QKeyEvent(QEvent::KeyPress, key, Qt::KeypadModifier, kAScanCode, 0, 0));
        Send(QKeyEvent(QEvent::KeyRelease, key, Qt::KeypadModifier, kAScanCode, 0, 0));
        return TakePushed();
    };
    EXPECT_THAT(stroke(Qt::Key_Asterisk), IsEmpty());
    EXPECT_THAT(stroke(Qt::Key_Plus), IsEmpty());
    EXPECT_THAT(stroke(Qt::Key_5), ElementsAre("key 0 D5", "key up 0 D5"));
    EXPECT_THAT(stroke(Qt::Key_Minus), ElementsAre("key 0 OemMinus", "key up 0 OemMinus"));
    EXPECT_THAT(stroke(Qt::Key_Enter), ElementsAre("key 0 Return", "key up 0 Return"));
    // With Shift it is the key in the row of digits.
    Press(Qt::Key_Asterisk, kAScanCode);
    EXPECT_THAT(TakePushed(), ElementsAre("key 0 D8"));
    Release(Qt::Key_Asterisk, kAScanCode);
    static_cast<void>(TakePushed());
    Drawing().textOpen = false;
    EXPECT_THAT(stroke(Qt::Key_Plus), ElementsAre("key 0 OemPlus", "key up 0 OemPlus"));
}

TEST_F(TypingTest, HandsTypedKeysToTheLibrary) {
    Press(Qt::Key_Shift, kLeftShiftScanCode);
    Press(Qt::Key_A, kAScanCode);
    Release(Qt::Key_A, kAScanCode);
    EXPECT_THAT(TakePushed(), ElementsAre("key 0 LeftShift", "key 0 A", "key up 0 A"));
}

TEST_F(InputForwarderTest, NamesItsWindow) {
    QWidget other;
    other.resize(kWidth, kHeight);
    const InputForwarder forwarder(other, 2);
    QMouseEvent press(QEvent::MouseButtonPress, kPlace, kPlace, Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(&other, &press);
    EXPECT_THAT(TakePushed(), ElementsAre("move 2 0.25 0.75", "down 2"));
}

}  // namespace
}  // namespace Corvanta::Host
