#include "drawing/ToolShape.h"

#include <gmock/gmock.h>

#include <limits>

#include "drawing/Ellipse.h"
#include "drawing/ErasedLinePath.h"
#include "drawing/Line.h"
#include "drawing/LinePath.h"
#include "drawing/Rectangle.h"
#include "drawing/TextBox.h"
#include "tests/drawing/LocalUser.h"

namespace Corvanta::Drawing {
namespace {

using ::testing::IsEmpty;

const Color kPrimary(0xE8, 0x5C, 0x41, 0xFF);
const Color kSecondary(0xFF, 0xFF, 0xFF, 0xFF);

class ToolShapes : public ::testing::Test {
protected:
    template <typename ShapeClass>
    ShapeClass& Make(DrawToolState state) {
        shape_ = MakeToolShape(state, "Georgia");
        return dynamic_cast<ShapeClass&>(*shape_);
    }
    template <typename ShapeClass>
    ShapeClass& Make(uint32_t tool) {
        return Make<ShapeClass>(Testing::ToolState(tool));
    }
    static uint32_t StrokeWidthFor(double width) {
        DrawToolState state = Testing::ToolState(DrawToolPencil);
        state.pencilStrokeWidth = width;
        return MakeToolShape(state, "")->strokeWidth;
    }

private:
    std::shared_ptr<Shape> shape_;
};

TEST_F(ToolShapes, ArePencilStrokesInThePrimaryColour) {
    DrawToolState state = Testing::ToolState(DrawToolPencil);
    state.pencilStrokeWidth = 7.9;
    const auto& stroke = Make<LinePath>(state);
    EXPECT_EQ(stroke.color, kPrimary);
    EXPECT_EQ(stroke.strokeWidth, 7U);
    EXPECT_EQ(dynamic_cast<const ErasedLinePath*>(&stroke), nullptr);
    EXPECT_THAT(stroke.controlId, IsEmpty());
}

TEST_F(ToolShapes, AreSolidLines) {
    DrawToolState state = Testing::ToolState(DrawToolLine);
    state.shapeStrokeWidth = 3.9;
    const auto& line = Make<Line>(state);
    EXPECT_EQ(line.color, kPrimary);
    EXPECT_EQ(line.strokeWidth, 3U);
    EXPECT_EQ(line.dash, 0U);
    EXPECT_FALSE(line.arrow);
}

TEST_F(ToolShapes, AreArrows) {
    const auto& line = Make<Line>(DrawToolArrow);
    EXPECT_EQ(line.color, kPrimary);
    EXPECT_EQ(line.strokeWidth, 20U);
    EXPECT_EQ(line.dash, 0U);
    EXPECT_TRUE(line.arrow);
}

TEST_F(ToolShapes, AreDashedLinesWithDashesOfTwiceTheWidth) {
    DrawToolState state = Testing::ToolState(DrawToolDashedLine);
    state.shapeStrokeWidth = 3.9;
    const auto& line = Make<Line>(state);
    EXPECT_EQ(line.color, kPrimary);
    EXPECT_EQ(line.strokeWidth, 3U);
    EXPECT_EQ(line.dash, 7U);
    EXPECT_FALSE(line.arrow);
}

TEST_F(ToolShapes, AreEllipsesFilledInTheSecondaryColour) {
    const auto& ellipse = Make<Ellipse>(DrawToolEllipse);
    EXPECT_EQ(ellipse.strokeColor, kPrimary);
    EXPECT_EQ(ellipse.fillColor, kSecondary);
    EXPECT_EQ(ellipse.strokeWidth, 20U);
}

TEST_F(ToolShapes, AreRectanglesFilledInTheSecondaryColour) {
    const auto& rectangle = Make<Rectangle>(DrawToolRectangle);
    EXPECT_EQ(rectangle.strokeColor, kPrimary);
    EXPECT_EQ(rectangle.fillColor, kSecondary);
    EXPECT_EQ(rectangle.strokeWidth, 20U);
}

TEST_F(ToolShapes, AreEmptyTextsOpenForTyping) {
    DrawToolState state = Testing::ToolState(DrawToolText);
    state.fontSize = 40.5;
    state.useBoldFont = true;
    const auto& text = Make<TextBox>(state);
    EXPECT_THAT(text.text, IsEmpty());
    EXPECT_EQ(text.state, TextBox::State::Editing);
    EXPECT_EQ(text.fontFamily, "Georgia");
    EXPECT_EQ(text.fontSize, 40.5);
    EXPECT_EQ(text.fontStyle, 1);
    EXPECT_EQ(text.color, kPrimary);
    EXPECT_EQ(text.strokeWidth, 0U);
}

TEST_F(ToolShapes, AreTextsOfAtLeastOneUnit) {
    const auto sizeFor = [this](double size) {
        DrawToolState state = Testing::ToolState(DrawToolText);
        state.fontSize = size;
        return Make<TextBox>(state).fontSize;
    };
    EXPECT_EQ(sizeFor(0), 1);
    EXPECT_EQ(sizeFor(0.99), 1);
    EXPECT_EQ(sizeFor(-1e308), 1);
    EXPECT_EQ(sizeFor(std::numeric_limits<double>::quiet_NaN()), 1);
    EXPECT_EQ(sizeFor(1.5), 1.5);
    EXPECT_EQ(sizeFor(1e308), 1e308);
}

TEST_F(ToolShapes, TakeItalicsForTexts) {
    DrawToolState state = Testing::ToolState(DrawToolText);
    state.useItalicizedFont = true;
    EXPECT_EQ(Make<TextBox>(state).fontStyle, 2);
    state.useBoldFont = true;
    EXPECT_EQ(Make<TextBox>(state).fontStyle, 3);
}

TEST_F(ToolShapes, AreEraserStrokes) {
    DrawToolState state = Testing::ToolState(DrawToolEraser);
    state.eraserStrokeWidth = 33.3;
    EXPECT_EQ(Make<ErasedLinePath>(state).strokeWidth, 33U);
}

TEST_F(ToolShapes, AreNoneForAToolAboveSeven) {
    EXPECT_EQ(MakeToolShape(Testing::ToolState(8), "Arial"), nullptr);
    EXPECT_EQ(MakeToolShape(Testing::ToolState(0xFFFFFFFF), "Arial"), nullptr);
}

TEST_F(ToolShapes, KeepTheLowBitsOfAWidthThatNoStrokeHas) {
    EXPECT_EQ(StrokeWidthFor(0), 0U);
    EXPECT_EQ(StrokeWidthFor(0.9), 0U);
    EXPECT_EQ(StrokeWidthFor(70000), 70000U);
    EXPECT_EQ(StrokeWidthFor(-1.5), 0xFFFFFFFFU);
    EXPECT_EQ(StrokeWidthFor(4294967295.0), 0xFFFFFFFFU);
    EXPECT_EQ(StrokeWidthFor(4294967298.0), 2U);
    EXPECT_EQ(StrokeWidthFor(1e308), 0U);
    EXPECT_EQ(StrokeWidthFor(-1e308), 0U);
    EXPECT_EQ(StrokeWidthFor(std::numeric_limits<double>::quiet_NaN()), 0U);
    EXPECT_EQ(StrokeWidthFor(std::numeric_limits<double>::infinity()), 0U);
}

}  // namespace
}  // namespace Corvanta::Drawing
