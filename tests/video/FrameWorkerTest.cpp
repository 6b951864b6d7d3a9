#include "video/FrameWorker.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "tests/fake_platform/FakePlatform.h"
#include "tests/fake_platform/TestFrames.h"
#include "tests/video/Eventually.h"
#include "tests/video/Gate.h"
#include "video/DisplayColor.h"
#include "video/FrameIntake.h"

namespace Corvanta::Video {
namespace {

using namespace Corvanta::Testing;

constexpr UI::DisplayTraits kSdrDisplay{};
constexpr UI::DisplayTraits kHdrDisplay{.colorSpace = kColorSpaceBt2020};

// The tile's part, which writes down what happens.
class RecordingClient final : public FrameWorkerClient {
public:
    UI::DisplayTraits OnFrameTaken(const Frame& frame) override {
        Calls().Record("taken", frame);
        const std::scoped_lock lock(mutex_);
        return display_;
    }
    std::optional<std::pair<Frame, UI::DisplayTraits>> TakeFrameToPrepareAgain() override {
        const std::scoped_lock lock(mutex_);
        if (again_ == nullptr) return std::nullopt;
        return std::pair{std::exchange(again_, nullptr), display_};
    }
    std::optional<UI::DisplayTraits> Install(PreparedFrame& prepared,
                                             const UI::DisplayTraits& display) override {
        const std::scoped_lock lock(mutex_);
        if (display != display_) {
            Calls().Record("refused");
            return display_;
        }
        installed_.push_back({prepared.frame, prepared.packed ? prepared.raster : Raster{}});
        Calls().Record("installed", prepared.frame);
        return std::nullopt;
    }
    void OnFrameGivenUp() override { Calls().Record("given up"); }

    void SetDisplay(const UI::DisplayTraits& display) {
        const std::scoped_lock lock(mutex_);
        display_ = display;
    }
    void SetAgain(const Frame& frame) {
        const std::scoped_lock lock(mutex_);
        again_ = frame;
    }
    [[nodiscard]] std::vector<std::pair<Frame, Raster>> Installed() const {
        const std::scoped_lock lock(mutex_);
        return installed_;
    }

private:
    mutable std::mutex mutex_;
    // guards: everything below
    UI::DisplayTraits display_ = kSdrDisplay;
    Frame again_;
    std::vector<std::pair<Frame, Raster>> installed_;
};

class FrameWorkerTest : public FakePlatformTest {
protected:
    [[nodiscard]] static bool Happens(const char* what, size_t count = 1) {
        return Calls().WaitFor(what, count, std::chrono::seconds{20});
    }

