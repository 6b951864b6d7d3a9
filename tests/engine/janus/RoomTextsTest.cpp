// Texts over a server that forwards what is said to whoever hears it at the moment, and may lose some of it.
// The server is a few lines here, and the clock is told.
#include "engine/janus/RoomTexts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tests/engine/signalling/LogLines.h"

namespace Corvanta::Engine {
namespace {

using std::chrono::seconds;
using Texts = std::vector<std::string>;

std::string Join(std::string_view first, std::string_view second) {
    std::string joined(first);
    joined += second;
    return joined;
}

class Forwarder final {
public:
    struct Member {
        std::string id;
        std::unique_ptr<RoomTexts> texts;
        bool speaks = true;
        std::size_t takes = 1'000'000;
        std::set<std::string> hears;
        std::map<std::string, Texts> heard;
        // "+a" and "-a" for a channel.
        Texts channels, mutes, begunAnew;
        std::map<std::string, LocalTracks> tracks;
        std::vector<std::string> said;
        std::vector<std::pair<std::string, std::string>> coming;
    };

    Member& Add(const std::string& id) {
        Member& member = members[id];
        member.id = id;
        member.texts = std::make_unique<RoomTexts>(
            id, RoomTextsEvents{
                    .send =
                        [&member](const std::string& message) {
                            if (member.said.size() >= member.takes) return false;
                            EXPECT_LE(message.size(), kLongestPiece);
                            member.said.push_back(message);
                            return true;
                        },
                    .text = [&member](const std::string& from,
                                      std::string text) { member.heard[from].push_back(std::move(text)); },
                    .channel =
                        [&member](const std::string& from, bool isOpen) {
                            member.channels.push_back(Join(isOpen ? "+" : "-", from));
                        },
                    .tracks = [&member](const std::string& from,
                                        const LocalTracks& tracks) { member.tracks[from] = tracks; },
                    .mute = [&member](const std::string& id_) { member.mutes.push_back(id_); },
                    .begunAnew = [&member](const std::string& from) { member.begunAnew.push_back(from); }});
        member.texts->OnOwnChannel(true);
        return member;
    }

    // `who` hears the other one from this moment on.
    void Hear(const std::string& who, const std::string& other) {
        members[who].hears.insert(other);
        members[who].texts->OnEar(other, other, true);
        Settle();
    }
    void Deafen(const std::string& who, const std::string& other) {
        members[who].hears.erase(other);
        members[who].texts->OnEar(other, other, false);
    }
    void Meet(const std::string& one, const std::string& other) {
        Hear(one, other);
        Hear(other, one);
    }
    // Carries what was said, until nobody says anything more.
    void Settle() {
        for (bool isQuiet = false; !isQuiet;) {
            isQuiet = true;
            for (auto& [id, speaker] : members) {
                for (const std::string& message : std::exchange(speaker.said, {})) {
                    isQuiet = false;
                    if (onMessage) onMessage(id, message);
                    for (auto& [other, listener] : members) {
                        const bool isLost = loses && loses(message);
                        if (!listener.hears.contains(id) || isLost) continue;
                        listener.coming.emplace_back(id, message);
                    }
                }
                for (auto& [other, listener] : members) {
                    if (other == holdsBack) continue;
                    for (const auto& [from, message] : std::exchange(listener.coming, {})) {
                        isQuiet = false;
                        listener.texts->Take(from, message, now);
                    }
                }
                speaker.texts->Pump();
            }
        }
    }
    void Pass(int secondsPassed) {
        for (int second = 0; second < secondsPassed; ++second) {
            now += seconds(1);
            for (auto& [id, member] : members) member.texts->Tick(now);
            Settle();
        }
    }

