// The engine's room with people of other programs in it: what the library sees and hears of them, and they of
// the local user.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "engine/mesh/MeshTransport.h"
#include "platform/Connections.h"
#include "platform/MediaManager.h"
#include "platform/RESTfulAPI.h"
#include "platform/WebRTC.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/RoomVisitor.h"
#include "tests/engine/SharingVisitor.h"
#include "tests/engine/TemporaryFolder.h"
#include "tests/engine/mesh/RoomPerson.h"

namespace Corvanta::Engine {
namespace {

constexpr Yuv kRed{81, 90, 240};
constexpr Yuv kBlue{41, 240, 110};

class MeshRoomTest : public testing::Test {
protected:
    MeshRoomTest() {
        // The room service's place too is this test's own.
        ::setenv("XDG_RUNTIME_DIR", temporary.path.c_str(), 1);
        visitor.roomName = "review";
        visitor.makeTransport = Maker("me");
    }

    [[nodiscard]] TransportMaker Maker(const std::string& name) const {
        return [options = MeshOptions{.room = "review", .name = name, .folder = temporary.path}](
                   EngineLoop& loop, const std::shared_ptr<SoundMixer>& mixer) {
            return std::make_unique<MeshTransport>(loop, mixer, options);
        };
    }

    [[nodiscard]] bool Hears(const std::string& event, std::ptrdiff_t times = 1) const {
        return Eventually([&] {
            const auto events = visitor.Events();
            return std::count(events.begin(), events.end(), event) >= times;
        });
    }

