// The room over the SDL build with the HDR additions: what the output is told about the main video.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "tests/fake_platform/FakeSdlAdditions.h"
#include "tests/room/RoomViewTest.h"

namespace Corvanta::Room {
namespace {

using namespace Corvanta::Testing;

constexpr const char* kHdrLabel = "Reset SDR brightness";

class HdrRoomTest : public RoomViewTest {
protected:
    HdrRoomTest() {
        SdlAdditions().Reset();
        SdlAdditions().SetRenderColorSpace(kColorSpaceBt2020);
        Sdl().AllowPlanarHdrTextures(true);
        Sdl().AllowHdrRendererFlag(true);
        Open();
    }
    ~HdrRoomTest() override {
        view.reset();
        SdlAdditions().Reset();
    }

    [[nodiscard]] static std::shared_ptr<VideoFrameBuffer> Graded(float maxContentLightLevelNits) {
        ColorSpace space = kBt2020Pq;
        space.SetHDRMetadata(HDRMetadata{.maxContentLightLevelNits = maxContentLightLevelNits});
        return MakeFrame({.type = VideoFrameBufferType::YUV420_16, .colorSpace = space});
    }
    // A remote stream with that frame; its output is known from a drawing before.
    std::shared_ptr<FrameCallback> AddGraded(const std::string& id, float maxContentLightLevelNits) {
        auto sink = view->AddRemoteVideoSource(id);
        EXPECT_NE(sink, nullptr);
        view->SetActiveSpeaker(id);
        view->Tick();
        EXPECT_TRUE(Show(sink, Graded(maxContentLightLevelNits)));
        Calls().Clear();
        return sink;
    }
    [[nodiscard]] std::vector<UI::Button*> OptionsItems() {
        const auto& items = view->GetToolbar().GetOptionsMenu()->GetItems();
        return {items.begin(), items.end()};
    }
    // In the queue alone, past those who watch events as they come; then a tick.
    void TellWindow(Uint32 window) {
        SDL_Event event;
        SDL_zero(event);
        event.type = 0x2002;
        event.window.windowID = window;
        EXPECT_EQ(SDL_PeepEvents(&event, 1, SDL_ADDEVENT, 0, 0), 1);
        view->Tick();
    }
    [[nodiscard]] static std::vector<std::string> SentLightLevels() {
        std::vector<std::string> levels;
        for (const Call& call : Calls().Of("SDL_SetRenderHDRMetadata")) levels.push_back(call.arguments[11]);
        return levels;
    }
};

TEST_F(HdrRoomTest, TellsTheMetadataOfTheMainVideoOneDrawingLateAndThenAlways) {
    AddGraded("one", 900);
    view->Tick();
    EXPECT_TRUE(SentLightLevels().empty());
    view->Tick();
    view->Tick();
    EXPECT_EQ(SentLightLevels(), (std::vector<std::string>{ToText(900.0), ToText(900.0)}));
}

TEST_F(HdrRoomTest, TellsThemJustBeforeTheMainVideoIsDrawn) {
    AddGraded("one", 900);
    view->Tick();
    Calls().Clear();
    view->Tick();
    EXPECT_EQ(Calls().NamesAmong(
                  {"SDL_RenderClear", "SDL_SetRenderHDRMetadata", "SDL_RenderCopy", "SDL_RenderPresent"}),
              (std::vector<std::string>{"SDL_RenderClear", "SDL_SetRenderHDRMetadata", "SDL_RenderCopy",
                                        "SDL_RenderPresent"}));
}

TEST_F(HdrRoomTest, TakesThemBackOnceWhenTheMainVideoHasNone) {
    AddGraded("one", 900);
    view->Tick();
    view->Tick();
    ASSERT_NE(view->AddRemoteVideoSource("plain"), nullptr);
    view->SetActiveSpeaker("plain");
    for (int i = 0; i < 3; ++i) view->Tick();
    EXPECT_EQ(Calls().Count("SDL_RemoveRenderHDRMetadata"), 1U);
}

TEST_F(HdrRoomTest, TellsNothingWhileThereIsNoMainVideo) {
    for (int i = 0; i < 3; ++i) view->Tick();
    EXPECT_EQ(Calls().Count("SDL_SetRenderHDRMetadata") + Calls().Count("SDL_RemoveRenderHDRMetadata"), 0U);
}

TEST_F(HdrRoomTest, SendsPlanesOfHdrPicturesUpUnconverted) {
    AddGraded("one", 900);
    view->Tick();
    EXPECT_TRUE(Fake().Conversions().empty());
    EXPECT_EQ(Calls().Count("SDL_UpdateYUVTexture16"), 1U);
}

TEST_F(HdrRoomTest, TheOptionsFollowTheOutputThatTheWindowIsToldOf) {
    SdlAdditions().SetRenderColorSpace(kColorSpaceSdr);
    view->BuildControls();
    const std::vector<UI::Button*> without = OptionsItems();
    ASSERT_FALSE(without.empty());
    EXPECT_NE(without.back()->GetLabel(), kHdrLabel);
    for (int i = 0; i < 2; ++i) {
        SdlAdditions().SetRenderColorSpace(kColorSpaceBt2020);
        EXPECT_EQ(OptionsItems(), without) << "nobody has told it";
        TellWindow(static_cast<Uint32>(view->GetSdlWindowId()));
        const std::vector<UI::Button*> with = OptionsItems();
        ASSERT_EQ(with.size(), without.size() + 1);
        EXPECT_TRUE(std::equal(without.begin(), without.end(), with.begin()));
        EXPECT_EQ(with.back()->GetLabel(), kHdrLabel);
        TellWindow(static_cast<Uint32>(view->GetSdlWindowId()));
        EXPECT_EQ(OptionsItems(), with);
        SdlAdditions().SetRenderColorSpace(kColorSpaceSdr);
        TellWindow(static_cast<Uint32>(view->GetSdlWindowId()));
        EXPECT_EQ(OptionsItems(), without);
        TellWindow(static_cast<Uint32>(view->GetSdlWindowId()));
        EXPECT_EQ(OptionsItems(), without);
    }
}

TEST_F(HdrRoomTest, TheOptionsFollowTheOutputOfADrawingTargetThatChanged) {
    SdlAdditions().SetRenderColorSpace(kColorSpaceSdr);
    view->BuildControls();
    const std::vector<UI::Button*> without = OptionsItems();
    for (int i = 0; i < 2; ++i) {
        SdlAdditions().SetRenderColorSpace(kColorSpaceBt2020);
        view->OnRenderTargetChanged();
        const std::vector<UI::Button*> with = OptionsItems();
        ASSERT_EQ(with.size(), without.size() + 1);
        EXPECT_EQ(with.back()->GetLabel(), kHdrLabel);
        view->OnRenderTargetChanged();
        EXPECT_EQ(OptionsItems(), with);
        SdlAdditions().SetRenderColorSpace(kColorSpaceSdr);
        view->OnRenderTargetChanged();
        EXPECT_EQ(OptionsItems(), without);
        view->OnRenderTargetChanged();
        EXPECT_EQ(OptionsItems(), without);
    }
}

TEST_F(HdrRoomTest, AnotherWindowsOutputIsNotTheOptions) {
    SdlAdditions().SetRenderColorSpace(kColorSpaceSdr);
    view->BuildControls();
    const std::vector<UI::Button*> without = OptionsItems();
    SdlAdditions().SetRenderColorSpace(kColorSpaceBt2020);
    TellWindow(static_cast<Uint32>(view->GetSdlWindowId()) + 1);
    EXPECT_EQ(OptionsItems(), without);
}

TEST_F(HdrRoomTest, AnOutputMayChangeBeforeTheOptionsAreThere) {
    view->OnRenderTargetChanged();
    TellWindow(static_cast<Uint32>(view->GetSdlWindowId()));
    EXPECT_EQ(view->GetToolbar().GetOptionsMenu(), nullptr);
    view->BuildControls();
    EXPECT_EQ(OptionsItems().back()->GetLabel(), kHdrLabel);
}

TEST_F(HdrRoomTest, AsksTheOutputOnTheThreadOfTheTickOnly) {
    std::thread media([&] { EXPECT_NE(view->AddRemoteVideoSource("one"), nullptr); });
    media.join();
    EXPECT_EQ(Calls().Count("SDL_GetRenderColorSpace"), 0U);
    view->SetActiveSpeaker("one");
    view->Tick();
    for (const Call& call : Calls().Of("SDL_GetRenderColorSpace")) {
        EXPECT_EQ(call.thread, std::this_thread::get_id());
    }
    EXPECT_EQ(Calls().Count("SDL_GetRenderColorSpace"), 1U);
}

}  // namespace
}  // namespace Corvanta::Room
