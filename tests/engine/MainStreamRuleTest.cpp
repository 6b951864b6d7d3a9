#include "engine/webrtc/MainStreamRule.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "engine/webrtc/MainStreamMessage.h"

namespace Corvanta::Engine {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr VideoFrameAdaptation kInitial{1, 240, 786432};
constexpr VideoFrameAdaptation kFull{1, 240, 0};

class MainStreamRuleTest : public testing::Test {
protected:
    void Shows(const std::string& sender, const std::string& streamId) {
        rule.OnDataChannelMessage({sender, WriteMainStream(streamId)});
    }

    std::vector<std::string> told;
    MainStreamRule rule{"camera", kInitial, true, [this](const std::string& text) { told.push_back(text); }};
};

TEST_F(MainStreamRuleTest, KeepsTheInitialAdaptationForAThumbnail) {
    EXPECT_EQ(rule.GetAdaptation(), kInitial);
    rule.SetMainStream("somebody");
    Shows("other", "somebody");
    EXPECT_EQ(rule.GetAdaptation(), kInitial);
}

TEST_F(MainStreamRuleTest, LeavesTheRateToTheCameraWhileItIsTheMainVideo) {
    rule.SetMainStream("camera");
    EXPECT_EQ(rule.GetAdaptation(), kFull);
    rule.OnRemoteStreamRemoved("somebody");
    EXPECT_EQ(rule.GetAdaptation(), kFull);
    rule.SetMainStream("");
    EXPECT_EQ(rule.GetAdaptation(), kInitial);
}

TEST_F(MainStreamRuleTest, LeavesTheRateToTheCameraWhileSomebodyElseShowsIt) {
    Shows("one", "camera");
    Shows("two", "camera");
    EXPECT_EQ(rule.GetAdaptation(), kFull);
    Shows("one", "somebody");
    EXPECT_EQ(rule.GetAdaptation(), kFull);
    rule.OnRemoteStreamRemoved("two");
    EXPECT_EQ(rule.GetAdaptation(), kInitial);
}

TEST_F(MainStreamRuleTest, KeepsToTheInitialAdaptationWhenItIsOff) {
    MainStreamRule off("camera", kInitial, false, [](const std::string&) {});
    off.SetMainStream("camera");
    EXPECT_EQ(off.GetAdaptation(), kInitial);
}

TEST_F(MainStreamRuleTest, TellsTheOthersOfEachChangeOnce) {
    rule.SetMainStream("one");
    rule.SetMainStream("one");
    rule.SetMainStream("two");
    EXPECT_THAT(told, ElementsAre(WriteMainStream("one"), WriteMainStream("two")));
    EXPECT_EQ(told.front(), R"({"message":{"streamId":"one"},"type":"mainStream"})");
}

TEST_F(MainStreamRuleTest, TellsWhoeverComesLater) {
    Shows("early", "x");
    EXPECT_THAT(told, IsEmpty());
    rule.SetMainStream("one");
    told.clear();
    Shows("early", "y");
    EXPECT_THAT(told, IsEmpty());
    Shows("late", "x");
    EXPECT_THAT(told, ElementsAre(WriteMainStream("one")));
}

TEST_F(MainStreamRuleTest, PassesOverOtherMessages) {
    for (const std::string& text :
         {std::string(), std::string("mainStream"), std::string("[\"mainStream\"]"),
          std::string(R"({"type":"mainStream"})"), std::string(R"({"type":"mainStream","message":5})"),
          std::string(R"({"type":"mainStream","message":{"streamId":5}})"),
          std::string(R"({"type":"chat","message":{"streamId":"mainStream"}})"),
          std::string(R"({"type":5,"mainStream":{}})"),
          R"({"type":"mainStream","message":{"streamId":")" + std::string(2000, 'x') + "\"}}"}) {
        EXPECT_FALSE(ReadMainStream(text)) << text.substr(0, 60);
        rule.OnDataChannelMessage({"other", text});
    }
    EXPECT_EQ(rule.GetAdaptation(), kInitial);
}

TEST_F(MainStreamRuleTest, CountsNoMoreThanARoomHolds) {
    for (int index = 0; index < 1000; ++index) Shows(std::to_string(index), "somebody");
    Shows("one more", "camera");
    EXPECT_EQ(rule.GetAdaptation(), kInitial);
}

}  // namespace
}  // namespace Corvanta::Engine
