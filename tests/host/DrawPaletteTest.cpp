#include "host/DrawPalette.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QColorDialog>
#include <QComboBox>
#include <QImage>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QSlider>
#include <QTest>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/ColorPopup.h"
#include "host/ColorSwatch.h"
#include "host/HostWindow.h"
#include "tests/host/RecordedInterface.h"

namespace Corvanta::Host {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

class DrawPaletteTest : public ::testing::Test {
protected:
    DrawPaletteTest() {
        Drawing() = {};
        window_.show();
        window_.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window_));
        window_.Room().setFocus();
        static_cast<void>(TakePushed());
    }
    ~DrawPaletteTest() override { Drawing() = {}; }

    // As after the room was entered and its draw button pressed.
    void Open() {
        palette_.TellEntered();
        palette_.Open();
        static_cast<void>(TakePushed());
    }
    template <typename Widget>
    Widget& Part(const QString& name) {
        for (Widget* const part : palette_.findChildren<Widget*>()) {
            if (part->accessibleName() == name) return *part;
        }
        throw std::logic_error("no such part of the palette");
    }
    QToolButton& Button(const QString& name) { return Part<QToolButton>(name); }
    void Click(QWidget& widget) { QTest::mouseClick(&widget, Qt::LeftButton); }
    void ChooseInMenu(const QString& name) {
        for (QAction* const entry : palette_.findChild<QMenu*>()->actions()) {
            if (entry->text() == name) return entry->trigger();
        }
        throw std::logic_error("no such tool in the menu");
    }
    // The last record that was handed over, empty without one.
    static std::string LastSent() {
        std::string last;
        for (const std::string& call : TakePushed()) {
            if (call.starts_with("draw tool")) last = call;
        }
        return last;
    }

    HostWindow window_{"Review - Corvanta", 1280, 720};
    int closes_ = 0;
    DrawPalette palette_{window_, [this] { ++closes_; }};
};

TEST_F(DrawPaletteTest, HandsTheSettingsToEachNewRoom) {
    palette_.TellEntered();
    EXPECT_THAT(TakePushed(), ElementsAre("load draw tool", StartsWith("draw tool false 0 5 ")));
    palette_.Open();
    Click(Button("Eraser"));
    static_cast<void>(TakePushed());
    palette_.TellEntered();
    EXPECT_THAT(TakePushed(), ElementsAre(StartsWith("draw tool true 7 5 "))) << "what the person has chosen";
}

TEST_F(DrawPaletteTest, SwitchesDrawingOnAndOffWithItself) {
    palette_.TellEntered();
    static_cast<void>(TakePushed());
    EXPECT_FALSE(palette_.isVisible());
    palette_.Open();
    EXPECT_TRUE(palette_.isVisible());
    EXPECT_THAT(TakePushed(), ElementsAre(StartsWith("draw tool true 0 ")));
    palette_.Close();
    EXPECT_FALSE(palette_.isVisible());
    EXPECT_THAT(TakePushed(), ElementsAre(StartsWith("draw tool false 0 ")));
}

TEST_F(DrawPaletteTest, AsksToBeClosedByItsButton) {
    Open();
    Click(Button("Close"));
    EXPECT_EQ(closes_, 1);
}

TEST_F(DrawPaletteTest, StandsInTheMiddleOfTheRoomsLowerEdge) {
    Open();
    const QRect room = window_.RoomFrame().geometry();
    EXPECT_NEAR(palette_.geometry().center().x(), room.center().x(), 1);
    EXPECT_GE(palette_.geometry().top(), room.bottom() - 100);
    EXPECT_LE(palette_.geometry().bottom(), room.bottom());
    window_.resize(1500, 900);
    QApplication::processEvents();
    EXPECT_NEAR(palette_.geometry().center().x(), 750, 1);
    EXPECT_GE(palette_.geometry().top(), 800);
}

