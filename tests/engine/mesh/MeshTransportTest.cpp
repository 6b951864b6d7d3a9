// Members of a room on this machine, connected with each other over the loopback.
#include "engine/mesh/MeshTransport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/engine/Eventually.h"
#include "tests/engine/TemporaryFolder.h"
#include "tests/engine/mesh/RoomPerson.h"

namespace Corvanta::Engine {
namespace {

constexpr Yuv kRed{81, 90, 240};
constexpr Yuv kBlue{41, 240, 110};
constexpr Yuv kGreen{145, 54, 34};

class MeshTransportTest : public testing::Test {
protected:
    [[nodiscard]] TransportMaker Maker(const std::string& name, const std::string& room = "review") const {
        return [options = MeshOptions{.room = room, .name = name, .folder = temporary.path}](
                   EngineLoop& loop, const std::shared_ptr<SoundMixer>& mixer) {
            return std::make_unique<MeshTransport>(loop, mixer, options);
        };
    }

    TemporaryFolder temporary;
};

TEST_F(MeshTransportTest, EntersAnEmptyRoom) {
    RoomPerson one(Maker("one"));
    ASSERT_TRUE(one.Enters());
    EXPECT_FALSE(one.Id().empty());
    EXPECT_EQ(one.Present(), 0U);
}

TEST_F(MeshTransportTest, ShowsAndSoundsBothToEachOther) {
    RoomPerson one(Maker("one"), kRed, 0.2);
    RoomPerson two(Maker("two"), kBlue, 0.1);
    ASSERT_TRUE(one.Enters());
    ASSERT_TRUE(two.Enters());
    EXPECT_TRUE(one.SeesColor("two", kBlue));
    EXPECT_TRUE(two.SeesColor("one", kRed));
    EXPECT_TRUE(Eventually([&] { return one.Sees("two")->loudest > 0.05; }));
    EXPECT_TRUE(Eventually([&] { return two.Sees("one")->loudest > 0.1; }));
    EXPECT_EQ(one.StreamId("two"), two.Id() + "-camera");
    EXPECT_EQ(two.StreamId("one"), one.Id() + "-camera");
}

TEST_F(MeshTransportTest, KeepsRoomsApart) {
    RoomPerson one(Maker("one"));
    RoomPerson other(Maker("other", "another"));
    RoomPerson two(Maker("two"));
    ASSERT_TRUE(one.Enters());
    ASSERT_TRUE(other.Enters());
    ASSERT_TRUE(two.Enters());
    ASSERT_TRUE(Eventually([&] { return one.Present() == 1; }));
    EXPECT_TRUE(one.Sees("two"));
    EXPECT_EQ(other.Present(), 0U);
}

TEST_F(MeshTransportTest, CarriesTextsInOrderAndWhole) {
    RoomPerson one(Maker("one"));
    RoomPerson two(Maker("two"));
    ASSERT_TRUE(one.Enters());
    ASSERT_TRUE(two.Enters());
    // Before there is a channel too.
    std::vector<std::string> texts{"first", "", "\xC3\xA4\xF0\x9F\x8E\xA8", std::string(3'000'000, 'x')};
    for (int index = 0; index < 300; ++index) texts.push_back("text " + std::to_string(index));
    ASSERT_TRUE(Eventually([&] { return one.Present() == 1; }));
    for (const std::string& text : texts) one.Say(text);
    two.Say("answer");
    EXPECT_TRUE(two.Hears("one", texts));
    EXPECT_TRUE(one.Hears("two", {"answer"}));
    EXPECT_EQ(two.Sees("one")->channels, 1);
}

TEST_F(MeshTransportTest, ThirdWhoComesLateSeesBoth) {
    RoomPerson one(Maker("one"), kRed);
    RoomPerson two(Maker("two"), kBlue);
    ASSERT_TRUE(one.Enters());
    ASSERT_TRUE(two.Enters());
    ASSERT_TRUE(one.SeesColor("two", kBlue));
    RoomPerson three(Maker("three"), kGreen);
    ASSERT_TRUE(three.Enters());
    EXPECT_TRUE(three.SeesColor("one", kRed));
    EXPECT_TRUE(three.SeesColor("two", kBlue));
    EXPECT_TRUE(one.SeesColor("three", kGreen));
    EXPECT_TRUE(two.SeesColor("three", kGreen));
    three.Say("hello");
    EXPECT_TRUE(one.Hears("three", {"hello"}));
    EXPECT_TRUE(two.Hears("three", {"hello"}));
}

TEST_F(MeshTransportTest, TellsWhenSomebodySaysGoodbye) {
    RoomPerson one(Maker("one"));
    RoomPerson two(Maker("two"));
    ASSERT_TRUE(one.Enters());
    ASSERT_TRUE(two.Enters());
    ASSERT_TRUE(Eventually([&] { return one.Present() == 1; }));
    two.Leave();
    ASSERT_TRUE(Eventually([&] { return one.Present() == 0; }));
    EXPECT_EQ(one.Sees("two")->losses, 0);
    EXPECT_EQ(one.Sees("two")->reason, "it has said goodbye");
}

TEST_F(MeshTransportTest, GoesOnWhenTheOneWhoOpenedTheRoomLeaves) {
    RoomPerson one(Maker("one"));
    RoomPerson two(Maker("two"), kBlue);
    RoomPerson three(Maker("three"));
    ASSERT_TRUE(one.Enters());
    ASSERT_TRUE(two.Enters());
    ASSERT_TRUE(three.Enters());
    ASSERT_TRUE(three.SeesColor("two", kBlue));
    one.Leave();
    ASSERT_TRUE(Eventually([&] { return three.Present() == 1 && two.Present() == 1; }));
    const int pictures = three.Sees("two")->pictures;
    two.Say("still here");
    EXPECT_TRUE(three.Hears("two", {"still here"}));
    EXPECT_TRUE(Eventually([&] { return three.Sees("two")->pictures > pictures + 5; }));
    EXPECT_EQ(three.Sees("two")->losses, 0);
    EXPECT_EQ(three.Drops(), "");
    RoomPerson four(Maker("four"));
    ASSERT_TRUE(four.Enters());
    EXPECT_TRUE(four.SeesColor("two", kBlue));
}

TEST_F(MeshTransportTest, SharesStreamsBesideTheCamera) {
    RoomPerson one(Maker("one"), kRed);
    RoomPerson two(Maker("two"));
    ASSERT_TRUE(one.Enters());
    ASSERT_TRUE(two.Enters());
    one.Share(StreamType::Screenshare, "one's screen", kGreen);
    EXPECT_TRUE(two.SeesColor("one's screen", kGreen, StreamType::Screenshare));
    EXPECT_TRUE(two.SeesColor("one", kRed));
    EXPECT_EQ(two.StreamId("one's screen", StreamType::Screenshare), one.Id() + "-screen");
    // For those who come later too.
    RoomPerson three(Maker("three"));
    ASSERT_TRUE(three.Enters());
    EXPECT_TRUE(three.SeesColor("one's screen", kGreen, StreamType::Screenshare));
    one.StopSharing(StreamType::Screenshare);
    EXPECT_TRUE(Eventually([&] { return two.Sees("one's screen", StreamType::Screenshare)->hasLeft; }));
    EXPECT_TRUE(Eventually([&] { return three.Sees("one's screen", StreamType::Screenshare)->hasLeft; }));
    // And again.
    one.Share(StreamType::Screenshare, "one's screen", kBlue);
    EXPECT_TRUE(two.SeesColor("one's screen", kBlue, StreamType::Screenshare));
}

TEST_F(MeshTransportTest, ShowsInTheEndWhatIsSharedAgainAndAgain) {
    RoomPerson one(Maker("one"));
    RoomPerson two(Maker("two"));
    ASSERT_TRUE(one.Enters());
    ASSERT_TRUE(two.Enters());
    ASSERT_TRUE(Eventually([&] { return two.Present() == 1; }));
    for (int round = 0; round < 20; ++round) {
        one.Share(StreamType::Screenshare, "screen", kRed);
        one.StopSharing(StreamType::Screenshare);
    }
    one.Share(StreamType::Screenshare, "screen", kGreen);
    one.Share(StreamType::File, "file", kBlue);
    EXPECT_TRUE(two.SeesColor("screen", kGreen, StreamType::Screenshare));
    EXPECT_TRUE(two.SeesColor("file", kBlue, StreamType::File));
}

TEST_F(MeshTransportTest, SharesTheSameKindBothWays) {
    RoomPerson one(Maker("one"));
    RoomPerson two(Maker("two"));
    ASSERT_TRUE(one.Enters());
    ASSERT_TRUE(two.Enters());
    one.Share(StreamType::File, "one's file", kGreen);
    two.Share(StreamType::File, "two's file", kBlue);
    EXPECT_TRUE(two.SeesColor("one's file", kGreen, StreamType::File));
    EXPECT_TRUE(one.SeesColor("two's file", kBlue, StreamType::File));
}

TEST_F(MeshTransportTest, SwitchesOffWhatIsNotWanted) {
    RoomPerson one(Maker("one"), kRed, 0.2);
    RoomPerson two(Maker("two"));
    ASSERT_TRUE(one.Enters());
    ASSERT_TRUE(two.Enters());
    ASSERT_TRUE(two.SeesColor("one", kRed));
    const std::string id = two.StreamId("one");
    two.WithMedia(
        id, [](ParticipantMedia& media) { media.SetTracks({.audio = false, .video = false, .data = true}); });
    // Not even sent: the rate falls to what reports take.
    EXPECT_TRUE(Eventually([&] {
        double rate = 1e9;
        two.WithMedia(id, [&](ParticipantMedia& media) { rate = media.Figures().receivedRate; });
        return rate < 20'000;
    }));
    const int pictures = two.Sees("one")->pictures;
    two.WithMedia(id, [](ParticipantMedia& media) { media.SetTracks({}); });
    EXPECT_TRUE(Eventually([&] { return two.Sees("one")->pictures > pictures + 5; }));
    one.Say("over the same connection");
    EXPECT_TRUE(two.Hears("one", {"over the same connection"}));
}

TEST_F(MeshTransportTest, TellsThatACameraIsOff) {
    RoomPerson one(Maker("one"), kRed);
    RoomPerson two(Maker("two"));
    ASSERT_TRUE(one.Enters());
    one.Do([](Transport& transport) { transport.SetCameraTracks({.audio = true, .video = false}); });
    ASSERT_TRUE(two.Enters());
    EXPECT_TRUE(Eventually([&] { return two.Sees("one") && two.Sees("one")->isWithoutPicture; }));
    EXPECT_EQ(two.Sees("one")->pictures, 0);
    one.Do([](Transport& transport) { transport.SetCameraTracks({.audio = true, .video = true}); });
    EXPECT_TRUE(two.SeesColor("one", kRed));
}

TEST_F(MeshTransportTest, SwitchesAnOwnStreamForAll) {
    RoomPerson one(Maker("one"), kRed, 0.2);
    RoomPerson two(Maker("two"));
    ASSERT_TRUE(one.Enters());
    ASSERT_TRUE(two.Enters());
    ASSERT_TRUE(two.SeesColor("one", kRed));
    one.Do([&](Transport& transport) {
        transport.Configure(transport.OwnId() + "-camera", {.audio = {}, .video = false, .data = {}});
    });
    EXPECT_TRUE(Eventually([&] { return two.Sees("one")->isWithoutPicture; }));
}

TEST_F(MeshTransportTest, MutesForAll) {
    RoomPerson one(Maker("one"));
    RoomPerson two(Maker("two"));
    ASSERT_TRUE(one.Enters());
    ASSERT_TRUE(two.Enters());
    ASSERT_TRUE(Eventually([&] { return one.Present() == 1; }));
    one.Do([&](Transport& transport) { transport.Mute(two.Id() + "-camera"); });
    EXPECT_TRUE(Eventually([&] { return two.Mutes() == 1; }));
    EXPECT_EQ(one.Mutes(), 0);
}

TEST_F(MeshTransportTest, RemovesAParticipant) {
    RoomPerson one(Maker("one"));
    RoomPerson two(Maker("two"));
    RoomPerson three(Maker("three"));
    ASSERT_TRUE(one.Enters());
    ASSERT_TRUE(two.Enters());
    ASSERT_TRUE(three.Enters());
    ASSERT_TRUE(Eventually([&] { return one.Present() == 2 && two.Present() == 2; }));
    one.Do([&](Transport& transport) { transport.Remove(two.Id() + "-camera"); });
    EXPECT_TRUE(Eventually([&] { return two.Drops() == "0"; }));
    EXPECT_TRUE(Eventually([&] { return one.Present() == 1 && three.Present() == 1; }));
    EXPECT_EQ(two.Present(), 0U);
}

TEST_F(MeshTransportTest, RestartsAConnectionWithoutLosingTexts) {
    RoomPerson one(Maker("one"), kRed);
    RoomPerson two(Maker("two"), kBlue);
    ASSERT_TRUE(one.Enters());
    ASSERT_TRUE(two.Enters());
    ASSERT_TRUE(two.SeesColor("one", kRed));
    ASSERT_TRUE(one.SeesColor("two", kBlue));
    std::vector<std::string> texts;
    const auto say = [&](const std::string& text) {
        texts.push_back(text);
        one.Say(text);
    };
    // By either side, by whoever offers and whoever answers, in the middle of texts.
    for (int round = 0; round < 4; ++round) {
        for (int index = 0; index < 50; ++index) say(std::to_string(round) + '/' + std::to_string(index));
        RoomPerson& restarting = round % 2 == 0 ? one : two;
        if (round < 2) {
            restarting.WithMedia(restarting.StreamId(round % 2 == 0 ? "two" : "one"),
                                 [](ParticipantMedia& media) { media.Restart(true); });
        } else {
            restarting.Do([](Transport& transport) {
                transport.RequestRestart(transport.OwnId() + "-camera", {.tracks = {}, .immediately = true});
            });
        }
        for (int index = 50; index < 60; ++index) say(std::to_string(round) + '/' + std::to_string(index));
        EXPECT_TRUE(two.Hears("one", texts));
        EXPECT_TRUE(Eventually([&] { return two.Sees("one")->channels == round + 2; }));
    }
    const int pictures = two.Sees("one")->pictures;
    EXPECT_TRUE(Eventually([&] { return two.Sees("one")->pictures > pictures + 5; }));
    EXPECT_GE(two.Sees("one")->losses, 1);
    EXPECT_EQ(two.Sees("one")->losses, two.Sees("one")->returns);
}

TEST_F(MeshTransportTest, TellsTwoOfTheSameNameApart) {
    RoomPerson one(Maker("same"), kRed);
    RoomPerson two(Maker("same"), kBlue);
    ASSERT_TRUE(one.Enters());
    ASSERT_TRUE(two.Enters());
    EXPECT_NE(one.Id(), two.Id());
    EXPECT_TRUE(one.SeesColor("same", kBlue));
    EXPECT_TRUE(two.SeesColor("same", kRed));
}

TEST_F(MeshTransportTest, SaysWhyARoomCannotBeEntered) {
    temporary.Write("file", "");
    const auto maker = [&](EngineLoop& loop, const std::shared_ptr<SoundMixer>& mixer) {
        return std::make_unique<MeshTransport>(
            loop, mixer, MeshOptions{.room = "review", .name = "one", .folder = temporary.path / "file"});
    };
    RoomPerson one(maker);
    EXPECT_FALSE(one.Enters());
    EXPECT_THAT(one.Problem(), testing::HasSubstr("file"));
}

}  // namespace
}  // namespace Corvanta::Engine
