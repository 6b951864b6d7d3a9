// A tile over the SDL build with the HDR additions: planes go up as they are, and SDL is told their colours.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/fake_platform/FakeSdlAdditions.h"
#include "tests/video/Gate.h"
#include "tests/video/TileTest.h"
#include "video/DisplayColor.h"
#include "video/HdrMetadata.h"

namespace Corvanta::Video {
namespace {

using namespace Corvanta::Testing;
using Type = VideoFrameBufferType;

class HdrTileTest : public TileTest {
protected:
    HdrTileTest() {
        SdlAdditions().Reset();
        Sdl().AllowPlanarHdrTextures(true);
    }
    ~HdrTileTest() override { SdlAdditions().Reset(); }

    static void BecomeHdr() { SdlAdditions().SetRenderColorSpace(kColorSpaceBt2020); }
    [[nodiscard]] bool ShowAndDraw(const Frame& frame) {
        const bool shown = Show(frame);
        Draw();
        return shown;
    }
    // Format of the texture that a frame of that type and subsampling gets.
    [[nodiscard]] std::string FormatFor(int type, int subsampling) {
        tile.ReleaseGraphics();
        tile.SetVideoEnabled(true);
        // Planes of full size, so that no claim about them reads beyond their end.
        const Type planes = type == 0 ? Type::RGB : type < 4 ? Type::YUV444 : Type::YUV444_16;
        EXPECT_TRUE(Show(MakeFrame({.type = planes,
                                    .faults = {.subsampling = static_cast<SubsamplingMode>(subsampling),
                                               .type = static_cast<Type>(type)}})));
        Calls().Clear();
        Draw();
        const auto created = Calls().Of("SDL_CreateTexture");
        return created.size() == 1 ? created[0].arguments[2] : "not one texture";
    }
    [[nodiscard]] static std::vector<Call> ColorCalls() {
        std::vector<Call> calls;
        for (Call& call : Calls().All()) {
            if (call.name == "SDL_SetTextureColorSpace" || call.name == "SDL_SetTextureColorSpaceRange") {
                call.arguments.erase(call.arguments.begin());
                calls.push_back(std::move(call));
            }
        }
        return calls;
    }
    [[nodiscard]] static std::vector<Call> ColorCalls(int legacy, int primaries, int range) {
        return {{"SDL_SetTextureColorSpace", {std::to_string(legacy)}},
                {"SDL_SetTextureColorSpace", {std::to_string(primaries)}},
                {"SDL_SetTextureColorSpaceRange", {std::to_string(range)}}};
    }
};

TEST_F(HdrTileTest, MakesATextureOfTheFormatOfThePlanes) {
    EXPECT_EQ(FormatFor(0, 0), std::to_string(SDL_PIXELFORMAT_ARGB8888));
    for (const int type : {1, 2, 3}) {
        EXPECT_EQ(FormatFor(type, 0), std::to_string(SDL_PIXELFORMAT_IYUV));
        EXPECT_EQ(FormatFor(type, 1), std::to_string(kPixelFormatI422));
        EXPECT_EQ(FormatFor(type, 2), std::to_string(kPixelFormatI444));
        EXPECT_EQ(FormatFor(type, 3), std::to_string(SDL_PIXELFORMAT_IYUV));
    }
    for (const int type : {4, 5, 6}) {
        EXPECT_EQ(FormatFor(type, 0), std::to_string(kPixelFormatI010));
        EXPECT_EQ(FormatFor(type, 1), std::to_string(kPixelFormatI210));
        EXPECT_EQ(FormatFor(type, 2), std::to_string(kPixelFormatI410));
        EXPECT_EQ(FormatFor(type, 3), std::to_string(SDL_PIXELFORMAT_IYUV));
    }
}

TEST_F(HdrTileTest, ConvertsNothingOnTheProcessor) {
    for (int type = 1; type <= 6; ++type) {
        ASSERT_TRUE(ShowAndDraw(MakeFrame({.type = static_cast<Type>(type)})));
    }
    EXPECT_EQ(Calls().Count("SDL_UpdateTexture"), 0U);
    EXPECT_EQ(Calls().Count("SDL_UpdateYUVTexture"), 3U);
    EXPECT_EQ(Calls().Count("SDL_UpdateYUVTexture16"), 3U);
}

TEST_F(HdrTileTest, UploadsSixteenBitPlanesWholeWithTheirStrides) {
    const auto frame = MakeYuv16Frame({.width = 20, .height = 10, .type = Type::YUV422_16, .padding = 4});
    ASSERT_TRUE(ShowAndDraw(frame));
    const auto updates = Calls().Of("SDL_UpdateYUVTexture16");
    ASSERT_EQ(updates.size(), 1U);
    const auto address = [](const uint16_t* plane) { return ToText(static_cast<const void*>(plane)); };
    EXPECT_EQ(std::vector<std::string>(updates[0].arguments.begin() + 1, updates[0].arguments.end()),
              (std::vector<std::string>{"whole", address(frame->GetDataY()), "44", address(frame->GetDataU()),
                                        "24", address(frame->GetDataV()), "24"}));
}

TEST_F(HdrTileTest, UploadsPlanesOfUnknownSubsamplingByTheirOwnClass) {
    ASSERT_TRUE(ShowAndDraw(
        MakeFrame({.type = Type::YUV420_16, .faults = {.subsampling = static_cast<SubsamplingMode>(5)}})));
    EXPECT_EQ(Calls().Count("SDL_UpdateYUVTexture16"), 1U);
    EXPECT_EQ(Calls().Count("SDL_UpdateYUVTexture"), 0U);
}

TEST_F(HdrTileTest, ChoosesTheMatrixBeforeEachEightBitPlanarTextureAndBeforeNoOther) {
    for (int type = 0; type <= 6; ++type) {
        Calls().Clear();
        ASSERT_TRUE(ShowAndDraw(MakeFrame({.type = static_cast<Type>(type)})));
        const auto calls = Calls().NamesAmong({"SDL_SetYUVConversionMode", "SDL_CreateTexture"});
        if (type >= 1 && type <= 3) {
            EXPECT_EQ(calls, (std::vector<std::string>{"SDL_SetYUVConversionMode", "SDL_CreateTexture"}));
            EXPECT_EQ(Calls().Of("SDL_SetYUVConversionMode")[0].arguments[0], "2");
        } else {
            EXPECT_EQ(calls, std::vector<std::string>{"SDL_CreateTexture"});
        }
    }
}

TEST_F(HdrTileTest, TellsTheColoursAfterEachUploadTheSecondTimeByThePrimaries) {
    ASSERT_TRUE(ShowAndDraw(MakeFrame({.colorSpace = kBt709Limited})));
    EXPECT_EQ(ColorCalls(), ColorCalls(0, 0, 0));
    EXPECT_EQ(Calls().NamesAmong({"SDL_UpdateYUVTexture", "SDL_SetTextureColorSpace",
                                  "SDL_SetTextureColorSpaceRange", "SDL_RenderCopy"}),
              (std::vector<std::string>{"SDL_UpdateYUVTexture", "SDL_SetTextureColorSpace",
                                        "SDL_SetTextureColorSpace", "SDL_SetTextureColorSpaceRange",
                                        "SDL_RenderCopy"}));
    Calls().Clear();
    Draw();
    EXPECT_TRUE(ColorCalls().empty());
}

TEST_F(HdrTileTest, TellsBt2020TwiceWhereTheFrameIsExactlyTheOldNamesSpace) {
    BecomeHdr();
    Draw();
    ASSERT_TRUE(ShowAndDraw(MakeFrame({.type = Type::YUV420_16, .colorSpace = kBt2020Pq})));
    EXPECT_EQ(ColorCalls(), ColorCalls(1, 1, 0));
}

TEST_F(HdrTileTest, TellsBt2020ByThePrimariesAloneWhereTheRestDiffers) {
    BecomeHdr();
    Draw();
    ColorSpace fullRange{ColorMatrix::BT2020NCL, ColorRange::Full, ColorPrimaries::BT2020,
                         ColorTransfer::SMPTEST2084};
    ASSERT_TRUE(ShowAndDraw(MakeFrame({.type = Type::YUV420_16, .colorSpace = fullRange})));
    EXPECT_EQ(ColorCalls(), ColorCalls(0, 1, 1));
    Calls().Clear();
    ColorSpace graded = kBt2020Pq;
    graded.SetHDRMetadata(HDRMetadata{.maxContentLightLevelNits = 1000});
    ASSERT_TRUE(ShowAndDraw(MakeFrame({.type = Type::YUV420_16, .colorSpace = graded})));
    EXPECT_EQ(ColorCalls(), ColorCalls(0, 1, 0));
}

TEST_F(HdrTileTest, TellsFullRangeOfRgbPictures) {
    ASSERT_TRUE(ShowAndDraw(MakeFrame({.type = Type::RGB, .colorSpace = kSrgb})));
    EXPECT_EQ(ColorCalls(), ColorCalls(0, 0, 1));
}

TEST_F(HdrTileTest, KeepsTheTextureWhenTheColourSpaceAloneChanges) {
    BecomeHdr();
    Draw();
    ASSERT_TRUE(ShowAndDraw(MakeFrame({.type = Type::YUV420_16, .colorSpace = kBt709Limited})));
    ASSERT_TRUE(ShowAndDraw(MakeFrame({.type = Type::YUV420_16, .colorSpace = kBt2020Pq})));
    EXPECT_EQ(Calls().Count("SDL_CreateTexture"), 1U);
    EXPECT_EQ(MessagesAt(1).size(), 1U);
}

TEST_F(HdrTileTest, ConvertsPqOnAnSdrOutput) {
    Draw();
    ASSERT_TRUE(ShowAndDraw(MakeFrame({.type = Type::YUV420_16, .colorSpace = kBt2020Pq})));
    ASSERT_EQ(Fake().Conversions().size(), 1U);
    EXPECT_EQ(Fake().Conversions()[0].target, sdrTargetColorSpace);
    EXPECT_EQ(tile.GetColorSpace(), sdrTargetColorSpace);
}

TEST_F(HdrTileTest, FollowsTheOutputWithinOneDrawing) {
    Draw();
    BecomeHdr();
    ASSERT_TRUE(ShowAndDraw(MakeFrame({.colorSpace = kBt2020Pq})));
    EXPECT_EQ(Fake().Conversions().size(), 1U);
    // The drawing has read the output anew.
    const auto pq = MakeFrame({.colorSpace = kBt2020Pq});
    ASSERT_TRUE(ShowAndDraw(pq));
    EXPECT_EQ(Fake().Conversions().size(), 1U);
    EXPECT_EQ(tile.GetColorSpace(), kBt2020Pq);
    ASSERT_TRUE(ShowAndDraw(MakeFrame({.colorSpace = kBt2020Hlg})));
    ASSERT_EQ(Fake().Conversions().size(), 2U);
    EXPECT_EQ(Fake().Conversions()[1].target, hdrTargetColorSpace);
}

TEST_F(HdrTileTest, ConvertsOnceMoreWhenTheOutputChangesWhileAConversionRuns) {
    Gate gate;
    Calls().OnCall("WebRTC_ConvertFrame", [&](const Call&) { gate.Pass(); });
    Draw();
    Send(MakeFrame({.colorSpace = kBt2020Hlg}));
    ASSERT_TRUE(gate.WaitForArrival());
    BecomeHdr();
    Draw();
    gate.Open();
    ASSERT_TRUE(Flush());
    const auto conversions = Fake().Conversions();
    ASSERT_EQ(conversions.size(), 2U);
    EXPECT_EQ(conversions[0].target, sdrTargetColorSpace);
    EXPECT_EQ(conversions[1].target, hdrTargetColorSpace);
    Draw();
    EXPECT_EQ(tile.GetColorSpace(), hdrTargetColorSpace);
}

TEST_F(HdrTileTest, ConvertsNothingAnewWhenOnlyTheBackBuffersFormatChanges) {
    Gate gate;
    Calls().OnCall("WebRTC_ConvertFrame", [&](const Call&) { gate.Pass(); });
    Draw();
    Send(MakeFrame({.colorSpace = kBt2020Pq}));
    ASSERT_TRUE(gate.WaitForArrival());
    SdlAdditions().SetRenderPixelFormat(SDL_PIXELFORMAT_ARGB2101010);
    Draw();
    gate.Open();
    ASSERT_TRUE(Flush());
    EXPECT_EQ(Fake().Conversions().size(), 1U);
}

TEST_F(HdrTileTest, ReadsTheOutputOnlyWhileItIsDrawn) {
    EXPECT_EQ(Calls().Count("SDL_GetRenderColorSpace"), 0U);
    Draw();
    Draw();
    const std::vector<std::string> reads{"SDL_GetRenderColorSpace", "SDL_GetRenderPixelFormat"};
    EXPECT_EQ(Calls().NamesAmong(reads), (std::vector<std::string>{reads[0], reads[1], reads[0], reads[1]}));
}

// The metadata of the main video, applied as the room does: before each drawing.
class HdrMetadataSenderTest : public HdrTileTest {
protected:
    HdrMetadataSenderTest() {
        BecomeHdr();
        Draw();
    }
    void DrawAsMainVideo() {
        sender.Apply(screen.Renderer(), tile.GetColorSpace());
        Draw();
    }
    [[nodiscard]] static Frame Graded() {
        ColorSpace space = kBt2020Pq;
        space.SetHDRMetadata(
            HDRMetadata{0.708, 0.292, 0.17, 0.797, 0.131, 0.046, 0.3127, 0.329, 900, 400, 1000, 0.005F});
        return MakeFrame({.type = Type::YUV420_16, .colorSpace = space});
    }
    [[nodiscard]] static size_t Sent() { return Calls().Count("SDL_SetRenderHDRMetadata"); }
    [[nodiscard]] static size_t Removed() { return Calls().Count("SDL_RemoveRenderHDRMetadata"); }

