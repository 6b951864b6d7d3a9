#include "engine/mediamanager/SinkList.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

#include "tests/engine/Eventually.h"

namespace Corvanta::Engine {
namespace {

class EmptyFrame final : public VideoFrameBuffer {
public:
    EmptyFrame() : VideoFrameBuffer(2, 2, ColorSpace()) {}
    void Clear() override {}
    [[nodiscard]] VideoFrameBufferType GetType() const override { return VideoFrameBufferType::YUV420; }
};

std::shared_ptr<VideoFrameBuffer> MakeEmptyFrame() {
    return std::make_shared<EmptyFrame>();
}

TEST(SinkList, GivesEachSinkAFrameObjectOfItsOwn) {
    SinkList sinks("source");
    std::vector<std::shared_ptr<VideoFrameBuffer>> frames;
    FrameCallback borrowed = [&](const auto& frame) { frames.push_back(frame); };
    sinks.AddOwned(std::make_unique<FrameCallback>(borrowed));
    sinks.AddBorrowed(&borrowed);
    sinks.AddBorrowed(&borrowed);
    sinks.AddBorrowed(nullptr);
    EXPECT_EQ(sinks.Deliver(MakeEmptyFrame), 2U);
    ASSERT_EQ(frames.size(), 2U);
    EXPECT_NE(frames[0], frames[1]);
}

TEST(SinkList, GoesOnToTheNextSinkWhenOneThrows) {
    SinkList sinks("source");
    int calls = 0;
    sinks.AddOwned(std::make_unique<FrameCallback>());
    sinks.AddOwned(std::make_unique<FrameCallback>([](const auto&) { throw std::runtime_error("no"); }));
    sinks.AddOwned(std::make_unique<FrameCallback>([&](const auto&) { ++calls; }));
    EXPECT_EQ(sinks.Deliver(MakeEmptyFrame), 1U);
    EXPECT_EQ(calls, 1);
}

TEST(SinkList, DeletesAnOwnedSinkOnceItIsRemoved) {
    SinkList sinks("source");
    auto held = std::make_shared<int>(1);
    sinks.AddOwned(std::make_unique<FrameCallback>([held](const auto&) {}));
    sinks.Deliver(MakeEmptyFrame);
    EXPECT_EQ(held.use_count(), 2);
    sinks.Clear();
    EXPECT_EQ(held.use_count(), 1);
    EXPECT_EQ(sinks.Deliver(MakeEmptyFrame), 0U);
}

TEST(SinkList, WaitsForADeliveryInProgressWhenASinkGoes) {
    SinkList sinks("source");
    std::atomic<bool> isInside = false;
    std::atomic<bool> isOver = false;
    FrameCallback slow = [&](const auto&) {
        isInside = true;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        isOver = true;
    };
    sinks.AddBorrowed(&slow);
    std::thread decoder([&] { sinks.Deliver(MakeEmptyFrame); });
    EXPECT_TRUE(Eventually([&] { return isInside.load(); }));
    sinks.Remove(&slow);
    EXPECT_TRUE(isOver);
    decoder.join();
}

TEST(SinkList, LetsASinkRemoveItself) {
    SinkList sinks("source");
    int calls = 0;
    FrameCallback once = [&](const auto&) {
        ++calls;
        sinks.Remove(&once);
    };
    sinks.AddBorrowed(&once);
    sinks.Deliver(MakeEmptyFrame);
    sinks.Deliver(MakeEmptyFrame);
    EXPECT_EQ(calls, 1);
}

TEST(SinkList, BearsSinksComingAndGoingDuringDeliveriesOnSeveralThreads) {
    SinkList sinks("source");
    std::atomic<bool> isEnding = false;
    std::atomic<int> calls = 0;
    std::vector<std::thread> decoders;
    for (int thread = 0; thread < 3; ++thread) {
        decoders.emplace_back([&] {
            while (!isEnding) sinks.Deliver(MakeEmptyFrame);
        });
    }
    for (int round = 0; round < 300; ++round) {
        auto sink = std::make_unique<FrameCallback>([&](const auto&) { ++calls; });
        sinks.AddBorrowed(sink.get());
        sinks.AddOwned(std::make_unique<FrameCallback>([&](const auto&) { ++calls; }));
        sinks.Remove(sink.get());
        sink.reset();
        if (round % 10 == 0) sinks.Clear();
    }
    EXPECT_TRUE(Eventually([&] { return calls > 0; }));
    isEnding = true;
    for (auto& decoder : decoders) decoder.join();
}

}  // namespace
}  // namespace Corvanta::Engine
