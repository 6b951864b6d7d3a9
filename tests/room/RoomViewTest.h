// A live room without a display: its window is a hidden one of SDL's dummy driver and its renderer the
// software one, so that every pixel that would be presented can be read.
#pragma once

#include <SDL.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "room/VideoRoomView.h"
#include "tests/fake_platform/FakePlatform.h"
#include "tests/fake_platform/PixelReader.h"
#include "tests/fake_platform/RecordingHost.h"
#include "tests/fake_platform/SdlRecorder.h"
#include "tests/fake_platform/TestFrames.h"
#include "tests/video/Eventually.h"
#include "tests/video/FlushSink.h"
#include "ui/RoomActive.h"

namespace Corvanta::Room {

inline constexpr int kViewWidth = 640;
inline constexpr int kViewHeight = 480;
inline constexpr uint32_t kWhite = 0xFFFFFFFF;
inline constexpr uint32_t kBlack = 0xFF000000;

using Corvanta::Testing::RecordingHost;

class RoomViewTest : public Corvanta::Testing::FakePlatformTest {
protected:
    RoomViewTest() {
        Corvanta::Testing::Sdl().Reset();
        Corvanta::Testing::Sdl().ReplaceForeignWindows(true);
        SDL_SetHint(SDL_HINT_VIDEODRIVER, "dummy");
        SDL_SetHint(SDL_HINT_RENDER_DRIVER, "software");
        SDL_SetHint(SDL_HINT_FRAMEBUFFER_ACCELERATION, "0");
        SDL_Init(SDL_INIT_VIDEO);
        view = std::make_shared<VideoRoomView>(0, RecordingHost());
        Corvanta::Testing::Calls().Clear();
    }
    ~RoomViewTest() override {
        view.reset();
        roomActive.store(false);
        SDL_Quit();
        Corvanta::Testing::Sdl().Reset();
    }

    // Opens the view's window; the list of calls is empty afterwards. The strip of thumbnails is put away: it
    // takes its height from the main video even without tiles, and draws every tile a second time.
    void Open(int width = kViewWidth, int height = kViewHeight) {
        view->GetThumbnails().SetShown(false);
        OpenWithWall(width, height);
    }
    void OpenWithWall(int width = kViewWidth, int height = kViewHeight) {
        ASSERT_EQ(view->Init(&nativeWindow, width, height), 1);
        Corvanta::Testing::Calls().Clear();
    }
    [[nodiscard]] Video::VideoFrame* TileOf(const std::string& id) {
        for (Video::VideoFrame* tile : view->GetThumbnails().GetAllTiles()) {
            if (tile->GetStreamId() == id) return tile;
        }
        return nullptr;
    }
    // Under which id the local user publishes streams of that type.
    static void NameLocalStream(StreamType type, const std::string& id) {
        Corvanta::Testing::Fake().Set([&](Corvanta::Testing::FakeResults& results) {
            results.localUserStreamIds[type] = id;
            results.localDisplayNames[type] = "My " + id;
            results.streamTypes[id] = type;
        });
    }
    static void SetType(const std::string& id, StreamType type) {
        Corvanta::Testing::Fake().Set(
            [&](Corvanta::Testing::FakeResults& results) { results.streamTypes[id] = type; });
    }

    // A tick, and what it presents. A size of 0 when it presented nothing.
    [[nodiscard]] Corvanta::Testing::Picture TickAndRead() {
        return ReadPresented([this] { view->Tick(); });
    }
    template <typename Step>
    [[nodiscard]] Corvanta::Testing::Picture ReadPresented(Step&& step) {
        Corvanta::Testing::Picture picture;
        Corvanta::Testing::Calls().OnCall("SDL_RenderPresent", [&](const Corvanta::Testing::Call&) {
            picture = Corvanta::Testing::ReadPicture(view->GetRenderer());
        });
        step();
        Corvanta::Testing::Calls().OnCall("SDL_RenderPresent", {});
        return picture;
    }

    // Returns when the tile behind the sink has the frame.
    [[nodiscard]] static bool Show(const std::shared_ptr<FrameCallback>& sink,
                                   const std::shared_ptr<VideoFrameBuffer>& frame) {
        (*sink)(frame);
        return Corvanta::Testing::FlushSink(*sink);
    }
    // One colour all over, as an RGB frame.
    [[nodiscard]] static std::shared_ptr<VideoFrameBuffer> Plain(uint32_t argb, int width = 64,
                                                                 int height = 48) {
        return Corvanta::Testing::MakeFrame({.width = width,
                                             .height = height,
                                             .type = VideoFrameBufferType::RGB,
                                             .colorSpace = Corvanta::Testing::kSrgb,
                                             .argb = argb});
    }
    // A remote stream that shows one colour.
    std::shared_ptr<FrameCallback> AddRemote(const std::string& id, uint32_t argb) {
        auto sink = view->AddRemoteVideoSource(id);
        EXPECT_TRUE(sink != nullptr && Show(sink, Plain(argb)));
        return sink;
    }
    std::shared_ptr<FrameCallback> AddCamera(uint32_t argb) {
        auto sink = view->AddLocalVideoSource(StreamType::Camera, "camera");
        EXPECT_TRUE(sink != nullptr && Show(sink, Plain(argb)));
        return sink;
    }
    // The colour in the middle of what a tick presents.
    [[nodiscard]] uint32_t ShownColor() {
        const auto picture = TickAndRead();
        return picture.width == 0 ? 0 : picture.At(picture.width / 2, picture.height / 2);
    }
    // An external source, which takes the main video by itself.
    static void MakeExternal(const std::string& id) {
        Corvanta::Testing::Fake().Set(
            [&](Corvanta::Testing::FakeResults& results) { results.externalSources.insert(id); });
    }

    int nativeWindow = 0;
    std::shared_ptr<VideoRoomView> view;
};

}  // namespace Corvanta::Room
