// The marks on a tile: where they are seen, what lies over them, and that they outlive sizes, renderers and
// the tile itself.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "drawing/DrawingCanvas.h"
#include "drawing/DrawingCanvasManager.h"
#include "tests/drawing/MarkMessage.h"
#include "tests/fake_platform/AllocationCounter.h"
#include "tests/video/TileTest.h"

namespace Corvanta::Video {
namespace {

using namespace Corvanta::Testing;

constexpr uint32_t kGround = 0xFF102030;
constexpr uint32_t kPicture = 0xFFFFFFFF;
constexpr uint32_t kRed = 0xFFFF0000;
constexpr uint32_t kGreen = 0xFF00FF00;
constexpr uint32_t kBorder = 0xFF2196F3;
// A picture of 64 by 48 pixels has a canvas of 1280 by 960 units.
constexpr int kUnits = 20;
constexpr SDL_Rect kWholeCanvas{0, 0, 1280, 960};
constexpr SDL_Rect kPlace{0, 0, kScreenWidth, kScreenHeight};

[[nodiscard]] constexpr SDL_Rect InUnits(const SDL_Rect& pixels) {
    return {pixels.x * kUnits, pixels.y * kUnits, pixels.w * kUnits, pixels.h * kUnits};
}

// Without the line of pixels at each edge, where scaling may mix.
[[nodiscard]] constexpr SDL_Rect Inside(const SDL_Rect& area) {
    return {area.x + 1, area.y + 1, area.w - 2, area.h - 2};
}

class TileCanvasTest : public FakePlatformTest {
protected:
    TileCanvasTest() {
        Sdl().Reset();
        // Small layers, since nobody looks at them closely.
        Sdl().LimitTextureSides(640);
        manager = Drawing::DrawingCanvasManager::SetView(nullptr);
    }
    ~TileCanvasTest() override {
        if (tile != nullptr) tile->ReleaseGraphics();
        tile.reset();
        Drawing::DrawingCanvasManager::DestroyInstance();
        Sdl().Reset();
    }

    [[nodiscard]] static std::unique_ptr<VideoFrame> MakeTile(const std::string& streamId = "stream") {
        auto made = std::make_unique<VideoFrame>(streamId, "session", "profile", TileOrigin::Remote);
        made->rect = kPlace;
        return made;
    }
    [[nodiscard]] static bool Show(VideoFrame& shown, int width = kScreenWidth, int height = kScreenHeight) {
        (*shown.GetFrameSink())(MakeFrame({.width = width,
                                           .height = height,
                                           .type = VideoFrameBufferType::RGB,
                                           .colorSpace = kSrgb,
                                           .argb = kPicture}));
        return FlushSink(*shown.GetFrameSink());
    }
    // The tile that the test looks at, with its picture.
    void AddTile() {
        tile = MakeTile();
        ASSERT_TRUE(Show(*tile));
    }
    void Draw(const std::string& sender, const std::string& id, const SDL_Rect& units, uint32_t argb,
              const std::string& streamId = "stream") const {
        manager->OnDataChannelMessage({sender, MarkMessage(streamId, {MarkJson(id, units, argb)})});
    }
    static void RenderOn(const PixelReader& reader, VideoFrame& shown) {
        const PictureSize size = shown.GetPictureSize();
        shown.sourceRect = {0, 0, size.width, size.height};
        shown.Render(reader.Renderer(), {0, 0});
    }
    [[nodiscard]] static Picture ReadFrom(PixelReader& reader, VideoFrame& shown) {
        reader.Fill(kGround);
        RenderOn(reader, shown);
        return reader.Read();
    }
    [[nodiscard]] Picture Read() { return ReadFrom(screen, *tile); }

    // What one drawing asks of SDL, but for where things lie in memory.
    [[nodiscard]] std::vector<Call> CallsOfADrawing(VideoFrame& shown) {
        Calls().Clear();
        RenderOn(screen, shown);
        std::vector<Call> calls = Calls().OfThisThread();
        for (Call& call : calls) {
            std::erase_if(call.arguments, [](const std::string& text) { return text.starts_with("0x"); });
        }
        return calls;
    }