    TemporaryFolder temporary;
    RoomVisitor visitor;
};

TEST_F(MeshRoomTest, ShowsWhoIsThereAndWhoComes) {
    RoomPerson one(Maker("one"), kRed);
    ASSERT_TRUE(one.Enters());
    ASSERT_EQ(visitor.Enter({}), 1);
    EXPECT_TRUE(visitor.WaitForFrames(0, 5));
    EXPECT_EQ(visitor.StreamId(0), one.Id() + "-camera");
    EXPECT_EQ(Connections_GetPublisherDisplayName(visitor.StreamId(0)), "one");
    EXPECT_EQ(Connections_GetLocalUserStreamID(StreamType::Camera), one.StreamId("me"));
    // For the channel to each.
    EXPECT_TRUE(Hears("joined"));
    RoomPerson two(Maker("two"), kBlue);
    ASSERT_TRUE(two.Enters());
    EXPECT_TRUE(visitor.WaitForFrames(1, 5));
    EXPECT_TRUE(Hears("joined", 2));
    two.Leave();
    EXPECT_TRUE(Hears("remove " + visitor.StreamId(1)));
}

TEST_F(MeshRoomTest, TellsOfEveryNewChannel) {
    RoomPerson one(Maker("one"), kRed);
    ASSERT_TRUE(one.Enters());
    ASSERT_EQ(visitor.Enter({}), 1);
    ASSERT_TRUE(Hears("joined"));
    ASSERT_TRUE(visitor.WaitForFrames(0, 1));
    Connections_RestartPeerConnection(visitor.StreamId(0), true, true, true);
    EXPECT_TRUE(Hears("joined", 2));
    const std::size_t frames = visitor.Frames(0);
    EXPECT_TRUE(visitor.WaitForFrames(0, frames + 5));
}

TEST_F(MeshRoomTest, CarriesTheLibrarysTextsBothWays) {
    RoomPerson one(Maker("one"));
    ASSERT_TRUE(one.Enters());
    std::mutex mutex;
    std::vector<std::string> received;
    ASSERT_EQ(visitor.Enter({}), 1);
    MediaManager_SetCallbackToGetRemoteDataChannelSDLCallbackList([&] {
        return std::vector<DataChannelCallback>{[&](const DataChannelMessage& message) {
            const std::lock_guard lock(mutex);
            received.push_back(message.senderId + ' ' + message.text);
        }};
    });
    RoomPerson two(Maker("two"));
    ASSERT_TRUE(two.Enters());
    two.Say("{\"type\":\"from two\"}");
    EXPECT_TRUE(Eventually([&] {
        const std::lock_guard lock(mutex);
        return received == std::vector<std::string>{two.Id() + "-camera {\"type\":\"from two\"}"};
    }));
    EXPECT_TRUE(MediaManager_SendDatachannelMessage("{\"type\":\"from me\"}"));
    EXPECT_TRUE(one.Hears("me", {"{\"type\":\"from me\"}"}));
    EXPECT_TRUE(two.Hears("me", {"{\"type\":\"from me\"}"}));
}

TEST_F(MeshRoomTest, TellsTheServiceOfTheOwnConnection) {
    RoomPerson one(Maker("one"), kRed);
    ASSERT_TRUE(one.Enters());
    ASSERT_EQ(visitor.Enter({}), 1);
    ASSERT_TRUE(visitor.WaitForFrames(0, 5));
    const std::string id = Connections_GetLocalUserStreamID(StreamType::Camera);
    EXPECT_TRUE(Eventually([&] {
        const auto* const report = RESTApi_ReceiveParticipantsConnectivityLog("session", id);
        return RESTApi_ResponseGetStatus(report) == Model::API::kResponseSuccess && report->download > 1000;
    }));
}

TEST_F(MeshRoomTest, FeedsTheLocalUsersFigures) {
    RoomPerson one(Maker("one"), kRed, 0.2);
    ASSERT_TRUE(one.Enters());
    ASSERT_EQ(visitor.Enter({}), 1);
    ASSERT_TRUE(visitor.WaitForFrames(0, 5));
    std::atomic<double> download = 0;
    WebRTC_SetConnectionStatsCallback(
        [&](int, double, int, double downloadRate, double, double, double) { download = downloadRate; });
    EXPECT_TRUE(Eventually([&] { return download > 10'000; }));
    WebRTC_SetConnectionStatsCallback({});
}

TEST_F(MeshRoomTest, MutesAndRemovesOthers) {
    RoomPerson one(Maker("one"));
    ASSERT_TRUE(one.Enters());
    ASSERT_EQ(visitor.Enter({}), 1);
    ASSERT_TRUE(Hears("joined"));
    Connections_MuteParticipant(visitor.StreamId(0));
    EXPECT_TRUE(Eventually([&] { return one.Mutes() == 1; }));
    RemoveParticipant(visitor.StreamId(0));
    EXPECT_TRUE(Eventually([&] { return one.Drops() == "0"; }));
    EXPECT_TRUE(Hears("remove " + one.Id() + "-camera"));
}

TEST_F(MeshRoomTest, LeavesWithAGoodbye) {
    RoomPerson one(Maker("one"));
    ASSERT_TRUE(one.Enters());
    ASSERT_EQ(visitor.Enter({}), 1);
    ASSERT_TRUE(Eventually([&] { return one.Present() == 1; }));
    RoomVisitor::Leave();
    ASSERT_TRUE(Eventually([&] { return one.Present() == 0; }));
    EXPECT_EQ(one.Sees("me")->reason, "it has said goodbye");
}

TEST_F(MeshRoomTest, ShowsTheLocalUsersStreamsToTheOthers) {
    SharingVisitor sharer;
    sharer.makeTransport = Maker("me");
    sharer.Enter("test");
    RoomPerson one(Maker("one"));
    ASSERT_TRUE(one.Enters());
    EXPECT_TRUE(Eventually([&] { return one.Sees("me") && one.Sees("me")->pictures > 5; }));
    const auto problem = ShareStream(StreamType::Device, kTestPicture);
    ASSERT_FALSE(problem) << *problem;
    EXPECT_TRUE(Eventually([&] {
        const auto streams = one.Streams();
        return std::ranges::any_of(streams, [](const RoomPerson::Seen& seen) {
            return seen.type == StreamType::Device && seen.pictures > 5;
        });
    }));
    StopSharing(StreamType::Device);
    EXPECT_TRUE(Eventually([&] { return one.Present() == 1; }));
}

}  // namespace
}  // namespace Corvanta::Engine
