#include "host/DrawToolRecord.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/host/RecordedInterface.h"

namespace Corvanta::Host {
namespace {

using ::testing::ElementsAre;

class DrawToolRecordTest : public ::testing::Test {
protected:
    DrawToolRecordTest() {
        Drawing() = {};
        record_.Load();
        static_cast<void>(TakePushed());
    }

    DrawToolRecord record_;
};

TEST_F(DrawToolRecordTest, SendsTheSettingsOfTheLastTimeAsAWhole) {
    record_.SetEnabled(true);
    record_.Send();
    EXPECT_THAT(TakePushed(), ElementsAre("draw tool true 0 5 widths 10 20 10 font Arial 32 false false "
                                          "colours e85c41ff ffffffff"));
}

TEST_F(DrawToolRecordTest, StaysOnWhenItIsLoadedAgain) {
    record_.SetEnabled(true);
    Drawing().fontFamily = "Georgia";
    record_.Load();
    EXPECT_TRUE(record_.State().enabled);
    EXPECT_EQ(record_.FontFamily(), "Georgia");
}

TEST_F(DrawToolRecordTest, RemembersTheLastChosenOfTheToolsThatShareAButton) {
    for (const DrawTool tool : {DrawToolArrow, DrawToolDashedLine, DrawToolEllipse, DrawToolRectangle}) {
        record_.Choose(tool);
        EXPECT_EQ(record_.Tool(), tool);
        EXPECT_EQ(record_.ComplexTool(), tool);
        for (const DrawTool other : {DrawToolPencil, DrawToolLine, DrawToolText, DrawToolEraser}) {
            record_.Choose(other);
            EXPECT_EQ(record_.Tool(), other);
            EXPECT_EQ(record_.ComplexTool(), tool);
        }
    }
}

TEST_F(DrawToolRecordTest, KeepsAWidthForEachFamilyOfTools) {
    record_.SetStrokeWidth(3);
    for (const DrawTool tool : {DrawToolLine, DrawToolArrow, DrawToolDashedLine, DrawToolEllipse}) {
        record_.Choose(tool);
        EXPECT_EQ(record_.StrokeWidth(), 20.0) << tool;
    }
    record_.SetStrokeWidth(4);
    record_.Choose(DrawToolEraser);
    EXPECT_EQ(record_.StrokeWidth(), 10.0);
    record_.SetStrokeWidth(5);
    record_.Choose(DrawToolRectangle);
    EXPECT_EQ(record_.StrokeWidth(), 4.0);
    EXPECT_EQ(record_.State().pencilStrokeWidth, 3.0);
    EXPECT_EQ(record_.State().shapeStrokeWidth, 4.0);
    EXPECT_EQ(record_.State().eraserStrokeWidth, 5.0);
}

TEST_F(DrawToolRecordTest, HasNoWidthForTexts) {
    record_.Choose(DrawToolText);
    record_.SetStrokeWidth(7);
    EXPECT_EQ(record_.StrokeWidth(), 0.0);
    EXPECT_EQ(record_.State().pencilStrokeWidth, 10.0);
    EXPECT_EQ(record_.State().shapeStrokeWidth, 20.0);
    EXPECT_EQ(record_.State().eraserStrokeWidth, 10.0);
}

TEST_F(DrawToolRecordTest, FillsWhatHasAnInside) {
    for (unsigned tool = DrawToolPencil; tool <= DrawToolEraser; ++tool) {
        record_.Choose(static_cast<DrawTool>(tool));
        EXPECT_EQ(record_.HasFill(), tool == DrawToolEllipse || tool == DrawToolRectangle) << tool;
    }
}

TEST_F(DrawToolRecordTest, OwnsTheTextOfItsFont) {
    std::string family = "Times New Roman";
    record_.SetFontFamily(family);
    family = "gone";
    EXPECT_STREQ(record_.State().fontFamilyName, "Times New Roman");
    EXPECT_EQ(DrawToolRecord().FontFamily(), "");
}

}  // namespace
}  // namespace Corvanta::Host
