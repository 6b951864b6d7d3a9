// A room with people whose wall can be put into a window of its own.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/room/RoomViewTest.h"
#include "ui/Clock.h"

namespace Corvanta::Room {

using namespace Corvanta::Testing;

inline constexpr uint32_t kCameraColor = 0xFF00FF00;
inline constexpr uint32_t kOneColor = 0xFFFF0000;
inline constexpr uint32_t kTwoColor = 0xFF0000FF;
inline constexpr int kWallWidth = 800;
inline constexpr int kWallHeight = 400;

using Strings = std::vector<std::string>;

class DetachedWallTest : public RoomViewTest {
protected:
    DetachedWallTest() {
        UI::SetClock([] { return int64_t{60'000'000'000}; });
        OpenWithWall();
    }
    ~DetachedWallTest() override {
        view.reset();
        UI::SetClock(nullptr);
    }

    void FillRoom() {
        AddCamera(kCameraColor);
        AddRemote("one", kOneColor);
        AddRemote("two", kTwoColor);
        view->SetActiveSpeaker("one");
        view->Tick();
        Calls().Clear();
    }
    void Detach() {
        ASSERT_EQ(view->CreateDetachedView(&wallWindow, kWallWidth, kWallHeight), 1);
        Calls().Clear();
    }
    // With the wall in its window and all tiles moved there.
    void FillAndDetach() {
        FillRoom();
        Detach();
        TickBoth();
        Calls().Clear();
    }
    void TickBoth() {
        view->Tick();
        view->TickDetachedView();
    }
    // "register" or "unregister" and the source, in their order.
    [[nodiscard]] static Strings Steps() {
        Strings steps;
        for (const Call& call : Calls().All()) {
            const bool on = call.name == "MediaManager_RegisterCallback";
            if (!on && call.name != "MediaManager_UnregisterCallback") continue;
            std::string step = on ? "register " : "unregister ";
            steps.push_back(step += call.arguments[0]);
        }
        return steps;
    }
    // The source that feeds the second tile, and whether there is just that one.
    [[nodiscard]] static std::string ClonedSource() {
        const auto sinks = Fake().RegisteredSinks();
        return sinks.size() == 1 ? sinks[0].first : std::to_string(sinks.size()) + " sinks";
    }
    // The stream's picture as the media layer would send it to the second tile.
    void Feed(const std::string& source, uint32_t argb) {
        ASSERT_EQ(Fake().Deliver(source, Plain(argb)), 1U);
        ASSERT_TRUE(FlushSink(*Fake().RegisteredSinks()[0].second));
    }
    // As Feed, for a tile that drops it.
    static void FeedInVain(const std::string& source, uint32_t argb) {
        ASSERT_EQ(Fake().Deliver(source, Plain(argb)), 1U);
    }
    void PushToWall(Uint32 type, SDL_Point point = {0, 0}) {
        SDL_Event event;
        SDL_zero(event);
        event.type = type;
        event.window.windowID = static_cast<Uint32>(view->GetDetachedView()->GetSdlWindowId());
        if (type == SDL_MOUSEMOTION) {
            event.motion.x = point.x;
            event.motion.y = point.y;
        }
        SDL_PushEvent(&event);
    }
    void ClickTile(const std::string& id) {
        const SDL_Rect& place = TileOf(id)->displayRect;
        PushToWall(SDL_MOUSEMOTION, {place.x + place.w / 2, place.y + place.h / 2});
        TickBoth();
        PushToWall(SDL_MOUSEBUTTONDOWN);
        PushToWall(SDL_MOUSEBUTTONUP);
        TickBoth();
    }
    [[nodiscard]] static std::string NameOf(const SDL_Renderer* renderer) {
        return ToText(static_cast<const void*>(renderer));
    }
    [[nodiscard]] int IndexOf(const std::string& name, const std::string& argument = {}) {
        const auto calls = Calls().All();
        const auto found = std::find_if(calls.begin(), calls.end(), [&](const Call& call) {
            return call.name == name && (argument.empty() || std::count(call.arguments.begin(),
                                                                        call.arguments.end(), argument) > 0);
        });
        return found == calls.end() ? -1 : static_cast<int>(found - calls.begin());
    }
    // An own stream of that kind takes the main video.
    void ShareOwn(StreamType type) {
        NameLocalStream(type, "mine");
        ASSERT_NE(view->AddLocalVideoSource(type, "source"), nullptr);
        TickBoth();
        ASSERT_EQ(ClonedSource(), "source");
        Calls().Clear();
    }
    void EndOwn(StreamType type) {
        view->RemoveLocalVideoSource("source");
        Fake().Set([type](FakeResults& results) { results.localUserStreamIds.erase(type); });
        TickBoth();
        Calls().Clear();
    }
    [[nodiscard]] Video::ThumbnailLayoutMode Mode() { return view->GetThumbnails().GetMode(); }

    int wallWindow = 0;
};

}  // namespace Corvanta::Room
