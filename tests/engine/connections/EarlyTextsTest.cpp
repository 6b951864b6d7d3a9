// What participants say of streams that the library does not show yet.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "engine/connections/ParticipantTexts.h"
#include "platform/Connections.h"
#include "platform/MediaManager.h"
#include "platform/WebRTC.h"
#include "tests/engine/FakeTransport.h"
#include "tests/engine/RoomVisitor.h"

namespace Corvanta::Engine {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::string kOnBob = R"({"stream":"bob","mark":1})";
const std::string kAgainOnBob = R"({"stream":"bob","mark":2})";
const std::string kThirdOnBob = R"({"stream":"bob","mark":3})";
const std::string kOnScreen = R"({"stream":"screen","mark":4})";
// Of nothing that is to be seen.
const std::string kOther = R"({"stream":"nobody"} of bob's)";

// "ann" and "bob" are in the room, and "ann" says what is said.
class EarlyTexts : public testing::Test {
protected:
    EarlyTexts() {
        visitor.makeTransport = fake.Maker();
        MediaManager_SetCallbackToGetRemoteDataChannelSDLCallbackList([this] {
            return std::vector<DataChannelCallback>{
                [this](const DataChannelMessage& message) { heard.Add(message.text); }};
        });
        EXPECT_NE(visitor.Enter({}), -1);
        fake.Join("ann", ann);
        fake.Join("bob", bob);
        EXPECT_TRUE(ann->record.Gets("play"));
        EXPECT_TRUE(bob->record.Gets("play"));
        fake.Do([&](const auto&) { ann->events.channel(true); });
    }

    void Say(const std::string& text) {
        fake.Do([&](const auto&) { ann->events.text(text); });
    }
    // The visitor lets go of a picture when the next one comes.
    void ShowPictures(const std::shared_ptr<FakeMedia>& media, int count) {
        fake.Do([&](const auto&) {
            for (int picture = 0; picture < count; ++picture) media->events.picture(MakeGreyPicture());
        });
    }

    const std::shared_ptr<FakeMedia> ann = std::make_shared<FakeMedia>();
    const std::shared_ptr<FakeMedia> bob = std::make_shared<FakeMedia>();
    Record heard;
    FakeRoom fake;
    // Leaves before the rest goes.
    RoomVisitor visitor;
};

TEST_F(EarlyTexts, OfAStreamWaitForItsPicture) {
    Say(kOnBob);
    Say(kOther);
    EXPECT_THAT(heard.Lines(), IsEmpty());
    // The library has taken a picture, and may still be at work on it.
    ShowPictures(bob, 1);
    Say(kThirdOnBob);
    EXPECT_THAT(heard.Lines(), IsEmpty());
    ShowPictures(bob, 1);
    EXPECT_TRUE(heard.Gets(kThirdOnBob));
    EXPECT_THAT(heard.Lines(), ElementsAre(kOnBob, kOther, kThirdOnBob));
}

TEST_F(EarlyTexts, OfNoUnseenStreamComeAtOnce) {
    Say(kOther);
    ShowPictures(bob, 2);
    Say(kAgainOnBob);
    EXPECT_THAT(heard.Lines(), ElementsAre(kOther, kAgainOnBob));
}

TEST_F(EarlyTexts, WaitForAStreamThatCameLater) {
    ShowPictures(bob, 2);
    const auto screen = std::make_shared<FakeMedia>();
    fake.Join(
        {.id = "screen", .name = "b", .memberId = "bob", .type = StreamType::Screenshare, .media = screen});
    Say(kOnScreen);
    EXPECT_TRUE(screen->record.Gets("play"));
    EXPECT_THAT(heard.Lines(), IsEmpty());
    ShowPictures(screen, 2);
    EXPECT_TRUE(heard.Gets(kOnScreen));
}

TEST_F(EarlyTexts, DoNotWaitForAStreamThatHasNoPicture) {
    Say(kOnBob);
    EXPECT_THAT(heard.Lines(), IsEmpty());
    fake.Do([&](const auto&) { bob->events.withoutPicture(); });
    EXPECT_TRUE(heard.Gets(kOnBob));
}

TEST_F(EarlyTexts, DoNotWaitForAStreamWhoseVideoIsOff) {
    Say(kOnBob);
    EXPECT_THAT(heard.Lines(), IsEmpty());
    WebRTC_SetEnabledRemoteVideoTrack("bob", false);
    EXPECT_TRUE(heard.Gets(kOnBob));
}

TEST_F(EarlyTexts, DoNotWaitForAStreamThatHasGone) {
    Say(kOnBob);
    EXPECT_THAT(heard.Lines(), IsEmpty());
    fake.Leave("bob");
    EXPECT_TRUE(heard.Gets(kOnBob));
}

TEST_F(EarlyTexts, DoNotWaitForAPictureForEver) {
    Say(kOnBob);
    EXPECT_THAT(heard.Lines(), IsEmpty());
    EXPECT_TRUE(heard.Gets(kOnBob));
}

TEST_F(EarlyTexts, OutliveALostChannel) {
    Say(kOnBob);
    fake.Do([&](const auto&) { ann->events.channel(false); });
    ShowPictures(bob, 2);
    fake.Do([&](const auto&) { ann->events.channel(true); });
    Say(kAgainOnBob);
    EXPECT_THAT(heard.Lines(), ElementsAre(kOnBob, kAgainOnBob));
}

TEST_F(EarlyTexts, AreNotLostWhenThereAreMany) {
    const std::string filling(ParticipantTexts::kMostBytesHeld / 2, '.');
    Say(kOnBob + filling);
    EXPECT_THAT(heard.Lines(), IsEmpty());
    Say(kAgainOnBob + filling);
    Say("3");
    EXPECT_THAT(heard.Lines(), ElementsAre(kOnBob + filling, kAgainOnBob + filling, "3"));
    Say(kOnBob + filling + filling);
    EXPECT_THAT(heard.Lines().size(), 4U);
}

}  // namespace
}  // namespace Corvanta::Engine
