#include "drawing/DrawToolSettings.h"

#include <gmock/gmock.h>

#include <memory>
#include <string>

#include "tests/drawing/LocalUser.h"
#include "tests/fake_platform/FakePlatform.h"

namespace Corvanta::Drawing {
namespace {

using Testing::ConfigurationValue;
using Testing::Fake;
using Testing::FakeResults;

using Configuration = std::map<std::string, ConfigurationValue>;

class DrawToolSettings : public Testing::FakePlatformTest {
protected:
    ~DrawToolSettings() override { delete[] state_.fontFamilyName; }

    static void Put(const std::string& key, ConfigurationValue value) {
        Fake().Set([&](FakeResults& results) { results.configuration["DrawToolState." + key] = value; });
    }
    static Configuration Stored() {
        return Fake().Get([](const FakeResults& results) { return results.configuration; });
    }
    const DrawToolState& Load() {
        LoadDrawToolSettings(state_);
        return state_;
    }
    DrawToolState& State() { return state_; }

private:
    DrawToolState state_{};
};

TEST_F(DrawToolSettings, HaveTheirDefaultsWithAnEmptyConfiguration) {
    State().selectedTool = 4;
    const DrawToolState& state = Load();
    EXPECT_EQ(state.selectedTool, 0U);
    EXPECT_EQ(state.complexSelectedShape, 5);
    EXPECT_EQ(state.pencilStrokeWidth, 10.0);
    EXPECT_EQ(state.shapeStrokeWidth, 20.0);
    EXPECT_EQ(state.eraserStrokeWidth, 10.0);
    EXPECT_STREQ(state.fontFamilyName, "Arial");
    EXPECT_EQ(state.fontSize, 32.0);
    EXPECT_FALSE(state.useBoldFont);
    EXPECT_FALSE(state.useItalicizedFont);
    EXPECT_EQ(state.primaryColor, 0xE85C41FFU);
    EXPECT_EQ(state.secondaryColor, 0xFFFFFFFFU);
}

TEST_F(DrawToolSettings, LeaveEnabledAsItIs) {
    EXPECT_FALSE(Load().enabled);
    State().enabled = true;
    EXPECT_TRUE(Load().enabled);
}

TEST_F(DrawToolSettings, AreWhatTheConfigurationSays) {
    Put("ComplexSelectedShape", int32_t{3});
    Put("PencilStrokeWidth", 1.5);
    Put("ShapeStrokeWidth", 2.5);
    Put("FontFamilyName", std::string("Georgia"));
    Put("FontSize", 44.25);
    Put("UseBoldFont", true);
    Put("UseItalicizedFont", true);
    Put("PrimaryColor", uint32_t{0x01020304});
    Put("SecondaryColor", uint32_t{0xF1F2F3F4});
    Put("EraserStrokeWidth", 3.5);
    const DrawToolState& state = Load();
    EXPECT_EQ(state.complexSelectedShape, 3);
    EXPECT_EQ(state.pencilStrokeWidth, 1.5);
    EXPECT_EQ(state.shapeStrokeWidth, 2.5);
    EXPECT_STREQ(state.fontFamilyName, "Georgia");
    EXPECT_EQ(state.fontSize, 44.25);
    EXPECT_TRUE(state.useBoldFont);
    EXPECT_TRUE(state.useItalicizedFont);
    EXPECT_EQ(state.primaryColor, 0x01020304U);
    EXPECT_EQ(state.secondaryColor, 0xF1F2F3F4U);
    EXPECT_EQ(state.eraserStrokeWidth, 3.5);
}

TEST_F(DrawToolSettings, KeepOnlyAShapeFromArrowToRectangle) {
    for (const int32_t good : {2, 3, 4, 5}) {
        Put("ComplexSelectedShape", good);
        EXPECT_EQ(Load().complexSelectedShape, good);
    }
    for (const int32_t bad : {-1, 0, 1, 6, 2000000000}) {
        Put("ComplexSelectedShape", bad);
        EXPECT_EQ(Load().complexSelectedShape, 5) << bad;
    }
}

TEST_F(DrawToolSettings, FallBackFieldByField) {
    Put("PencilStrokeWidth", std::string("wide"));
    Put("UseBoldFont", int32_t{1});
    Put("PrimaryColor", int32_t{-1});
    Put("EraserStrokeWidth", -4.0);
    const DrawToolState& state = Load();
    EXPECT_EQ(state.pencilStrokeWidth, 10.0);
    EXPECT_FALSE(state.useBoldFont);
    EXPECT_EQ(state.primaryColor, 0xE85C41FFU);
    EXPECT_EQ(state.eraserStrokeWidth, -4.0);
}

TEST_F(DrawToolSettings, TakeArialForAnEmptyFamily) {
    Put("FontFamilyName", std::string());
    EXPECT_STREQ(Load().fontFamilyName, "Arial");
}

TEST_F(DrawToolSettings, ReleaseTheFamilyThatStoodThere) {
    // The sanitizers watch over both texts.
    Put("FontFamilyName", std::string("A family with a long name, longer than any other"));
    Load();
    Put("FontFamilyName", std::string("Verdana"));
    EXPECT_STREQ(Load().fontFamilyName, "Verdana");
}

TEST_F(DrawToolSettings, EndAFamilyThatGrowsWhileItIsRead) {
    Put("FontFamilyName", std::string("Verdana"));
    Fake().OnCall("Configuration_GetPropertyString",
                  [](const auto&) { Put("FontFamilyName", std::string("Verdana, and more")); });
    EXPECT_STREQ(Load().fontFamilyName, "Verdana");
}

TEST_F(DrawToolSettings, AreEmptyTextWhenTheFamilyGoesWhileItIsRead) {
    Put("FontFamilyName", std::string("Verdana"));
    Fake().OnCall("Configuration_GetPropertyString", [](const auto&) { Put("FontFamilyName", int32_t{1}); });
    EXPECT_STREQ(Load().fontFamilyName, "");
}

TEST_F(DrawToolSettings, AreThereAgainAfterStoring) {
    std::string family = "Courier New";
    const DrawToolState stored{.enabled = true,
                               .selectedTool = 6,
                               .complexSelectedShape = 2,
                               .pencilStrokeWidth = 1.25,
                               .shapeStrokeWidth = 2.25,
                               .fontFamilyName = family.data(),
                               .fontSize = 3.25,
                               .useBoldFont = true,
                               .useItalicizedFont = true,
                               .primaryColor = 0x11223344,
                               .secondaryColor = 0x99AABBCC,
                               .eraserStrokeWidth = 4.25};
    StoreDrawToolSettings(stored);
    const DrawToolState& state = Load();
    EXPECT_EQ(state.selectedTool, 0U);
    EXPECT_EQ(state.complexSelectedShape, 2);
    EXPECT_EQ(state.pencilStrokeWidth, 1.25);
    EXPECT_EQ(state.shapeStrokeWidth, 2.25);
    EXPECT_STREQ(state.fontFamilyName, "Courier New");
    EXPECT_EQ(state.fontSize, 3.25);
    EXPECT_TRUE(state.useBoldFont);
    EXPECT_TRUE(state.useItalicizedFont);
    EXPECT_EQ(state.primaryColor, 0x11223344U);
    EXPECT_EQ(state.secondaryColor, 0x99AABBCCU);
    EXPECT_EQ(state.eraserStrokeWidth, 4.25);
}

TEST_F(DrawToolSettings, AreTenKeysOfWhichNoneIsTheToolItself) {
    StoreDrawToolSettings(Testing::ToolState(DrawToolEraser));
    const Configuration expected{
        {"DrawToolState.ComplexSelectedShape", int32_t{5}},
        {"DrawToolState.PencilStrokeWidth", 10.0},
        {"DrawToolState.ShapeStrokeWidth", 20.0},
        {"DrawToolState.FontFamilyName", std::string("Arial")},
        {"DrawToolState.FontSize", 32.0},
        {"DrawToolState.UseBoldFont", false},
        {"DrawToolState.UseItalicizedFont", false},
        {"DrawToolState.PrimaryColor", uint32_t{0xE85C41FF}},
        {"DrawToolState.SecondaryColor", uint32_t{0xFFFFFFFF}},
        {"DrawToolState.EraserStrokeWidth", 10.0},
    };
    EXPECT_EQ(Stored(), expected);
}

TEST_F(DrawToolSettings, StoreAnEmptyTextForNoFamily) {
    DrawToolState state = Testing::ToolState(DrawToolPencil);
    state.fontFamilyName = nullptr;
    StoreDrawToolSettings(state);
    EXPECT_EQ(Stored().at("DrawToolState.FontFamilyName"), ConfigurationValue(std::string()));
}

TEST_F(DrawToolSettings, TryEveryFieldWhenNothingCanBeStored) {
    Fake().Set([](FakeResults& results) { results.configurationWritable = false; });
    StoreDrawToolSettings(Testing::ToolState(DrawToolPencil));
    EXPECT_EQ(Fake().CallNames().size(), 10U);
}

}  // namespace
}  // namespace Corvanta::Drawing
