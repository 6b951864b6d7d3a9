// A wall over a screen without a display, the room that it asks, and what tests of it do over and over. The
// tiles are 213 x 160 and stand in an area of 1000 x 720; the clock stands until it is turned.
#pragma once

#include <SDL.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/fake_platform/FakePlatform.h"
#include "tests/fake_platform/PixelReader.h"
#include "tests/fake_platform/SdlRecorder.h"
#include "tests/fake_platform/TestFrames.h"
#include "tests/ui/WorkingFolder.h"
#include "video/VideoFrame.h"
#include "video/VideoThumbnails.h"

namespace Corvanta::Video {

using Corvanta::Testing::Calls;
using Corvanta::Testing::Fake;
using Corvanta::Testing::Sdl;

inline constexpr const char* kPinIcon = "icons/pin.png";

class FakeRoom final : public WallOwner {
public:
    [[nodiscard]] bool IsMainVideo(const VideoFrame& tile) const override {
        return tile.GetStreamId() == mainId;
    }
    void OnTileClicked(VideoFrame* tile, bool fromMenu) override {
        clicks.emplace_back(tile->GetStreamId(), fromMenu);
        if (onClicked) onClicked();
    }
    void SetCursor(int newCursor, int newLayer) override {
        cursor = newCursor;
        layer = newLayer;
    }
    [[nodiscard]] int GetViewWidth() const override { return viewWidth; }
    [[nodiscard]] bool IsDetached() const override { return detached; }

    std::string mainId;
    std::vector<std::pair<std::string, bool>> clicks;
    std::function<void()> onClicked;
    int cursor = -1;
    int layer = -1;
    int viewWidth = 1000;
    bool detached = false;
};

class WallTest : public Corvanta::Testing::FakePlatformTest {
protected:
    static constexpr int kAreaWidth = 1000;
    static constexpr int kAreaHeight = 720;

    WallTest();
    ~WallTest() override;

    VideoFrame& AddRemote(const std::string& id) { return AddTile(id, TileOrigin::Remote); }
    VideoFrame& AddLocal(const std::string& id) { return AddTile(id, TileOrigin::Local); }
    // Named "r0", "r1" and so on.
    void AddRemotes(int count);
    // Gives it the menu entry by which the user pins it.
    static void AddPinToggle(VideoFrame& tile, int& functionCalls);
    // Off the wall and gone from memory.
    void Destroy(const std::string& id);
    // Waits until the tile has the picture.
    static void Show(VideoFrame& tile, uint32_t argb = 0xFFFFFFFF);
    [[nodiscard]] VideoFrame& Tile(const std::string& id) const;

    void Draw() { wall.Render(screen->Renderer(), room.mainId); }
    // Update and drawing, as a view's tick does after its events.
    void Tick();
    void MoveTo(SDL_Point point);
    void MoveToTile(const std::string& id) { MoveTo(CentreOf(id)); }
    void Send(Uint32 type);
    void Press() { Send(SDL_MOUSEBUTTONDOWN); }
    void Release() { Send(SDL_MOUSEBUTTONUP); }
    void Scroll(int x, int y);
    // Picks it up at its centre.
    void StartDrag(const std::string& id);

    [[nodiscard]] SDL_Point CentreOf(const std::string& id) const;
    [[nodiscard]] std::vector<std::string> Order() const;
    [[nodiscard]] std::vector<int> PlacesX() const;
    [[nodiscard]] std::vector<int> PlacesY() const;
    static void TurnMs(int64_t milliseconds) { nowNs_ += milliseconds * 1'000'000; }
    // Of the calls so far, the place of the first with that name and that text among its arguments; -1 for
    // none.
    [[nodiscard]] static int IndexOfCall(const std::string& name, const std::string& argument);
    // Whether the wall's bar was drawn since the calls were cleared: its track is the one fill of that size.
    [[nodiscard]] static bool DrewTrack(const std::string& rect);

    Corvanta::Testing::WorkingFolder folder;
    std::unique_ptr<Corvanta::Testing::PixelReader> screen;
    FakeRoom room;
    std::vector<std::unique_ptr<VideoFrame>> tiles;
    VideoThumbnails wall{room};
    SDL_Point pointer{-1, 0};
    SDL_Point wheel{0, 0};

private:
    VideoFrame& AddTile(const std::string& id, TileOrigin origin);

    // Media threads read it as well.
    static inline std::atomic<int64_t> nowNs_{0};
};

}  // namespace Corvanta::Video
