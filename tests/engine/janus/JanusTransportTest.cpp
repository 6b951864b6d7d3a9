// A room over a real server.
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "engine/janus/JanusTransport.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/janus/RoomMemberRig.h"
#include "tests/engine/janus/RoomServerProcess.h"

namespace Corvanta::Engine {
namespace {

constexpr Yuv kRed{81, 90, 240}, kBlue{41, 240, 110}, kGreen{145, 54, 34};

JanusOptions OptionsFor(const RoomServerProcess& server, const std::string& name) {
    return {.server = {.address = server.Address(), .certificateAuthority = {}, .token = {}},
            .room = "review",
            .name = name};
}

bool IsNear(Yuv one, Yuv other) {
    return std::abs(one.y - other.y) < 12 && std::abs(one.u - other.u) < 12 && std::abs(one.v - other.v) < 12;
}

bool HasColor(const std::shared_ptr<SeenStream>& stream, Yuv color) {
    return stream && Eventually([&] { return IsNear(stream->Color(), color); });
}

bool HasChannel(const std::shared_ptr<SeenStream>& stream) {
    return stream && Eventually([&] { return stream->hasChannel.load(); });
}

bool HasTexts(const std::shared_ptr<SeenStream>& stream, const std::vector<std::string>& texts) {
    return stream && Eventually([&] { return stream->Texts() == texts; });
}

TEST(JanusTransport, BringsPicturesSoundAndTextsBothWays) {
    const RoomServerProcess server;
    ASSERT_TRUE(server.IsReady()) << server.Words();
    RoomMemberRig one(OptionsFor(server, "one")), two(OptionsFor(server, "two"));
    ASSERT_TRUE(one.Enters(kRed));
    ASSERT_TRUE(two.Enters(kBlue));
    const auto seenTwo = one.Sees(two), seenOne = two.Sees(one);
    ASSERT_TRUE(seenOne && seenTwo);
    EXPECT_EQ(seenOne->name, "one");
    EXPECT_EQ(seenOne->memberId, one.Id());
    EXPECT_TRUE(HasColor(seenOne, kRed));
    EXPECT_TRUE(HasColor(seenTwo, kBlue));
    // The tone's mean square is an eighth.
    EXPECT_TRUE(Eventually([&] { return seenOne->loudness > 0.05; }));
    EXPECT_TRUE(Eventually([&] { return seenTwo->loudness > 0.05; }));
    ASSERT_TRUE(HasChannel(seenOne));
    ASSERT_TRUE(HasChannel(seenTwo));
    const std::string longText(300'000, 'x');
    one.Say("first");
    one.Say(longText);
    one.Say("last");
    two.Say("answer");
    EXPECT_TRUE(HasTexts(seenOne, {"first", longText, "last"}));
    EXPECT_TRUE(HasTexts(seenTwo, {"answer"}));
}

}  // namespace
}  // namespace Corvanta::Engine
