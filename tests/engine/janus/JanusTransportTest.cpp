// A room over a real server.
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "engine/janus/JanusTransport.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/janus/OwnNetwork.h"
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
    if (stream && Eventually([&] { return IsNear(stream->Color(), color); })) return true;
    if (stream) {
        const Yuv shown = stream->Color();
        ADD_FAILURE() << stream->name << " shows " << shown.y << ' ' << shown.u << ' ' << shown.v << " after "
                      << stream->pictures << " pictures, at " << stream->media->Figures().receivedRate
                      << " bits a second";
    }
    return false;
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

TEST(JanusTransport, GivesALatecomerPicturesAndTheTextsThatFollow) {
    const RoomServerProcess server;
    ASSERT_TRUE(server.IsReady()) << server.Words();
    RoomMemberRig one(OptionsFor(server, "one")), two(OptionsFor(server, "two"));
    ASSERT_TRUE(one.Enters(kRed));
    ASSERT_TRUE(two.Enters(kBlue));
    ASSERT_TRUE(HasChannel(one.Sees(two)));
    ASSERT_TRUE(HasChannel(two.Sees(one)));
    one.Say("before");
    ASSERT_TRUE(HasTexts(two.Sees(one), {"before"}));

    RoomMemberRig late(OptionsFor(server, "one"));
    ASSERT_TRUE(late.Enters(kGreen));
    const auto seenOne = late.Sees(one);
    EXPECT_TRUE(HasColor(seenOne, kRed));
    EXPECT_TRUE(HasColor(late.Sees(two), kBlue));
    EXPECT_TRUE(HasColor(one.Sees(late), kGreen));
    ASSERT_TRUE(HasChannel(one.Sees(late)));
    one.Say("after");
    EXPECT_TRUE(HasTexts(seenOne, {"after"}));
    EXPECT_TRUE(HasTexts(two.Sees(one), {"before", "after"}));
}

TEST(JanusTransport, TellsTheOthersAtOnceWhenAMemberLeaves) {
    const RoomServerProcess server;
    ASSERT_TRUE(server.IsReady()) << server.Words();
    RoomMemberRig one(OptionsFor(server, "one")), two(OptionsFor(server, "two"));
    ASSERT_TRUE(one.Enters(kRed));
    ASSERT_TRUE(two.Enters(kBlue));
    const auto seenTwo = one.Sees(two);
    ASSERT_TRUE(HasColor(seenTwo, kBlue));
    two.Leave();
    // Sooner than a member that fell silent would be given up.
    EXPECT_TRUE(Eventually([&] { return seenTwo->hasLeft.load(); }, std::chrono::seconds(4)));
}

TEST(JanusTransport, ShowsASharedStreamUntilItIsTakenBack) {
    const RoomServerProcess server;
    ASSERT_TRUE(server.IsReady()) << server.Words();
    RoomMemberRig one(OptionsFor(server, "one")), two(OptionsFor(server, "two"));
    ASSERT_TRUE(one.Enters(kRed));
    ASSERT_TRUE(two.Enters(kBlue));
    one.PublishScreen(kGreen);
    const auto screen = two.Sees(one, StreamType::Screenshare);
    ASSERT_TRUE(screen);
    EXPECT_EQ(screen->name, "the screen");
    EXPECT_EQ(screen->type, StreamType::Screenshare);
    EXPECT_TRUE(HasColor(screen, kGreen));
    EXPECT_TRUE(HasColor(two.Sees(one), kRed));
    one.UnpublishScreen();
    EXPECT_TRUE(Eventually([&] { return screen->hasLeft.load(); }));
    EXPECT_FALSE(two.Sees(one)->hasLeft);
    // The publisher does not meet itself.
    EXPECT_EQ(one.All().size(), 1U);
}

