// Texts over a server that forwards what is said to whoever hears it at the moment, and may lose some of it.
#include "engine/janus/RoomTexts.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "tests/engine/janus/TextForwarder.h"

namespace Corvanta::Engine {
namespace {

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
    room.MeetAll();
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
