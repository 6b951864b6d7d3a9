// The drawings of the default participants, as the library hears of them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform/Connections.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/RoomVisitor.h"

namespace Corvanta::Engine {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;
using namespace std::chrono_literals;

// Long enough for many marks if there were any.
constexpr auto kWhile = 1500ms;

class RoomDrawingsTest : public ::testing::Test {
protected:
    RoomDrawingsTest() {
        visitor_.drawAfter = 1ms;
        MediaManager_SetCallbackToGetRemoteDataChannelSDLCallbackList([this] {
            return std::vector<DataChannelCallback>{[this](const DataChannelMessage& message) {
                const std::lock_guard lock(heardMutex_);
                heard_.push_back(message);
                framesWhenHeard_ =
                    visitor_.Frames(0) + visitor_.Frames(1) + visitor_.Frames(2) + visitor_.Frames(3);
            }};
        });
    }

    std::size_t Heard() {
        const std::lock_guard lock(heardMutex_);
        return heard_.size();
    }

    std::mutex heardMutex_;  // guards: heard_, framesWhenHeard_
    std::vector<DataChannelMessage> heard_;
    std::size_t framesWhenHeard_ = 0;
    // Leaves before the rest goes.
    RoomVisitor visitor_;
};

TEST_F(RoomDrawingsTest, BeginWhenThereIsAPictureToDrawOn) {
    visitor_.Enter({});
    ASSERT_TRUE(Eventually([this] { return Heard() > 0; }));
    EXPECT_GT(framesWhenHeard_, 0U);
    EXPECT_THAT(heard_.front().senderId, StartsWith("participant-"));
    EXPECT_THAT(heard_.front().text, HasSubstr("\"type\":\"draw-canvas-broadcast\""));
}

TEST_F(RoomDrawingsTest, DoNotComeBeforeTheLibraryShowsAnybody) {
    visitor_.refusals = 1'000'000;
    visitor_.Enter({});
    std::this_thread::sleep_for(kWhile);
    EXPECT_EQ(Heard(), 0U);
}

TEST_F(RoomDrawingsTest, DoNotComeFromThoseWhomTheHostHasNamed) {
    visitor_.Enter({{"one", "test"}});
    ASSERT_TRUE(visitor_.WaitForFrames(0, 2));
    std::this_thread::sleep_for(kWhile);
    EXPECT_EQ(Heard(), 0U);
}

TEST_F(RoomDrawingsTest, DoNotComeWhereTheHostWantsNone) {
    visitor_.drawAfter.reset();
    visitor_.Enter({});
    ASSERT_TRUE(visitor_.WaitForFrames(0, 2));
    std::this_thread::sleep_for(kWhile);
    EXPECT_EQ(Heard(), 0U);
}

TEST_F(RoomDrawingsTest, LetAHandlerCloseTheRoom) {
    MediaManager_SetCallbackToGetRemoteDataChannelSDLCallbackList([this] {
        return std::vector<DataChannelCallback>{[this](const DataChannelMessage& message) {
            Connections_CloseConnection();
            const std::lock_guard lock(heardMutex_);
            heard_.push_back(message);
        }};
    });
    visitor_.Enter({});
    ASSERT_TRUE(Eventually([this] { return Heard() > 0; }));
    EXPECT_TRUE(Eventually([] { return !GetRoomStatus().connected; }));
}

TEST(RoomMessages, AreTakenAsLongAsThereIsARoom) {
    RoomVisitor visitor;
    EXPECT_FALSE(MediaManager_SendDatachannelMessage("{}"));
    visitor.Enter({{"one", "test"}});
    EXPECT_TRUE(MediaManager_SendDatachannelMessage("{}"));
    EXPECT_FALSE(MediaManager_SendDatachannelMessage(nullptr));
    RoomVisitor::Leave();
    EXPECT_FALSE(MediaManager_SendDatachannelMessage("{}"));
}

}  // namespace
}  // namespace Corvanta::Engine
