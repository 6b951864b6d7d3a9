#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "engine/Engine.h"
#include "engine/connections/RoomStatus.h"
#include "platform/Connections.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/RoomVisitor.h"

namespace Corvanta::Engine {
namespace {

class Listener final : public Connections::RoomStatusListener {
public:
    ~Listener() { Connections_RemoveRoomStatusListener(this); }

    void OnRoomStatusChanged(int32_t status) override { Note(std::to_string(status)); }
    void OnMutedRemotely() override { Note("muted"); }

    [[nodiscard]] std::vector<std::string> Heard() {
        const std::lock_guard lock(heardMutex);
        return heard;
    }
    [[nodiscard]] bool Hears(const std::vector<std::string>& expected) {
        return Eventually([&] { return Heard() == expected; });
    }

    // Called first, inside each call.
    std::function<void()> onCall;

private:
    void Note(const std::string& event) {
        if (onCall) onCall();
        const std::lock_guard lock(heardMutex);
        heard.push_back(event);
    }

    std::mutex heardMutex;  // guards: heard
    std::vector<std::string> heard;
};

TEST(RoomStatus, TellsWhenTheRoomOpensAndCloses) {
    RoomVisitor visitor;
    Listener listener;
    Connections_AddRoomStatusListener(&listener);
    Connections_AddRoomStatusListener(&listener);
    Connections_AddRoomStatusListener(nullptr);
    ASSERT_NE(visitor.Enter({{"one", "test"}}), -1);
    EXPECT_TRUE(listener.Hears({"1"}));
    Connections_CloseConnection();
    EXPECT_EQ(listener.Heard(), (std::vector<std::string>{"1", "0"})) << "before the close returns";
    Connections_CloseConnection();
    EXPECT_EQ(listener.Heard().size(), 2U);
}

TEST(RoomStatus, TellsTheUserWhoIsMutedByAnother) {
    RoomVisitor visitor;
    Listener listener;
    Connections_AddRoomStatusListener(&listener);
    Connections_MuteParticipant(Connections_GetLocalUserStreamID(StreamType::Camera));
    ASSERT_NE(visitor.Enter({{"one", "test"}}), -1);
    EXPECT_TRUE(listener.Hears({"1"}));
    Connections_MuteParticipant("participant-1-one");
    Connections_MuteParticipant("nobody");
    Connections_MuteParticipant("");
    Connections_MuteParticipant(Connections_GetLocalUserStreamID(StreamType::Camera));
    EXPECT_TRUE(listener.Hears({"1", "muted"}));
}

TEST(RoomStatus, LeavesWhoIsRemovedAlone) {
    Listener listener;
    Listener other;
    Connections_RemoveRoomStatusListener(&listener);
    Connections_AddRoomStatusListener(&listener);
    Connections_AddRoomStatusListener(&other);
    Connections_RemoveRoomStatusListener(&listener);
    TellRoomStatus(kRoomOpen);
    EXPECT_TRUE(listener.Heard().empty());
    EXPECT_EQ(other.Heard().size(), 1U);
}

TEST(RoomStatus, WaitsForACallInProgressWhenAListenerIsRemoved) {
    Listener listener;
    std::atomic<bool> isInside = false;
    std::atomic<bool> mayReturn = false;
    std::atomic<bool> hasReturned = false;
    listener.onCall = [&] {
        isInside = true;
        EXPECT_TRUE(Eventually([&] { return mayReturn.load(); }));
        hasReturned = true;
    };
    Connections_AddRoomStatusListener(&listener);
    std::jthread teller(TellMutedRemotely);
    ASSERT_TRUE(Eventually([&] { return isInside.load(); }));
    std::jthread releaser([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        mayReturn = true;
    });
    Connections_RemoveRoomStatusListener(&listener);
    EXPECT_TRUE(hasReturned);
}

TEST(RoomStatus, LetsAListenerRemoveItselfAndAnotherInsideACall) {
    Listener listener;
    Listener other;
    listener.onCall = [&] {
        Connections_RemoveRoomStatusListener(&listener);
        Connections_RemoveRoomStatusListener(&other);
    };
    Connections_AddRoomStatusListener(&listener);
    Connections_AddRoomStatusListener(&other);
    TellRoomStatus(kRoomOpen);
    TellRoomStatus(kRoomClosed);
    EXPECT_EQ(listener.Heard(), (std::vector<std::string>{"1"}));
    EXPECT_TRUE(other.Heard().empty()) << "it was removed before its turn";
}

TEST(RoomStatus, LetsAListenerLeaveTheRoom) {
    RoomVisitor visitor;
    Listener listener;
    listener.onCall = [] { Connections_CloseConnection(); };
    Connections_AddRoomStatusListener(&listener);
    visitor.Enter({{"one", "test"}});
    EXPECT_TRUE(listener.Hears({"1", "0"}));
    EXPECT_FALSE(GetRoomStatus().connected);
}

}  // namespace
}  // namespace Corvanta::Engine
