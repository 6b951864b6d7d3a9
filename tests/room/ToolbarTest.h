// A live room with its bar, driven as a person does it: the pointer goes where a picture is seen, and
// presses. Each icon is a plain picture of a colour of its own, so that it is found in what a tick presents.
#pragma once

#include <SDL_ttf.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <filesystem>
#include <memory>
#include <optional>
#include <semaphore>
#include <string>
#include <vector>

#include "tests/room/RoomViewTest.h"
#include "tests/ui/TextCalls.h"
#include "tests/ui/WorkingFolder.h"
#include "ui/Clock.h"
#include "ui/FontManager.h"

namespace Corvanta::Room {

inline constexpr std::array kIconNames{"layout",
                                       "layout-white",
                                       "draw",
                                       "draw-white",
                                       "mic",
                                       "nomic",
                                       "cam",
                                       "nocam",
                                       "audio",
                                       "noaudio",
                                       "audiomixer",
                                       "audiomixer-white",
                                       "options",
                                       "options-white",
                                       "fullscreen",
                                       "fullscreen-white",
                                       "notification",
                                       "screenshare",
                                       "device-native-stream",
                                       "file-native-stream",
                                       "url-stream",
                                       "ndi-stream",
                                       "decklink-stream",
                                       "davinci",
                                       "davinci-no-arrow",
                                       "flame-stream",
                                       "media-silo-stream",
                                       "elgato",
                                       "wall-hide",
                                       "wall-show",
                                       "wall-detach",
                                       "wall-attach",
                                       "toolbar-hide",
                                       "toolbar-show",
                                       "still",
                                       "brighter",
                                       "darker",
                                       "connection-strength",
                                       "leave",
                                       "hdr"};

// Wide enough for all buttons side by side.
inline constexpr int kBarViewWidth = 2600;
inline constexpr int kBarViewHeight = 600;
// Height of the bar at scale 1.
inline constexpr int kBarHeight = 100;
inline constexpr int kBarTop = kBarViewHeight - kBarHeight;
inline constexpr uint32_t kPlate = 0xFF424242;
inline constexpr uint32_t kTooltip = 0xFF6B6B6B;
// Stands for what opens the options, which has no picture.
inline constexpr const char* kOptions = "More";
// An open menu has arrived at its place.
inline constexpr int64_t kMenuSlideMs = 150;
// From the pointer's leaving until the bar is away.
inline constexpr int64_t kHideMs = 4300;

class ToolbarTest : public RoomViewTest {
protected:
    ToolbarTest() {
        nowNs_ = 60'000'000'000;
        UI::SetClock([] { return nowNs_.load(); });
        for (const char* name : kIconNames) folder_.AddPicture(FileOf(name), 8, 8, ColorOf(name));
        const std::filesystem::path fonts = CORVANTA_TEST_FONTS;
        folder_.AddFile("fonts/FKGrotesk-Regular.ttf", fonts / "Inter-Regular.ttf");
        folder_.AddFile("fonts/FKGroteskMono-Regular.ttf", fonts / "Inter-Regular.ttf");
        folder_.AddFile("fonts/FKGrotesk-Bolder.ttf", fonts / "Inter-Bold.ttf");
        TTF_Init();
    }
    ~ToolbarTest() override {
        Corvanta::Testing::Calls().Reset();
        view.reset();
        UI::FontManager::Clear();
        TTF_Quit();
        UI::SetClock(nullptr);
    }

    static std::string FileOf(const std::string& name) { return "icons/" + name + ".png"; }
    [[nodiscard]] static uint32_t ColorOf(const std::string& name) {
        const auto found = std::find(kIconNames.begin(), kIconNames.end(), name);
        EXPECT_NE(found, kIconNames.end()) << name;
        const auto index = static_cast<uint32_t>(found - kIconNames.begin());
        return 0xFF000000U | (40 + 3 * index) << 16U | (90 + index * 37 % 150) << 8U | (220 - 4 * index);
    }
    static void TurnMs(int64_t milliseconds) { nowNs_ += milliseconds * 1'000'000; }

    // The room with its bar, which is in its place; the list of calls is empty.
    void OpenBar(int width = kBarViewWidth, int height = kBarViewHeight) {
        view->GetThumbnails().SetShown(false);
        OpenBarAndWall(width, height);
    }
    void OpenBarAndWall(int width = kBarViewWidth, int height = kBarViewHeight) {
        OpenWithWall(width, height);
        // The window stands for the host's, which has its own size.
        view->Resize(width, height);
        view->BuildControls();
        view->Tick();
        TurnMs(300);
        view->Tick();
        Corvanta::Testing::Calls().Clear();
    }

