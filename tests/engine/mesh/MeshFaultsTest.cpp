// What can happen to a room: after each, the room goes on, and everybody has the same texts.
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "engine/mesh/MeshTransport.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/TemporaryFolder.h"
#include "tests/engine/mesh/OtherPerson.h"
#include "tests/engine/mesh/RoomPerson.h"

namespace Corvanta::Engine {
namespace {

using std::chrono::seconds;

constexpr Yuv kRed{81, 90, 240};
constexpr Yuv kBlue{41, 240, 110};
constexpr Yuv kGreen{145, 54, 34};

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
    OtherPerson two(temporary.path, "two", kBlue);
    ASSERT_TRUE(one.SeesColor("two", kBlue));
    ASSERT_TRUE(three.SeesColor("two", kBlue));
    ASSERT_TRUE(two.Tells("channel one"));
    two.process.Kill();
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
    OtherPerson two(temporary.path, "two", kBlue);
    RoomPerson three(Maker("three"), kGreen);
    ASSERT_TRUE(three.Enters());
    ASSERT_TRUE(one.SeesColor("two", kBlue));
    ASSERT_TRUE(two.Tells("channel one"));
    ASSERT_TRUE(two.Tells("channel three"));
    Say(one, "before");
    ASSERT_TRUE(two.Tells("text one before"));
    two.process.Stop();
    const auto until = std::chrono::steady_clock::now() + seconds(10);
    for (int index = 0; index < 20; ++index) Say(one, "while it stands " + std::to_string(index));
    EXPECT_TRUE(Eventually([&] { return one.Sees("two")->losses == 1; }));
    Say(one, "lost");
    EXPECT_TRUE(Eventually([&] { return std::chrono::steady_clock::now() >= until; }, seconds(15)));
    two.process.Continue();
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
    OtherPerson one(temporary.path, "one", kRed);
    ASSERT_TRUE(one.Tells("entered"));
    RoomPerson two(Maker("two"), kBlue);
    ASSERT_TRUE(two.Enters());
    RoomPerson three(Maker("three"), kGreen);
    ASSERT_TRUE(three.Enters());
    ASSERT_TRUE(two.SeesColor("one", kRed));
    ASSERT_TRUE(two.SeesColor("three", kGreen));
    ASSERT_TRUE(three.SeesColor("two", kBlue));
    one.process.Kill();
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

TEST_F(MeshFaultsTest, EnteringAndLeavingAtTheDeathOfTheHubLosesNobody) {
    for (int round = 0; round < 3; ++round) {
        OtherPerson one(temporary.path, "one", kRed);
        ASSERT_TRUE(one.Tells("entered"));
        RoomPerson two(Maker("two"), kBlue);
        ASSERT_TRUE(two.Enters());
        // The offers are on their way.
        RoomPerson three(Maker("three"), kGreen);
        ASSERT_TRUE(three.Enters());
        one.process.Kill();
        EXPECT_TRUE(two.SeesColor("three", kGreen)) << round;
        EXPECT_TRUE(three.SeesColor("two", kBlue)) << round;
        two.Say("hello");
        EXPECT_TRUE(three.Hears("two", {"hello"})) << round;
    }
}

TEST_F(MeshFaultsTest, AThousandTextsASecondAreHeard) {
    RoomPerson one(Maker("one"), kRed);
    ASSERT_TRUE(one.Enters());
    OtherPerson two(temporary.path, "two", kBlue);
    ASSERT_TRUE(two.Tells("channel one"));
    for (int index = 0; index < 3000; ++index) said.push_back("flood " + std::to_string(index));
    two.process.Say("flood 3000");
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

TEST_F(MeshFaultsTest, FiftyJoinsAndLeavesLeaveNothingBehind) {
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
    for (int count = 0; count < 50; ++count) ASSERT_NO_FATAL_FAILURE(visit());
    EXPECT_TRUE(Eventually([&] { return CountDescriptors() <= descriptors + 2; }))
        << CountDescriptors() << " were " << descriptors;
    EXPECT_TRUE(Eventually([&] { return CountThreads("") <= threads + 2; }))
        << CountThreads("") << " were " << threads;
}

}  // namespace
}  // namespace Corvanta::Engine