TEST_F(DrawPaletteTest, TakesMoreRowsInANarrowWindow) {
    Open();
    const int oneRow = palette_.height();
    window_.resize(480, 400);
    QApplication::processEvents();
    EXPECT_GT(palette_.height(), oneRow);
    EXPECT_LE(palette_.width(), 480);
    for (QToolButton* const button : palette_.findChildren<QToolButton*>()) {
        if (!button->isVisible()) continue;
        const QRect place(button->mapTo(&palette_, QPoint(0, 0)), button->size());
        EXPECT_TRUE(palette_.rect().contains(place)) << button->accessibleName().toStdString();
    }
}

TEST_F(DrawPaletteTest, ChoosesEveryTool) {
    Open();
    const std::vector<std::pair<const char*, int>> simple{
        {"Line", 1}, {"Text", 6}, {"Eraser", 7}, {"Pencil", 0}};
    for (const auto& [name, tool] : simple) {
        Click(Button(name));
        EXPECT_THAT(LastSent(), StartsWith("draw tool true " + std::to_string(tool) + " 5 ")) << name;
        EXPECT_TRUE(Button(name).isChecked()) << name;
    }
    const std::vector<std::pair<const char*, int>> complex{
        {"Arrow", 2}, {"Dashed line", 3}, {"Ellipse", 4}, {"Rectangle", 5}};
    for (const auto& [name, tool] : complex) {
        ChooseInMenu(name);
        std::string expected = "draw tool true ";
        expected += std::to_string(tool) + ' ' + std::to_string(tool) + ' ';
        EXPECT_THAT(LastSent(), StartsWith(expected)) << name;
        EXPECT_TRUE(Button(name).isChecked()) << "the one button of the four shows the last chosen";
    }
}

TEST_F(DrawPaletteTest, ShowsTheLastChosenOfTheFourAndChoosesItAgain) {
    Drawing().complexSelectedShape = DrawToolEllipse;
    Open();
    EXPECT_TRUE(Button("Pencil").isChecked());
    QToolButton& four = Button("Ellipse");
    QTest::mouseClick(&four, Qt::LeftButton, {}, {10, four.height() / 2});
    EXPECT_THAT(LastSent(), StartsWith("draw tool true 4 4 "));
}

TEST_F(DrawPaletteTest, ChangesTheWidthOfTheChosenTool) {
    Open();
    auto& width = Part<QSlider>("Width");
    EXPECT_EQ(width.value(), 10);
    width.setValue(14);
    EXPECT_THAT(LastSent(), HasSubstr("widths 14 20 10 "));
    Click(Button("Line"));
    EXPECT_EQ(width.value(), 20);
    EXPECT_THAT(LastSent(), HasSubstr("widths 14 20 10 "));
    width.setValue(33);
    EXPECT_THAT(LastSent(), HasSubstr("widths 14 33 10 "));
    Click(Button("Eraser"));
    width.setValue(50);
    EXPECT_THAT(LastSent(), HasSubstr("widths 14 33 50 "));
}

TEST_F(DrawPaletteTest, LeavesAWidthBeyondItsSliderAsItIs) {
    Drawing().pencilStrokeWidth = 4000.5;
    Open();
    auto& width = Part<QSlider>("Width");
    EXPECT_EQ(width.value(), width.maximum());
    Click(Button("Bold"));
    EXPECT_THAT(LastSent(), HasSubstr("widths 4000.5 20 10 "));
}

TEST_F(DrawPaletteTest, ShowsAnyWidthInAFewDigits) {
    Drawing().pencilStrokeWidth = 1e308;
    Open();
    const auto shows = [this](const QString& text) {
        const auto labels = palette_.findChildren<QLabel*>();
        return std::ranges::any_of(labels, [&](const QLabel* label) { return label->text() == text; });
    };
    EXPECT_TRUE(shows("1e+308"));
    EXPECT_LE(palette_.width(), window_.width());
    Part<QSlider>("Width").setValue(14);
    EXPECT_TRUE(shows("14"));
}

TEST_F(DrawPaletteTest, OffersTheFontWithTheTextToolAlone) {
    Open();
    EXPECT_FALSE(Part<QComboBox>("Font").isVisible());
    EXPECT_TRUE(Part<QSlider>("Width").isVisible());
    const QRect before = Button("Undo").geometry();
    Click(Button("Text"));
    EXPECT_TRUE(Part<QComboBox>("Font").isVisible());
    EXPECT_FALSE(Part<QSlider>("Width").isVisible());
    EXPECT_EQ(Button("Undo").geometry(), before);
}

