// Media threads add, remove, pin, reorder and move tiles while the wall is drawn and a tile is dragged over
// it; what a sanitizer watches.
#include <gtest/gtest.h>

#include <atomic>
#include <deque>
#include <mutex>
#include <random>
#include <thread>

#include "tests/video/WallTest.h"

namespace Corvanta::Video {
namespace {

constexpr int kThreads = 8;
constexpr int kRounds = 1200;
constexpr size_t kTilesOfAThread = 3;

class WallThreadsTest : public WallTest {
protected:
    // One tile of a media thread: it comes, is pinned or moved, and goes.
    void DoRound(std::deque<std::unique_ptr<VideoFrame>>& own, int thread, int round) {
        VideoFrame& tile = *own[static_cast<size_t>(round) % own.size()];
        const int action = (thread * 7 + round) % 11;
        if (action < 4) {
            wall.AddTile(&tile, tile.GetOrigin() == TileOrigin::Remote);
        } else if (action < 7) {
            wall.RemoveTile(&tile);
        } else if (action == 7) {
            wall.PinTile(&tile);
        } else if (action == 8) {
            wall.UnpinTile(&tile);
        } else if (action == 9) {
            wall.SetTileHeight(100 + round % 90);
            wall.MoveAllToRenderer(round % 2 == 0 ? screen->Renderer() : other.Renderer());
        } else {
            wall.SetMode(static_cast<ThumbnailLayoutMode>(round % 3), 1 + round % 3);
            wall.SetAreaWidth(400 + round % 600);
            wall.SlideTo(true, round % 2 == 0);
            (void)wall.GetStripHeight();
            (void)wall.GetTileCount();
            wall.ClearMainTiles();
        }
    }
    void TickAnywhere(std::minstd_rand& random) {
        const auto roll = [&](int below) {
            return static_cast<int>(random() % static_cast<unsigned>(below));
        };
        SDL_Event event{};
        const Uint32 types[] = {SDL_MOUSEMOTION,     SDL_MOUSEMOTION,   SDL_MOUSEMOTION,
                                SDL_MOUSEBUTTONDOWN, SDL_MOUSEBUTTONUP, SDL_MOUSEWHEEL};
        event.type = types[roll(6)];
        if (event.type == SDL_MOUSEMOTION) {
            event.motion.x = roll(kAreaWidth);
            event.motion.y = roll(300);
        } else if (event.type == SDL_MOUSEWHEEL) {
            event.wheel.y = roll(60) - 30;
        }
        SDL_Point out = pointer;
        wall.HandleEvent(event, out, pointer, wheel);
        TurnMs(8);
        Tick();
    }

    Corvanta::Testing::PixelReader other{kAreaWidth, kAreaHeight};
};

TEST_F(WallThreadsTest, LivesThroughTilesThatComeAndGoOnEightThreads) {
    Calls().SetRecording(false);
    room.detached = true;
    AddRemotes(6);
    std::vector<std::deque<std::unique_ptr<VideoFrame>>> owned(kThreads);
    for (int thread = 0; thread < kThreads; ++thread) {
        for (size_t i = 0; i < kTilesOfAThread; ++i) {
            std::string id = "t";
            id += std::to_string(thread) + "." + std::to_string(i);
            const auto origin = i == 0 ? TileOrigin::Local : TileOrigin::Remote;
            auto& own = owned[static_cast<size_t>(thread)];
            own.push_back(std::make_unique<VideoFrame>(id, "", "", origin));
            own.back()->draggable = origin == TileOrigin::Remote;
        }
    }
    std::atomic<int> running{kThreads};
    std::vector<std::thread> media;
    for (int thread = 0; thread < kThreads; ++thread) {
        media.emplace_back([&, thread] {
            for (int round = 0; round < kRounds; ++round) {
                DoRound(owned[static_cast<size_t>(thread)], thread, round);
                if (round % 8 == 0) std::this_thread::yield();
            }
            --running;
        });
    }
    std::minstd_rand random(7);
    int ticks = 0;
    while (running.load() > 0 || ticks < 50) {
        TickAnywhere(random);
        ++ticks;
    }
    for (std::thread& thread : media) thread.join();
    for (const auto& own : owned) {
        for (const auto& tile : own) wall.RemoveTile(tile.get());
    }
    EXPECT_EQ(wall.GetTileCount(), 6);
    Send(SDL_MOUSEBUTTONUP);
    for (const auto& tile : tiles) EXPECT_FALSE(tile->dragging);
    // The pinned ones still stand in front.
    bool othersCame = false;
    for (const VideoFrame* tile : wall.GetAllTiles()) {
        EXPECT_FALSE(tile->pinned && othersCame);
        othersCame = othersCame || !tile->pinned;
    }
    wall.MoveAllToRenderer(screen->Renderer());
    for (const auto& own : owned) {
        for (const auto& tile : own) tile->ReleaseGraphics();
    }
}

// As the room does it: off the wall on a media thread, out of memory at once.
TEST_F(WallThreadsTest, NeverTouchesATileThatAMediaThreadDestroys) {
    Calls().SetRecording(false);
    AddRemotes(3);
    std::atomic<bool> ended{false};
    std::vector<std::thread> media;
    for (int thread = 0; thread < 2; ++thread) {
        media.emplace_back([&, thread] {
            for (int round = 0; round < 60; ++round) {
                std::string id = "short";
                id += std::to_string(thread);
                // Out of sight, so that it never gets a texture that only the render thread may destroy.
                VideoFrame tile(id, "", "", TileOrigin::Remote);
                tile.renderable = false;
                wall.AddTile(&tile, true);
                wall.PinTile(&tile);
                std::this_thread::yield();
                wall.RemoveTile(&tile);
            }
            ended.store(true);
        });
    }
    std::minstd_rand random(3);
    while (!ended.load()) TickAnywhere(random);
    for (std::thread& thread : media) thread.join();
    EXPECT_EQ(wall.GetTileCount(), 3);
}

}  // namespace
}  // namespace Corvanta::Video