    // Scaling with blending may be one off.
    [[nodiscard]] static bool IsNearly(uint32_t left, uint32_t right) {
        for (const uint32_t shift : {0U, 8U, 16U}) {
            const int distance =
                static_cast<int>(left >> shift & 0xFFU) - static_cast<int>(right >> shift & 0xFFU);
            if (distance < -1 || distance > 1) return false;
        }
        return true;
    }
    // Where the icon is seen between the lines top and bottom: its middle, or nothing.
    [[nodiscard]] static std::optional<SDL_Point> Find(const Corvanta::Testing::Picture& picture,
                                                       const std::string& name, int top = 0,
                                                       int bottom = 1 << 20) {
        const uint32_t color = ColorOf(name);
        SDL_Point first{1 << 20, 1 << 20};
        SDL_Point last{-1, -1};
        for (int y = top; y < std::min(bottom, picture.height); ++y) {
            for (int x = 0; x < picture.width; ++x) {
                if (!IsNearly(picture.At(x, y), color)) continue;
                first = {std::min(first.x, x), std::min(first.y, y)};
                last = {std::max(last.x, x), std::max(last.y, y)};
            }
        }
        if (last.x < 0) return std::nullopt;
        return SDL_Point{(first.x + last.x) / 2, (first.y + last.y) / 2};
    }
    [[nodiscard]] std::optional<SDL_Point> FindInBar(const std::string& name) {
        return Find(TickAndRead(), name, view->GetHeight() - view->GetToolbarHeight());
    }
    [[nodiscard]] std::optional<SDL_Point> FindAboveBar(const std::string& name) {
        return Find(TickAndRead(), name, 0, view->GetHeight() - view->GetToolbarHeight());
    }
    [[nodiscard]] bool Sees(const std::string& name) { return Find(TickAndRead(), name).has_value(); }
    // The rectangle of that colour that is seen, none without size. Only runs of some length count, since the
    // edges of texts have every shade.
    [[nodiscard]] SDL_Rect SeenArea(uint32_t color) {
        constexpr int kLeastRun = 20;
        const auto picture = TickAndRead();
        SDL_Rect area{0, 0, 0, 0};
        for (int y = 0; y < picture.height; ++y) {
            int run = 0;
            for (int x = 0; x < picture.width; ++x) {
                run = picture.At(x, y) == color ? run + 1 : 0;
                if (run < kLeastRun) continue;
                const SDL_Rect seen{x + 1 - run, y, run, 1};
                if (area.w == 0) area = seen;
                SDL_UnionRect(&area, &seen, &area);
            }
        }
        return area;
    }
    [[nodiscard]] bool SeesTooltip() { return SeenArea(kTooltip).w > 0; }

    void Push(const SDL_Event& event) { SDL_PushEvent(const_cast<SDL_Event*>(&event)); }
    [[nodiscard]] SDL_Event EventOf(Uint32 type) const {
        SDL_Event event;
        SDL_zero(event);
        event.type = type;
        event.window.windowID = static_cast<Uint32>(view->GetSdlWindowId());
        return event;
    }
    void PushMotion(SDL_Point point) {
        SDL_Event event = EventOf(SDL_MOUSEMOTION);
        event.motion.x = point.x;
        event.motion.y = point.y;
        Push(event);
    }
    void PushPress() {
        Push(EventOf(SDL_MOUSEBUTTONDOWN));
        Push(EventOf(SDL_MOUSEBUTTONUP));
    }
    void PushKey(Uint32 type, SDL_Keycode code) {
        SDL_Event event = EventOf(type);
        event.key.keysym.sym = code;
        Push(event);
    }
    void MoveTo(SDL_Point point) {
        PushMotion(point);
        view->Tick();
    }
    void PressAt(SDL_Point point) {
        MoveTo(point);
        PushPress();
        view->Tick();
    }
    // The button of that picture in the bar; the row of that picture in an open menu.
    void MoveToButton(const std::string& name) {
        const auto place = FindInBar(name);
        ASSERT_TRUE(place.has_value()) << name;
        MoveTo(*place);
    }
    void Press(const std::string& name) {
        const auto place = FindInBar(name);
        ASSERT_TRUE(place.has_value()) << name;
        PressAt(*place);
    }
    void Choose(const std::string& name) {
        const auto place = FindAboveBar(name);
        ASSERT_TRUE(place.has_value()) << name;
        PressAt(*place);
    }
    // The text under the room's name opens the options.
    [[nodiscard]] SDL_Point OptionsOpener() {
        const SDL_Rect& text = OptionsMenu().GetAnchorElement()->rect;
        return {text.x + text.w / 2, text.y + text.h / 2};
    }
    // By its button, or by what opens the options; it has arrived.
    void OpenMenu(const std::string& button) {
        if (button == kOptions) {
            PressAt(OptionsOpener());
        } else {
            Press(button);
        }
        view->Tick();
        TurnMs(kMenuSlideMs);
        view->Tick();
    }
    // Every action that was handed over has returned.
    void AwaitActions() {
        const auto actions = view->GetToolbar().GetActionThread().lock();
        ASSERT_NE(actions, nullptr);
        std::binary_semaphore done{0};
        actions->Run([&done] { done.release(); });
        done.acquire();
    }
    [[nodiscard]] UI::ButtonBar& Bar() { return *view->GetToolbar().GetButtonBar(); }
    [[nodiscard]] UI::Menu& LayoutMenu() { return *view->GetToolbar().GetLayoutMenu(); }
    [[nodiscard]] UI::Menu& OptionsMenu() { return *view->GetToolbar().GetOptionsMenu(); }
    [[nodiscard]] static std::vector<std::string> LabelsOf(const UI::Menu& menu) {
        std::vector<std::string> labels;
        for (const UI::Button* item : menu.GetItems()) labels.push_back(item->GetLabel());
        return labels;
    }
    static void Run(const std::map<int32_t, int32_t>& programs) {
        Corvanta::Testing::Fake().FireProcesses(programs);
    }
    // Calls of the host, but for the pointer's shape and for the main video and what can be undone there,
    // which come by themselves.
    [[nodiscard]] static std::vector<Corvanta::Testing::Call> HostCalls() {
        std::vector<Corvanta::Testing::Call> calls;
        for (const auto& call : Corvanta::Testing::Calls().All()) {
            if (call.name.starts_with("Host_") && call.name != "Host_SetCursor" &&
                call.name != "Host_OnMainVideoChanged" && call.name != "Host_ReportHistoryState") {
                calls.push_back(call);
            }
        }
        return calls;
    }

    static inline std::atomic<int64_t> nowNs_{0};

private:
    const Corvanta::Testing::WorkingFolder folder_;
};

}  // namespace Corvanta::Room
