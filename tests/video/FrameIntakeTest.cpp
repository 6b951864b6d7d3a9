#include "video/FrameIntake.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "tests/fake_platform/FakePlatform.h"
#include "tests/fake_platform/TestFrames.h"

namespace Corvanta::Video {
namespace {

using Corvanta::Testing::Call;
using Corvanta::Testing::Fake;
using Corvanta::Testing::FakeResults;
using Corvanta::Testing::MakeFrame;
using std::chrono::milliseconds;

constexpr milliseconds kNoTime{0};

class FrameIntakeTest : public Corvanta::Testing::FakePlatformTest {
protected:
    FrameIntake intake;
};

TEST_F(FrameIntakeTest, KeepsTheOldestThreeFramesAndDropsTheNextWithoutAWord) {
    const std::vector frames{MakeFrame(), MakeFrame(), MakeFrame(), MakeFrame()};
    for (const auto& frame : frames) intake.OnFrame(frame);
    for (size_t i = 0; i < 3; ++i) EXPECT_EQ(intake.Take(kNoTime), frames[i]);
    EXPECT_EQ(intake.Take(kNoTime), std::nullopt);
    EXPECT_TRUE(Fake().Logs().empty());
}

TEST_F(FrameIntakeTest, WritesAStillOnTheThreadThatBringsTheNextFrame) {
    intake.RequestStillExport("folder/still");
    const auto frame = MakeFrame();
    std::thread media([&] { intake.OnFrame(frame); });
    const std::thread::id mediaId = media.get_id();
    media.join();
    const auto exports = Fake().StillExports();
    ASSERT_EQ(exports.size(), 1U);
    EXPECT_EQ(exports[0].path, "folder/still");
    EXPECT_EQ(exports[0].thread, mediaId);
    EXPECT_EQ(exports[0].frame, frame.get());
}

TEST_F(FrameIntakeTest, WritesTheStillBeforeItQueuesTheFrame) {
    intake.RequestStillExport("still");
    bool queuedBefore = true;
    Fake().OnCall("WebRTC_ExportStillImageFromVideoFrameBuffer",
                  [&](const Call&) { queuedBefore = intake.Take(kNoTime).has_value(); });
    intake.OnFrame(MakeFrame());
    EXPECT_FALSE(queuedBefore);
    EXPECT_TRUE(intake.Take(kNoTime).has_value());
}

TEST_F(FrameIntakeTest, TellsOnceThatAStillIsThereAndNothingOfOneThatFailed) {
    int told = 0;
    const auto tell = [&told] { ++told; };
    Fake().Set([](FakeResults& results) { results.exportSucceeds = false; });
    intake.RequestStillExport("still", tell);
    intake.OnFrame(MakeFrame());
    EXPECT_EQ(told, 0);
    Fake().Set([](FakeResults& results) { results.exportSucceeds = true; });
    intake.RequestStillExport("still", tell);
    intake.OnFrame(MakeFrame());
    intake.OnFrame(MakeFrame());
    EXPECT_EQ(told, 1);
}

TEST_F(FrameIntakeTest, WritesOneStillForOneRequest) {
    intake.OnFrame(MakeFrame());
    intake.RequestStillExport("still");
    intake.OnFrame(MakeFrame());
    intake.OnFrame(MakeFrame());
    EXPECT_EQ(Fake().StillExports().size(), 1U);
}

TEST_F(FrameIntakeTest, WritesTheStillToThePathAskedForLast) {
    intake.RequestStillExport("first");
    intake.RequestStillExport("second");
    intake.OnFrame(MakeFrame());
    ASSERT_EQ(Fake().StillExports().size(), 1U);
    EXPECT_EQ(Fake().StillExports()[0].path, "second");
}

TEST_F(FrameIntakeTest, WritesTheStillAlsoWhileTheVideoIsOff) {
    intake.SetVideoEnabled(false);
    intake.RequestStillExport("still");
    intake.OnFrame(MakeFrame());
    EXPECT_EQ(Fake().StillExports().size(), 1U);
    EXPECT_EQ(intake.Take(kNoTime), std::nullopt);
}

TEST_F(FrameIntakeTest, WritesTheStillAlsoOfAFrameForWhichThereIsNoRoom) {
    for (int i = 0; i < 3; ++i) intake.OnFrame(MakeFrame());
    intake.RequestStillExport("still");
    intake.OnFrame(MakeFrame());
    EXPECT_EQ(Fake().StillExports().size(), 1U);
}

TEST_F(FrameIntakeTest, DropsFramesWhileTheVideoIsOff) {
    intake.SetVideoEnabled(false);
    intake.OnFrame(MakeFrame());
    EXPECT_EQ(intake.Take(kNoTime), std::nullopt);
    intake.SetVideoEnabled(true);
    intake.OnFrame(MakeFrame());
    EXPECT_TRUE(intake.Take(kNoTime).has_value());
}

TEST_F(FrameIntakeTest, DropsNoFrameAtAllWithALineAndKeepsTheStillForARealOne) {
    intake.RequestStillExport("still");
    intake.OnFrame(nullptr);
    EXPECT_EQ(Fake().LogsOf(3), std::vector<std::string>{"Dropped a video frame: there is none"});
    EXPECT_TRUE(Fake().StillExports().empty());
    intake.OnFrame(MakeFrame());
    EXPECT_EQ(Fake().StillExports().size(), 1U);
}

TEST_F(FrameIntakeTest, DropsEverythingOnceItIsClosedAndSaysSoOnce) {
    const auto queued = MakeFrame();
    intake.OnFrame(queued);
    intake.RequestStillExport("still");
    intake.Close();
    EXPECT_EQ(queued.use_count(), 1);
    for (int i = 0; i < 3; ++i) intake.OnFrame(queued);
    intake.OnFrame(nullptr);
    EXPECT_EQ(queued.use_count(), 1);
    EXPECT_EQ(intake.Take(kNoTime), std::nullopt);
    EXPECT_TRUE(Fake().StillExports().empty());
    EXPECT_EQ(Fake().Logs().size(), 1U);
}

TEST_F(FrameIntakeTest, TakesFramesAndRequestsFromSeveralThreadsAtOnce) {
    constexpr int kThreads = 4;
    constexpr int kEach = 300;
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([this, i] {
            const auto frame = MakeFrame({.width = 2, .height = 2});
            for (int j = 0; j < kEach; ++j) {
                intake.RequestStillExport("still of thread " + std::to_string(i));
                intake.OnFrame(frame);
                intake.SetVideoEnabled(j % 7 != 0);
            }
        });
    }
    for (int i = 0; i < kEach; ++i) (void)intake.Take(milliseconds{1});
    for (std::thread& thread : threads) thread.join();
    const size_t exports = Fake().StillExports().size();
    EXPECT_GE(exports, 1U);
    EXPECT_LE(exports, static_cast<size_t>(kThreads * kEach));
    for (const auto& still : Fake().StillExports()) {
        EXPECT_EQ(still.path.substr(0, 16), "still of thread ");
    }
}

}  // namespace
}  // namespace Corvanta::Video
