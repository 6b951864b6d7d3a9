#include "video/VideoFrame.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "tests/fake_platform/AllocationCounter.h"
#include "tests/video/Gate.h"
#include "tests/video/TileTest.h"

namespace Corvanta::Video {
namespace {

using namespace Corvanta::Testing;
using Type = VideoFrameBufferType;

constexpr int64_t kNsPerMs = 1'000'000;
constexpr uint32_t kBackground = 0xFF102030;

// Writes down what it is told.
class RecordingObserver final : public FrameObserver {
public:
    struct Seen {
        Frame frame;
        int colorSpace;
        Uint32 pixelFormat;
        SDL_Rect mainVideoRect;
        int reserved;
        VideoSourceData data;
    };

    explicit RecordingObserver(std::vector<Seen>& seen) : seen_(seen) {}
    ~RecordingObserver() override { Calls().Record("observer freed"); }
    void OnFrame(const Frame& frame, int renderColorSpace, Uint32 renderPixelFormat,
                 const SDL_Rect& mainVideoRect, int reserved, const VideoSourceData& sourceData) override {
        Calls().Record("observed", frame);
        seen_.push_back({frame, renderColorSpace, renderPixelFormat, mainVideoRect, reserved, sourceData});
    }

private:
    std::vector<Seen>& seen_;
};

class RoomOfOneSize final : public TileOwner {
public:
    [[nodiscard]] SDL_Rect GetMainVideoRect() const override { return {7, 9, 33, 21}; }
};

class VideoFrameTest : public TileTest {
protected:
    // Draws as a thumbnail at that time after the tile was made.
    void DrawInGridAt(int64_t ms) {
        tile.inGrid = true;
        tile.SetRenderTime(madeNs + ms * kNsPerMs);
        Draw();
    }

    static std::vector<std::string> ColorModulations() {
        std::vector<std::string> all;
        for (const Call& call : Calls().Of("SDL_SetTextureColorMod")) {
            all.push_back(call.arguments[1] + ' ' + call.arguments[2] + ' ' + call.arguments[3]);
        }
        return all;
    }