TEST(JanusTransport, SendsAwayWhomAMemberRemoves) {
    const RoomServerProcess server;
    ASSERT_TRUE(server.IsReady()) << server.Words();
    RoomMemberRig one(OptionsFor(server, "one")), two(OptionsFor(server, "two")),
        three(OptionsFor(server, "three"));
    ASSERT_TRUE(one.Enters(kRed));
    ASSERT_TRUE(two.Enters(kBlue));
    ASSERT_TRUE(three.Enters(kGreen));
    two.PublishScreen(kGreen);
    const auto seen = one.Sees(two), screen = one.Sees(two, StreamType::Screenshare);
    const auto seenByThree = three.Sees(two);
    ASSERT_TRUE(seen && screen && seenByThree);
    one.Do([&](JanusTransport& transport) { transport.Remove(seen->id); });
    EXPECT_TRUE(Eventually([&] { return two.ends == 1; }));
    EXPECT_TRUE(Eventually([&] { return seenByThree->hasLeft.load(); }));
    EXPECT_TRUE(Eventually([&] { return seen->hasLeft && screen->hasLeft; }));
    // The rest stay.
    EXPECT_TRUE(HasColor(three.Sees(one), kRed));
    EXPECT_EQ(one.ends, 0);
}

TEST(JanusTransport, SwitchesOnlyTheMutedMembersMicrophoneOff) {
    const RoomServerProcess server;
    ASSERT_TRUE(server.IsReady()) << server.Words();
    RoomMemberRig one(OptionsFor(server, "one")), two(OptionsFor(server, "two")),
        three(OptionsFor(server, "three"));
    ASSERT_TRUE(one.Enters(kRed));
    ASSERT_TRUE(two.Enters(kBlue));
    ASSERT_TRUE(three.Enters(kGreen));
    const auto seenTwo = one.Sees(two);
    ASSERT_TRUE(HasChannel(seenTwo));
    ASSERT_TRUE(HasChannel(one.Sees(three)));
    one.Do([&](JanusTransport& transport) { transport.Mute(seenTwo->id); });
    EXPECT_TRUE(Eventually([&] { return two.isMuted.load(); }));
    one.Say("behind it");
    EXPECT_TRUE(HasTexts(three.Sees(one), {"behind it"}));
    EXPECT_FALSE(three.isMuted);
    EXPECT_FALSE(one.isMuted);
}

TEST(JanusTransport, SendsNothingOfWhatIsTurnedOff) {
    const RoomServerProcess server;
    ASSERT_TRUE(server.IsReady()) << server.Words();
    RoomMemberRig one(OptionsFor(server, "one")), two(OptionsFor(server, "two"));
    ASSERT_TRUE(one.Enters(kRed));
    ASSERT_TRUE(two.Enters(kBlue));
    const auto seenOne = two.Sees(one), seenTwo = one.Sees(two);
    ASSERT_TRUE(HasColor(seenOne, kRed));
    ASSERT_TRUE(HasColor(seenTwo, kBlue));
    // At the publisher, who says so.
    one.Do([](JanusTransport& transport) { transport.SetCameraTracks({.audio = true, .video = false}); });
    EXPECT_TRUE(Eventually([&] { return seenOne->isWithoutPicture.load(); }));
    // At the receiver: the server forwards none of it.
    one.Do([&](JanusTransport&) { seenTwo->media->SetTracks({.audio = false, .video = false}); });
    EXPECT_TRUE(Eventually([&] {
        const auto figures = seenTwo->media->Figures();
        return figures.frameRate == 0 && figures.receivedRate < 8000;
    }));
    one.Do([&](JanusTransport&) { seenTwo->media->SetTracks({}); });
    const int before = seenTwo->pictures;
    EXPECT_TRUE(Eventually([&] { return seenTwo->pictures > before + 3; }));
    EXPECT_TRUE(Eventually([&] { return seenTwo->media->Figures().codec == "VP8"; }));
}

TEST(JanusTransport, ConnectsAReceiverAgainThatIsRestarted) {
    const RoomServerProcess server;
    ASSERT_TRUE(server.IsReady()) << server.Words();
    RoomMemberRig one(OptionsFor(server, "one")), two(OptionsFor(server, "two"));
    ASSERT_TRUE(one.Enters(kRed));
    ASSERT_TRUE(two.Enters(kBlue));
    const auto seenOne = two.Sees(one), seenTwo = one.Sees(two);
    ASSERT_TRUE(HasColor(seenOne, kRed) && HasChannel(seenOne) && HasChannel(seenTwo));
    // The receiver's side.
    two.Do([&](JanusTransport&) { seenOne->media->Restart(true); });
    EXPECT_TRUE(Eventually([&] { return seenOne->channels == 2 && !seenOne->isLost; }));
    EXPECT_TRUE(Eventually([&] { return seenTwo->channels == 2; }));
    // The publisher's side.
    one.Do([&](JanusTransport& transport) {
        transport.RequestRestart(seenOne->id, {.tracks = {}, .immediately = true});
    });
    EXPECT_TRUE(Eventually([&] { return seenOne->channels == 3 && !seenOne->isLost; }));
    const int before = seenOne->pictures;
    EXPECT_TRUE(Eventually([&] { return seenOne->pictures > before + 3; }));
    EXPECT_FALSE(seenOne->hasLeft);
}

