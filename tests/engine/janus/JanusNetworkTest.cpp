// A member beyond a network that is cut and loses packets.
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "tests/engine/Eventually.h"
#include "tests/engine/janus/RoomMemberRig.h"
#include "tests/engine/janus/RoomServerProcess.h"
#include "tests/engine/mesh/OtherPerson.h"
#include "tests/engine/mesh/TunLink.h"

namespace Corvanta::Engine {
namespace {

using std::chrono::seconds;

constexpr Yuv kRed{81, 90, 240}, kBlue{41, 240, 110};
constexpr const char *kNear = "10.98.0.1", *kFar = "10.98.0.2";

class JanusNetworkTest : public testing::Test {
protected:
    JanusNetworkTest() {
        const int near = MakeTun("rooms1");
        const int far = MakeTun("rooms2");
        EXPECT_GE(near, 0) << "no device can be made here";
        EXPECT_GE(far, 0);
        EXPECT_TRUE(BringUp("rooms1", kNear));
        relay = std::make_unique<TunRelay>(near, far);
        server = std::make_unique<RoomServerProcess>(RoomServerOptions{.address = kNear});
        EXPECT_TRUE(server->IsReady()) << server->Words();
    }

    // Enters both, one here with the server and two beyond the network.
    void Meet() {
        one = std::make_unique<RoomMemberRig>(
            JanusOptions{.server = {.address = server->Address(), .certificateAuthority = {}, .token = {}},
                         .room = "review",
                         .name = "one"});
        ASSERT_TRUE(one->Enters(kRed));
        two = std::make_unique<OtherPerson>(CORVANTA_JANUS_PROCESS, server->Address(), "two", kBlue,
                                            std::vector<std::string>{"rooms2", kFar});
        ASSERT_TRUE(two->Tells("network"));
        ASSERT_TRUE(HandOver("rooms2", two->Id()));
        ASSERT_TRUE(Eventually([&] { return !one->All().empty(); }));
        seen = one->All().front();
        ASSERT_TRUE(Eventually([&] { return seen->pictures > 0 && seen->hasChannel; }));
        ASSERT_TRUE(two->Tells("channel one"));
        // Not by any other way.
        EXPECT_GT(relay->carried, 0U);
    }

    void SayBoth(const std::string& text) {
        said.push_back(text);
        one->Say(text);
        two->Say(text);
    }
    [[nodiscard]] bool BothHaveAll() const {
        return Eventually([&] { return two->Texts("one") == said && seen->Texts() == said; }, 3 * kPatience);
    }
    [[nodiscard]] bool ShowsMore(int pictures) const {
        const int before = seen->pictures;
        return Eventually([&] { return seen->pictures > before + pictures; }, 2 * kPatience);
    }

    std::unique_ptr<TunRelay> relay;
    std::unique_ptr<RoomServerProcess> server;
    std::unique_ptr<RoomMemberRig> one;
    std::unique_ptr<OtherPerson> two;
    std::shared_ptr<SeenStream> seen;
    std::vector<std::string> said;
};

TEST_F(JanusNetworkTest, CutForFiveSecondsHeals) {
    ASSERT_NO_FATAL_FAILURE(Meet());
    SayBoth("before");
    ASSERT_TRUE(BothHaveAll());
    relay->isCut = true;
    const auto until = std::chrono::steady_clock::now() + seconds(5);
    for (int index = 0; index < 20; ++index) SayBoth("cut " + std::to_string(index));
    EXPECT_TRUE(Eventually([&] { return seen->losses == 1; }));
    EXPECT_TRUE(Eventually([&] { return std::chrono::steady_clock::now() >= until; }));
    relay->isCut = false;
    EXPECT_TRUE(Eventually([&] { return !seen->isLost; }, 2 * kPatience));
    SayBoth("healed");
    EXPECT_TRUE(BothHaveAll());
    EXPECT_TRUE(ShowsMore(5));
    EXPECT_FALSE(seen->hasLeft);
}

TEST_F(JanusNetworkTest, LossOfThreePercentLosesNoText) {
    ASSERT_NO_FATAL_FAILURE(Meet());
    relay->lostOneOf = 33;
    for (int index = 0; index < 500; ++index) SayBoth("lossy " + std::to_string(index));
    EXPECT_TRUE(BothHaveAll());
    EXPECT_TRUE(ShowsMore(60));
    EXPECT_EQ(seen->losses, 0);
}

}  // namespace
}  // namespace Corvanta::Engine
