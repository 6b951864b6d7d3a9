// Media threads, the worker and the drawing at once; what a sanitizer watches.
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

#include "tests/video/Gate.h"
#include "tests/video/GatedFrame.h"
#include "tests/video/TileTest.h"
#include "video/DisplayColor.h"

namespace Corvanta::Video {
namespace {

using namespace Corvanta::Testing;
using Type = VideoFrameBufferType;

constexpr int kMediaThreads = 4;

class TileThreadsTest : public TileTest {
protected:
    // Runs on that many threads at once until the object goes.
    template <typename Work>
    class Threads {
    public:
        Threads(int count, Work work) : work_(std::move(work)) {
            for (int i = 0; i < count; ++i) {
                threads_.emplace_back([this, i] {
                    for (int round = 0; !ended_.load(); ++round) work_(i, round);
                });
            }
        }
        ~Threads() {
            ended_.store(true);
            for (std::thread& thread : threads_) thread.join();
        }

    private:
        Work work_;
        std::atomic<bool> ended_{false};
        std::vector<std::thread> threads_;
    };
};

// Pauses its tile's reader as soon as it was taken.
class ArmingObserver final : public FrameObserver {
public:
    explicit ArmingObserver(GatedFrame& frame) : frame_(frame) {}
    void OnFrame(const Frame&, int, Uint32, const SDL_Rect&, int, const VideoSourceData&) override {
        frame_.Arm();
    }

private:
    GatedFrame& frame_;
};

TEST_F(TileThreadsTest, TakesFramesFromSeveralThreadsWhileItIsDrawnAndSwitched) {
    Calls().SetRecording(false);
    {
        const Threads media(kMediaThreads, [this](int thread, int round) {
            Send(MakeFrame({.width = 8 + round % 3,
                            .height = 8,
                            .type = static_cast<Type>((thread + round) % 8),
                            .colorSpace = round % 5 == 0 ? kBt2020Pq : kBt709Limited}));
        });
        const Threads host(1, [this](int, int round) {
            tile.SetVideoEnabled(round % 3 != 0);
            tile.BlankFrame();
            tile.RequestStillExport("still");
            tile.SetSourceData({"stream", static_cast<float>(round), "clip"});
            (void)tile.GetPictureSize();
            (void)tile.GetColorSpace();
        });
        for (int i = 0; i < 150; ++i) Draw();
    }
    tile.SetVideoEnabled(true);
    ASSERT_TRUE(Flush());
    ASSERT_TRUE(Show(MakeFrame({.y = 235, .u = 128, .v = 128})));
    EXPECT_TRUE(AreaIs(DrawAndRead(), tile.rect, 0xFFFFFFFF));
}

TEST_F(TileThreadsTest, ItsSinkMayBeCalledWhileItGoesAndAfterwards) {
    auto other = std::make_unique<VideoFrame>("other", "", "", TileOrigin::Remote);
    const std::shared_ptr<FrameCallback> sink = other->GetFrameSink();
    const auto frame = MakeFrame();
    std::atomic<int> late{0};
    std::atomic<bool> isGone{false};
    {
        const Threads media(kMediaThreads, [&](int, int) {
            const bool wasGone = isGone.load();
            (*sink)(frame);
            if (wasGone) ++late;
        });
        other.reset();
        isGone.store(true);
        ASSERT_TRUE(Eventually([&] { return late.load() >= 2 * kMediaThreads; }));
    }
    EXPECT_EQ(frame.use_count(), 1);
    EXPECT_EQ(Fake().LogsOf(2), std::vector<std::string>{"Dropped a video frame: its stream has gone"});
}

TEST_F(TileThreadsTest, GoesWhileAConversionRunsAndReleasesEveryFrame) {
    Gate gate;
    Calls().OnCall("WebRTC_ConvertFrame", [&](const Call&) { gate.Pass(); });
    auto other = std::make_unique<VideoFrame>("other", "", "", TileOrigin::Remote);
    const auto inWork = MakeFrame({.colorSpace = kBt2020Pq});
    const auto queued = MakeFrame({.colorSpace = kBt2020Pq});
    SendTo(*other, inWork);
    ASSERT_TRUE(gate.WaitForArrival());
    SendTo(*other, queued);
    std::thread destroyer([&] { other.reset(); });
    ASSERT_TRUE(Eventually([&] { return queued.use_count() == 1; }));
    gate.Open();
    destroyer.join();
    EXPECT_EQ(inWork.use_count(), 1);
    EXPECT_EQ(Fake().Conversions().size(), 1U);
    EXPECT_EQ(Fake().TransformersDeleted(), 1U);
}

TEST_F(TileThreadsTest, IsDrawnWhileAConversionRuns) {
    ASSERT_TRUE(Show(MakeFrame({.y = 235, .u = 128, .v = 128})));
    Gate gate;
    Calls().OnCall("WebRTC_ConvertFrame", [&](const Call&) { gate.Pass(); });
    Send(MakeFrame({.colorSpace = kBt2020Pq}));
    ASSERT_TRUE(gate.WaitForArrival());
    EXPECT_TRUE(AreaIs(DrawAndRead(), tile.rect, 0xFFFFFFFF));
    tile.BlankFrame();
    EXPECT_TRUE(AreaIs(DrawAndRead(), tile.rect, 0xFF000000));
    gate.Open();
    EXPECT_TRUE(Flush());
}

TEST_F(TileThreadsTest, BlackensAFrameThatIsSentTwiceWhenTheWorkerHasLetGoOfIt) {
    const auto frame = std::make_shared<GatedFrame>();
    ASSERT_TRUE(Show(frame));
    tile.SetFrameObserver(std::make_unique<ArmingObserver>(*frame));
    Send(frame);
    ASSERT_TRUE(frame->gate.WaitForArrival());
    tile.BlankFrame();
    EXPECT_EQ(frame->ClearCount(), 0);
    frame->gate.Open();
    ASSERT_TRUE(Flush());
    EXPECT_EQ(frame->ClearCount(), 1);
    EXPECT_TRUE(AreaIs(DrawAndRead(), tile.rect, 0xFF000000));
}

TEST_F(TileThreadsTest, ForgetsToBlackenNothingWhenTheFrameInWorkComesToNothing) {
    const auto shown = MakeFrame({.y = 235, .u = 128, .v = 128});
    ASSERT_TRUE(Show(shown));
    Fake().Set([](FakeResults& results) {
        results.convert = [](const auto&, int, int, Type, const ColorSpace&) {
            return std::shared_ptr<VideoFrameBuffer>();
        };
    });
    ASSERT_TRUE(Show(MakeFrame({.colorSpace = kBt2020Pq})));
    tile.BlankFrame();
    EXPECT_EQ(ClearCount(shown), 1);
    const auto next = MakeFrame({.y = 235, .u = 128, .v = 128});
    ASSERT_TRUE(Show(next));
    EXPECT_EQ(ClearCount(next), 0);
}

TEST_F(TileThreadsTest, ManyTilesComeAndGoWhileFramesArrive) {
    Calls().SetRecording(false);
    for (int round = 0; round < 15; ++round) {
        VideoFrame other("other", "", "", TileOrigin::Remote);
        const std::shared_ptr<FrameCallback> sink = other.GetFrameSink();
        const auto frame = MakeFrame({.width = 8, .height = 8});
        const Threads media(2, [&](int, int) { (*sink)(frame); });
        other.rect = tile.rect;
        for (int i = 0; i < 3; ++i) other.Render(screen.Renderer(), {0, 0});
        other.ReleaseGraphics();
        other.Retire();
    }
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
}

}  // namespace
}  // namespace Corvanta::Video
