// What can happen to a room: after each, the room goes on, and everybody has the same texts.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "engine/mesh/MeshMessage.h"
#include "engine/mesh/MeshTransport.h"
#include "engine/peer/PeerDescription.h"
#include "engine/signalling/RoomFolder.h"
#include "engine/signalling/RoomMessage.h"
#include "engine/signalling/TextPieces.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/Sanitizers.h"
#include "tests/engine/TemporaryFolder.h"
#include "tests/engine/mesh/OtherPerson.h"
#include "tests/engine/mesh/RoomPerson.h"
#include "tests/engine/signalling/RawClient.h"

namespace Corvanta::Engine {
namespace {

using std::chrono::seconds;

constexpr Yuv kRed{81, 90, 240};
constexpr Yuv kBlue{41, 240, 110};
constexpr Yuv kGreen{145, 54, 34};

// What no decent member says.
std::vector<std::string> Garbage() {
    std::vector<std::string> payloads{"",
                                      "{",
                                      "[]",
                                      "null",
                                      "\"kind\"",
                                      R"({"kind":7})",
                                      R"({"kind":"later"})",
                                      R"({"kind":"description","link":"camera"})",
                                      R"({"kind":"description","link":"camera","text":"{}"})",
                                      R"({"kind":"candidate","link":"camera","line":-1,"text":""})",
                                      R"({"kind":"publish","stream":"none","name":"","audio":1,"video":2})",
                                      R"({"kind":"want","stream":"file","audio":true,"video":true})",
                                      R"({"kind":"unpublish","stream":"screen"})",
                                      std::string(100'000, '['),
                                      std::string(1000, '\xFF'),
                                      std::string("a\0b", 3)};
    for (const StreamType type : {StreamType::Camera, StreamType::File, StreamType::Screenshare}) {
        payloads.push_back(WriteMeshMessage(MeshMessages::Publish{
            type, type == StreamType::File ? "raw's file" : std::string(1000, 'n'), {}}));
        payloads.push_back(WriteMeshMessage(MeshMessages::Want{type, {.audio = false, .video = true}}));
    }
    return payloads;
}

// One that can be read, and leads nowhere.
std::string Sdp() {
    return "v=0\r\no=- 1 0 IN IP4 0.0.0.0\r\ns=-\r\nt=0 0\r\nm=audio 9 UDP/TLS/RTP/SAVPF 111\r\n"
           "c=IN IP4 0.0.0.0\r\na=setup:actpass\r\na=ice-ufrag:abcd\r\na=ice-pwd:0123456789012345678901\r\n"
           "a=rtpmap:111 OPUS/48000/2\r\na=fingerprint:sha-256 00:11\r\n";
}

class MeshFaultsTest : public testing::Test {
protected:
    [[nodiscard]] TransportMaker Maker(const std::string& name) const {
        return [options = MeshOptions{.room = "review", .name = name, .folder = temporary.path}](
                   EngineLoop& loop, const std::shared_ptr<SoundMixer>& mixer) {
            return std::make_unique<MeshTransport>(loop, mixer, options);
        };
    }

    // Says it and remembers it.
    void Say(RoomPerson& person, const std::string& text) {
        said.push_back(text);
        person.Say(text);
    }

    TemporaryFolder temporary;
    std::vector<std::string> said;
};

TEST_F(MeshFaultsTest, KilledPeerShowsALostConnectionAndGoes) {
    RoomPerson one(Maker("one"), kRed);
    ASSERT_TRUE(one.Enters());
    RoomPerson three(Maker("three"), kGreen);
    ASSERT_TRUE(three.Enters());
    OtherPerson two(CORVANTA_MESH_PROCESS, temporary.path, "two", kBlue);
    ASSERT_TRUE(one.SeesColor("two", kBlue));
    ASSERT_TRUE(three.SeesColor("two", kBlue));
    ASSERT_TRUE(two.Tells("channel one"));
    two.Kill();
    EXPECT_TRUE(Eventually([&] { return one.Sees("two")->losses == 1; }));
    EXPECT_TRUE(Eventually([&] { return one.Present() == 1 && three.Present() == 1; }));
    EXPECT_EQ(one.Sees("two")->reason, "its connection is lost");
    Say(one, "after");
    EXPECT_TRUE(three.Hears("one", said));
    EXPECT_EQ(three.Sees("one")->losses, 0);
}

TEST_F(MeshFaultsTest, PeerThatStandsStillForTenSecondsIsLostAndFound) {
    RoomPerson one(Maker("one"), kRed);
    ASSERT_TRUE(one.Enters());
    OtherPerson two(CORVANTA_MESH_PROCESS, temporary.path, "two", kBlue);
    RoomPerson three(Maker("three"), kGreen);
    ASSERT_TRUE(three.Enters());
    ASSERT_TRUE(one.SeesColor("two", kBlue));
    ASSERT_TRUE(two.Tells("channel one"));
    ASSERT_TRUE(two.Tells("channel three"));
    Say(one, "before");
    ASSERT_TRUE(two.Tells("text one before"));
    two.Stop();
    const auto until = std::chrono::steady_clock::now() + seconds(10);
    for (int index = 0; index < 20; ++index) Say(one, "while it stands " + std::to_string(index));
    EXPECT_TRUE(Eventually([&] { return one.Sees("two")->losses == 1; }));
    Say(one, "lost");
    EXPECT_TRUE(Eventually([&] { return std::chrono::steady_clock::now() >= until; }, seconds(15)));
    two.Continue();
    EXPECT_TRUE(Eventually([&] { return one.Sees("two")->returns == 1; }, seconds(40)));
    Say(one, "found");
    two.Say("back");
    // The others had them all along.
    EXPECT_TRUE(three.Hears("one", said));
    EXPECT_TRUE(Eventually([&] { return two.Texts("one") == said; }, seconds(40)));
    EXPECT_TRUE(one.Hears("two", {"back"}));
    EXPECT_TRUE(three.Hears("two", {"back"}));
    EXPECT_GE(one.Sees("two")->channels, 2);
    EXPECT_FALSE(one.Sees("two")->hasLeft);
    const int pictures = one.Sees("two")->pictures;
    EXPECT_TRUE(Eventually([&] { return one.Sees("two")->pictures > pictures + 5; }));
}

TEST_F(MeshFaultsTest, RoomGoesOnWhenTheOneWithTheHubIsKilled) {
    OtherPerson one(CORVANTA_MESH_PROCESS, temporary.path, "one", kRed);
    ASSERT_TRUE(one.Tells("entered"));
    RoomPerson two(Maker("two"), kBlue);
    ASSERT_TRUE(two.Enters());
    RoomPerson three(Maker("three"), kGreen);
    ASSERT_TRUE(three.Enters());
    ASSERT_TRUE(two.SeesColor("one", kRed));
    ASSERT_TRUE(two.SeesColor("three", kGreen));
    ASSERT_TRUE(three.SeesColor("two", kBlue));
    one.Kill();
    Say(two, "at once");
    EXPECT_TRUE(three.Hears("two", said));
    EXPECT_TRUE(Eventually([&] { return two.Present() == 1 && three.Present() == 1; }));
    EXPECT_EQ(two.Sees("three")->losses, 0);
    EXPECT_EQ(three.Sees("two")->losses, 0);
    // The next one finds both.
    RoomPerson four(Maker("four"), kRed);
    ASSERT_TRUE(four.Enters());
    EXPECT_TRUE(four.SeesColor("two", kBlue));
    EXPECT_TRUE(four.SeesColor("three", kGreen));
    EXPECT_TRUE(two.SeesColor("four", kRed));
}

TEST_F(MeshFaultsTest, RemovesAParticipantThoughTheWordIsLostWithTheHub) {
    OtherPerson hub(CORVANTA_MESH_PROCESS, temporary.path, "hub", kRed);
    ASSERT_TRUE(hub.Tells("entered"));
    RoomPerson two(Maker("two"), kBlue);
    ASSERT_TRUE(two.Enters());
    RoomPerson three(Maker("three"), kGreen);
    ASSERT_TRUE(three.Enters());
    ASSERT_TRUE(two.SeesColor("three", kGreen));
    ASSERT_TRUE(three.SeesColor("two", kBlue));
    // Takes what it is sent and does nothing with it.
    hub.Stop();
    two.Do([&](Transport& transport) { transport.Remove(three.Id() + "-camera"); });
    hub.Kill();
    EXPECT_TRUE(Eventually([&] { return three.Drops().ends_with('0'); }));
    EXPECT_TRUE(Eventually([&] { return two.Present() == 0 && three.Present() == 0; }));
}

TEST_F(MeshFaultsTest, EnteringAndLeavingAtTheDeathOfTheHubLosesNobody) {
    for (int round = 0; round < 3; ++round) {
        OtherPerson one(CORVANTA_MESH_PROCESS, temporary.path, "one", kRed);
        ASSERT_TRUE(one.Tells("entered"));
        RoomPerson two(Maker("two"), kBlue);
        ASSERT_TRUE(two.Enters());
        // The offers are on their way.
        RoomPerson three(Maker("three"), kGreen);
        ASSERT_TRUE(three.Enters());
        one.Kill();
        EXPECT_TRUE(two.SeesColor("three", kGreen)) << round;
        EXPECT_TRUE(three.SeesColor("two", kBlue)) << round;
        two.Say("hello");
        EXPECT_TRUE(three.Hears("two", {"hello"})) << round;
    }
}

TEST_F(MeshFaultsTest, TextsSaidWhileOneStandsStillAndDiesAreTheSameForAllWhoStay) {
    RoomPerson one(Maker("one"));
    ASSERT_TRUE(one.Enters());
    RoomPerson three(Maker("three"));
    ASSERT_TRUE(three.Enters());
    RoomPerson four(Maker("four"));
    ASSERT_TRUE(four.Enters());
    OtherPerson two(CORVANTA_MESH_PROCESS, temporary.path, "two", kBlue);
    ASSERT_TRUE(two.Tells("channel one"));
    ASSERT_TRUE(two.Tells("channel three"));
    std::vector<std::string> ones, threes;
    const auto draw = [&](int strokes) {
        for (int stroke = 0; stroke < strokes; ++stroke) {
            ones.push_back("stroke " + std::to_string(ones.size()));
            // Some are long.
            ones.back().append(stroke % 10 == 0 ? 40'000 : 100, 'x');
            threes.push_back("other stroke " + std::to_string(threes.size()));
            one.Say(ones.back());
            three.Say(threes.back());
        }
    };
    draw(50);
    two.Stop();
    draw(150);
    EXPECT_TRUE(Eventually([&] { return one.Sees("two")->losses == 1; }));
    draw(50);
    two.Kill();
    draw(150);
    EXPECT_TRUE(Eventually([&] { return one.Present() == 2 && three.Present() == 2; }));
    draw(50);
    EXPECT_TRUE(three.Hears("one", ones));
    EXPECT_TRUE(four.Hears("one", ones));
    EXPECT_TRUE(one.Hears("three", threes));
    EXPECT_TRUE(four.Hears("three", threes));
}

TEST_F(MeshFaultsTest, GoesOnWhateverAMemberSays) {
    RoomPerson one(Maker("one"), kRed);
    ASSERT_TRUE(one.Enters());
    RoomPerson two(Maker("two"), kBlue);
    ASSERT_TRUE(two.Enters());
    ASSERT_TRUE(one.SeesColor("two", kBlue));
    ASSERT_TRUE(two.SeesColor("one", kRed));
    {
        RawClient raw(RoomFolderIn(temporary.path, "review").socket);
        ASSERT_FALSE(raw.Enter("ab", "raw").empty());
        ASSERT_TRUE(Eventually([&] { return one.Present() == 2 && two.Present() == 2; }));
        const auto say = [&](const std::string& payload) {
            for (const std::string& id : {one.Id(), two.Id(), std::string("ab")})
                raw.Say(RoomMessages::To{id, payload});
        };
        for (const std::string& payload : Garbage()) say(payload);
        for (std::uint32_t session = 1; session <= 5; ++session) {
            for (const auto kind :
                 {DescriptionKind::Offer, DescriptionKind::Answer, DescriptionKind::Restart}) {
                const std::string text = WriteDescription({.kind = kind, .session = session, .sdp = Sdp()});
                for (const std::string& link : {std::string(MeshMessages::kCameraLink), one.Id() + "-screen",
                                                MemberIdOf("ab") + "-file", std::string("none")})
                    say(WriteMeshMessage(MeshMessages::Description{link, text}));
            }
            say(WriteMeshMessage(MeshMessages::Candidate{MeshMessages::kCameraLink, session, "candidate:x"}));
        }
        EXPECT_TRUE(Eventually([&] { return one.Sees("raw's file", StreamType::File).has_value(); }));
        Say(one, "meanwhile");
        EXPECT_TRUE(two.Hears("one", said));
        // Cut off by itself.
        raw.SayBytes("no message\n");
        EXPECT_TRUE(raw.IsEnded());
    }
    EXPECT_TRUE(Eventually([&] { return one.Present() == 1 && two.Present() == 1; }));
    RoomPerson three(Maker("three"), kGreen);
    ASSERT_TRUE(three.Enters());
    EXPECT_TRUE(three.SeesColor("one", kRed));
    EXPECT_TRUE(two.SeesColor("three", kGreen));
    Say(one, "after");
    EXPECT_TRUE(two.Hears("one", said));
    EXPECT_TRUE(three.Hears("one", {"after"}));
    EXPECT_EQ(one.Sees("two")->losses + two.Sees("one")->losses, 0);
    EXPECT_EQ(one.Drops() + two.Drops(), "");
    const int pictures = one.Sees("two")->pictures;
    EXPECT_TRUE(Eventually([&] { return one.Sees("two")->pictures > pictures + 5; }));
}

TEST_F(MeshFaultsTest, CarriesTheLongestTextAndOutlivesALongerOne) {
    RoomPerson one(Maker("one"), kRed);
    ASSERT_TRUE(one.Enters());
    RoomPerson two(Maker("two"));
    ASSERT_TRUE(two.Enters());
    RoomPerson three(Maker("three"));
    ASSERT_TRUE(three.Enters());
    ASSERT_TRUE(two.SeesColor("one", kRed));
    one.Say(std::string(kLongestText + 1, 'x'));
    Say(one, std::string(kIsSanitized ? kLongestText / 16 : kLongestText, 'x'));
    Say(one, "after");
    EXPECT_TRUE(two.Hears("one", said, 6 * kPatience));
    EXPECT_TRUE(three.Hears("one", said, 6 * kPatience));
    EXPECT_EQ(two.Sees("one")->losses, 0);
    const int pictures = two.Sees("one")->pictures;
    EXPECT_TRUE(Eventually([&] { return two.Sees("one")->pictures > pictures + 5; }));
}

TEST_F(MeshFaultsTest, AThousandTextsASecondAreHeard) {
    RoomPerson one(Maker("one"), kRed);
    ASSERT_TRUE(one.Enters());
    OtherPerson two(CORVANTA_MESH_PROCESS, temporary.path, "two", kBlue);
    ASSERT_TRUE(two.Tells("channel one"));
    for (int index = 0; index < 3000; ++index) said.push_back("flood " + std::to_string(index));
    two.Command("flood 3000");
    EXPECT_TRUE(one.Hears("two", said));
    EXPECT_EQ(one.Sees("two")->losses, 0);
    const int pictures = one.Sees("two")->pictures;
    EXPECT_TRUE(Eventually([&] { return one.Sees("two")->pictures > pictures + 5; }));
}

TEST_F(MeshFaultsTest, NamesOfAnyLengthAreCut) {
    RoomPerson one(Maker("one"));
    ASSERT_TRUE(one.Enters());
    RoomPerson two(Maker(std::string(10'000, 'n')), kBlue);
    ASSERT_TRUE(two.Enters());
    EXPECT_TRUE(one.SeesColor(std::string(kLongestName, 'n'), kBlue));
}

TEST_F(MeshFaultsTest, ManyJoinsAndLeavesLeaveNothingBehind) {
    RoomPerson one(Maker("one"), kRed);
    ASSERT_TRUE(one.Enters());
    const auto visit = [&] {
        RoomPerson two(Maker("two"), kBlue);
        ASSERT_TRUE(two.Enters());
        ASSERT_TRUE(two.SeesColor("one", kRed));
        ASSERT_TRUE(Eventually([&] { return one.Present() == 1; }));
        two.Leave();
        ASSERT_TRUE(Eventually([&] { return one.Present() == 0; }));
    };
    // What is loaded and kept once.
    for (int count = 0; count < 3; ++count) visit();
    const std::size_t descriptors = CountDescriptors();
    const std::size_t threads = CountThreads("");
    const std::size_t memory = ResidentBytes();
    for (int count = 0; count < kManyTimes; ++count) ASSERT_NO_FATAL_FAILURE(visit());
    EXPECT_TRUE(Eventually([&] { return CountDescriptors() <= descriptors + 2; }))
        << CountDescriptors() << " were " << descriptors;
    EXPECT_TRUE(Eventually([&] { return CountThreads("") <= threads + 2; }))
        << CountThreads("") << " were " << threads;
    // What a connection takes is some 3 MiB.
    if (!kIsSanitized) {
        EXPECT_LT(ResidentBytes(), memory + std::size_t{32} * 1024 * 1024);
    }
}

}  // namespace
}  // namespace Corvanta::Engine
