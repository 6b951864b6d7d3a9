// A room in which somebody draws: a hand at the mouse and the keys, and the marks of others.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "drawing/Shape.h"
#include "tests/drawing/LocalUser.h"
#include "tests/drawing/MarkMessage.h"
#include "tests/drawing/TestFont.h"
#include "tests/room/ToolbarTest.h"

namespace Corvanta::Room {

using namespace Corvanta::Testing;

class DrawingRoomTest : public ToolbarTest {
protected:
    static constexpr uint32_t kCameraColor = 0xFF204060;
    static constexpr uint32_t kOneColor = 0xFF406020;
    static constexpr uint32_t kTwoColor = 0xFF602040;
    static constexpr uint32_t kRed = 0xFFFF0000;
    static constexpr uint32_t kGreen = 0xFF00FF00;
    // The pictures of the room are four by three, which makes a canvas of 1280 by 960 units.
    static constexpr SDL_Rect kWholeCanvas{0, 0, 1280, 960};
    static constexpr SDL_Rect kLeftHalf{0, 0, 640, 960};
    static constexpr SDL_Rect kRightHalf{640, 0, 640, 960};
    static constexpr int kWallWindowWidth = 800;
    static constexpr int kWallWindowHeight = 400;

    DrawingRoomTest() {
        static const bool hasFont = (UseTestFont(), true);
        EXPECT_TRUE(hasFont);
        // Small layers, since nobody looks at them closely.
        Sdl().LimitTextureSides(640);
    }

    void Choose(uint32_t tool, bool enabled = true) {
        DrawToolState state = ToolState(tool);
        state.enabled = enabled;
        view->SetDrawToolState(state);
    }
    // A room of the own camera alone, which is the main video, in a window without bar and wall.
    void OpenWithCamera() {
        Open();
        AddCamera(kCameraColor);
        view->Tick();
        Calls().Clear();
    }
    // The same with a tool in hand; rectangles by default, which are white within an edge.
    void OpenToDraw(uint32_t tool = DrawToolRectangle) {
        OpenWithCamera();
        Choose(tool);
        view->Tick();
        Calls().Clear();
    }
    // A place in the main video, by fractions of its sides.
    [[nodiscard]] SDL_Point At(double x, double y) const {
        const SDL_Rect video = view->GetMainVideoRect();
        return {video.x + static_cast<int>(video.w * x), video.y + static_cast<int>(video.h * y)};
    }
    [[nodiscard]] uint32_t ColorAt(double x, double y) {
        const Picture picture = TickAndRead();
        const SDL_Point place = At(x, y);
        return picture.width == 0 ? 0 : picture.At(place.x, place.y);
    }
    void PushDown() { Push(EventOf(SDL_MOUSEBUTTONDOWN)); }
    void PushUp() { Push(EventOf(SDL_MOUSEBUTTONUP)); }
    void Drag(SDL_Point from, SDL_Point to) {
        PushMotion(from);
        PushDown();
        TurnMs(30);
        PushMotion(to);
        TurnMs(30);
        PushUp();
        view->Tick();
    }
    // A stroke over the middle of the main video.
    void DrawSomething() { Drag(At(0.25, 0.25), At(0.75, 0.75)); }
    void Type(int keycode) {
        PushKey(SDL_KEYDOWN, keycode);
        PushKey(SDL_KEYUP, keycode);
        view->Tick();
    }
    void Receive(const std::string& sender, const std::string& streamId, const std::string& id,
                 const SDL_Rect& place, uint32_t argb) {
        view->GetDrawings().OnDataChannelMessage(
            {sender, MarkMessage(streamId, {MarkJson(id, place, argb)})});
    }
    [[nodiscard]] static std::vector<nlohmann::json> Sent() {
        std::vector<nlohmann::json> messages;
        for (const Call& call : Calls().Of("MediaManager_SendDatachannelMessage")) {
            messages.push_back(nlohmann::json::parse(call.arguments.at(0)));
        }
        return messages;
    }
    // What the host heard of undo and redo, as "undo redo".
    [[nodiscard]] static std::vector<std::string> Reports() {
        std::vector<std::string> reports;
        for (const Call& call : Calls().Of("Host_ReportHistoryState")) {
            reports.push_back(call.arguments[0] + ' ' + call.arguments[1]);
        }
        return reports;
    }
    [[nodiscard]] static std::string LastCursor() { return Calls().Of("Host_SetCursor").back().arguments[0]; }
    [[nodiscard]] bool IsTextOpen() { return view->GetDrawings().IsTextOpen(); }
    [[nodiscard]] std::vector<std::shared_ptr<Drawing::Shape>> MarksOn(const std::string& streamId,
                                                                       const std::string& sender = "me") {
        return view->GetDrawings().GetOrCreateSource(streamId)->ShapesOf(sender);
    }
    // The own camera and two participants, of whom one speaks; the wall is in the room's window.
    void OpenFullRoom() {
        OpenWithWall();
        AddCamera(kCameraColor);
        AddRemote("one", kOneColor);
        AddRemote("two", kTwoColor);
        view->SetActiveSpeaker("one");
        view->Tick();
        Calls().Clear();
    }
};

}  // namespace Corvanta::Room
