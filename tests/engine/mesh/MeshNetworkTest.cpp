// Two members with a network between them that is cut and loses packets.
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
#include "tests/engine/mesh/TunLink.h"

namespace Corvanta::Engine {
namespace {

using std::chrono::seconds;

constexpr Yuv kRed{81, 90, 240};
constexpr Yuv kBlue{41, 240, 110};

class MeshNetworkTest : public testing::Test {
protected:
    MeshNetworkTest() {
        const int near = MakeTun("rooms0");
        const int far = MakeTun("rooms1");
        EXPECT_GE(near, 0) << "no device can be made here";
        EXPECT_GE(far, 0);
        EXPECT_TRUE(BringUp("rooms0", "10.98.0.1"));
        relay = std::make_unique<TunRelay>(near, far);
    }

    // Enters both, one here and two beyond the network.
    void Meet() {
        ASSERT_TRUE(one.Enters());
        two = std::make_unique<OtherPerson>(CORVANTA_MESH_PROCESS, temporary.path, "two", kBlue,
                                            std::vector<std::string>{"rooms1", "10.98.0.2"});
        ASSERT_TRUE(two->Tells("network"));
        ASSERT_TRUE(HandOver("rooms1", two->Id()));
        ASSERT_TRUE(one.SeesColor("two", kBlue));
        ASSERT_TRUE(two->Tells("channel one"));
        // Not by any other way.
        EXPECT_GT(relay->carried, 0U);
    }

    void SayBoth(const std::string& text) {
        said.push_back(text);
        one.Say(text);
        two->Say(text);
    }
    [[nodiscard]] bool BothHaveAll() const {
        return Eventually([&] { return two->Texts("one") == said && one.Sees("two")->texts == said; },
                          2 * kPatience);
    }

    TemporaryFolder temporary;
    std::unique_ptr<TunRelay> relay;
    RoomPerson one{
        [folder = temporary.path](EngineLoop& loop, const std::shared_ptr<SoundMixer>& mixer) {
            return std::make_unique<MeshTransport>(
                loop, mixer,
                MeshOptions{.room = "review", .name = "one", .folder = folder, .loopbackOnly = false});
        },
        kRed, 0.1};
    std::unique_ptr<OtherPerson> two;
    std::vector<std::string> said;
};

TEST_F(MeshNetworkTest, CutForFiveSecondsHeals) {
    ASSERT_NO_FATAL_FAILURE(Meet());
    SayBoth("before");
    ASSERT_TRUE(BothHaveAll());
    relay->isCut = true;
    const auto until = std::chrono::steady_clock::now() + seconds(5);
    for (int index = 0; index < 20; ++index) SayBoth("cut " + std::to_string(index));
    EXPECT_TRUE(Eventually([&] { return one.Sees("two")->losses == 1; }));
    EXPECT_TRUE(Eventually([&] { return std::chrono::steady_clock::now() >= until; }));
    relay->isCut = false;
    EXPECT_TRUE(Eventually([&] { return one.Sees("two")->returns == 1; }, 2 * kPatience));
    SayBoth("healed");
    EXPECT_TRUE(BothHaveAll());
    const int pictures = one.Sees("two")->pictures;
    EXPECT_TRUE(Eventually([&] { return one.Sees("two")->pictures > pictures + 5; }));
    EXPECT_FALSE(one.Sees("two")->hasLeft);
}

TEST_F(MeshNetworkTest, LossOfThreePercentLosesNoText) {
    ASSERT_NO_FATAL_FAILURE(Meet());
    relay->lostOneOf = 33;
    const int pictures = one.Sees("two")->pictures;
    for (int index = 0; index < 500; ++index) SayBoth("lossy " + std::to_string(index));
    EXPECT_TRUE(BothHaveAll());
    EXPECT_TRUE(Eventually([&] { return one.Sees("two")->pictures > pictures + 60; }));
    EXPECT_EQ(one.Sees("two")->losses, 0);
}

}  // namespace
}  // namespace Corvanta::Engine

int main(int count, char** words) {
    testing::InitGoogleTest(&count, words);
    if (!Corvanta::Engine::EnterEmptyNetwork()) ADD_FAILURE() << "no network of its own can be had here";
    return RUN_ALL_TESTS();
}
