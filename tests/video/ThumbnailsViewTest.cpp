// The wall's own window: events, drawing, and leaving it at any moment.
#include "video/ThumbnailsView.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "tests/ui/TestView.h"
#include "tests/video/FlushSink.h"
#include "tests/video/WallTest.h"
#include "ui/Clock.h"

namespace Corvanta::Video {
namespace {

using Corvanta::Testing::Call;
using Ids = std::vector<std::string>;

class ThumbnailsViewTest : public Corvanta::Testing::ViewTest {
protected:
    ThumbnailsViewTest() {
        UI::SetClock([] { return int64_t{60'000'000'000}; });
        room.detached = true;
        AddUpTo(3);
        view->SetThumbnails(wall);
        Fake().ClearCalls();
    }
    ~ThumbnailsViewTest() override {
        Calls().Reset();
        for (const auto& tile : tiles) tile->ReleaseGraphics();
        wall->ReleaseTextures();
        view.reset();
        UI::SetClock(nullptr);
    }

    VideoFrame& Add(const std::string& id) {
        tiles.push_back(std::make_unique<VideoFrame>(id, "", "", TileOrigin::Remote));
        tiles.back()->draggable = true;
        wall->AddTile(tiles.back().get(), true);
        return *tiles.back();
    }
    // Before the wall was detached.
    void DrawInRoom() {
        wall->SetAreaWidth(800);
        wall->SetAreaHeight(400);
        wall->Render(roomScreen.Renderer(), "");
    }
    // "r0", "r1" and so on, until there are so many.
    void AddUpTo(size_t count) {
        while (tiles.size() < count) {
            std::string id = "r";
            id += std::to_string(tiles.size());
            Add(id);
        }
    }
    void Open() { ASSERT_EQ(view->Init(Handle(), 800, 400), 1); }
    void Queue(Uint32 type, int x = 0, int y = 0) {
        SDL_Event event{};
        event.type = type;
        if (type == SDL_MOUSEMOTION) {
            event.motion.x = x;
            event.motion.y = y;
        } else if (type == SDL_MOUSEWHEEL) {
            event.wheel.x = x;
            event.wheel.y = y;
        }
        view->QueueEvent(event);
    }
    [[nodiscard]] Ids Order() const {
        Ids ids;
        for (const VideoFrame* tile : wall->GetAllTiles()) ids.push_back(tile->GetStreamId());
        return ids;
    }
    static void Show(VideoFrame& tile) {
        using namespace Corvanta::Testing;
        (*tile.GetFrameSink())(MakeFrame({.type = VideoFrameBufferType::RGB, .colorSpace = kSrgb}));
        ASSERT_TRUE(FlushSink(*tile.GetFrameSink()));
    }

    Corvanta::Testing::PixelReader roomScreen{800, 400};
    FakeRoom room;
    const size_t renderersBefore = Sdl().LiveRenderers();
    std::vector<std::unique_ptr<VideoFrame>> tiles;
    std::shared_ptr<VideoThumbnails> wall = std::make_shared<VideoThumbnails>(room);
    std::unique_ptr<ThumbnailsView> view = std::make_unique<ThumbnailsView>();
};

TEST_F(ThumbnailsViewTest, DoesNothingWithoutAWallOrAWindow) {
    view->Render();
    EXPECT_EQ(Calls().Count("SDL_RenderPresent"), 0U);
    Open();
    view->SetThumbnails(nullptr);
    Fake().ClearCalls();
    view->Render();
    EXPECT_TRUE(Fake().CallNames().empty());
}

TEST_F(ThumbnailsViewTest, ClearsDrawsAndPresentsInTheSizeOfItsWindow) {
    Open();
    view->Render();
    EXPECT_EQ(Calls().NamesAmong({"SDL_RenderClear", "SDL_RenderPresent"}),
              (Ids{"SDL_RenderClear", "SDL_RenderPresent"}));
    // A strip of 639 pixels in 800.
    EXPECT_EQ(tiles[0]->displayRect.x, 80);
    view->Resize(1000, 400);
    view->Render();
    EXPECT_EQ(tiles[0]->displayRect.x, 180);
}

TEST_F(ThumbnailsViewTest, UpdatesTheWallWithTheLastPointerWithoutAnyEvent) {
    Open();
    view->Render();
    Queue(SDL_MOUSEMOTION, 100, 50);
    view->Render();
    EXPECT_TRUE(tiles[0]->hovered);
    EXPECT_EQ(room.cursor, 0);
    view->Render();
    EXPECT_TRUE(tiles[0]->hovered);
    EXPECT_EQ(room.cursor, 1);
}

TEST_F(ThumbnailsViewTest, HandlesEveryQueuedEventInOrder) {
    Open();
    view->Render();
    Queue(SDL_MOUSEMOTION, 100, 50);
    view->Render();
    Queue(SDL_MOUSEBUTTONDOWN);
    Queue(SDL_MOUSEBUTTONUP);
    view->Render();
    EXPECT_EQ(room.clicks.size(), 1U);
    view->Render();
    EXPECT_EQ(room.clicks.size(), 1U);
}

TEST_F(ThumbnailsViewTest, ForgetsTheWheelAfterATick) {
    AddUpTo(8);
    Open();
    view->Render();
    Queue(SDL_MOUSEWHEEL, 0, 20);
    view->Render();
    const int place = tiles[0]->displayRect.x;
    EXPECT_LT(place, 0);
    view->Render();
    EXPECT_EQ(tiles[0]->displayRect.x, place);
}

TEST_F(ThumbnailsViewTest, MovesTheTilesHereInItsFirstDrawingAndNeverAgain) {
    Open();
    Show(*tiles[2]);
    DrawInRoom();
    ASSERT_EQ(Order(), (Ids{"r0", "r1", "r2"}));
    view->Render();
    EXPECT_EQ(Order(), (Ids{"r2", "r0", "r1"})) << "the one with a picture comes first";
    EXPECT_TRUE(tiles[2]->HasTexture());
    Show(*tiles[1]);
    view->Render();
    EXPECT_EQ(Order(), (Ids{"r2", "r0", "r1"}));
}

TEST_F(ThumbnailsViewTest, KeepsTheOrderThatTheUserHasSet) {
    wall->PinTile(tiles[1].get());
    Open();
    Show(*tiles[2]);
    DrawInRoom();
    view->Render();
    EXPECT_EQ(Order(), (Ids{"r1", "r0", "r2"}));
}

TEST_F(ThumbnailsViewTest, KeepsTheMainVideoSubscribed) {
    AddUpTo(9);
    Open();
    view->SetMainStreamId("r8");
    view->Render();
    EXPECT_TRUE(tiles[8]->IsActive());
    EXPECT_FALSE(tiles[7]->IsActive());
}

TEST_F(ThumbnailsViewTest, SizesTheTilesByTheScaleOfItsWindow) {
    Open();
    view->SetWindowScale(1.5F);
    view->Render();
    EXPECT_EQ(tiles[0]->displayRect.h, 240);
    view->SetWindowScale(0.0F);
    view->Render();
    EXPECT_EQ(tiles[0]->displayRect.h, 240);
    view->SetThumbnails(nullptr);
    view->SetWindowScale(2.0F);
    EXPECT_EQ(wall->GetStripHeight(), 240);
}

TEST_F(ThumbnailsViewTest, LetsGoOfWallTexturesAndWindowWhenItIsStopped) {
    Open();
    for (const auto& tile : tiles) Show(*tile);
    view->Render();
    ASSERT_TRUE(tiles[0]->HasTexture());
    view->Stop();
    EXPECT_FALSE(tiles[0]->HasTexture());
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    EXPECT_EQ(Sdl().LiveRenderers(), renderersBefore);
    EXPECT_EQ(Sdl().LiveWindows(), 0U);
    EXPECT_EQ(wall.use_count(), 1);
    Fake().ClearCalls();
    Queue(SDL_MOUSEBUTTONUP);
    view->Render();
    view->Stop();
    EXPECT_TRUE(Fake().CallNames().empty());
}

TEST_F(ThumbnailsViewTest, DestroysEveryTextureBeforeItsRenderer) {
    Open();
    for (const auto& tile : tiles) Show(*tile);
    view->Render();
    const size_t live = Sdl().LiveTextures();
    Fake().ClearCalls();
    view.reset();
    EXPECT_EQ(Calls().NamesAmong({"SDL_DestroyTexture", "SDL_DestroyRenderer"}).size(), live + 1);
    EXPECT_EQ(Calls().NamesAmong({"SDL_DestroyTexture", "SDL_DestroyRenderer"}).back(),
              "SDL_DestroyRenderer");
}

TEST_F(ThumbnailsViewTest, LeavesTheTilesAloneThatTheRoomHasTakenBack) {
    Open();
    Show(*tiles[0]);
    view->Render();
    wall->MoveAllToRenderer(roomScreen.Renderer());
    DrawInRoom();
    ASSERT_TRUE(tiles[0]->HasTexture());
    view->Stop();
    EXPECT_TRUE(tiles[0]->HasTexture());
    EXPECT_TRUE(tiles[0]->IsVideoEnabled());
    tiles[0]->ReleaseGraphics();
    wall->ReleaseTextures();
}

TEST_F(ThumbnailsViewTest, MayBeStoppedByAClickInTheMiddleOfATick) {
    Open();
    view->Render();
    Queue(SDL_MOUSEMOTION, 100, 50);
    view->Render();
    room.onClicked = [&] { view->Stop(); };
    Queue(SDL_MOUSEBUTTONDOWN);
    Queue(SDL_MOUSEBUTTONUP);
    Queue(SDL_MOUSEMOTION, 1, 1);
    Fake().ClearCalls();
    view->Render();
    EXPECT_EQ(room.clicks.size(), 1U);
    EXPECT_EQ(Calls().Count("SDL_RenderPresent"), 0U);
    view->Render();
    EXPECT_EQ(Calls().Count("SDL_RenderPresent"), 0U);
}

TEST_F(ThumbnailsViewTest, MayBeStoppedInTheMiddleOfADrawing) {
    AddUpTo(12);
    Open();
    Fake().OnCall("Connections_ConfigureStream", [&](const Call&) { view->Stop(); });
    view->Render();
    EXPECT_EQ(Calls().Count("SDL_RenderPresent"), 0U);
    EXPECT_EQ(Sdl().LiveRenderers(), renderersBefore);
}

TEST_F(ThumbnailsViewTest, OpensAgainAfterItWasStopped) {
    Open();
    view->Render();
    view->Stop();
    Open();
    view->SetThumbnails(wall);
    Fake().ClearCalls();
    view->Render();
    EXPECT_EQ(Calls().Count("SDL_RenderPresent"), 1U);
}

TEST_F(ThumbnailsViewTest, TakesEventsOfAnotherThreadWhileItTicks) {
    Open();
    Calls().SetRecording(false);
    std::thread poller([&] {
        for (int i = 0; i < 2000; ++i) Queue(i % 3 == 0 ? SDL_MOUSEWHEEL : SDL_MOUSEMOTION, i % 800, i % 400);
    });
    for (int i = 0; i < 30; ++i) view->Render();
    poller.join();
    Queue(SDL_MOUSEMOTION, 100, 50);
    view->Render();
    EXPECT_TRUE(tiles[0]->hovered);
}

}  // namespace
}  // namespace Corvanta::Video