    HdrMetadataSender sender;
};

TEST_F(HdrMetadataSenderTest, SendsTwelveNumbersWithEveryDrawingOneDrawingLate) {
    ASSERT_TRUE(Show(Graded()));
    DrawAsMainVideo();
    EXPECT_EQ(Sent(), 0U);
    DrawAsMainVideo();
    DrawAsMainVideo();
    const auto sent = Calls().Of("SDL_SetRenderHDRMetadata");
    ASSERT_EQ(sent.size(), 2U);
    std::vector<std::string> expected;
    for (const double number : {0.708, 0.292, 0.17, 0.797, 0.131, 0.046, 0.3127, 0.329}) {
        expected.push_back(ToText(static_cast<double>(static_cast<float>(number))));
    }
    for (const float number : {1000.0F, 0.005F, 900.0F, 400.0F}) {
        expected.push_back(ToText(static_cast<double>(number)));
    }
    for (const Call& call : sent) {
        EXPECT_EQ(std::vector<std::string>(call.arguments.begin() + 1, call.arguments.end()), expected);
    }
}

TEST_F(HdrMetadataSenderTest, TakesThemBackOnce) {
    ASSERT_TRUE(Show(Graded()));
    DrawAsMainVideo();
    DrawAsMainVideo();
    ASSERT_TRUE(Show(MakeFrame()));
    for (int i = 0; i < 4; ++i) DrawAsMainVideo();
    EXPECT_EQ(Sent(), 2U);
    EXPECT_EQ(Removed(), 1U);
    EXPECT_FALSE(SdlAdditions().Metadata().has_value());
}

TEST_F(HdrMetadataSenderTest, SaysNothingForPicturesWithout) {
    ASSERT_TRUE(Show(MakeFrame()));
    for (int i = 0; i < 4; ++i) DrawAsMainVideo();
    EXPECT_EQ(Sent() + Removed(), 0U);
}

}  // namespace
}  // namespace Corvanta::Video