    std::map<std::string, Member> members;
    std::function<bool(const std::string& message)> loses;
    std::function<void(const std::string& from, const std::string& message)> onMessage;
    // To whom nothing gets at the moment.
    std::string holdsBack;
    RoomTexts::Clock::time_point now{seconds(1000)};
};

constexpr const char* kA = "a";
constexpr const char* kB = "b";
constexpr const char* kC = "c";

TEST(RoomTexts, ArriveInOrderWhateverTheirLength) {
    Forwarder room;
    auto& a = room.Add(kA);
    auto& b = room.Add(kB);
    room.Meet(kA, kB);
    const std::string longText(3 * kLongestPiece + 17, 'x');
    a.texts->Say("1");
    a.texts->Say(longText);
    a.texts->Say("");
    a.texts->Say("3");
    b.texts->Say("back");
    room.Settle();
    EXPECT_EQ(b.heard[kA], (Texts{"1", longText, "", "3"}));
    EXPECT_EQ(a.heard[kB], (Texts{"back"}));
    EXPECT_TRUE(a.heard[kA].empty());
}

TEST(RoomTexts, TellOfAChannelOnlyWhenBothHearEachOther) {
    Forwarder room;
    auto& a = room.Add(kA);
    auto& b = room.Add(kB);
    room.Hear(kA, kB);
    room.Pass(3);
    EXPECT_TRUE(a.channels.empty() && b.channels.empty());
    room.Hear(kB, kA);
    EXPECT_EQ(a.channels, (Texts{"+b"}));
    EXPECT_EQ(b.channels, (Texts{"+a"}));
    room.Pass(3);
    EXPECT_EQ(a.channels.size(), 1U);
}

TEST(RoomTexts, GiveANewcomerWhatIsSaidFromThenOn) {
    Forwarder room;
    auto& a = room.Add(kA);
    auto& b = room.Add(kB);
    room.Meet(kA, kB);
    a.texts->Say("old");
    room.Settle();
    auto& c = room.Add(kC);
    room.Meet(kC, kB);
    room.Hear(kC, kA);
    EXPECT_TRUE(c.channels == Texts{"+b"});
    room.Hear(kA, kC);
    a.texts->Say("new");
    room.Settle();
    EXPECT_EQ(c.heard[kA], (Texts{"new"}));
    EXPECT_EQ(b.heard[kA], (Texts{"old", "new"}));
}

// The library answers a newcomer with all marks, in the very call that tells of the channel.
TEST(RoomTexts, ReachANewcomerFromInsideTheNewsOfItsChannel) {
    Forwarder room;
    auto& b = room.Add(kB);
    RoomTexts* greeting = nullptr;
    auto& a = room.Add(kA);
    a.texts = std::make_unique<RoomTexts>(
        kA, RoomTextsEvents{.send =
                                [&](const std::string& message) {
                                    a.said.push_back(message);
                                    return true;
                                },
                            .text = [](const std::string&, std::string) {},
                            .channel =
                                [&](const std::string&, bool isOpen) {
                                    if (isOpen) greeting->Say("marks");
                                },
                            .tracks = [](const std::string&, const LocalTracks&) {},
                            .mute = [](const std::string&) {},
                            .begunAnew = [](const std::string&) {}});
    greeting = a.texts.get();
    a.texts->OnOwnChannel(true);
    room.Meet(kA, kB);
    room.Settle();
    EXPECT_EQ(b.heard[kA], (Texts{"marks"}));
}

TEST(RoomTexts, AreKeptInOrderForOneWhoIsAway) {
    Forwarder room;
    auto& a = room.Add(kA);
    auto& b = room.Add(kB);
    auto& c = room.Add(kC);
    room.Meet(kA, kB);
    room.Meet(kA, kC);
    room.Meet(kB, kC);
    a.texts->Say("1");
    room.Settle();
    room.Deafen(kB, kA);
    a.texts->Say("2");
    a.texts->Say("3");
    room.Pass(2);
    EXPECT_EQ(b.heard[kA], (Texts{"1"}));
    EXPECT_EQ(a.channels.back(), "-b");
    room.Hear(kB, kA);
    a.texts->Say("4");
    room.Pass(1);
    EXPECT_EQ(b.heard[kA], (Texts{"1", "2", "3", "4"}));
    // Who has heard them does not hear them again.
    EXPECT_EQ(c.heard[kA], (Texts{"1", "2", "3", "4"}));
    EXPECT_EQ(a.channels.back(), "+b");
    EXPECT_EQ(b.channels, (Texts{"+a", "+c", "-a", "+a"}));
}

TEST(RoomTexts, WaitForTheOwnChannel) {
    Forwarder room;
    auto& a = room.Add(kA);
    auto& b = room.Add(kB);
    room.Meet(kA, kB);
    a.texts->OnOwnChannel(false);
    a.texts->Say("1");
    a.texts->Say("2");
    room.Pass(2);
    EXPECT_TRUE(b.heard[kA].empty());
    room.Deafen(kB, kA);
    a.texts->OnOwnChannel(true);
    room.Hear(kB, kA);
    room.Pass(1);
    EXPECT_EQ(b.heard[kA], (Texts{"1", "2"}));
}

TEST(RoomTexts, GoOnWhenAChannelThatWasFullTakesMore) {
    Forwarder room;
    auto& a = room.Add(kA);
    auto& b = room.Add(kB);
    room.Meet(kA, kB);
    a.takes = 2;
    const std::string longText(10 * kLongestPiece, 'x');
    a.texts->Say(longText);
    a.texts->Say("last");
    EXPECT_EQ(a.said.size(), 2U);
    room.Settle();
    EXPECT_EQ(b.heard[kA], (Texts{longText, "last"}));
}

TEST(RoomTexts, AreSaidAgainWhenTheyGotLost) {
    Forwarder room;
    auto& a = room.Add(kA);
    auto& b = room.Add(kB);
    room.Meet(kA, kB);
    int count = 0;
    // Every third piece, but no state.
    room.loses = [&](const std::string& message) { return message.starts_with("t1") && ++count % 3 == 0; };
    Texts all;
    for (int number = 0; number < 10; ++number) {
        all.push_back(
            Join(std::to_string(number), std::string(static_cast<std::size_t>(number) * 4000, 'x')));
        a.texts->Say(all.back());
    }
    room.Pass(5);
    room.loses = {};
    room.Pass(8);
    EXPECT_EQ(b.heard[kA], all);
}

TEST(RoomTexts, ThatNobodyCanReadAreLeftOut) {
    Forwarder room;
    auto& b = room.Add(kB);
    room.Add(kA);
    room.Meet(kA, kB);
    // The first number that is expected, but too long to be joined.
    const std::string endless = "t1 1 0 99999999999\nxxxxxxxxxx";
    for (int turn = 0; turn < 10; ++turn) {
        b.texts->Take(kA, endless, room.now);
        b.texts->Take(kA, "t1 2 0 4\nTyes", room.now);
    }
    EXPECT_EQ(b.heard[kA], (Texts{"yes"}));
}

TEST(RoomTexts, SurviveAnythingThatAMemberSays) {
    Forwarder room;
    auto& a = room.Add(kA);
    auto& b = room.Add(kB);
    room.Meet(kA, kB);
    for (const std::string message :
         {"", "x", "t1", "t1 ", "t1 1", "t1 1 0 1", "t1 18446744073709551615 0 1\nx", "s1", "s1 ", "s1 {",
          "s1 []", R"(s1 {"hears":7})", R"(s1 {"hears":{"b":7}})", R"(s1 {"hears":{"b":[1]}})",
          R"(s1 {"hears":{"b":[1,18446744073709551615]}})", R"(s1 {"hears":{"b":[-1,-1]}})",
          R"(s1 {"from":{"b":[1,"x"]},"sound":7})", R"(s1 {"hears":{"b":[2,1]}})"}) {
        b.texts->Take(kA, message, room.now);
        room.Settle();
    }
    b.texts->Take(kA, Join("s1 ", std::string(16'000, '[')), room.now);
    b.texts->Take("unknown", "t1 1 0 2\nTx", room.now);
    a.texts->Say("still here");
    room.Pass(8);
    EXPECT_EQ(b.heard[kA], (Texts{"still here"}));
}

TEST(RoomTexts, OfAHeapAllArriveInOrder) {
    LogLines log;
    Forwarder room;
    auto& a = room.Add(kA);
    auto& b = room.Add(kB);
    auto& c = room.Add(kC);
    room.Meet(kA, kB);
    room.Meet(kA, kC);
    room.Meet(kB, kC);
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
TEST(RoomTexts, ThatComeInAHeapAllArriveInOrder) {
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

TEST(RoomTexts, OfOneWhoSaysTooMuchAreReadNoFurther) {
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

TEST(RoomTexts, AreSaidAgainWithinABudgetAndAfterWhatIsNew) {
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

TEST(RoomTexts, SaidToAMemberThatWasMetAndDoesNotHearYetReachIt) {
    Forwarder room;
    auto& a = room.Add(kA);
    auto& b = room.Add(kB);
    a.texts->Say("old");
    a.texts->Meet(kB, kB);
    a.texts->Say("1");
    room.Hear(kA, kB);
    a.texts->Say("2");
    room.Pass(2);
    room.Hear(kB, kA);
    a.texts->Say("3");
    room.Pass(1);
    EXPECT_EQ(b.heard[kA], (Texts{"1", "2", "3"}));
}

TEST(RoomTexts, TellOfAMemberThatHasGivenUsUp) {
    Forwarder room;
    auto& a = room.Add(kA);
    auto& b = room.Add(kB);
    room.Meet(kA, kB);
    a.texts->Say("1");
    b.texts->Say("one");
    room.Pass(1);
    // One of them takes the other for gone, and meets it again.
    room.Deafen(kA, kB);
    a.texts->Forget(kB);
    room.Pass(2);
    room.Hear(kA, kB);
    EXPECT_EQ(b.begunAnew, (Texts{"a"}));
    EXPECT_TRUE(a.begunAnew.empty());
    room.Pass(2);
    EXPECT_EQ(b.begunAnew.size(), 1U);
    b.texts->Say("between");
    room.Deafen(kB, kA);
    b.texts->Forget(kA);
    room.Hear(kB, kA);
    room.Pass(2);
    EXPECT_TRUE(a.begunAnew.empty());
    EXPECT_EQ(b.begunAnew.size(), 1U);
    a.texts->Say("2");
    b.texts->Say("two");
    room.Pass(2);
    EXPECT_EQ(b.heard[kA], (Texts{"1", "2"}));
    EXPECT_EQ(a.heard[kB], (Texts{"one", "two"}));
}

TEST(RoomTexts, KeepNoMoreThanTheirBound) {
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

TEST(RoomTexts, LeaveOutATextThatNobodyWouldTake) {
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

TEST(RoomTexts, CarryWhatIsOffAndWhoIsMuted) {
    Forwarder room;
    auto& a = room.Add(kA);
    auto& b = room.Add(kB);
    a.texts->SetTracks({.audio = true, .video = false});
    room.Meet(kA, kB);
    EXPECT_EQ(b.tracks[kA], (LocalTracks{.audio = true, .video = false}));
    a.texts->SetTracks({.audio = false, .video = true});
    a.texts->Mute("b-camera");
    room.Settle();
    EXPECT_EQ(b.tracks[kA], (LocalTracks{.audio = false, .video = true}));
    EXPECT_EQ(b.mutes, (Texts{"b-camera"}));
    EXPECT_TRUE(b.heard[kA].empty());
}

TEST(RoomTexts, KnowWhenAMemberWasHeardLast) {
    Forwarder room;
    auto& a = room.Add(kA);
    room.Add(kB);
    EXPECT_FALSE(a.texts->LastHeard(kB));
    room.Meet(kA, kB);
    room.Pass(3);
    EXPECT_EQ(a.texts->LastHeard(kB), room.now);
    room.loses = [](const std::string&) { return true; };
    const auto before = room.now;
    room.Pass(3);
    EXPECT_EQ(a.texts->LastHeard(kB), before);
    // What it says over another channel is still to come.
    room.Deafen(kA, kB);
    room.Hear(kA, kB);
    room.Pass(3);
    EXPECT_EQ(a.texts->LastHeard(kB), before);
    a.texts->Forget(kB);
    EXPECT_FALSE(a.texts->LastHeard(kB));
    EXPECT_EQ(a.channels.back(), "-b");
}

}  // namespace
}  // namespace Corvanta::Engine