    // The clock stands still, so that the tile knows when it was made.
    struct FrozenClock {
        FrozenClock() {
            UI::SetClock([] { return int64_t{1000} * kNsPerMs; });
        }
        ~FrozenClock() { UI::SetClock(nullptr); }
    };
    static constexpr int64_t madeNs = 1000 * kNsPerMs;
};

// Its type is asked for when it is made.
class TypedTile {
public:
    explicit TypedTile(StreamType type) : tile_(Make(type)) {}
    VideoFrame& operator*() { return *tile_; }
    VideoFrame* operator->() { return tile_.get(); }

private:
    static std::unique_ptr<VideoFrame> Make(StreamType type) {
        Fake().Set([&](FakeResults& results) { results.streamTypes["typed"] = type; });
        return std::make_unique<VideoFrame>("typed", "", "", TileOrigin::Remote);
    }
    std::unique_ptr<VideoFrame> tile_;
};

TEST_F(VideoFrameTest, IsAThumbnailsShapeAndEmptyBeforeThereIsAPicture) {
    EXPECT_EQ(tile.GetPictureSize().width, 0);
    EXPECT_TRUE(tile.HasNoFrameSize());
    EXPECT_EQ(tile.GetAspectRatio(), 1.3333334F);
    EXPECT_FALSE(tile.HasTexture());
    EXPECT_TRUE(AreaIs(DrawAndRead(), {0, 0, kScreenWidth, kScreenHeight}, kBackground));
}

TEST_F(VideoFrameTest, DrawsWhatCameInWhereItsRectangleSays) {
    ASSERT_TRUE(Show(MakeFrame({.width = 16, .height = 8, .y = 235, .u = 128, .v = 128})));
    tile.rect = {10, 4, 32, 20};
    const Picture picture = DrawAndRead();
    EXPECT_TRUE(AreaIs(picture, {10, 4, 32, 20}, 0xFFFFFFFF));
    EXPECT_TRUE(PixelIs(picture, 9, 10, kBackground));
    EXPECT_TRUE(PixelIs(picture, 42, 10, kBackground));
    EXPECT_TRUE(PixelIs(picture, 20, 3, kBackground));
    EXPECT_TRUE(PixelIs(picture, 20, 24, kBackground));
}

TEST_F(VideoFrameTest, DrawsThePartThatItsSourceSays) {
    const auto frame = MakeRgbFrame({.width = 4, .height = 2, .argb = 0xFF0000FF});
    frame->SetPixel(3, 1, 0xFFFF0000);
    ASSERT_TRUE(Show(frame));
    tile.sourceRect = {3, 1, 1, 1};
    tile.Render(screen.Renderer(), {50, 50});
    EXPECT_TRUE(AreaIs(screen.Read(), tile.rect, 0xFFFF0000));
}

TEST_F(VideoFrameTest, LeavesTheDrawColourOpaqueBlack) {
    Draw();
    Uint8 red = 1;
    Uint8 green = 1;
    Uint8 blue = 1;
    Uint8 alpha = 1;
    SDL_GetRenderDrawColor(screen.Renderer(), &red, &green, &blue, &alpha);
    EXPECT_EQ((std::vector<int>{red, green, blue, alpha}), (std::vector<int>{0, 0, 0, 255}));
}

TEST_F(VideoFrameTest, DrawsNothingAtAllWhileItIsNotRenderable) {
    ASSERT_TRUE(Show(MakeFrame()));
    tile.renderable = false;
    Calls().Clear();
    Draw();
    EXPECT_TRUE(Calls().Names().empty());
}

TEST_F(VideoFrameTest, DrawsOnlyTheNewestOfTheFramesBetweenTwoDrawings) {
    for (const uint16_t luma : {uint16_t{40}, uint16_t{90}, uint16_t{235}}) {
        ASSERT_TRUE(Show(MakeFrame({.y = luma, .u = 128, .v = 128})));
    }
    EXPECT_TRUE(AreaIs(DrawAndRead(), tile.rect, 0xFFFFFFFF));
    EXPECT_EQ(Calls().Count("SDL_UpdateTexture"), 1U);
}

TEST_F(VideoFrameTest, UploadsNothingForAPictureThatIsNotNew) {
    ASSERT_TRUE(Show(MakeFrame()));
    Draw();
    Draw();
    EXPECT_EQ(Calls().Count("SDL_UpdateTexture"), 1U);
    EXPECT_EQ(Calls().Count("SDL_RenderCopy"), 2U);
}

TEST_F(VideoFrameTest, TellsAboutItsTextureOnceAndOnceMoreAboutANewSize) {
    ASSERT_TRUE(Show(MakeFrame({.width = 1280, .height = 720})));
    Draw();
    Draw();
    ASSERT_TRUE(Show(MakeFrame({.width = 640, .height = 360})));
    Draw();
    Draw();
    EXPECT_EQ(MessagesAt(1), (std::vector<std::string>{
                                 "Created video texture: w,h: 1280 720",
                                 "Resized video texture from w: 1280 h: 720 to new w: 640 new h: 360"}));
    EXPECT_EQ(tile.GetPictureSize().width, 640);
    EXPECT_EQ(tile.GetPictureSize().height, 360);
}

TEST_F(VideoFrameTest, KeepsTheTextureWhenMatrixRangeAndTransferChange) {
    for (const ColorSpace& space : {kBt709Limited,
                                    ColorSpace{ColorMatrix::SMPTE170M, ColorRange::Full,
                                               ColorPrimaries::BT709, ColorTransfer::IEC61966_2_1},
                                    kBt2020Pq, kBt2020Hlg}) {
        ASSERT_TRUE(Show(MakeFrame({.colorSpace = space})));
        Draw();
    }
    EXPECT_EQ(Calls().Count("SDL_CreateTexture"), 1U);
    EXPECT_EQ(MessagesAt(1).size(), 1U);
}

TEST_F(VideoFrameTest, KnowsTheColoursOfTheLastUploadAndNotOfTheLastFrame) {
    ASSERT_TRUE(Show(MakeFrame({.colorSpace = kBt709Limited})));
    Draw();
    ASSERT_TRUE(Show(MakeFrame({.colorSpace = kSrgb})));
    EXPECT_EQ(tile.GetColorSpace(), kBt709Limited);
    Draw();
    EXPECT_EQ(tile.GetColorSpace(), kSrgb);
}

TEST_F(VideoFrameTest, ConvertsPqForAnSdrOutputAndShowsTheResult) {
    Fake().Set([](FakeResults& results) {
        results.convert = [](const auto&, int width, int height, Type type, const ColorSpace& space) {
            return MakeFrame({.width = width,
                              .height = height,
                              .type = type,
                              .colorSpace = space,
                              .y = 940,
                              .u = 512,
                              .v = 512});
        };
    });
    ASSERT_TRUE(Show(MakeFrame({.type = Type::YUV420_16, .colorSpace = kBt2020Pq, .y = 100})));
    EXPECT_TRUE(AreaIs(DrawAndRead(), tile.rect, 0xFFFFFFFF));
    EXPECT_EQ(Fake().Conversions().size(), 1U);
    EXPECT_EQ(tile.GetColorSpace(), Fake().Conversions()[0].target);
}

TEST_F(VideoFrameTest, SaysOnceAFrameThatItCannotShowAndShowsTheNextGoodOne) {
    ASSERT_TRUE(Show(MakeFrame()));
    Draw();
    ASSERT_TRUE(Show(MakeFrame({.type = static_cast<Type>(7)})));
    for (int i = 0; i < 3; ++i) Draw();
    EXPECT_EQ(MessagesAt(4), std::vector<std::string>{
                                 "Attempted to create unsupported texture (VideoFrame::RecreateTexture)"});
    EXPECT_FALSE(tile.HasTexture());
    EXPECT_TRUE(AreaIs(DrawAndRead(), tile.rect, kBackground));
    ASSERT_TRUE(Show(MakeFrame({.y = 235, .u = 128, .v = 128})));
    EXPECT_TRUE(AreaIs(DrawAndRead(), tile.rect, 0xFFFFFFFF));
}

TEST_F(VideoFrameTest, TriesAgainWithTheNextDrawingWhenTheTextureCannotBeMade) {
    Sdl().Fail("SDL_CreateTexture", 2);
    ASSERT_TRUE(Show(MakeFrame({.y = 235, .u = 128, .v = 128})));
    EXPECT_TRUE(AreaIs(DrawAndRead(), tile.rect, kBackground));
    EXPECT_TRUE(AreaIs(DrawAndRead(), tile.rect, kBackground));
    EXPECT_TRUE(AreaIs(DrawAndRead(), tile.rect, 0xFFFFFFFF));
}

TEST_F(VideoFrameTest, HasTheThumbnailsShapeAndNoPictureForAFrameWithoutASize) {
    ASSERT_TRUE(Show(MakeFrame({.width = 64, .height = 32})));
    Draw();
    ASSERT_TRUE(Show(MakeFrame({.width = 64, .height = 0})));
    EXPECT_EQ(tile.GetAspectRatio(), 1.3333334F);
    EXPECT_TRUE(tile.HasNoFrameSize());
    EXPECT_TRUE(AreaIs(DrawAndRead(), tile.rect, kBackground));
    const SDL_Rect crop = tile.GetCenterCrop();
    EXPECT_TRUE(SDL_RectEmpty(&crop));
}

TEST_F(VideoFrameTest, BelievesNoSizeThatNoPictureHas) {
    const auto type = static_cast<Type>(7);
    ASSERT_TRUE(Show(MakeFrame({.width = 2147483647, .height = 1, .type = type})));
    EXPECT_EQ(tile.GetPictureSize().width, 16384);
    ASSERT_TRUE(Show(MakeFrame({.width = -2147483647, .height = -5, .type = type})));
    EXPECT_EQ(tile.GetPictureSize().width, 0);
    EXPECT_EQ(tile.GetPictureSize().height, 0);
}

TEST_F(VideoFrameTest, KeepsItsPictureWhenABrokenFrameComes) {
    ASSERT_TRUE(Show(MakeFrame({.y = 235, .u = 128, .v = 128})));
    for (const BadFrame& bad : MakeBadFrames()) {
        const std::string name = bad.name;
        if (name.starts_with("huge") || name.starts_with("null") ||
            name.find("stride") != std::string::npos) {
            Send(bad.frame);
            ASSERT_TRUE(Flush());
        }
    }
    EXPECT_TRUE(AreaIs(DrawAndRead(), tile.rect, 0xFFFFFFFF));
}

TEST_F(VideoFrameTest, SurvivesEveryBrokenFrame) {
    for (const BadFrame& bad : MakeBadFrames()) {
        SCOPED_TRACE(bad.name);
        ASSERT_TRUE(Show(bad.frame));
        Draw();
    }
    ASSERT_TRUE(Show(MakeFrame({.y = 235, .u = 128, .v = 128})));
    EXPECT_TRUE(AreaIs(DrawAndRead(), tile.rect, 0xFFFFFFFF));
}

TEST_F(VideoFrameTest, ShowsFramesThatChangeTypeAndSizeEveryTime) {
    for (int i = 0; i < 40; ++i) {
        const FrameSpec spec{.width = 1 + i * 5 % 37,
                             .height = 1 + i * 3 % 23,
                             .type = static_cast<Type>(i % 7),
                             .y = i % 7 < 4 ? 235 : 940,
                             .u = i % 7 < 4 ? 128 : 512,
                             .v = i % 7 < 4 ? 128 : 512,
                             .argb = 0xFFFFFFFF,
                             .padding = i % 3 * 2};
        ASSERT_TRUE(Show(MakeFrame(spec)));
        EXPECT_TRUE(AreaIs(DrawAndRead(), tile.rect, 0xFFFFFFFF)) << i;
    }
}

TEST_F(VideoFrameTest, DropsTheFourthFrameOfAWorkerThatIsBusy) {
    Gate gate;
    Calls().OnCall("WebRTC_ConvertFrame", [&](const Call&) { gate.Pass(); });
    Send(MakeFrame({.colorSpace = kBt2020Pq}));
    ASSERT_TRUE(gate.WaitForArrival());
    std::vector<Frame> waiting;
    for (int i = 0; i < 4; ++i) {
        waiting.push_back(MakeFrame({.width = 10 + i, .height = 8}));
        Send(waiting.back());
    }
    EXPECT_EQ(waiting[2].use_count(), 2);
    EXPECT_EQ(waiting[3].use_count(), 1);
    gate.Open();
    ASSERT_TRUE(Flush());
    EXPECT_EQ(tile.GetPictureSize().width, 12);
}

// Brightness

TEST_F(VideoFrameTest, IsDimmedInTheGridWhileHoveredOrLost) {
    ASSERT_TRUE(Show(MakeFrame({.y = 235, .u = 128, .v = 128})));
    struct Case {
        bool hovered, lost, inGrid, dragging, dimmed;
    };
    for (const Case& c : {Case{false, false, true, false, false}, Case{true, false, true, false, true},
                          Case{false, true, true, false, true}, Case{true, true, true, true, false},
                          Case{true, false, false, false, false}, Case{false, true, false, false, false}}) {
        tile.hovered = c.hovered;
        tile.lostConnection = c.lost;
        tile.inGrid = c.inGrid;
        tile.dragging = c.dragging;
        Calls().Clear();
        Draw();
        const std::string first = c.dimmed ? "128 128 128" : "255 255 255";
        EXPECT_EQ(ColorModulations(), (std::vector<std::string>{first, "255 255 255"}));
    }
}

// Stale pictures

TEST_F(VideoFrameTest, ACameraInTheGridLosesItsPictureAfter7001Milliseconds) {
    const FrozenClock clock;
    TypedTile camera(StreamType::Camera);
    const auto draw = [&](int64_t ms) {
        camera->inGrid = true;
        camera->SetRenderTime(madeNs + ms * kNsPerMs);
        camera->Render(screen.Renderer(), {0, 0});
    };
    const auto frame = MakeFrame();
    SendTo(*camera, frame);
    ASSERT_TRUE(FlushOf(*camera));
    draw(100);
    draw(7100);
    EXPECT_TRUE(camera->HasTexture());
    // A part of a millisecond does not count.
    camera->SetRenderTime(madeNs + 7101 * kNsPerMs - 1);
    camera->Render(screen.Renderer(), {0, 0});
    EXPECT_TRUE(camera->HasTexture());
    draw(7101);
    EXPECT_FALSE(camera->HasTexture());
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    EXPECT_EQ(frame.use_count(), 1);
    draw(7102);
    EXPECT_FALSE(camera->HasTexture());
    SendTo(*camera, MakeFrame());
    ASSERT_TRUE(FlushOf(*camera));
    draw(9000);
    EXPECT_TRUE(camera->HasTexture());
    camera->ReleaseGraphics();
}

TEST_F(VideoFrameTest, OtherStreamsKeepTheirLastPictureForever) {
    for (const StreamType type :
         {StreamType::Screenshare, StreamType::Device, StreamType::File, StreamType::URL}) {
        TypedTile other(type);
        SendTo(*other, MakeFrame());
        ASSERT_TRUE(FlushOf(*other));
        other->inGrid = true;
        other->Render(screen.Renderer(), {0, 0});
        other->SetRenderTime(UI::NowNs() + 1000 * 7001 * kNsPerMs);
        other->Render(screen.Renderer(), {0, 0});
        EXPECT_TRUE(other->HasTexture());
        other->ReleaseGraphics();
    }
}

TEST_F(VideoFrameTest, ACameraKeepsItsLastPictureAsMainVideo) {
    TypedTile camera(StreamType::Camera);
    SendTo(*camera, MakeFrame());
    ASSERT_TRUE(FlushOf(*camera));
    camera->Render(screen.Renderer(), {0, 0});
    camera->SetRenderTime(UI::NowNs() + 1000 * 7001 * kNsPerMs);
    camera->Render(screen.Renderer(), {0, 0});
    EXPECT_TRUE(camera->HasTexture());
    camera->ReleaseGraphics();
}

// Video on and off

TEST_F(VideoFrameTest, TurnsBlackAndDropsFramesWhileItsVideoIsOff) {
    const auto frame = MakeFrame({.y = 235, .u = 128, .v = 128});
    ASSERT_TRUE(Show(frame));
    Draw();
    tile.SetVideoEnabled(false);
    EXPECT_FALSE(tile.IsVideoEnabled());
    EXPECT_EQ(ClearCount(frame), 1);
    EXPECT_TRUE(AreaIs(DrawAndRead(), tile.rect, 0xFF000000));
    const auto dropped = MakeFrame();
    Send(dropped);
    EXPECT_EQ(dropped.use_count(), 1);
    tile.SetVideoEnabled(true);
    ASSERT_TRUE(Show(MakeFrame({.y = 235, .u = 128, .v = 128})));
    EXPECT_TRUE(AreaIs(DrawAndRead(), tile.rect, 0xFFFFFFFF));
}

TEST_F(VideoFrameTest, BlackensAFrameThatCameWithItsOwnPixels) {
    const auto frame = MakeRgbFrame({.width = 8, .height = 8, .argb = 0xFFFFFFFF});
    ASSERT_TRUE(Show(frame));
    Draw();
    tile.BlankFrame();
    EXPECT_TRUE(AreaIs(DrawAndRead(), tile.rect, 0xFF000000));
}

TEST_F(VideoFrameTest, WritesAStillOfTheNextFrameAlsoWhileItsVideoIsOff) {
    tile.SetVideoEnabled(false);
    tile.RequestStillExport("still");
    Send(MakeFrame());
    ASSERT_EQ(Fake().StillExports().size(), 1U);
    EXPECT_EQ(Fake().StillExports()[0].path, "still");
}

TEST_F(VideoFrameTest, EndsItsSubscriptionWhileDeactivatedAndKeepsTheSoundAndTheData) {
    tile.Deactivate();
    EXPECT_FALSE(tile.IsActive());
    EXPECT_FALSE(tile.IsVideoEnabled());
    tile.Deactivate();
    tile.Activate();
    EXPECT_TRUE(tile.IsActive());
    EXPECT_TRUE(tile.IsVideoEnabled());
    tile.Activate();
    EXPECT_EQ(Fake().CallsOf("Connections_ConfigureStream"),
              (std::vector<Call>{{"Connections_ConfigureStream", {"stream", "0=true 1=false 2=true"}},
                                 {"Connections_ConfigureStream", {"stream", "0=true 1=true 2=true"}}}));
}

TEST_F(VideoFrameTest, KeepsTheWishForNoVideoOverADeactivation) {
    tile.SetVideoEnabledWanted(false);
    tile.Deactivate();
    tile.Activate();
    EXPECT_FALSE(tile.IsVideoEnabled());
}

TEST_F(VideoFrameTest, TakesAWishThatComesWhileItIsDeactivated) {
    tile.Deactivate();
    tile.SetVideoEnabledWanted(false);
    tile.Activate();
    EXPECT_FALSE(tile.IsVideoEnabled());
    tile.SetVideoEnabledWanted(true);
    EXPECT_TRUE(tile.IsVideoEnabled());
}

TEST_F(VideoFrameTest, TurnsBlackWhenItIsDeactivated) {
    const auto frame = MakeFrame();
    ASSERT_TRUE(Show(frame));
    tile.Deactivate();
    EXPECT_EQ(ClearCount(frame), 1);
}

// Renderers

TEST_F(VideoFrameTest, ReleasesItsTextureButNotItsPicture) {
    const auto frame = MakeFrame({.y = 235, .u = 128, .v = 128});
    ASSERT_TRUE(Show(frame));
    Draw();
    tile.ReleaseGraphics();
    EXPECT_FALSE(tile.HasTexture());
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    EXPECT_FALSE(tile.IsVideoEnabled());
    EXPECT_EQ(ClearCount(frame), 0);
    PixelReader other{kScreenWidth, kScreenHeight};
    tile.Render(other.Renderer(), {0, 0});
    EXPECT_TRUE(AreaIs(other.Read(), tile.rect, 0xFFFFFFFF));
    tile.ReleaseGraphics();
}

TEST_F(VideoFrameTest, LeavesItsTextureToItsRendererWhenItIsDestroyed) {
    auto other = std::make_unique<VideoFrame>("other", "", "", TileOrigin::Local);
    SendTo(*other, MakeFrame());
    ASSERT_TRUE(FlushOf(*other));
    other->Render(screen.Renderer(), {0, 0});
    ASSERT_EQ(Sdl().LiveTextures(), 1U);
    other.reset();
    EXPECT_EQ(Calls().Count("SDL_DestroyTexture"), 0U);
}

TEST_F(VideoFrameTest, AsksNoRendererBeforeItIsDrawn) {
    Calls().Clear();
    VideoFrame other("other", "", "", TileOrigin::Remote);
    SendTo(other, MakeFrame());
    ASSERT_TRUE(FlushOf(other));
    EXPECT_EQ(Calls().Names(),
              (std::vector<std::string>{"Connections_GetStreamType", "WebRTC_GetFrameTransformerInstance"}));
}

// Observer and description

TEST_F(VideoFrameTest, ShowsItsObserverTheOriginalBeforeItConvertsIt) {
    std::vector<RecordingObserver::Seen> seen;
    tile.SetFrameObserver(std::make_unique<RecordingObserver>(seen));
    const auto frame = MakeFrame({.colorSpace = kBt2020Pq});
    ASSERT_TRUE(Show(frame));
    EXPECT_EQ(Calls().NamesAmong({"observed", "WebRTC_ConvertFrame"}),
              (std::vector<std::string>{"observed", "WebRTC_ConvertFrame"}));
    ASSERT_EQ(seen.size(), 1U);
    EXPECT_EQ(seen[0].frame, frame);
    EXPECT_EQ(seen[0].reserved, 0);
}

TEST_F(VideoFrameTest, TellsItsObserverOfNoOutputAndNoSourceBeforeThereAreAny) {
    std::vector<RecordingObserver::Seen> seen;
    tile.SetFrameObserver(std::make_unique<RecordingObserver>(seen));
    ASSERT_TRUE(Show(MakeFrame()));
    ASSERT_EQ(seen.size(), 1U);
    EXPECT_EQ(seen[0].colorSpace, kColorSpaceSdr);
    EXPECT_EQ(seen[0].pixelFormat, static_cast<Uint32>(SDL_PIXELFORMAT_RGBA8888));
    EXPECT_EQ(seen[0].mainVideoRect.w, 0);
    EXPECT_EQ(seen[0].data, (VideoSourceData{"", -1.0F, ""}));
}

TEST_F(VideoFrameTest, TellsItsObserverOfTheOutputAsLastDrawnAndOfTheSource) {
    const RoomOfOneSize room;
    tile.owner = const_cast<RoomOfOneSize*>(&room);
    SDL_RenderSetScale(screen.Renderer(), 1.5F, 2.5F);
    Draw();
    tile.SetSourceData({"stream", 29.97F, "a clip"});
    std::vector<RecordingObserver::Seen> seen;
    tile.SetFrameObserver(std::make_unique<RecordingObserver>(seen));
    ASSERT_TRUE(Show(MakeFrame()));
    ASSERT_EQ(seen.size(), 1U);
    EXPECT_EQ(seen[0].pixelFormat, static_cast<Uint32>(SDL_PIXELFORMAT_ARGB8888));
    // The sides in output pixels, truncated: 33 * 1.5 and 21 * 2.5.
    const SDL_Rect expected{7, 9, 49, 52};
    EXPECT_TRUE(SDL_RectEquals(&seen[0].mainVideoRect, &expected));
    EXPECT_EQ(seen[0].data, (VideoSourceData{"stream", 29.97F, "a clip"}));
}

TEST_F(VideoFrameTest, FreesItsObserverWhenItIsCleared) {
    std::vector<RecordingObserver::Seen> seen;
    tile.SetFrameObserver(std::make_unique<RecordingObserver>(seen));
    tile.ClearFrameObserver();
    EXPECT_EQ(Calls().Count("observer freed"), 1U);
    ASSERT_TRUE(Show(MakeFrame()));
    EXPECT_TRUE(seen.empty());
}

TEST_F(VideoFrameTest, EndsItsWorkerThenFreesTheObserverThenGivesTheConverterBack) {
    std::vector<RecordingObserver::Seen> seen;
    auto other = std::make_unique<VideoFrame>("other", "", "", TileOrigin::Remote);
    other->SetFrameObserver(std::make_unique<RecordingObserver>(seen));
    Calls().Clear();
    other.reset();
    EXPECT_EQ(Calls().Names(),
              (std::vector<std::string>{"observer freed", "WebRTC_DeleteFrameTransformerInstance"}));
}

TEST_F(VideoFrameTest, RemembersTheDescriptionOfItsSource) {
    EXPECT_FALSE(tile.GetSourceData().has_value());
    tile.SetSourceData({"stream", 25.0F, "clip"});
    EXPECT_EQ(tile.GetSourceData(), (VideoSourceData{"stream", 25.0F, "clip"}));
}

// Identity

TEST_F(VideoFrameTest, KnowsWhoseStreamItShows) {
    EXPECT_EQ(tile.GetStreamId(), "stream");
    EXPECT_EQ(tile.GetSessionName(), "session");
    EXPECT_EQ(tile.GetProfileId(), "profile");
    EXPECT_EQ(tile.GetOrigin(), TileOrigin::Remote);
    EXPECT_TRUE(tile.IsActive());
    EXPECT_TRUE(tile.audioEnabled);
    EXPECT_TRUE(tile.OnClick());
}

TEST_F(VideoFrameTest, AsksForItsPublishersNameOnce) {
    Fake().Set([](FakeResults& results) { results.publisherNames["stream"] = "Ada"; });
    EXPECT_EQ(tile.GetDisplayName(), "Ada");
    EXPECT_EQ(tile.GetDisplayName(), "Ada");
    EXPECT_EQ(Calls().Count("Connections_GetPublisherDisplayName"), 1U);
}

TEST_F(VideoFrameTest, PrefersTheNameThatTheRoomGaveIt) {
    tile.SetDisplayName("Me");
    EXPECT_EQ(tile.GetDisplayName(), "Me");
    EXPECT_EQ(Calls().Count("Connections_GetPublisherDisplayName"), 0U);
}

// Cost

TEST_F(VideoFrameTest, AllocatesNothingForASteadyPicture) {
    const auto frame = MakeFrame();
    ASSERT_TRUE(Show(frame));
    Draw();
    Calls().SetRecording(false);
    AllocationCounter::Start();
    for (int i = 0; i < 20; ++i) Draw();
    EXPECT_EQ(AllocationCounter::Stop(), 0U);
}

TEST_F(VideoFrameTest, AllocatesNothingOnTheMediaThreadForAFrame) {
    const auto frame = MakeFrame();
    ASSERT_TRUE(Show(frame));
    AllocationCounter::Start();
    for (int i = 0; i < 20; ++i) Send(frame);
    EXPECT_EQ(AllocationCounter::Stop(), 0U);
    ASSERT_TRUE(Flush());
}

}  // namespace
}  // namespace Corvanta::Video
