#include "ui/FontManager.h"

#include <gtest/gtest.h>

#include "tests/fake_platform/CallLog.h"
#include "tests/fake_platform/SdlRecorder.h"
#include "tests/ui/WorkingFolder.h"

namespace Corvanta::UI {
namespace {

using Testing::Calls;
using Testing::Sdl;
using Testing::WorkingFolder;

class FontManagerTest : public ::testing::Test {
protected:
    FontManagerTest() {
        Sdl().Reset();
        FontManager::Clear();
        FontManager::Instance().Init();
        folder_.AddFile("fonts/" + FontRegular + ".ttf", CORVANTA_TEST_FONT);
        Calls().Reset();
    }
    ~FontManagerTest() override {
        FontManager::Clear();
        TTF_Quit();
    }

    const WorkingFolder folder_;
};

TEST_F(FontManagerTest, NamesTheProductsFonts) {
    EXPECT_EQ(FontRegular, "FKGrotesk-Regular");
    EXPECT_EQ(FontBolder, "FKGrotesk-Bolder");
    EXPECT_EQ(FontMono, "FKGroteskMono-Regular");
}

TEST_F(FontManagerTest, StartsTheTextLibrary) {
    FontManager::Instance().Init();
    EXPECT_EQ(Calls().Count("TTF_Init"), 1U);
    TTF_Quit();
}

TEST_F(FontManagerTest, OpensAFontFromTheFontsFolderOnceForEachSize) {
    TTF_Font* const small = FontManager::Instance().GetFont(FontRegular, 14);
    ASSERT_NE(small, nullptr);
    EXPECT_EQ(FontManager::Instance().GetFont(FontRegular, 14), small);
    TTF_Font* const large = FontManager::Instance().GetFont(FontRegular, 28);
    EXPECT_NE(large, small);
    EXPECT_GT(TTF_FontHeight(large), TTF_FontHeight(small));
    ASSERT_EQ(Calls().Count("TTF_OpenFont"), 2U);
    EXPECT_EQ(Calls().Of("TTF_OpenFont")[0].arguments,
              (std::vector<std::string>{".//fonts/FKGrotesk-Regular.ttf", "14"}));
    EXPECT_EQ(Calls().Of("TTF_OpenFont")[1].arguments[1], "28");
}

TEST_F(FontManagerTest, TriesAFontThatIsMissingAgain) {
    EXPECT_EQ(FontManager::Instance().GetFont(FontMono, 14), nullptr);
    folder_.AddFile("fonts/" + FontMono + ".ttf", CORVANTA_TEST_FONT);
    EXPECT_NE(FontManager::Instance().GetFont(FontMono, 14), nullptr);
    EXPECT_EQ(Calls().Count("TTF_OpenFont"), 2U);
}

TEST_F(FontManagerTest, ClosesEveryFontWhenItIsCleared) {
    (void)FontManager::Instance().GetFont(FontRegular, 14);
    (void)FontManager::Instance().GetFont(FontRegular, 15);
    FontManager::Clear();
    EXPECT_EQ(Calls().Count("TTF_CloseFont"), 2U);
    FontManager::Clear();
    EXPECT_EQ(Calls().Count("TTF_CloseFont"), 2U);
}

TEST_F(FontManagerTest, IsMadeAnewAfterItWasCleared) {
    (void)FontManager::Instance().GetFont(FontRegular, 14);
    FontManager::Clear();
    EXPECT_NE(FontManager::Instance().GetFont(FontRegular, 14), nullptr);
    EXPECT_EQ(Calls().Count("TTF_OpenFont"), 2U);
}

}  // namespace
}  // namespace Corvanta::UI
