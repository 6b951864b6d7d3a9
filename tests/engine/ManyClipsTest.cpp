// Rooms of many generated persons: smaller and fewer pictures, so that the machine is left to the one who
// looks.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "engine/Engine.h"
#include "engine/webrtc/ClipScene.h"
#include "engine/webrtc/GstSupport.h"
#include "platform/Connections.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/RoomVisitor.h"

namespace Corvanta::Engine {
namespace {

using std::chrono::milliseconds;

constexpr ClipFormat kHalf{kClipWidth / 2, kClipHeight / 2, kClipFrameRate};

struct Picture {
    explicit Picture(const ClipScene& scene, milliseconds time)
        : width(scene.Format().width),
          height(scene.Format().height),
          samples(static_cast<std::size_t>(width * height * 3 / 2)) {
        uint8_t* const luma = samples.data();
        uint8_t* const chroma = luma + width * height;
        scene.Draw(time, {width, height, luma, chroma, chroma + width * height / 4, width, width / 2});
    }
    [[nodiscard]] uint8_t Luma(int x, int y) const {
        return samples[static_cast<std::size_t>(y * width + x)];
    }

    int width, height;
    std::vector<uint8_t> samples;
};

TEST(ClipFormat, GrowsSmallerWithTheNumberOfClips) {
    for (const std::size_t clips : {0U, 1U, 4U, 9U}) EXPECT_EQ(ClipFormatFor(clips), ClipFormat{}) << clips;
    for (const std::size_t clips : {10U, 25U, 49U}) EXPECT_EQ(ClipFormatFor(clips), kHalf) << clips;
    for (const std::size_t clips : {50U, 100U, 1000U}) {
        EXPECT_EQ(ClipFormatFor(clips), (ClipFormat{kClipWidth / 2, kClipHeight / 2, 15})) << clips;
    }
}

TEST(SmallClip, ShowsTheSamePerson) {
    ASSERT_TRUE(EnsureGStreamer());
    const Picture large(*MakePersonScene("name", 2, {0, 1}), milliseconds(700));
    const Picture small(*MakePersonScene("name", 2, {0, 1}, kHalf), milliseconds(700));
    ASSERT_EQ(small.width, 640);
    ASSERT_EQ(small.height, 360);
    int alike = 0;
    int total = 0;
    for (int y = 4; y < small.height - 4; y += 4) {
        for (int x = 4; x < small.width - 4; x += 4) {
            ++total;
            if (std::abs(small.Luma(x, y) - large.Luma(2 * x, 2 * y)) <= 6) ++alike;
        }
    }
    // Edges may be a pixel off.
    EXPECT_GT(alike, total * 93 / 100);
}

TEST(SmallClip, StaysInsideThePictureAtAnyTime) {
    ASSERT_TRUE(EnsureGStreamer());
    // Sanitizers watch the edges.
    const auto scene = MakePersonScene(
        "A very long name that is wider than the picture is, by far and further", 1, {0, 1}, kHalf);
    for (int step = 0; step < 40; ++step) {
        for (const uint8_t sample : Picture(*scene, milliseconds(step * 617)).samples) {
            ASSERT_GE(sample, 14);
            ASSERT_LE(sample, 242);
        }
    }
}

TEST(ManyClips, AllShowSmallPictures) {
    RoomVisitor visitor;
    std::vector<Participant> participants;
    for (int index = 0; index < 25; ++index)
        participants.push_back({"Person " + std::to_string(index), "clip"});
    ASSERT_NE(visitor.Enter(participants), -1);
    EXPECT_TRUE(WaitForPictures(std::chrono::seconds(60)));
    EXPECT_EQ(GetRoomStatus().showing, 25U);
    for (std::size_t index = 0; index < participants.size(); ++index) {
        ASSERT_TRUE(visitor.WaitForFrames(index, 3)) << index;
        EXPECT_EQ(visitor.LastFrame(index)->GetWidth(), 640) << index;
        EXPECT_EQ(visitor.LastFrame(index)->GetHeight(), 360) << index;
    }
}

TEST(EmptyRoom, HasNobodyInIt) {
    TemporaryFolder folder;
    RoomVisitor visitor;
    EngineOptions options;
    options.configurationFolder = folder.path;
    options.soundOutput = SoundOutput::Silent;
    ASSERT_FALSE(Configure(options));
    ASSERT_NE(
        Connections_InitConnection(nullptr, nullptr, "session", "", "", "", "Me", true, true, true, nullptr),
        -1);
    EXPECT_TRUE(WaitForPictures(std::chrono::seconds(5)));
    EXPECT_TRUE(GetRoomStatus().connected);
    EXPECT_EQ(GetRoomStatus().participants, 0U);
    EXPECT_TRUE(visitor.Events().empty());
}

}  // namespace
}  // namespace Corvanta::Engine
