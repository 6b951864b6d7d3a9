// Texts on a system without fonts.
#include <gmock/gmock.h>

#include "drawing/TextBox.h"
#include "tests/drawing/ShapeTest.h"
#include "tests/drawing/TestFont.h"

namespace Corvanta::Drawing {
namespace {

using Testing::CountOf;
using ::testing::ElementsAre;
using Testing::Fake;
using Testing::kBackground;
using Testing::LogLine;

class MissingFontTest : public Testing::ShapeTest {
protected:
    static void SetUpTestSuite() {
        static const bool isReady = (Testing::UseNoFonts(), true);
        ASSERT_TRUE(isReady);
    }
};

TEST_F(MissingFontTest, LeavesTheTextOutAndSaysSoInEachFrame) {
    TextBox box;
    box.SetStart(200, 180);
    box.fontSize = 48;
    box.fontFamily = "Verdana";
    box.text = "Hello";
    const LogLine line{
        4, "Couldn't find requested font 'Verdana' and default font 'Arial'. Skip rendering text."};
    for (const TextBox::State state : {TextBox::State::Finished, TextBox::State::Editing}) {
        box.state = state;
        for (int frame = 0; frame < 2; ++frame) {
            Fake().ClearLogs();
            EXPECT_EQ(CountOf(Drawn(box), kBackground), 640U * 360U);
            EXPECT_THAT(Fake().Logs(), ElementsAre(line));
        }
    }
    EXPECT_TRUE(box.textures.empty());
}

}  // namespace
}  // namespace Corvanta::Drawing