TEST_F(DrawPaletteTest, ChangesTheFont) {
    Drawing().fontFamily = "Papyrus";
    Drawing().fontSize = 33.0;
    Open();
    Click(Button("Text"));
    EXPECT_EQ(Part<QComboBox>("Font").currentText(), "Papyrus");
    EXPECT_EQ(Part<QComboBox>("Font size").currentText(), "33");
    EXPECT_THAT(LastSent(), HasSubstr("font Papyrus 33 false false"));
    Part<QComboBox>("Font").setCurrentText("Arial");
    EXPECT_THAT(LastSent(), HasSubstr("font Arial 33 false false"));
    Part<QComboBox>("Font size").setCurrentText("64");
    EXPECT_THAT(LastSent(), HasSubstr("font Arial 64 false false"));
    Click(Button("Bold"));
    EXPECT_THAT(LastSent(), HasSubstr("font Arial 64 true false"));
    Click(Button("Italic"));
    EXPECT_THAT(LastSent(), HasSubstr("font Arial 64 true true"));
    Click(Button("Bold"));
    EXPECT_THAT(LastSent(), HasSubstr("font Arial 64 false true"));
}

TEST_F(DrawPaletteTest, KeepsASizeThatIsNone) {
    Drawing().fontSize = -1.0;
    Open();
    EXPECT_EQ(Part<QComboBox>("Font size").currentIndex(), -1);
    Click(Button("Italic"));
    EXPECT_THAT(LastSent(), HasSubstr("font Arial -1 false true"));
}

TEST_F(DrawPaletteTest, ChangesTheColours) {
    Open();
    // Closed ones go a moment later.
    const auto popup = [this]() -> ColorPopup& {
        for (QFrame* const frame : palette_.findChildren<QFrame*>()) {
            auto* const colors = dynamic_cast<ColorPopup*>(frame);
            if (colors != nullptr && colors->isVisible()) return *colors;
        }
        throw std::logic_error("no colours are offered");
    };
    const auto swatch = [&popup](const QString& name) {
        for (QToolButton* const button : popup().findChildren<QToolButton*>()) {
            if (button->accessibleName() == name) return button;
        }
        throw std::logic_error("no such colour");
    };
    Click(Button("Colour"));
    Click(*swatch("Blue"));
    EXPECT_THAT(LastSent(), HasSubstr("colours 2196f3ff ffffffff"));
    ChooseInMenu("Ellipse");
    static_cast<void>(TakePushed());
    Click(Button("Fill"));
    popup().findChild<QSlider*>()->setValue(64);
    EXPECT_THAT(LastSent(), HasSubstr("colours 2196f3ff ffffff40"));
    Click(*swatch("Black"));
    EXPECT_THAT(LastSent(), HasSubstr("colours 2196f3ff 00000040")) << "as opaque as before";
}

TEST_F(DrawPaletteTest, TakesAnyOtherColourFromADialog) {
    Open();
    Click(Button("Colour"));
    QPushButton* more = nullptr;
    for (QPushButton* const button : palette_.findChildren<QPushButton*>()) {
        if (button->text() == "More colours...") more = button;
    }
    ASSERT_NE(more, nullptr);
    Click(*more);
    auto* const dialog = window_.findChild<QColorDialog*>();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->currentColor(), QColor(0xE8, 0x5C, 0x41));
    dialog->setCurrentColor(QColor(0x12, 0x34, 0x56, 0x78));
    dialog->accept();
    EXPECT_THAT(LastSent(), HasSubstr("colours 12345678 ffffffff"));
}

TEST_F(DrawPaletteTest, OffersTheColoursThatTheToolDrawsWith) {
    Open();
    const auto enabled = [this] {
        return std::pair(Button("Colour").isEnabled(), Button("Fill").isEnabled());
    };
    EXPECT_EQ(enabled(), std::pair(true, false));
    ChooseInMenu("Rectangle");
    EXPECT_EQ(enabled(), std::pair(true, true));
    Click(Button("Eraser"));
    EXPECT_EQ(enabled(), std::pair(false, false));
}