    FrameIntake intake;
    RecordingClient client;
    FrameWorker worker{intake, client};
};

TEST_F(FrameWorkerTest, ConvertsOnItsOwnThreadWithTheFramesOwnSizeAndType) {
    const auto frame = MakeFrame(
        {.width = 32, .height = 18, .type = VideoFrameBufferType::YUV422_16, .colorSpace = kBt2020Pq});
    intake.OnFrame(frame);
    ASSERT_TRUE(Happens("installed"));
    const auto conversions = Fake().Conversions();
    ASSERT_EQ(conversions.size(), 1U);
    EXPECT_NE(conversions[0].transformer, nullptr);
    EXPECT_NE(conversions[0].thread, std::this_thread::get_id());
    EXPECT_EQ(conversions[0].source, kBt2020Pq);
    EXPECT_EQ(conversions[0].width, 32);
    EXPECT_EQ(conversions[0].height, 18);
    EXPECT_EQ(conversions[0].type, VideoFrameBufferType::YUV422_16);
    EXPECT_EQ(conversions[0].target, sdrTargetColorSpace);
    EXPECT_EQ(client.Installed().at(0).first->GetColorSpace(), sdrTargetColorSpace);
}

TEST_F(FrameWorkerTest, ConvertsHlgToPqOnAnHdrOutputAndLeavesPqAlone) {
    client.SetDisplay(kHdrDisplay);
    const auto pq = MakeFrame({.colorSpace = kBt2020Pq});
    intake.OnFrame(pq);
    intake.OnFrame(MakeFrame({.colorSpace = kBt2020Hlg}));
    ASSERT_TRUE(Happens("installed", 2));
    EXPECT_EQ(client.Installed()[0].first, pq);
    ASSERT_EQ(Fake().Conversions().size(), 1U);
    EXPECT_EQ(Fake().Conversions()[0].target, hdrTargetColorSpace);
}

TEST_F(FrameWorkerTest, TellsTheTileBeforeItConverts) {
    intake.OnFrame(MakeFrame({.colorSpace = kBt2020Pq}));
    ASSERT_TRUE(Happens("installed"));
    EXPECT_EQ(Calls().NamesAmong({"taken", "WebRTC_ConvertFrame", "installed"}),
              (std::vector<std::string>{"taken", "WebRTC_ConvertFrame", "installed"}));
}

TEST_F(FrameWorkerTest, ConvertsOnceMoreWhenTheOutputChangedMeanwhile) {
    Gate gate;
    Calls().OnCall("WebRTC_ConvertFrame", [&](const Call&) { gate.Pass(); });
    intake.OnFrame(MakeFrame({.colorSpace = kBt2020Hlg}));
    ASSERT_TRUE(gate.WaitForArrival());
    client.SetDisplay(kHdrDisplay);
    gate.Open();
    ASSERT_TRUE(Happens("installed"));
    const auto conversions = Fake().Conversions();
    ASSERT_EQ(conversions.size(), 2U);
    EXPECT_EQ(conversions[0].target, sdrTargetColorSpace);
    EXPECT_EQ(conversions[1].target, hdrTargetColorSpace);
    EXPECT_EQ(conversions[1].source, kBt2020Hlg);
    // The tile is told of a frame once, however often it is prepared.
    EXPECT_EQ(Calls().NamesAmong({"taken", "refused", "installed"}),
              (std::vector<std::string>{"taken", "refused", "installed"}));
}

TEST_F(FrameWorkerTest, GoesBackToTheOriginalWhenTheOutputCameToShowIt) {
    Gate gate;
    Calls().OnCall("WebRTC_ConvertFrame", [&](const Call&) { gate.Pass(); });
    const auto frame = MakeFrame({.colorSpace = kBt2020Pq});
    intake.OnFrame(frame);
    ASSERT_TRUE(gate.WaitForArrival());
    client.SetDisplay(kHdrDisplay);
    gate.Open();
    ASSERT_TRUE(Happens("installed"));
    EXPECT_EQ(Fake().Conversions().size(), 1U);
    EXPECT_EQ(client.Installed()[0].first, frame);
}

TEST_F(FrameWorkerTest, DropsWhatCannotBeConvertedWithALine) {
    Fake().Set([](FakeResults& results) {
        results.convert = [](const auto&, int, int, VideoFrameBufferType, const ColorSpace&) {
            return std::shared_ptr<VideoFrameBuffer>();
        };
    });
    intake.OnFrame(MakeFrame({.colorSpace = kBt2020Pq}));
    ASSERT_TRUE(Happens("given up"));
    EXPECT_EQ(Fake().LogsOf(3),
              std::vector<std::string>{"Dropped a video frame: its colours could not be converted"});
    EXPECT_TRUE(client.Installed().empty());
}

TEST_F(FrameWorkerTest, DropsAConvertedFrameThatCannotBeRead) {
    Fake().Set([](FakeResults& results) {
        results.convert = [](const auto&, int width, int height, VideoFrameBufferType,
                             const ColorSpace& space) {
            return MakeFrame({.width = width,
                              .height = height,
                              .colorSpace = space,
                              .faults = {.nullPlane = {false, true, false}}});
        };
    });
    intake.OnFrame(MakeFrame({.colorSpace = kBt2020Pq}));
    ASSERT_TRUE(Happens("given up"));
    EXPECT_EQ(Fake().LogsOf(3),
              std::vector<std::string>{"Dropped a converted video frame: a plane is missing"});
    EXPECT_TRUE(client.Installed().empty());
}

TEST_F(FrameWorkerTest, HandsNoFrameWithoutPixelsToTheConverter) {
    constexpr ColorSpace kUnlisted{ColorMatrix::SMPTE170M, ColorRange::Limited, ColorPrimaries::SMPTE170M,
                                   ColorTransfer::SMPTE170M};
    intake.OnFrame(MakeFrame({.width = 0, .height = 48, .colorSpace = kUnlisted}));
    intake.OnFrame(MakeFrame({.type = static_cast<VideoFrameBufferType>(7), .colorSpace = kUnlisted}));
    intake.OnFrame(MakeFrame({.type = VideoFrameBufferType::YUV420,
                              .colorSpace = kUnlisted,
                              .faults = {.type = VideoFrameBufferType::YUV420_16}}));
    ASSERT_TRUE(Happens("installed", 3));
    EXPECT_TRUE(Fake().Conversions().empty());
    EXPECT_TRUE(Fake().Logs().empty());
}

TEST_F(FrameWorkerTest, DropsEveryUnreadableFrameWithOneLineAndBeforeTheTileHearsOfIt) {
    size_t dropped = 0;
    size_t installed = 0;
    for (const BadFrame& bad : MakeBadFrames()) {
        SCOPED_TRACE(bad.name);
        intake.OnFrame(bad.frame);
        ASSERT_TRUE(Eventually(
            [&] { return Fake().LogsOf(3).size() > dropped || Calls().Count("installed") > installed; }));
        const size_t lines = Fake().LogsOf(3).size();
        const size_t now = Calls().Count("installed");
        EXPECT_EQ(lines - dropped + now - installed, 1U);
        dropped = lines;
        installed = now;
    }
    EXPECT_GT(dropped, 0U);
    EXPECT_EQ(Calls().Count("taken"), installed);
    EXPECT_EQ(Fake().Logs().size(), dropped);
}

TEST_F(FrameWorkerTest, MakesPackedPixelsWhereTheOutputDoesNotShowThePlanes) {
    const auto frame = MakeFrame({.width = 6, .height = 4, .y = 235, .u = 128, .v = 128});
    intake.OnFrame(frame);
    ASSERT_TRUE(Happens("installed"));
    const auto [shown, raster] = client.Installed().at(0);
    EXPECT_EQ(shown, frame);
    EXPECT_EQ(raster.pixels, std::vector<uint32_t>(24, 0xFFFFFFFF));
}

TEST_F(FrameWorkerTest, LeavesPlanesAloneThatTheOutputShows) {
    client.SetDisplay({.exactPlanes = true});
    intake.OnFrame(MakeFrame());
    intake.OnFrame(MakeFrame({.type = VideoFrameBufferType::YUV422}));
    ASSERT_TRUE(Happens("installed", 2));
    EXPECT_TRUE(client.Installed()[0].second.IsEmpty());
    EXPECT_FALSE(client.Installed()[1].second.IsEmpty());
}

TEST_F(FrameWorkerTest, PreparesAShownFrameAgainWhenItIsWoken) {
    const auto frame = MakeFrame();
    client.SetAgain(frame);
    intake.Wake();
    ASSERT_TRUE(Happens("installed"));
    EXPECT_EQ(client.Installed()[0].first, frame);
    EXPECT_EQ(Calls().Count("taken"), 0U);
}

TEST_F(FrameWorkerTest, TakesConverterOnceAndGivesItBackWhenItGoes) {
    EXPECT_EQ(Fake().TransformersCreated(), 1U);
    EXPECT_EQ(Fake().TransformersDeleted(), 0U);
    {
        FrameIntake otherIntake;
        const FrameWorker other(otherIntake, client);
        EXPECT_EQ(Fake().TransformersCreated(), 2U);
    }
    EXPECT_EQ(Fake().TransformersDeleted(), 1U);
}

TEST_F(FrameWorkerTest, StopsAtOnceWhileItWaitsAndReleasesWhatIsQueued) {
    Gate gate;
    Calls().OnCall("WebRTC_ConvertFrame", [&](const Call&) { gate.Pass(); });
    const auto inWork = MakeFrame({.colorSpace = kBt2020Pq});
    const auto queued = MakeFrame();
    intake.OnFrame(inWork);
    ASSERT_TRUE(gate.WaitForArrival());
    intake.OnFrame(queued);
    std::thread stopper([&] { worker.Stop(); });
    ASSERT_TRUE(Eventually([&] { return queued.use_count() == 1; }));
    gate.Open();
    stopper.join();
    EXPECT_LE(Calls().Count("installed"), 1U);
    intake.OnFrame(queued);
    EXPECT_EQ(queued.use_count(), 1);
    worker.Stop();
}

TEST(PlaneLayout, TellsDepthSubsamplingMatrixAndRange) {
    const auto narrow =
        PlaneLayoutOf(*MakeFrame({.type = VideoFrameBufferType::YUV444, .colorSpace = kBt709Limited}));
    ASSERT_TRUE(narrow.has_value());
    EXPECT_FALSE(narrow->wide);
    EXPECT_EQ(narrow->subsampling, SubsamplingMode::Mode444);
    EXPECT_EQ(narrow->matrix, ColorMatrix::BT709);
    EXPECT_EQ(narrow->range, ColorRange::Limited);
    const auto wide =
        PlaneLayoutOf(*MakeFrame({.type = VideoFrameBufferType::YUV422_16, .colorSpace = kBt2020Pq}));
    ASSERT_TRUE(wide.has_value());
    EXPECT_TRUE(wide->wide);
    EXPECT_EQ(wide->subsampling, SubsamplingMode::Mode422);
    EXPECT_EQ(wide->matrix, ColorMatrix::BT2020NCL);
}

TEST(PlaneLayout, IsMissingWhereClassAndTypeDiffer) {
    EXPECT_FALSE(PlaneLayoutOf(*MakeFrame({.type = VideoFrameBufferType::RGB})).has_value());
    EXPECT_FALSE(PlaneLayoutOf(*MakeFrame({.type = static_cast<VideoFrameBufferType>(7)})).has_value());
    EXPECT_FALSE(PlaneLayoutOf(*MakeFrame({.type = VideoFrameBufferType::YUV420,
                                           .faults = {.type = VideoFrameBufferType::YUV420_16}}))
                     .has_value());
    EXPECT_FALSE(PlaneLayoutOf(*MakeFrame({.type = VideoFrameBufferType::YUV420_16,
                                           .faults = {.type = VideoFrameBufferType::YUV420}}))
                     .has_value());
}

}  // namespace
}  // namespace Corvanta::Video
