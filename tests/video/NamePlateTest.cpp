#include "video/NamePlate.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/fake_platform/AllocationCounter.h"
#include "tests/video/OverlayTest.h"

namespace Corvanta::Video {
namespace {

using namespace Corvanta::Testing;

constexpr uint32_t kTooltipColour = 0xFF6B6B6B;
// As a tile of the design's height places it: plate at (28, 38), letters at (39, 41), 147 pixels for them.
constexpr NamePlate::Place kPlace{
    .tile = kTile, .fontSize = 11, .margin = 8, .textOffset = 11, .maxWidth = 177};
constexpr int kRoom = 147;
const std::string kLongName = "A name that is much too long for any plate";

class NamePlateTest : public OverlayTest {
protected:
    ~NamePlateTest() override { plate.ReleaseTextures(); }

    void Draw(const NamePlate::Place& place = kPlace) {
        plate.SetMetrics(11, 21);
        plate.Render(Renderer(), place);
    }
    // From nothing, with only this drawing's calls recorded.
    [[nodiscard]] Picture DrawAndRead(const NamePlate::Place& place = kPlace) {
        screen.Fill(kScreenColour);
        Calls().Clear();
        Draw(place);
        return screen.Read();
    }
    void DrawNamed(const std::string& name, const NamePlate::Place& place = kPlace) {
        plate.SetName(name);
        Draw(place);
        Calls().Clear();
    }
    [[nodiscard]] static SDL_Point SizeOf(const std::string& text, int size) {
        SDL_Point pixels{0, 0};
        TTF_SizeUTF8(UI::FontManager::Instance().GetFont(UI::FontMono, size), text.c_str(), &pixels.x,
                     &pixels.y);
        return pixels;
    }
    // Sizes in pixels of the textures that were copied into the place of the letters.
    [[nodiscard]] std::vector<SDL_Point> LetterTextures() const {
        std::vector<SDL_Point> sizes;
        for (const Call& call : Calls().Of("SDL_RenderCopy")) {
            if (!(ToRect(call.arguments[3]) == plate.GetTextRect())) continue;
            auto* texture = reinterpret_cast<SDL_Texture*>(std::stoull(call.arguments[1], nullptr, 16));
            SDL_Point size{0, 0};
            SDL_QueryTexture(texture, nullptr, nullptr, &size.x, &size.y);
            sizes.push_back(size);
        }
        return sizes;
    }
    [[nodiscard]] static size_t Rasters() { return Calls().Count("SDL_CreateTextureFromSurface"); }

