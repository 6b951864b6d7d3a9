// A room of the own camera, and a hand at the host's mouse that draws on it. Layers are small.
#pragma once

#include <SDL.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/drawing/LocalUser.h"
#include "tests/drawing/MarkMessage.h"
#include "tests/fake_platform/PixelReader.h"
#include "tests/fake_platform/TestFrames.h"
#include "tests/interface/RoomTest.h"
#include "tests/video/FlushSink.h"

namespace Corvanta::Testing {

inline constexpr SDL_Point kDrawingWindow{1280, 800};
inline constexpr uint32_t kCameraColor = 0xFF204060;
inline constexpr uint32_t kMarkColor = 0xFFFF0000;
// The camera's picture is sixteen by nine.
inline constexpr SDL_Rect kWholeCanvas{0, 0, 1280, 720};

class DrawingRoom : public StartedTest {
protected:
    DrawingRoom() { Sdl().LimitTextureSides(640); }

    // The list of calls is empty afterwards.
    static void EnterWithCamera() {
        SDLinterface_SetRoomWindow(&windowOfTheHost, kDrawingWindow.x, kDrawingWindow.y);
        ASSERT_EQ(Enter(), 1);
        // The window stands for the host's, which has its own size.
        SDLinterface_VideoRoomResize(kDrawingWindow.x, kDrawingWindow.y);
        FrameCallback* const sink = Fake().OfferLocalSource(StreamType::Camera, "camera");
        ASSERT_NE(sink, nullptr);
        (*sink)(MakeFrame({.width = 64,
                           .height = 36,
                           .type = VideoFrameBufferType::RGB,
                           .colorSpace = kSrgb,
                           .argb = kCameraColor}));
        ASSERT_TRUE(FlushSink(*sink));
        Tick(2);
        Forget();
    }
    static void Forget() {
        Calls().Clear();
        Fake().ClearLogs();
    }
    static void Tick(int count = 1) {
        for (int tick = 0; tick < count; ++tick) {
            TurnedClock::AdvanceMs(30);
            SDL_WPFVideoRoomCheckInputAndRender();
        }
    }
    static void Choose(uint32_t tool, bool enabled = true) {
        DrawToolState state = ToolState(tool);
        state.enabled = enabled;
        SDLinterface_SetDrawToolState(&state);
        Tick();
    }

    [[nodiscard]] static Room::VideoRoomView& View() { return *Interface::CurrentView(); }
    // By fractions of the main video's sides. Nothing where the host has left the room meanwhile.
    static void MoveTo(double x, double y) {
        if (!HasView()) return;
        const SDL_Rect video = View().GetMainVideoRect();
        SDLinterface_PushMouseMoveEvent(0, static_cast<float>((video.x + video.w * x) / View().GetWidth()),
                                        static_cast<float>((video.y + video.h * y) / View().GetHeight()));
        Tick();
    }
    static void Press() {
        SDLinterface_PushMouseButtonDownEvent(0);
        Tick();
    }
    static void Release() {
        SDLinterface_PushMouseButtonUpEvent(0);
        Tick();
    }
    // From a quarter of the video's sides to three quarters.
    static void DrawSomething() {
        MoveTo(0.25, 0.25);
        Press();
        MoveTo(0.75, 0.75);
        Release();
    }
    static void ClickAt(double x, double y) {
        MoveTo(x, y);
        Press();
        Release();
    }
    // What a tick presents at that place of the main video; 0 when it presents nothing.
    [[nodiscard]] static uint32_t ColorAt(double x, double y) {
        Picture picture;
        Calls().OnCall("SDL_RenderPresent",
                       [&](const Call&) { picture = ReadPicture(View().GetRenderer()); });
        Tick();
        Calls().OnCall("SDL_RenderPresent", {});
        const SDL_Rect video = View().GetMainVideoRect();
        return picture.width == 0 ? 0
                                  : picture.At(video.x + static_cast<int>(video.w * x),
                                               video.y + static_cast<int>(video.h * y));
    }
    [[nodiscard]] static std::vector<nlohmann::json> Sent() {
        std::vector<nlohmann::json> messages;
        for (const Call& call : Calls().Of("MediaManager_SendDatachannelMessage")) {
            messages.push_back(nlohmann::json::parse(call.arguments.at(0)));
        }
        return messages;
    }
    // What the host heard of undo and redo, as "undo redo".
    [[nodiscard]] static Names Reports() {
        Names reports;
        for (const Call& call : Calls().Of("Host_ReportHistoryState")) {
            reports.push_back(call.arguments[0] + ' ' + call.arguments[1]);
        }
        return reports;
    }
};

}  // namespace Corvanta::Testing
