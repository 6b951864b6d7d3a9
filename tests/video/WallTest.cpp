#include "tests/video/WallTest.h"

#include <SDL_ttf.h>

#include <algorithm>
#include <filesystem>

#include "tests/video/FlushSink.h"
#include "ui/Clock.h"
#include "ui/FontManager.h"
#include "ui/TextureCache.h"
#include "video/MenuMetrics.h"

namespace Corvanta::Video {

using Corvanta::Testing::Call;

WallTest::WallTest() {
    nowNs_ = 60'000'000'000;
    UI::SetClock([] { return nowNs_.load(); });
    for (const char* piece : {"HorizontalFirst", "HorizontalMiddle", "HorizontalLast", "VerticalFirst",
                              "VerticalMiddle", "VerticalLast"}) {
        folder.AddPicture(std::string("icons/scrollbar") + piece + ".png", 4, 4, 0xFF00FF00);
    }
    // A picture that is missing is looked for in every drawing.
    for (const char* name :
         {kPinIcon, "icons/drag.png", "icons/equalizer.png", "icons/mute.png", "icons/nameBackgroundLeft.png",
          "icons/nameBackgroundMiddle.png", "icons/nameBackgroundRight.png", "icons/thumbnail-background.png",
          "icons/thumbnail-panel-close.png"}) {
        folder.AddPicture(name, 4, 4, 0xFF0000FF);
    }
    const std::filesystem::path fonts = CORVANTA_TEST_FONTS;
    folder.AddFile("fonts/FKGrotesk-Regular.ttf", fonts / "Inter-Regular.ttf");
    folder.AddFile("fonts/FKGroteskMono-Regular.ttf", fonts / "Inter-Regular.ttf");
    folder.AddFile("fonts/FKGrotesk-Bolder.ttf", fonts / "Inter-Bold.ttf");
    Sdl().Reset();
    TTF_Init();
    SetCurrentMenuWidth(kMenuWidth);
    screen = std::make_unique<Corvanta::Testing::PixelReader>(kAreaWidth, kAreaHeight);
    wall.SetAreaWidth(kAreaWidth);
    wall.SetAreaHeight(kAreaHeight);
    Fake().ClearCalls();
}

WallTest::~WallTest() {
    Calls().Reset();
    for (const auto& tile : tiles) tile->ReleaseGraphics();
    tiles.clear();
    wall.ReleaseTextures();
    UI::ReleaseRendererTextures(screen->Renderer());
    screen.reset();
    UI::FontManager::Clear();
    TTF_Quit();
    UI::SetClock(nullptr);
    Sdl().Reset();
}

VideoFrame& WallTest::AddTile(const std::string& id, TileOrigin origin) {
    tiles.push_back(std::make_unique<VideoFrame>(id, "session", "profile", origin));
    VideoFrame& tile = *tiles.back();
    tile.draggable = origin == TileOrigin::Remote;
    wall.AddTile(&tile, origin == TileOrigin::Remote);
    return tile;
}

void WallTest::AddRemotes(int count) {
    for (int i = 0; i < count; ++i) {
        std::string id = "r";
        id += std::to_string(i);
        AddRemote(id);
    }
}

void WallTest::AddPinToggle(VideoFrame& tile, int& functionCalls) {
    tile.pinToggle = tile.GetMenu().AddToggleButton({.offIconName = kPinIcon,
                                                     .onIconName = "icons/unpin.png",
                                                     .offLabel = "Pin to left",
                                                     .onLabel = "Unpin",
                                                     .onToggledOn = [&] { ++functionCalls; },
                                                     .onToggledOff = [&] { ++functionCalls; }});
}

void WallTest::Destroy(const std::string& id) {
    wall.RemoveTile(&Tile(id));
    Tile(id).ReleaseGraphics();
    tiles.erase(std::find_if(tiles.begin(), tiles.end(),
                             [&](const auto& tile) { return tile->GetStreamId() == id; }));
}

void WallTest::Show(VideoFrame& tile, uint32_t argb) {
    using namespace Corvanta::Testing;
    (*tile.GetFrameSink())(MakeFrame(
        {.width = 64, .height = 48, .type = VideoFrameBufferType::RGB, .colorSpace = kSrgb, .argb = argb}));
    ASSERT_TRUE(FlushSink(*tile.GetFrameSink()));
}

VideoFrame& WallTest::Tile(const std::string& id) const {
    const auto found =
        std::find_if(tiles.begin(), tiles.end(), [&](const auto& tile) { return tile->GetStreamId() == id; });
    EXPECT_NE(found, tiles.end()) << id;
    return **found;
}

void WallTest::Tick() {
    wall.Update(pointer, wheel);
    wheel = {0, 0};
    Draw();
}

void WallTest::MoveTo(SDL_Point point) {
    SDL_Event event{};
    event.type = SDL_MOUSEMOTION;
    event.motion.x = point.x;
    event.motion.y = point.y;
    SDL_Point out = pointer;
    wall.HandleEvent(event, out, pointer, wheel);
    EXPECT_EQ(out.x, pointer.x);
    EXPECT_EQ(out.y, pointer.y);
    Tick();
}

void WallTest::Send(Uint32 type) {
    SDL_Event event{};
    event.type = type;
    SDL_Point out{0, 0};
    wall.HandleEvent(event, out, pointer, wheel);
}

void WallTest::Scroll(int x, int y) {
    SDL_Event event{};
    event.type = SDL_MOUSEWHEEL;
    event.wheel.x = x;
    event.wheel.y = y;
    SDL_Point out{0, 0};
    wall.HandleEvent(event, out, pointer, wheel);
}

void WallTest::StartDrag(const std::string& id) {
    Tick();
    MoveToTile(id);
    Press();
    MoveTo({pointer.x + 1, pointer.y});
    ASSERT_TRUE(Tile(id).dragging);
}

SDL_Point WallTest::CentreOf(const std::string& id) const {
    const SDL_Rect& rect = Tile(id).displayRect;
    return {rect.x + rect.w / 2, rect.y + rect.h / 2};
}

std::vector<std::string> WallTest::Order() const {
    std::vector<std::string> ids;
    for (const VideoFrame* tile : wall.GetAllTiles()) ids.push_back(tile->GetStreamId());
    return ids;
}

std::vector<int> WallTest::PlacesX() const {
    std::vector<int> places;
    for (const VideoFrame* tile : wall.GetAllTiles()) places.push_back(tile->displayRect.x);
    return places;
}

std::vector<int> WallTest::PlacesY() const {
    std::vector<int> places;
    for (const VideoFrame* tile : wall.GetAllTiles()) places.push_back(tile->displayRect.y);
    return places;
}

int WallTest::IndexOfCall(const std::string& name, const std::string& argument) {
    const std::vector<Call> calls = Calls().All();
    const auto found = std::find_if(calls.begin(), calls.end(), [&](const Call& call) {
        return call.name == name &&
               std::find(call.arguments.begin(), call.arguments.end(), argument) != call.arguments.end();
    });
    return found == calls.end() ? -1 : static_cast<int>(found - calls.begin());
}

bool WallTest::DrewTrack(const std::string& rect) {
    return IndexOfCall("SDL_RenderFillRect", rect) >= 0;
}

}  // namespace Corvanta::Video
