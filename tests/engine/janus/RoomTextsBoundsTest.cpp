// How much is said in a room at a time, kept for those who are away, and said again.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>

#include "engine/janus/RoomTexts.h"
#include "tests/engine/janus/TextForwarder.h"
#include "tests/engine/signalling/LogLines.h"

namespace Corvanta::Engine {
namespace {

TEST(RoomTextsBounds, OfAHeapAllArriveInOrder) {
    LogLines log;
    Forwarder room;
    auto& a = room.Add(kA);
    auto& b = room.Add(kB);
    auto& c = room.Add(kC);
    room.MeetAll();
    Texts all;
    for (int number = 0; number < 5000; ++number) {
        all.push_back(std::to_string(number));
        a.texts->Say(all.back());
    }
    room.Settle();
    // Not more than everybody can read.
    EXPECT_LE(b.heard[kA].size(), static_cast<std::size_t>(kMessagesPerSecond));
    room.Pass(6);
    EXPECT_EQ(b.heard[kA], all);
    EXPECT_EQ(c.heard[kA], all);
    EXPECT_EQ(log.Count("says more than can be read"), 0);
}

// What was on its way for a while, to one who stood still meanwhile.
TEST(RoomTextsBounds, ThatComeInAHeapAllArriveInOrder) {
    Forwarder room;
    auto& a = room.Add(kA);
    auto& b = room.Add(kB);
    room.Meet(kA, kB);
    room.holdsBack = kB;
    Texts all;
    for (int second = 0; second < 10; ++second) {
        for (int number = 0; number < 800; ++number) {
            all.push_back(std::to_string(800 * second + number));
            a.texts->Say(all.back());
        }
        room.Pass(1);
    }
    EXPECT_TRUE(b.heard[kA].empty());
    room.holdsBack.clear();
    room.Pass(20);
    EXPECT_EQ(b.heard[kA], all);
}

TEST(RoomTextsBounds, OfOneWhoSaysTooMuchAreReadNoFurther) {
    LogLines log;
    Forwarder room;
    auto& b = room.Add(kB);
    room.Add(kA);
    room.Meet(kA, kB);
    // Says what it likes, as fast as it likes.
    const auto flood = [&] {
        for (int number = 1; number <= 5000; ++number) {
            std::string piece = "t1 ";
            piece += std::to_string(number);
            piece += " 0 2\nTx";
            b.texts->Take(kA, piece, room.now);
        }
    };
    flood();
    EXPECT_EQ(b.heard[kA].size(), static_cast<std::size_t>(2 * kMessagesPerSecond));
    EXPECT_EQ(log.Count("says more than can be read"), 1);
    // It says it again.
    room.Pass(1);
    flood();
    EXPECT_EQ(b.heard[kA].size(), static_cast<std::size_t>(3 * kMessagesPerSecond));
}

TEST(RoomTextsBounds, AreSaidAgainWithinABudgetAndAfterWhatIsNew) {
    Forwarder room;
    auto& a = room.Add(kA);
    auto& b = room.Add(kB);
    room.Add(kC);
    room.Meet(kA, kB);
    room.Meet(kA, kC);
    const std::string longText(4 * kLongestPiece, 'x');
    for (int number = 0; number < 100; ++number) a.texts->Say(longText);
    room.Settle();
    // One of them says in every way that it has heard nothing, over and over.
    std::size_t bytes = 0;
    room.onMessage = [&](const std::string& from, const std::string& message) {
        if (from == kA) bytes += message.size();
    };
    std::uint32_t ear = 1000;
    const int turns = 100;
    for (int second = 0; second < turns; ++second) {
        for (int count = 0; count < 50; ++count) {
            std::string state = R"(s1 {"hears":{"a":[)";
            state += std::to_string(++ear);
            state += ",1]}}";
            a.texts->Take(kC, state, room.now);
            room.Settle();
        }
        a.texts->Say("new");
        room.Pass(1);
        EXPECT_EQ(b.heard[kA].size(), static_cast<std::size_t>(101 + second));
    }
    EXPECT_LT(static_cast<double>(bytes), RoomTexts::kMostBytesAgainAtOnce +
                                              turns * RoomTexts::kBytesAgainPerSecond + turns * 1000.0 +
                                              500'000.0);
    EXPECT_LT(std::count(a.channels.begin(), a.channels.end(), "+c"), turns + 10);
}

TEST(RoomTextsBounds, KeepNoMoreThanTheirBound) {
    LogLines log;
    Forwarder room;
    auto& a = room.Add(kA);
    auto& b = room.Add(kB);
    room.Meet(kA, kB);
    a.texts->OnOwnChannel(false);
    const std::size_t size = 1024 * 1024;
    for (char letter = 'a'; letter <= 'p'; ++letter) a.texts->Say(std::string(size, letter));
    a.texts->OnOwnChannel(true);
    room.Pass(2);
    // Seven and not eight, since each counts for more than its bytes.
    ASSERT_EQ(b.heard[kA].size(), 7U);
    EXPECT_EQ(b.heard[kA].front().front(), 'j');
    EXPECT_EQ(b.heard[kA].back().front(), 'p');
    EXPECT_EQ(log.Count("the oldest texts go"), 1);
    EXPECT_EQ(log.Count("which said more than it could keep"), 1);
}

TEST(RoomTextsBounds, LeaveOutATextThatNobodyWouldTake) {
    LogLines log;
    Forwarder room;
    auto& a = room.Add(kA);
    auto& b = room.Add(kB);
    room.Meet(kA, kB);
    a.texts->Say(std::string(kLongestText, 'x'));
    a.texts->Say("short");
    room.Settle();
    EXPECT_EQ(b.heard[kA], (Texts{"short"}));
    EXPECT_EQ(log.Count("is too long to be sent"), 1);
}

}  // namespace
}  // namespace Corvanta::Engine
