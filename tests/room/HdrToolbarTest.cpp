// The bar's menus over the SDL build with the HDR additions: the entry for HDR output, and its brightness.
#include <gtest/gtest.h>

#include "tests/fake_platform/FakeSdlAdditions.h"
#include "tests/room/ToolbarTest.h"

namespace Corvanta::Room {
namespace {

using namespace Corvanta::Testing;

constexpr const char* kHdrEntry = "Reset SDR brightness";

class HdrToolbarTest : public ToolbarTest {
protected:
    HdrToolbarTest() {
        SdlAdditions().Reset();
        Sdl().AllowPlanarHdrTextures(true);
        Sdl().AllowHdrRendererFlag(true);
    }
    ~HdrToolbarTest() override {
        view.reset();
        SdlAdditions().Reset();
    }
    // The output changes, as the host's window moves to another display.
    void MoveToOutput(int colorSpace) {
        SdlAdditions().SetRenderColorSpace(colorSpace);
        Push(EventOf(kRenderColorSpaceChangedEvent));
        view->Tick();
    }
    [[nodiscard]] bool HasEntry() { return LabelsOf(OptionsMenu()).back() == kHdrEntry; }
    [[nodiscard]] static std::vector<std::string> KeptBrightness() {
        std::vector<std::string> values;
        for (const Call& call : Calls().Of("Configuration_SetPropertyInt")) {
            EXPECT_EQ(call.arguments[0], "SDRBrightnessBoost");
            values.push_back(call.arguments[1]);
        }
        return values;
    }
};

TEST_F(HdrToolbarTest, HasAnEntryFromTheStartOnAnHdrOutput) {
    SdlAdditions().SetRenderColorSpace(kColorSpaceBt2020);
    OpenBar();
    EXPECT_TRUE(HasEntry());
    EXPECT_EQ(OptionsMenu().GetItems().size(), 6U);
}

TEST_F(HdrToolbarTest, TheEntryComesAndGoesWithTheOutput) {
    OpenBar();
    EXPECT_FALSE(HasEntry());
    for (int i = 0; i < 3; ++i) {
        MoveToOutput(kColorSpaceBt2020);
        EXPECT_TRUE(HasEntry());
        EXPECT_EQ(OptionsMenu().GetItems().size(), 6U);
        // The same again changes nothing.
        MoveToOutput(kColorSpaceBt2020);
        EXPECT_EQ(OptionsMenu().GetItems().size(), 6U);
        MoveToOutput(kColorSpaceSdr);
        EXPECT_FALSE(HasEntry());
        EXPECT_EQ(OptionsMenu().GetItems().size(), 5U);
    }
}

TEST_F(HdrToolbarTest, TheEntryHasTheScaleOfTheOthers) {
    OpenBar();
    view->SetWindowScale(2.0F);
    MoveToOutput(kColorSpaceBt2020);
    EXPECT_EQ(OptionsMenu().GetItems().back()->width, 644);
    EXPECT_EQ(OptionsMenu().GetItems().back()->height, 96);
    OpenMenu(kOptions);
    EXPECT_EQ(OptionsMenu().rect.y + OptionsMenu().rect.h, kBarViewHeight - 200);
}

TEST_F(HdrToolbarTest, ATickWithoutTheEventAsksForNoOutput) {
    OpenBar();
    SdlAdditions().SetRenderColorSpace(kColorSpaceBt2020);
    view->Tick();
    EXPECT_FALSE(HasEntry());
}

TEST_F(HdrToolbarTest, TheEventNeedsNoBar) {
    Open();
    MoveToOutput(kColorSpaceBt2020);
    EXPECT_EQ(view->GetToolbar().GetOptionsMenu(), nullptr);
    view->BuildControls();
    EXPECT_TRUE(HasEntry());
}

TEST_F(HdrToolbarTest, BrightnessGoesUpAndDownByItsStepsWithinItsRange) {
    SdlAdditions().SetRenderColorSpace(kColorSpaceBt2020);
    OpenBar();
    view->SetSDRBrightness(200.0F);
    Calls().Clear();
    OpenMenu(kOptions);
    Choose("brighter");
    OpenMenu(kOptions);
    Choose("darker");
    OpenMenu(kOptions);
    Choose("hdr");
    EXPECT_EQ(KeptBrightness(), (std::vector<std::string>{"220", "200", "203"}));
    view->SetSDRBrightness(470.0F);
    Calls().Clear();
    view->RaiseSdrBrightness();
    view->RaiseSdrBrightness();
    EXPECT_EQ(KeptBrightness(), (std::vector<std::string>{"480", "480"}));
    view->SetSDRBrightness(90.0F);
    Calls().Clear();
    view->LowerSdrBrightness();
    view->LowerSdrBrightness();
    EXPECT_EQ(KeptBrightness(), (std::vector<std::string>{"80", "80"}));
}

}  // namespace
}  // namespace Corvanta::Room