TEST_F(DrawPaletteTest, UndoesAndRedoesWhatTheRoomSaysCanBe) {
    Open();
    EXPECT_FALSE(Button("Undo").isEnabled());
    EXPECT_FALSE(Button("Redo").isEnabled());
    palette_.SetHistory(true, false);
    EXPECT_TRUE(Button("Undo").isEnabled());
    EXPECT_FALSE(Button("Redo").isEnabled());
    palette_.SetHistory(true, true);
    Click(Button("Undo"));
    Click(Button("Redo"));
    Click(Button("Clear"));
    EXPECT_THAT(TakePushed(), ElementsAre("undo", "redo", "clear"));
}

TEST_F(DrawPaletteTest, HasKeysForUndoAndRedoWhileItIsOpen) {
    const auto press = [this](Qt::KeyboardModifiers modifiers) {
        QTest::keyClick(&window_.Room(), Qt::Key_Z, modifiers);
        std::vector<std::string> calls = TakePushed();
        std::erase_if(calls, [](const std::string& call) { return call.starts_with("key"); });
        return calls;
    };
    palette_.TellEntered();
    palette_.SetHistory(true, true);
    static_cast<void>(TakePushed());
    EXPECT_THAT(press(Qt::ControlModifier), IsEmpty());
    Open();
    EXPECT_THAT(press(Qt::ControlModifier), ElementsAre("undo"));
    EXPECT_THAT(press(Qt::ControlModifier | Qt::ShiftModifier), ElementsAre("redo"));
    palette_.SetHistory(false, false);
    EXPECT_THAT(press(Qt::ControlModifier), IsEmpty());
    palette_.SetHistory(true, true);
    palette_.Close();
    static_cast<void>(TakePushed());
    EXPECT_THAT(press(Qt::ControlModifier), IsEmpty());
}

TEST_F(DrawPaletteTest, LeavesTheKeyboardToTheRoom) {
    Open();
    EXPECT_EQ(QApplication::focusWidget(), &window_.Room());
    for (const char* const name : {"Text", "Bold", "Rectangle", "Clear"}) {
        QWidget& button = Button(name);
        QTest::mouseClick(&button, Qt::LeftButton, {}, {10, 10});
        EXPECT_EQ(QApplication::focusWidget(), &window_.Room()) << name;
    }
    Click(Part<QSlider>("Width"));
    EXPECT_EQ(QApplication::focusWidget(), &window_.Room());
}

TEST_F(DrawPaletteTest, GivesTheKeyboardBackWhenItCloses) {
    Open();
    Button("Pencil").setFocus();
    EXPECT_EQ(QApplication::focusWidget(), &Button("Pencil"));
    palette_.Close();
    EXPECT_EQ(QApplication::focusWidget(), &window_.Room());
}

TEST(ColorSwatch, TurnsTheLibrarysColoursIntoTheToolkitsAndBack) {
    EXPECT_EQ(ToQColor(0x12345678), QColor(0x12, 0x34, 0x56, 0x78));
    for (const std::uint32_t color : {0x00000000U, 0xFFFFFFFFU, 0xE85C41FFU, 0x01020380U}) {
        EXPECT_EQ(FromQColor(ToQColor(color)), color);
    }
}

TEST(ColorSwatch, ShowsTheColourOverChequersWhereItIsTransparent) {
    const auto pixels = [](std::uint32_t rgba) {
        QImage image(20, 20, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        DrawSwatch(painter, QRectF(image.rect()), rgba);
        painter.end();
        return std::pair(image.pixelColor(6, 6), image.pixelColor(14, 6));
    };
    EXPECT_EQ(pixels(0x2196F3FF).first, QColor(0x21, 0x96, 0xF3));
    EXPECT_EQ(pixels(0x2196F3FF).second, QColor(0x21, 0x96, 0xF3));
    EXPECT_NE(pixels(0x2196F340).first, pixels(0x2196F340).second);
}

}  // namespace
}  // namespace Corvanta::Host