    NamePlate plate;
};

TEST_F(NamePlateTest, StandsBehindTheLettersWithItsMiddleAsWideAsTheyWereLast) {
    plate.SetName("Grace");
    const SDL_Point size = SizeOf("Grace", 11);
    Calls().Clear();
    Draw();
    EXPECT_EQ(PlacesOf("nameBackgroundLeft"), (std::vector<SDL_Rect>{{28, 38, 11, 21}}));
    EXPECT_TRUE(PlacesOf("nameBackgroundMiddle").empty());
    EXPECT_EQ(PlacesOf("nameBackgroundRight"), (std::vector<SDL_Rect>{{39, 38, 11, 21}}));
    EXPECT_EQ(plate.GetTextRect(), (SDL_Rect{39, 41, size.x, size.y}));
    Calls().Clear();
    Draw();
    EXPECT_EQ(PlacesOf("nameBackgroundLeft"), (std::vector<SDL_Rect>{{28, 38, 11, 21}}));
    EXPECT_EQ(PlacesOf("nameBackgroundMiddle"), (std::vector<SDL_Rect>{{39, 38, size.x, 21}}));
    EXPECT_EQ(PlacesOf("nameBackgroundRight"), (std::vector<SDL_Rect>{{39 + size.x, 38, 11, 21}}));
}

TEST_F(NamePlateTest, DrawsTheShadowThenWhiteLettersOverThePlate) {
    DrawNamed("Grace");
    const Picture picture = DrawAndRead();
    ASSERT_EQ(LetterTextures().size(), 2U);
    const SDL_Rect& place = plate.GetTextRect();
    bool white = false;
    bool darkened = false;
    for (int y = place.y; y < place.y + place.h; ++y) {
        for (int x = place.x; x < place.x + place.w; ++x) {
            const uint32_t pixel = picture.At(x, y) & 0xFFFFFFU;
            white = white || (pixel & 0xC0C0C0U) == 0xC0C0C0;
            const uint32_t green = pixel >> 8U & 0xFFU;
            darkened = darkened || (pixel >> 16U == 0 && green > 0 && green < 0x38);
        }
    }
    EXPECT_TRUE(white);
    EXPECT_TRUE(darkened);
    EXPECT_TRUE(PixelIs(picture, 30, 40, kLeftPlateColour));
    EXPECT_EQ(RasterisedTexts(), std::vector<std::string>{});
}

TEST_F(NamePlateTest, DrawsLettersWithoutAShadowThatCannotBeMade) {
    plate.SetName("Grace");
    int made = 0;
    Calls().OnCall("SDL_CreateTextureFromSurface", [&](const Call&) {
        if (++made == 2) Sdl().Fail("SDL_CreateTextureFromSurface");
    });
    Draw();
    Calls().Clear();
    Draw();
    EXPECT_EQ(LetterTextures().size(), 1U);
    EXPECT_TRUE(plate.HasText());
    EXPECT_EQ(made, 2);
}

TEST_F(NamePlateTest, TriesLettersAgainThatCouldNotBeMade) {
    plate.SetName("Grace");
    Sdl().Fail("TTF_RenderUTF8_Blended");
    Draw();
    EXPECT_FALSE(plate.HasText());
    Sdl().Fail("SDL_CreateTextureFromSurface");
    Draw();
    EXPECT_FALSE(plate.HasText());
    Draw();
    EXPECT_TRUE(plate.HasText());
}

TEST_F(NamePlateTest, ANameThatFitsShowsNoTooltip) {
    DrawNamed("Grace");
    plate.UpdateHover({45, 45});
    Draw();
    EXPECT_EQ(plate.GetShownName(), "Grace");
    EXPECT_TRUE(RectsOf("SDL_RenderFillRect").empty());
}

TEST_F(NamePlateTest, ACutNameShowsTheWholeOneOnlyWhileThePointerIsOverTheLetters) {
    DrawNamed(kLongName);
    EXPECT_EQ(plate.GetShownName(), kLongName.substr(0, plate.GetShownName().size() - 3) + "...");
    const SDL_Rect& letters = plate.GetTextRect();
    EXPECT_LE(letters.w, kRoom);
    const struct {
        SDL_Point point;
        bool shown;
    } rows[] = {
        {{letters.x, letters.y}, true},      {{letters.x + letters.w - 1, letters.y + letters.h - 1}, true},
        {{letters.x - 1, letters.y}, false}, {{letters.x + letters.w, letters.y}, false},
        {{letters.x, letters.y - 1}, false}, {{letters.x, letters.y + letters.h}, false}};
    for (const auto& row : rows) {
        plate.UpdateHover(row.point);
        Calls().Clear();
        Draw();
        EXPECT_EQ(RectsOf("SDL_RenderFillRect").size(), row.shown ? 1U : 0U) << row.point;
    }
}

TEST_F(NamePlateTest, PutsTheWholeNameOnAPlateBelow) {
    DrawNamed(kLongName);
    const int letterHeight = plate.GetTextRect().h;
    plate.UpdateHover({45, 45});
    const Picture picture = DrawAndRead();
    const SDL_Point size = SizeOf(kLongName, 11);
    const SDL_Rect box{static_cast<int>(39 - letterHeight * 0.2), 59,
                       static_cast<int>(2 * letterHeight * 0.2 + size.x), letterHeight};
    EXPECT_EQ(RectsOf("SDL_RenderFillRect"), std::vector<SDL_Rect>{box});
    EXPECT_TRUE(PixelIs(picture, box.x, box.y, kTooltipColour));
    EXPECT_EQ(RasterisedTexts(), std::vector<std::string>{kLongName});
    const std::vector<Call> copies = Calls().Of("SDL_RenderCopy");
    ASSERT_FALSE(copies.empty());
    EXPECT_EQ(ToRect(copies.back().arguments[3]), (SDL_Rect{39, 59 - size.y + letterHeight, size.x, size.y}));
}

TEST_F(NamePlateTest, MakesItsLettersOnce) {
    DrawNamed("Grace");
    for (int i = 0; i < 3; ++i) Draw();
    EXPECT_EQ(Rasters(), 0U);
    EXPECT_EQ(Measurements(), 0U);
}

TEST_F(NamePlateTest, MakesItsLettersAnewForAnotherFontSize) {
    DrawNamed("Grace");
    NamePlate::Place larger = kPlace;
    larger.fontSize = 12;
    Draw(larger);
    EXPECT_EQ(Rasters(), 2U);
    EXPECT_EQ(plate.GetTextRect().w, SizeOf("Grace", 12).x);
    EXPECT_EQ(Sdl().LiveTextures(), 5U);
}

TEST_F(NamePlateTest, AsksForTheNameAgainOnlyAfterItsTexturesWent) {
    DrawNamed("Grace");
    plate.SetName("Ada");
    Draw();
    EXPECT_EQ(plate.GetShownName(), "Grace");
    EXPECT_TRUE(plate.HasText());
    plate.ReleaseTextures();
    EXPECT_FALSE(plate.HasText());
    Draw();
    EXPECT_EQ(plate.GetShownName(), "Ada");
}

TEST_F(NamePlateTest, IsSharpAtEveryScaleAndKeepsItsPlace) {
    for (const float scale : {1.0F, 1.25F, 1.5F, 2.0F, 3.0F}) {
        SDL_RenderSetScale(Renderer(), scale, scale);
        plate.SetName("Grace Hopper");
        Draw();
        Calls().Clear();
        Draw();
        const SDL_Point pixels = SizeOf("Grace Hopper", static_cast<int>(std::lround(11 * scale)));
        const std::vector<SDL_Point> textures = LetterTextures();
        ASSERT_EQ(textures.size(), 2U) << scale;
        EXPECT_EQ(textures[1], pixels) << scale;
        // The shadow lies under the letters line for line, so it is not wrapped where they are not.
        EXPECT_EQ(textures[0], pixels) << scale;
        EXPECT_EQ(plate.GetTextRect(),
                  (SDL_Rect{39, 41, static_cast<int>(std::lround(static_cast<float>(pixels.x) / scale)),
                            static_cast<int>(std::lround(static_cast<float>(pixels.y) / scale))}))
            << scale;
    }
}

TEST_F(NamePlateTest, CutsTheSameNameAtEveryScaleByWhatFits) {
    for (const float scale : {1.0F, 1.5F, 2.0F}) {
        SDL_RenderSetScale(Renderer(), scale, scale);
        plate.SetName(kLongName);
        Draw();
        EXPECT_TRUE(plate.GetShownName().ends_with("...")) << scale;
        EXPECT_LE(plate.GetTextRect().w, kRoom) << scale;
        EXPECT_GT(plate.GetTextRect().w, kRoom - 30) << scale;
    }
}

TEST_F(NamePlateTest, MovesToAnotherRenderer) {
    DrawNamed("Grace");
    PixelReader other{640, 480};
    plate.ReleaseTextures();
    EXPECT_EQ(Calls().Count("SDL_DestroyTexture"), 2U);
    plate.SetMetrics(11, 21);
    plate.Render(other.Renderer(), kPlace);
    for (const Call& call : Calls().Of("SDL_RenderCopy"))
        EXPECT_EQ(call.arguments[0], ToText(other.Renderer()));
    EXPECT_TRUE(plate.HasText());
    plate.ReleaseTextures();
    UI::ReleaseRendererTextures(other.Renderer());
}

TEST_F(NamePlateTest, KeepsTheWholeNameWhereNothingFits) {
    for (const int maxWidth : {30, 31, 57, 0, -100}) {
        plate.ReleaseTextures();
        NamePlate::Place narrow = kPlace;
        narrow.maxWidth = maxWidth;
        DrawNamed("Grace Hopper", narrow);
        EXPECT_EQ(plate.GetShownName(), "Grace Hopper") << maxWidth;
        EXPECT_EQ(plate.GetTextRect().w, SizeOf("Grace Hopper", 11).x) << maxWidth;
        EXPECT_TRUE(plate.HasText());
    }
}

TEST_F(NamePlateTest, DrawsOnlyItsGroundWithoutAName) {
    DrawNamed("");
    plate.UpdateHover({45, 45});
    Draw();
    EXPECT_EQ(PlacesOf("nameBackgroundLeft").size(), 1U);
    EXPECT_EQ(PlacesOf("nameBackgroundRight").size(), 1U);
    EXPECT_EQ(Calls().Count("SDL_RenderCopy"), 2U);
    EXPECT_TRUE(RasterisedTexts().empty());
    EXPECT_FALSE(plate.HasText());
    EXPECT_TRUE(RectsOf("SDL_RenderFillRect").empty());
}

TEST_F(NamePlateTest, ForgetsTheWidthOfANameThatIsGone) {
    DrawNamed("Grace");
    plate.ReleaseTextures();
    DrawNamed("");
    Draw();
    EXPECT_TRUE(PlacesOf("nameBackgroundMiddle").empty());
}

TEST_F(NamePlateTest, DrawsOnlyItsGroundWithoutAFontAndTheNameOnceThereIsOne) {
    Folder().Remove("fonts/FKGroteskMono-Regular.ttf");
    DrawNamed("Grace");
    Draw();
    EXPECT_EQ(Calls().Count("SDL_RenderCopy"), 2U);
    EXPECT_FALSE(plate.HasText());
    const std::filesystem::path fonts = CORVANTA_TEST_FONTS;
    Folder().AddFile("fonts/FKGroteskMono-Regular.ttf", fonts / "JetBrainsMono-Regular.ttf");
    Draw();
    EXPECT_TRUE(plate.HasText());
}

TEST_F(NamePlateTest, DrawsLettersWithoutAPlateWhosePictureIsMissing) {
    Folder().Remove("icons/nameBackgroundLeft.png");
    DrawNamed("Grace");
    Draw();
    EXPECT_EQ(LetterTextures().size(), 2U);
}

TEST_F(NamePlateTest, SurvivesNamesOfEveryKind) {
    std::string everyByte;
    for (int i = 1; i < 256; ++i) everyByte += static_cast<char>(i);
    const std::vector<std::string> names{
        std::string(10000, 'W'),
        std::string(10000, '\xFF'),
        std::string(10000, '\xC3'),
        std::string(5000, '\n') + "a",
        everyByte,
        "\xED\xA0\x80 half a pair",
        "\xF0\x9F\x98",
        std::string("zero\0inside", 11),
        "\xE5\xB1\xB1\xE7\x94\xB0\xE5\xA4\xAA\xE9\x83\x8E \xE5\xB1\xB1\xE7\x94\xB0\xE5\xA4\xAA\xE9\x83\x8E",
        "\xD9\x85\xD8\xAD\xD9\x85\xD8\xAF",
    };
    for (const float scale : {1.0F, 1.5F}) {
        SDL_RenderSetScale(Renderer(), scale, scale);
        for (const std::string& name : names) {
            for (const int maxWidth : {177, 60, 20, 0}) {
                plate.ReleaseTextures();
                NamePlate::Place place = kPlace;
                place.maxWidth = maxWidth;
                DrawNamed(name, place);
                plate.UpdateHover({45, 45});
                Draw(place);
            }
        }
    }
    plate.ReleaseTextures();
    DrawNamed("Grace");
    EXPECT_TRUE(plate.HasText());
}

TEST_F(NamePlateTest, CutsANameOf10000BytesToThePlate) {
    DrawNamed(std::string(10000, 'W'));
    EXPECT_LE(plate.GetTextRect().w, kRoom);
    EXPECT_LT(plate.GetShownName().size(), 30U);
}

TEST_F(NamePlateTest, ShowsOnlyTheStartOfANameOf10000BytesThatIsKeptWhole) {
    NamePlate::Place narrow = kPlace;
    narrow.maxWidth = 31;
    DrawNamed(std::string(256, 'W'), narrow);
    EXPECT_EQ(plate.GetShownName(), std::string(256, 'W'));
    plate.ReleaseTextures();
    DrawNamed(std::string(10000, 'W'), narrow);
    EXPECT_EQ(plate.GetShownName(), std::string(256, 'W') + "...");
    EXPECT_TRUE(plate.HasText());
}

TEST_F(NamePlateTest, CostsNoMemoryForALetterSizeThatNoWindowHas) {
    NamePlate::Place place = kPlace;
    for (const int fontSize : {0, -5, 1 << 14, 1 << 16, 1 << 30}) {
        plate.ReleaseTextures();
        place.fontSize = fontSize;
        DrawNamed(kLongName, place);
        EXPECT_FALSE(plate.HasText()) << fontSize;
    }
}

TEST_F(NamePlateTest, AllocatesAndMeasuresNothingWhileNothingChanges) {
    DrawNamed(kLongName);
    plate.UpdateHover({45, 45});
    Draw();
    Calls().SetRecording(false);
    AllocationCounter::Start();
    for (int i = 0; i < 20; ++i) {
        plate.SetName(kLongName);
        Draw();
    }
    EXPECT_EQ(AllocationCounter::Stop(), 0U);
}

}  // namespace
}  // namespace Corvanta::Video
