// A tile, a screen without a display, and what tests of a tile do over and over.
#pragma once

#include <SDL.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/fake_platform/FakePlatform.h"
#include "tests/fake_platform/PixelReader.h"
#include "tests/fake_platform/SdlRecorder.h"
#include "tests/fake_platform/TestFrames.h"
#include "tests/video/Eventually.h"
#include "tests/video/FlushSink.h"
#include "ui/Clock.h"
#include "video/VideoFrame.h"

namespace Corvanta::Video {

using Corvanta::Testing::Calls;
using Corvanta::Testing::Eventually;
using Corvanta::Testing::Fake;

inline constexpr int kScreenWidth = 64;
inline constexpr int kScreenHeight = 48;

class TileTest : public Corvanta::Testing::FakePlatformTest {
protected:
    TileTest() {
        Corvanta::Testing::Sdl().Reset();
        tile.rect = {0, 0, kScreenWidth, kScreenHeight};
    }
    ~TileTest() override {
        tile.ReleaseGraphics();
        Corvanta::Testing::Sdl().Reset();
    }

    static void SendTo(VideoFrame& receiver, const Frame& frame) { (*receiver.GetFrameSink())(frame); }
    void Send(const Frame& frame) { SendTo(tile, frame); }

    [[nodiscard]] static bool FlushOf(const VideoFrame& receiver) {
        return Corvanta::Testing::FlushSink(*receiver.GetFrameSink());
    }
    [[nodiscard]] bool Flush() { return FlushOf(tile); }
    [[nodiscard]] bool Show(const Frame& frame) {
        Send(frame);
        return Flush();
    }

    // The whole picture into the tile's rectangle.
    void Draw() {
        const PictureSize size = tile.GetPictureSize();
        tile.sourceRect = {0, 0, size.width, size.height};
        tile.Render(screen.Renderer(), {0, 0});
    }
    [[nodiscard]] Corvanta::Testing::Picture DrawAndRead() {
        screen.Fill(0xFF102030);
        Draw();
        return screen.Read();
    }

    [[nodiscard]] static std::vector<std::string> MessagesAt(int level) { return Fake().LogsOf(level); }

    Corvanta::Testing::PixelReader screen{kScreenWidth, kScreenHeight};
    VideoFrame tile{"stream", "session", "profile", TileOrigin::Remote};
};

}  // namespace Corvanta::Video
