#include "room/VideoMetadataMessage.h"

#include <gtest/gtest.h>

#include <string>

namespace Corvanta::Room {
namespace {

[[nodiscard]] std::string Message(const std::string& frameRate) {
    return R"({"message":{"sourceData":{"frameRate":)" + frameRate +
           R"(,"sourceName":"A clip","streamId":"one"}},"type":"video-metadata-message"})";
}

TEST(VideoMetadataMessage, DescribesAStream) {
    EXPECT_EQ(ParseVideoMetadataMessage(Message("29.97")), (VideoSourceData{"one", 29.97F, "A clip"}));
}

TEST(VideoMetadataMessage, TakesEveryKindOfNumberAndTheTruthValuesForAFrameRate) {
    EXPECT_EQ(ParseVideoMetadataMessage(Message("30"))->frameRate, 30.0F);
    EXPECT_EQ(ParseVideoMetadataMessage(Message("-1"))->frameRate, -1.0F);
    EXPECT_EQ(ParseVideoMetadataMessage(Message("23.976"))->frameRate, 23.976F);
    EXPECT_EQ(ParseVideoMetadataMessage(Message("2.5e1"))->frameRate, 25.0F);
    EXPECT_EQ(ParseVideoMetadataMessage(Message("18446744073709551615"))->frameRate, 18446744073709551615.0F);
    EXPECT_EQ(ParseVideoMetadataMessage(Message("true"))->frameRate, 1.0F);
    EXPECT_EQ(ParseVideoMetadataMessage(Message("false"))->frameRate, 0.0F);
}

TEST(VideoMetadataMessage, TakesNoFrameRateBeyondTheRangeOfItsType) {
    EXPECT_EQ(ParseVideoMetadataMessage(Message("3.4e38"))->frameRate, 3.4e38F);
    EXPECT_EQ(ParseVideoMetadataMessage(Message("-3.4e38"))->frameRate, -3.4e38F);
    EXPECT_EQ(ParseVideoMetadataMessage(Message("1e-300"))->frameRate, 0.0F);
    for (const char* const rate : {"1e39", "-1e39", "3.5e38", "1e300", "-1e300", "1e999", "-1e999"}) {
        EXPECT_EQ(ParseVideoMetadataMessage(Message(rate)), std::nullopt) << rate;
    }
}

TEST(VideoMetadataMessage, TakesNothingElseForAFrameRate) {
    for (const char* const rate : {R"("30")", "null", "[]", "[30]", "{}", R"({"rate":30})", R"("")"}) {
        EXPECT_EQ(ParseVideoMetadataMessage(Message(rate)), std::nullopt) << rate;
    }
}

TEST(VideoMetadataMessage, IgnoresWhatItDoesNotKnow) {
    EXPECT_EQ(ParseVideoMetadataMessage(
                  R"({"type":"video-metadata-message","extra":[1,2],"message":{"other":null,"sourceData":)"
                  R"({"streamId":"x","frameRate":1,"sourceName":"","more":{}}}})"),
              (VideoSourceData{"x", 1.0F, ""}));
}

TEST(VideoMetadataMessage, SaysNothingInAnotherTypeOfMessage) {
    for (const char* const text :
         {R"({"type":"draw-canvas-broadcast"})", R"({"type":"VIDEO-METADATA-MESSAGE"})", R"({"type":""})"}) {
        EXPECT_EQ(ParseVideoMetadataMessage(text), std::nullopt) << text;
    }
}

TEST(VideoMetadataMessage, SaysNothingInAnotherTypeOfMessageThatHasTheSameMembers) {
    std::string text = Message("30");
    ASSERT_TRUE(ParseVideoMetadataMessage(text).has_value());
    text.replace(text.find("video-metadata-message"), 22, "video-metadata-massage");
    EXPECT_EQ(ParseVideoMetadataMessage(text), std::nullopt);
}

TEST(VideoMetadataMessage, SaysNothingWhenItDoesNotRead) {
    for (
        const char* const text :
        {"", "no JSON", "{", "[]", "null", "7", R"("text")", R"({"type":7})", R"({"message":{}})",
         R"({"type":"video-metadata-message"})", R"({"type":"video-metadata-message","message":7})",
         R"({"type":"video-metadata-message","message":{"sourceData":[]}})",
         R"({"type":"video-metadata-message","message":{"sourceData":{"frameRate":1,"sourceName":""}}})",
         R"({"type":"video-metadata-message","message":{"sourceData":{"streamId":"","sourceName":""}}})",
         R"({"type":"video-metadata-message","message":{"sourceData":{"streamId":"","frameRate":1}}})",
         R"({"type":"video-metadata-message","message":{"sourceData":{"streamId":1,"frameRate":1,"sourceName":""}}})",
         R"({"type":"video-metadata-message","message":{"sourceData":{"streamId":"","frameRate":1,"sourceName":0}}})",
         "{\"type\":\"video-metadata-message\xFF\"}"}) {
        EXPECT_EQ(ParseVideoMetadataMessage(text), std::nullopt) << text;
    }
}

TEST(VideoMetadataMessage, SurvivesALongText) {
    constexpr size_t kLong = 10'000'000;
    const std::string filling(kLong, 'x');
    EXPECT_EQ(ParseVideoMetadataMessage(filling), std::nullopt);
    EXPECT_EQ(ParseVideoMetadataMessage("\"" + filling), std::nullopt);
    EXPECT_EQ(ParseVideoMetadataMessage(R"({"type":")" + filling + R"("})"), std::nullopt);
    EXPECT_EQ(ParseVideoMetadataMessage(Message(std::string(kLong, '3'))), std::nullopt);
    std::string text = Message("30");
    text.replace(text.find("A clip"), 6, filling);
    const auto data = ParseVideoMetadataMessage(text);
    ASSERT_TRUE(data.has_value());
    EXPECT_EQ(data->streamId, "one");
    EXPECT_EQ(data->sourceName.size(), kLong);
}

TEST(VideoMetadataMessage, SurvivesDeepNesting) {
    EXPECT_EQ(ParseVideoMetadataMessage(std::string(200000, '[')), std::nullopt);
    EXPECT_EQ(ParseVideoMetadataMessage(std::string(200000, '[') + std::string(200000, ']')), std::nullopt);
}

}  // namespace
}  // namespace Corvanta::Room