TEST(JanusTransport, GoesOnWhenTheServerIsKilledAndStartedAgain) {
    auto server = std::make_unique<RoomServerProcess>();
    ASSERT_TRUE(server->IsReady()) << server->Words();
    RoomMemberRig one(OptionsFor(*server, "one")), two(OptionsFor(*server, "two"));
    ASSERT_TRUE(one.Enters(kRed));
    ASSERT_TRUE(two.Enters(kBlue));
    one.PublishScreen(kGreen);
    const auto seenOne = two.Sees(one), seenTwo = one.Sees(two);
    const auto screen = two.Sees(one, StreamType::Screenshare);
    ASSERT_TRUE(HasColor(seenOne, kRed) && HasColor(seenTwo, kBlue) && HasColor(screen, kGreen));
    ASSERT_TRUE(HasChannel(seenOne) && HasChannel(seenTwo));
    one.Say("before");
    ASSERT_TRUE(HasTexts(seenOne, {"before"}));

    const int port = server->Port();
    server->KillServer();
    one.Say("meanwhile 1");
    one.Say("meanwhile 2");
    EXPECT_TRUE(Eventually([&] { return seenOne->isLost.load(); }));
    EXPECT_TRUE(Eventually([&] { return one.drops == 1; }));
    // The tile of the own camera shows it too.
    EXPECT_TRUE(Eventually([&] { return one.ownLosses == 1; }));
    server = std::make_unique<RoomServerProcess>(RoomServerOptions{.port = port});
    ASSERT_TRUE(server->IsReady()) << server->Words();

    EXPECT_TRUE(HasTexts(seenOne, {"before", "meanwhile 1", "meanwhile 2"}));
    EXPECT_TRUE(Eventually([&] { return !seenOne->isLost && !seenTwo->isLost && !screen->isLost; }));
    const int cameraPictures = seenOne->pictures, screenPictures = screen->pictures;
    EXPECT_TRUE(Eventually([&] { return seenOne->pictures > cameraPictures + 3; }));
    EXPECT_TRUE(Eventually([&] { return screen->pictures > screenPictures + 3; }));
    EXPECT_FALSE(seenOne->hasLeft || seenTwo->hasLeft || screen->hasLeft);
    EXPECT_TRUE(Eventually([&] { return one.ownReturns == 1; }));
    EXPECT_EQ(one.ends + two.ends, 0);
    two.Say("well again");
    EXPECT_TRUE(HasTexts(seenTwo, {"well again"}));
}

TEST(JanusTransport, LetsNobodyInWithoutTheToken) {
    const RoomServerProcess server({.token = "open-sesame"});
    ASSERT_TRUE(server.IsReady()) << server.Words();
    JanusOptions wrong = OptionsFor(server, "wrong"), right = wrong;
    wrong.server.token = "open-barley";
    right.server.token = "open-sesame";
    RoomMemberRig none(OptionsFor(server, "none")), refused(wrong), member(right);
    EXPECT_EQ(none.IsRefused(), "The server " + server.Address() + " cannot be used, it asks for a token");
    EXPECT_EQ(refused.IsRefused(),
              "The server " + server.Address() + " cannot be used, it refuses the token");
    EXPECT_TRUE(member.Enters(kRed));
}

TEST(JanusTransport, TellsTheUserWhatKeepsTheRoomShut) {
    const std::string nowhere = "ws://127.0.0.1:" + std::to_string(FreePort("127.0.0.1"));
    RoomMemberRig lonely({.server = {.address = nowhere, .certificateAuthority = {}, .token = "secret"},
                          .room = "review",
                          .name = "lonely"});
    const std::string line = lonely.IsRefused();
    EXPECT_TRUE(line.starts_with("The server " + nowhere + " cannot be used, it cannot be reached: "))
        << line;
    EXPECT_EQ(line.find("secret"), std::string::npos);
    EXPECT_EQ(line.find('\n'), std::string::npos);
}

}  // namespace
}  // namespace Corvanta::Engine
