// Texts of any script, broken ones, endless ones and ones of wild sizes.

#include "tests/ui/TextTextureTestBase.h"

namespace Corvanta::UI {
namespace {

using Testing::Fake;
using Testing::RasterisedTexts;
using Testing::Texts;

class TextTextureWildTextTest : public Testing::TextTextureTestBase {};

TEST_F(TextTextureWildTextTest, IsOfOneExtentMeasuredAndDrawnInAnyScript) {
    const std::string names[] = {
        "\u0418\u0432\u0430\u043D \u041F\u0435\u0442\u0440\u043E\u0432",
        "\u0393\u03B9\u03CE\u03C1\u03B3\u03BF\u03C2",
        "\u00C9mile Zo\u00EB",
    };
    for (const std::string& name : names) {
        text_.SetText(name);
        text_.Rebuild(Renderer());
        EXPECT_EQ(text_.MeasureText().x, text_.GetWidth()) << name;
        EXPECT_EQ(text_.MeasureText(), SizeOf(FontRegular, 14, name)) << name;
    }
    // Each of its letters is two bytes: taken one by one it would come out far wider.
    const SDL_Point latin = SizeOf(FontRegular, 14, "Ivan Petrov");
    text_.SetText(names[0]);
    EXPECT_LT(text_.MeasureText().x, latin.x * 3 / 2);
}

TEST_F(TextTextureWildTextTest, DrawsWhatItCanOfBrokenUtf8) {
    const std::string texts[] = {"\xFF\xFE\x80",  "abc\xC3",           "\xE6\x9D",
                                 "\xF0\x9F\x98",  "\xED\xA0\x80 x",    "\xF8\x88\x80\x80\x80",
                                 "a\xC0\xAF\x62", "tab\tnew\nline\x01"};
    for (const std::string& text : texts) {
        text_.SetText(text);
        (void)text_.MeasureText();
        text_.RenderAt(Renderer(), {10, 20});
        text_.SetMaxWidth(20);
        text_.RenderAt(Renderer(), {10, 20});
        EXPECT_FALSE(text_.IsDirty());
        text_.SetMaxWidth(-1);
    }
    EXPECT_TRUE(Fake().Logs().empty());
}

TEST_F(TextTextureWildTextTest, EndsAtAByteOfZero) {
    text_.SetText(std::string("abc\0def", 7));
    text_.RenderAt(Renderer(), {10, 20});
    EXPECT_EQ(text_.GetWidth(), SizeOf(FontRegular, 14, "abc").x);
    text_.SetText(std::string("\0def", 4));
    text_.RenderAt(Renderer(), {10, 20});
    EXPECT_EQ(text_.GetWidth(), 0);
}

TEST_F(TextTextureWildTextTest, ShortensATextOf100000Bytes) {
    std::string text;
    while (text.size() < 100000) text += "lorem ipsum ";
    text.resize(100000);
    text_.SetText(text);
    text_.SetMaxWidth(100);
    text_.RenderAt(Renderer(), {10, 20});
    EXPECT_NEAR(text_.GetWidth(), 100, 20);
    EXPECT_GT(text_.MeasureText().x, 300000);
    EXPECT_EQ(RasterisedTexts().at(0).substr(0, 5), "lorem");
}

TEST_F(TextTextureWildTextTest, DrawsATextOf100000BytesWhole) {
    text_.SetText(std::string(100000, 'i'));
    text_.RenderAt(Renderer(), {10, 20});
    EXPECT_EQ(text_.GetWidth(), SizeOf(FontRegular, 14, std::string(100000, 'i')).x);
}

TEST_F(TextTextureWildTextTest, RasterisesNothingBeyondReason) {
    text_.SetText("Settings");
    text_.SetFontSize(10200);
    text_.RenderAt(Renderer(), {10, 20});
    EXPECT_TRUE(RasterisedTexts().empty());
    EXPECT_EQ(text_.GetTexture(), nullptr);
    EXPECT_EQ(text_.GetWidth(), 0);
    EXPECT_FALSE(text_.IsDirty());
    EXPECT_TRUE(NothingDrawn());
    EXPECT_GT(text_.MeasureText().x, 30000);
}

TEST_F(TextTextureWildTextTest, SurvivesTheWildestSizes) {
    text_.SetText("Settings");
    for (const int size : {1, 2, 30000, 70000, 1 << 26, 2147483647}) {
        text_.SetFontSize(size);
        (void)text_.MeasureText();
        text_.RenderAt(Renderer(), {10, 20});
        EXPECT_FALSE(text_.IsDirty()) << size;
    }
}

}  // namespace
}  // namespace Corvanta::UI