    PixelReader screen{kScreenWidth, kScreenHeight};
    std::shared_ptr<Drawing::DrawingCanvasManager> manager;
    std::unique_ptr<VideoFrame> tile;
};

TEST_F(TileCanvasTest, HasNoCanvasWhereNothingCanBeDrawn) {
    Drawing::DrawingCanvasManager::DestroyInstance();
    AddTile();
    EXPECT_EQ(tile->GetCanvas(), nullptr);
    EXPECT_TRUE(AreaIs(Read(), kPlace, kPicture));
    tile->ReleaseGraphics();
    EXPECT_EQ(tile->GetCanvas(), nullptr);
}

TEST_F(TileCanvasTest, ShowsAMarkOverThePictureWhereItWasMade) {
    AddTile();
    constexpr SDL_Rect kMark{16, 12, 20, 24};
    EXPECT_TRUE(AreaIs(Read(), kPlace, kPicture));
    Draw("Anna", "a", InUnits(kMark), kRed);
    const Picture picture = Read();
    EXPECT_TRUE(AreaIs(picture, Inside(kMark), kRed));
    EXPECT_TRUE(AreaIs(picture, {0, 0, kScreenWidth, kMark.y - 1}, kPicture));
    EXPECT_TRUE(AreaIs(picture, {0, 0, kMark.x - 1, kScreenHeight}, kPicture));
    EXPECT_TRUE(AreaIs(picture, {kMark.x + kMark.w + 1, 0, 20, kScreenHeight}, kPicture));
}

TEST_F(TileCanvasTest, ShowsWhatWasDrawnBeforeItCame) {
    Draw("Anna", "a", InUnits({0, 0, 20, 48}), kRed);
    Draw("Ben", "b", InUnits({40, 0, 24, 48}), kGreen);
    AddTile();
    const Picture picture = Read();
    EXPECT_TRUE(PixelIs(picture, 10, 24, kRed));
    EXPECT_TRUE(PixelIs(picture, 30, 24, kPicture));
    EXPECT_TRUE(PixelIs(picture, 52, 24, kGreen));
}

TEST_F(TileCanvasTest, ShowsNoMarkOfAnotherStream) {
    AddTile();
    Draw("Anna", "a", kWholeCanvas, kRed, "another stream");
    EXPECT_TRUE(AreaIs(Read(), kPlace, kPicture));
}

TEST_F(TileCanvasTest, SizesItsCanvasByThePicture) {
    AddTile();
    (void)Read();
    EXPECT_EQ(tile->GetCanvas()->CanvasWidth(), 1280);
    EXPECT_EQ(tile->GetCanvas()->CanvasHeight(), 960);
    ASSERT_TRUE(Show(*tile, 64, 36));
    (void)Read();
    EXPECT_EQ(tile->GetCanvas()->CanvasHeight(), 720);
}

// Before that a click has no place in the picture.
TEST_F(TileCanvasTest, HasACanvasWithoutSizeBeforeItsFirstDrawing) {
    AddTile();
    EXPECT_EQ(tile->GetCanvas()->CanvasWidth(), 0);
    EXPECT_EQ(tile->GetCanvas()->TextureWidth(), 0);
}

TEST_F(TileCanvasTest, KeepsAMarksFractionWhenThePictureComesAfterIt) {
    tile = MakeTile();
    tile->rect = {0, 0, 64, 36};
    Draw("Anna", "a", {640, 360, 640, 360}, kRed);
    Picture picture = Read();
    EXPECT_EQ(tile->GetCanvas()->CanvasHeight(), 720);
    EXPECT_TRUE(AreaIs(picture, Inside({32, 18, 32, 18}), kRed));
    EXPECT_TRUE(AreaIs(picture, {0, 0, 31, 36}, kGround));

    ASSERT_TRUE(Show(*tile));
    tile->rect = kPlace;
    picture = Read();
    EXPECT_EQ(tile->GetCanvas()->CanvasHeight(), 960);
    EXPECT_TRUE(AreaIs(picture, Inside({32, 24, 32, 24}), kRed));
    EXPECT_TRUE(AreaIs(picture, {0, 0, 31, 48}, kPicture));
    EXPECT_TRUE(AreaIs(picture, {0, 0, 64, 23}, kPicture));
}

TEST_F(TileCanvasTest, KeepsAMarksFractionWhenThePictureChangesItsSize) {
    AddTile();
    Draw("Anna", "a", {640, 480, 640, 480}, kRed);
    ASSERT_TRUE(PixelIs(Read(), 48, 36, kRed));
    for (const SDL_Point size : {SDL_Point{128, 96}, {64, 36}, {36, 64}, {2, 1}, {64, 48}}) {
        ASSERT_TRUE(Show(*tile, size.x, size.y));
        const Picture picture = Read();
        EXPECT_TRUE(AreaIs(picture, Inside({32, 24, 32, 24}), kRed)) << size.x;
        EXPECT_TRUE(AreaIs(picture, {0, 0, 31, 48}, kPicture)) << size.x;
    }
}

// As the main video and its thumbnail.
TEST_F(TileCanvasTest, ShowsAMarkAtOneFractionOnAllTilesOfItsStream) {
    AddTile();
    const auto thumbnail = MakeTile();
    ASSERT_TRUE(Show(*thumbnail, 32, 24));
    thumbnail->rect = {8, 4, 32, 24};
    Draw("Anna", "a", {640, 0, 640, 480}, kRed);
    EXPECT_TRUE(AreaIs(Read(), Inside({32, 0, 32, 24}), kRed));
    const Picture small = ReadFrom(screen, *thumbnail);
    EXPECT_TRUE(AreaIs(small, Inside({24, 4, 16, 12}), kRed));
    EXPECT_TRUE(AreaIs(small, {8, 4, 15, 24}, kPicture));
    EXPECT_TRUE(AreaIs(small, {8, 17, 32, 11}, kPicture));
    EXPECT_TRUE(AreaIs(small, {41, 0, 20, 48}, kGround));
    thumbnail->ReleaseGraphics();
}

// A thumbnail cuts off the sides of a picture that is wider than itself.
TEST_F(TileCanvasTest, CutsTheMarksAsItCutsThePicture) {
    AddTile();
    Draw("Anna", "left", InUnits({0, 0, 15, 48}), kRed);
    Draw("Anna", "middle", InUnits({24, 0, 16, 48}), kGreen);
    (void)Read();
    screen.Fill(kGround);
    tile->rect = {0, 0, 32, 48};
    tile->sourceRect = {16, 0, 32, 48};
    tile->Render(screen.Renderer(), {0, 0});
    const Picture picture = screen.Read();
    EXPECT_TRUE(AreaIs(picture, {0, 0, 7, 48}, kPicture));
    EXPECT_TRUE(AreaIs(picture, Inside({8, 0, 16, 48}), kGreen));
    EXPECT_TRUE(AreaIs(picture, {25, 0, 7, 48}, kPicture));
    EXPECT_TRUE(AreaIs(picture, {33, 0, 31, 48}, kGround));
}

TEST_F(TileCanvasTest, LiesUnderTheBorderOfTheMainVideosThumbnail) {
    AddTile();
    tile->inGrid = true;
    tile->onMainVideo = true;
    Draw("Anna", "a", kWholeCanvas, kRed);
    const Picture picture = Read();
    EXPECT_TRUE(PixelIs(picture, 0, 0, kBorder));
    EXPECT_TRUE(PixelIs(picture, 1, 20, kBorder));
    EXPECT_TRUE(PixelIs(picture, 63, 47, kBorder));
    EXPECT_TRUE(PixelIs(picture, 32, 10, kRed));
}

TEST_F(TileCanvasTest, LiesOverTheAvatarOfAStreamWithoutAPicture) {
    tile = MakeTile();
    tile->inGrid = true;
    const Picture avatar = Read();
    Draw("Anna", "a", kWholeCanvas, kRed);
    EXPECT_FALSE(PixelIs(avatar, 32, 16, kRed));
    EXPECT_TRUE(PixelIs(Read(), 32, 16, kRed));
}

TEST_F(TileCanvasTest, HasTheMarksAgainAfterItsGraphicsWereReleased) {
    AddTile();
    Draw("Anna", "a", InUnits({0, 0, 32, 48}), kRed);
    (void)Read();
    tile->ReleaseGraphics();
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    ASSERT_NE(tile->GetCanvas(), nullptr);
    EXPECT_EQ(tile->GetCanvas()->Source(), manager->GetOrCreateSource("stream"));
    Draw("Ben", "b", InUnits({32, 0, 32, 48}), kGreen);
    const Picture picture = Read();
    EXPECT_TRUE(PixelIs(picture, 16, 24, kRed));
    EXPECT_TRUE(PixelIs(picture, 48, 24, kGreen));
    EXPECT_TRUE(Fake().LogsOf(4).empty()) << "no texture was left behind";
}

TEST_F(TileCanvasTest, TakesTheMarksAlongToAnotherRenderer) {
    AddTile();
    Draw("Anna", "a", InUnits({0, 0, 32, 48}), kRed);
    (void)Read();
    PixelReader other(kScreenWidth, kScreenHeight);
    tile->MoveToRenderer(other.Renderer());
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    EXPECT_TRUE(PixelIs(ReadFrom(other, *tile), 16, 24, kRed));
    // And back, as when a wall of its own is closed.
    Draw("Ben", "b", InUnits({32, 0, 32, 48}), kGreen);
    tile->MoveToRenderer(screen.Renderer());
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    const Picture picture = Read();
    EXPECT_TRUE(PixelIs(picture, 16, 24, kRed));
    EXPECT_TRUE(PixelIs(picture, 48, 24, kGreen));
}

TEST_F(TileCanvasTest, HasTheMarksAgainAfterItsRendererWasLost) {
    AddTile();
    Draw("Anna", "a", InUnits({0, 0, 32, 48}), kRed);
    auto lost = std::make_unique<PixelReader>(kScreenWidth, kScreenHeight);
    (void)ReadFrom(*lost, *tile);
    tile->ReleaseGraphics();
    lost.reset();
    EXPECT_TRUE(PixelIs(Read(), 16, 24, kRed));
}

// What the hand was drawing goes with the canvas; the shape itself is finished by its hand.
TEST_F(TileCanvasTest, DropsAShapeInProgressWithItsGraphics) {
    AddTile();
    const auto source = manager->GetOrCreateSource("finished");
    manager->OnDataChannelMessage({"me", MarkMessage("finished", {MarkJson("p", kWholeCanvas, kRed)})});
    tile->GetCanvas()->SetPreview(source->ShapesOf("me").at(0));
    EXPECT_TRUE(PixelIs(Read(), 32, 24, kRed));
    tile->ReleaseGraphics();
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    EXPECT_FALSE(PixelIs(Read(), 32, 24, kRed));
    EXPECT_TRUE(Fake().LogsOf(4).empty());
}

TEST_F(TileCanvasTest, LeavesItsStreamWhenItGoes) {
    AddTile();
    Draw("Anna", "a", InUnits({0, 0, 32, 48}), kRed);
    (void)Read();
    tile->ReleaseGraphics();
    tile.reset();
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    Draw("Anna", "b", InUnits({32, 0, 32, 48}), kGreen);
    AddTile();
    const Picture picture = Read();
    EXPECT_TRUE(PixelIs(picture, 16, 24, kRed));
    EXPECT_TRUE(PixelIs(picture, 48, 24, kGreen));
}

TEST_F(TileCanvasTest, OutlivesTheManager) {
    AddTile();
    Draw("Anna", "a", kWholeCanvas, kRed);
    (void)Read();
    Drawing::DrawingCanvasManager::DestroyInstance();
    manager.reset();
    EXPECT_TRUE(PixelIs(Read(), 32, 24, kRed));
    EXPECT_EQ(tile->GetCanvas()->Source(), nullptr);
    tile->ReleaseGraphics();
    EXPECT_EQ(tile->GetCanvas(), nullptr);
    EXPECT_FALSE(PixelIs(Read(), 32, 24, kRed));
}

TEST_F(TileCanvasTest, LosesTheMarksOfAParticipantWhoHasGone) {
    AddTile();
    Draw("Anna", "a", InUnits({0, 0, 32, 48}), kRed);
    Draw("Ben", "b", InUnits({32, 0, 32, 48}), kGreen);
    (void)Read();
    manager->RemoveStream("Anna");
    const Picture picture = Read();
    EXPECT_TRUE(PixelIs(picture, 16, 24, kPicture));
    EXPECT_TRUE(PixelIs(picture, 48, 24, kGreen));
}

TEST_F(TileCanvasTest, ShowsTheLastListOfAParticipantWhoTookAMarkBack) {
    AddTile();
    Draw("Anna", "a", InUnits({0, 0, 32, 48}), kRed);
    Draw("Anna", "b", InUnits({32, 0, 32, 48}), kGreen);
    (void)Read();
    manager->OnDataChannelMessage(
        {"Anna", MarkMessage("stream", {MarkJson("a", InUnits({0, 0, 32, 48}), kRed)}, true)});
    const Picture picture = Read();
    EXPECT_TRUE(PixelIs(picture, 16, 24, kRed));
    EXPECT_TRUE(PixelIs(picture, 48, 24, kPicture));
}

TEST_F(TileCanvasTest, ShowsAMarkAsSoonAsItsLayerCanBeMade) {
    AddTile();
    ASSERT_TRUE(AreaIs(Read(), kPlace, kPicture));
    Draw("Anna", "a", kWholeCanvas, kRed);
    Sdl().FailAlways("SDL_CreateTexture");
    EXPECT_TRUE(AreaIs(Read(), kPlace, kPicture));
    EXPECT_TRUE(AreaIs(Read(), kPlace, kPicture));
    Sdl().Fail("SDL_CreateTexture", 0);
    EXPECT_TRUE(PixelIs(Read(), 32, 24, kRed));
}

// Cost

TEST_F(TileCanvasTest, AsksTheSameOfSdlAsATileWithoutACanvasWhileNobodyDraws) {
    AddTile();
    (void)CallsOfADrawing(*tile);
    const std::vector<Call> withCanvas = CallsOfADrawing(*tile);
    Drawing::DrawingCanvasManager::DestroyInstance();
    const auto plain = MakeTile();
    ASSERT_EQ(plain->GetCanvas(), nullptr);
    ASSERT_TRUE(Show(*plain));
    (void)CallsOfADrawing(*plain);
    EXPECT_EQ(withCanvas, CallsOfADrawing(*plain));
    EXPECT_FALSE(withCanvas.empty());
    plain->ReleaseGraphics();
}

TEST_F(TileCanvasTest, MakesNoLayerForSomebodyWhoHasNoMark) {
    AddTile();
    (void)Read();
    const size_t textures = Sdl().LiveTextures();
    for (int participant = 0; participant < 25; ++participant) {
        manager->OnDataChannelMessage(
            {"participant " + std::to_string(participant), MarkMessage("stream", {})});
    }
    (void)Read();
    EXPECT_EQ(Sdl().LiveTextures(), textures);
    Draw("participant 7", "a", kWholeCanvas, kRed);
    (void)Read();
    EXPECT_EQ(Sdl().LiveTextures(), textures + 1);
}

TEST_F(TileCanvasTest, DrawsSteadilyWithoutAllocating) {
    AddTile();
    Calls().SetRecording(false);
    for (const bool withMarks : {false, true}) {
        if (withMarks) Draw("Anna", "a", kWholeCanvas, kRed);
        for (int drawing = 0; drawing < 3; ++drawing) RenderOn(screen, *tile);
        AllocationCounter::Start();
        for (int drawing = 0; drawing < 20; ++drawing) RenderOn(screen, *tile);
        EXPECT_EQ(AllocationCounter::Stop(), 0U) << withMarks;
    }
    Calls().SetRecording(true);
}

}  // namespace
}  // namespace Corvanta::Video
