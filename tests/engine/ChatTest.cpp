// Lines of the chat: how they are written and read, and how they come to the host.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "engine/Engine.h"
#include "engine/connections/ChatMessage.h"
#include "engine/connections/RoomChat.h"
#include "platform/MediaManager.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/FakeTransport.h"
#include "tests/engine/RoomVisitor.h"

namespace Corvanta::Engine {
namespace {

using std::chrono::hours;
using std::chrono::seconds;
using std::chrono::system_clock;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using Json = nlohmann::json;

const system_clock::time_point kNow{hours{500'000}};

std::string Said(const Json& text, const Json& time = 0) {
    return Json{{"type", "chat"}, {"message", {{"text", text}, {"time", time}}}}.dump();
}

TEST(ChatMessage, ComesThroughUnchanged) {
    const ChatMessage message{.text = "Grüße \"an\"\nalle \xF0\x9F\x98\x80", .time = kNow - seconds{3}};
    const auto written = WriteChat(message);
    ASSERT_TRUE(written);
    EXPECT_EQ(Json::parse(*written).at("type"), "chat");
    const auto read = ReadChat(*written, kNow);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->text, message.text);
    EXPECT_EQ(read->time, message.time);
}

TEST(ChatMessage, IsNotWrittenOfWhatNobodyCouldRead) {
    EXPECT_TRUE(WriteChat({.text = std::string(kLongestChat, 'x'), .time = kNow}));
    for (const std::string& text :
         {std::string(), std::string(" \t\r\n"), std::string(kLongestChat + 1, 'x'), std::string("a\xFF")})
        EXPECT_FALSE(WriteChat({.text = text, .time = kNow})) << text;
}

TEST(ChatMessage, IsNothingElse) {
    for (const std::string& text :
         {std::string(), std::string("{"), std::string("\"chat\""), std::string("[\"chat\"]"),
          std::string(R"({"type":"chat"})"), std::string(R"({"type":"chat","message":"text"})"),
          std::string(R"({"type":["chat"],"message":{"text":"a"}})"),
          std::string(R"({"type":"draw-canvas-broadcast","message":{"text":"chat"}})"),
          std::string(R"({"type":"other","message":{"text":"\"chat\""}})"), Said(5), Said(nullptr), Said(""),
          Said(" \n"), std::string(R"({"type":"chat","message":{"text":")") + '\xFF' + "\"}}",
          Said(std::string(1'000'000, 'x'))})
        EXPECT_FALSE(ReadChat(text, kNow)) << text.substr(0, 80);
}

TEST(ChatMessage, IsCutBetweenTwoCharacters) {
    const auto ofLength = [](const std::string& text) { return ReadChat(Said(text), kNow)->text.size(); };
    EXPECT_EQ(ofLength(std::string(kLongestChat, 'x')), kLongestChat);
    EXPECT_EQ(ofLength(std::string(kLongestChat + 1, 'x')), kLongestChat);
    // Four bytes of which three fit.
    EXPECT_EQ(ofLength(std::string(kLongestChat - 3, 'x') + "\xF0\x9F\x98\x80"), kLongestChat - 3);
}

TEST(ChatMessage, HasATimeThatCanBe) {
    using std::chrono::milliseconds;
    const auto now = std::chrono::duration_cast<milliseconds>(kNow.time_since_epoch()).count();
    const auto timeOf = [](const Json& time) { return ReadChat(Said("a", time), kNow)->time; };
    EXPECT_EQ(timeOf(now - 1000), kNow - seconds{1});
    for (const Json& time :
         {Json(now + 1), Json(0), Json(-1), Json("now"), Json(1e300), Json(),
          Json(std::numeric_limits<std::int64_t>::max()), Json(std::numeric_limits<std::uint64_t>::max()),
          Json(std::numeric_limits<std::int64_t>::min())})
        EXPECT_EQ(timeOf(time), kNow) << time;
}

class ChatTest : public testing::Test {
protected:
    ChatTest() {
        visitor.makeTransport = fake.Maker();
        SetChatListener([this](const ChatLine& line) {
            heard.Add(line.name + ": " + line.text);
            time = line.time;
        });
        MediaManager_SetCallbackToGetRemoteDataChannelSDLCallbackList([this] {
            return std::vector<DataChannelCallback>{
                [this](const DataChannelMessage& message) { others.Add(message.text); }};
        });
        EXPECT_NE(visitor.Enter({}), -1);
        fake.Join("a", media);
        EXPECT_TRUE(media->record.Gets("play"));
        fake.Do([&](const auto&) { media->events.channel(true); });
    }
    ~ChatTest() override { SetChatListener({}); }

    void Say(const std::string& text) {
        fake.Do([&](const auto&) { media->events.text(text); });
    }

    const std::shared_ptr<FakeMedia> media = std::make_shared<FakeMedia>();
    Record heard, others;
    system_clock::time_point time;
    FakeRoom fake;
    // Leaves before the rest goes.
    RoomVisitor visitor;
};

TEST_F(ChatTest, ComesToTheHostAndToNobodyElse) {
    Say(*WriteChat({.text = "Hello", .time = system_clock::now()}));
    Say(R"({"type":"draw-canvas-broadcast"})");
    EXPECT_THAT(heard.Lines(), ElementsAre("name of a: Hello"));
    EXPECT_LT(system_clock::now() - time, seconds{20});
    EXPECT_THAT(others.Lines(), ElementsAre(R"({"type":"draw-canvas-broadcast"})"));
}

TEST_F(ChatTest, IsSentToTheOthers) {
    EXPECT_TRUE(SendChat("Hi"));
    EXPECT_FALSE(SendChat("  "));
    EXPECT_FALSE(SendChat(std::string(kLongestChat + 1, 'x')));
    ASSERT_TRUE(Eventually([&] { return fake.record.Lines().back().starts_with("send "); }));
    const auto sent = ReadChat(fake.record.Lines().back().substr(5), system_clock::now());
    ASSERT_TRUE(sent);
    EXPECT_EQ(sent->text, "Hi");
    EXPECT_THAT(heard.Lines(), IsEmpty());
    RoomVisitor::Leave();
    EXPECT_FALSE(SendChat("Nobody is there"));
}

TEST_F(ChatTest, IsBoundedInNumberBothWays) {
    constexpr int kMany = 200;
    int sent = 0;
    for (int line = 0; line < kMany; ++line) {
        if (SendChat("x")) ++sent;
    }
    EXPECT_GE(sent, static_cast<int>(RoomChat::kBurst));
    EXPECT_LT(sent, kMany / 2);
    for (int line = 0; line < kMany; ++line) Say(Said("x"));
    EXPECT_GE(heard.Lines().size(), static_cast<std::size_t>(RoomChat::kBurst));
    EXPECT_LT(heard.Lines().size(), static_cast<std::size_t>(kMany / 2));
    EXPECT_TRUE(visitor.WaitForLog("\"name of a\" writes more than can be read"));
    // Others still come through.
    const auto other = std::make_shared<FakeMedia>();
    fake.Join("b", other);
    EXPECT_TRUE(other->record.Gets("play"));
    fake.Do([&](const auto&) { other->events.text(Said("me too")); });
    EXPECT_EQ(heard.Lines().back(), "name of b: me too");
}

TEST_F(ChatTest, NeedsNoListener) {
    SetChatListener({});
    Say(Said("Hello"));
    EXPECT_THAT(heard.Lines(), IsEmpty());
    EXPECT_THAT(others.Lines(), IsEmpty());
}

}  // namespace
}  // namespace Corvanta::Engine
