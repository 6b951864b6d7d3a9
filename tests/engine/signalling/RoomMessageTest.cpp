#include "engine/signalling/RoomMessage.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace Corvanta::Engine {
namespace {

using namespace RoomMessages;

RoomMessage ReadBack(const RoomMessage& message) {
    std::string line = WriteRoomMessage(message);
    EXPECT_EQ(line.find('\n'), line.size() - 1) << line;
    line.pop_back();
    const auto read = ReadRoomMessage(line);
    EXPECT_TRUE(read) << line;
    return read.value_or(Unknown{});
}

TEST(RoomMessage, IsReadAsItWasWritten) {
    const std::string wild = std::string("a\n\"b\"\\\t\x01\x7F \xE2\x82\xAC ") + '\0' + " end";
    for (const RoomMessage& message : {
             RoomMessage(Hello{kRoomVersion, "name", "", "0f"}),
             RoomMessage(Hello{kRoomVersion, wild, "ab-12", "0f-"}),
             RoomMessage(Hello{kRoomVersion, "name", "ab", "0f", {"a", "b"}}),
             RoomMessage(Welcome{"a", false, {}}),
             RoomMessage(Welcome{"a", true, {{"b", "one"}}, {"b"}}),
             RoomMessage(Welcome{"a", true, {{"b", "one"}, {"c", wild}}}),
             RoomMessage(Joined{{"b", wild}, false}),
             RoomMessage(Joined{{"b", ""}, true}),
             RoomMessage(Left{"abc"}),
             RoomMessage(Left{"abc", true}),
             RoomMessage(Leaving{}),
             RoomMessage(Settled{{}}),
             RoomMessage(Settled{{"a", "b"}}),
             RoomMessage(To{"a", wild}),
             RoomMessage(From{"a", std::string(300'000, 'x')}),
             RoomMessage(Refused{wild}),
             RoomMessage(Unknown{}),
         })
        EXPECT_EQ(ReadBack(message), message) << WriteRoomMessage(message).substr(0, 100);
}

TEST(RoomMessage, OfAnUnknownKindIsPassedOver) {
    for (const char* line : {R"({"kind":"later"})", R"({"kind":"","x":[{}]})", R"({"kind":"Hello"})"}) {
        const auto message = ReadRoomMessage(line);
        ASSERT_TRUE(message) << line;
        EXPECT_TRUE(std::holds_alternative<Unknown>(*message)) << line;
    }
}

TEST(RoomMessage, MayHaveMoreThanIsKnown) {
    const auto message = ReadRoomMessage(R"({"kind":"left","id":"ab","because":{"of":[1,2]}})");
    ASSERT_TRUE(message);
    EXPECT_EQ(*message, RoomMessage(Left{"ab"}));
}

TEST(RoomMessage, MayBeNestedALittle) {
    const auto nested = [](std::size_t depth) {
        return R"({"kind":"later","x":)" + std::string(depth, '[') + std::string(depth, ']') + "}";
    };
    EXPECT_TRUE(ReadRoomMessage(nested(10)));
    EXPECT_FALSE(ReadRoomMessage(nested(100)));
}

TEST(RoomMessage, ThatIsMalformedIsNone) {
    for (const std::string& line : {
             std::string(),
             std::string("hello"),
             std::string("[]"),
             std::string("7"),
             std::string("null"),
             std::string("{}"),
             std::string("{"),
             std::string(R"({"kind":"left","id":"ab"}})"),
             std::string(R"({"kind":7})"),
             std::string(R"({"kind":null})"),
             std::string("{\"kind\":\"\xFF\"}"),
             std::string(R"({"kind":"hello"})"),
             std::string(R"({"kind":"hello","version":"1","name":"","id":"","key":"ab"})"),
             std::string(R"({"kind":"hello","version":1.0,"name":"","id":"","key":"ab"})"),
             std::string(R"({"kind":"hello","version":1,"name":7,"id":"","key":"ab"})"),
             std::string(R"({"kind":"hello","version":1,"name":"","id":"","key":""})"),
             std::string(R"({"kind":"hello","version":1,"name":"","id":"XY","key":"ab"})"),
             std::string(R"({"kind":"hello","version":1,"name":"","key":"ab"})"),
             std::string(R"({"kind":"welcome","id":"ab"})"),
             std::string(R"({"kind":"welcome","id":"ab","members":{}})"),
             std::string(R"({"kind":"welcome","id":"ab","members":[7]})"),
             std::string(R"({"kind":"welcome","id":"ab","members":[{"id":"","name":""}]})"),
             std::string(R"({"kind":"welcome","id":"ab","returned":1,"members":[]})"),
             std::string(R"({"kind":"joined"})"),
             std::string(R"({"kind":"joined","member":{"id":"ab"}})"),
             std::string(R"({"kind":"left","id":""})"),
             std::string(R"({"kind":"left","id":"a b"})"),
             std::string(R"({"kind":"left","id":["a"]})"),
             R"({"kind":"left","id":")" + std::string(kLongestId + 1, 'a') + "\"}",
             std::string(R"({"kind":"settled","ids":"ab"})"),
             std::string(R"({"kind":"settled","ids":[7]})"),
             std::string(R"({"kind":"to","member":"ab"})"),
             std::string(R"({"kind":"to","member":"ab","payload":{}})"),
             std::string(R"({"kind":"from","payload":""})"),
             std::string(R"({"kind":"refused"})"),
             std::string(100'000, '['),
         })
        EXPECT_FALSE(ReadRoomMessage(line)) << line.substr(0, 100);
}

TEST(RoomMessage, NamesNoMoreMembersThanThereMayBe) {
    Welcome welcome{"a", false, {}};
    Settled settled;
    for (std::size_t count = 0; count < kMostAtHub; ++count) {
        welcome.members.push_back({std::to_string(count), "name"});
        settled.ids.push_back(std::to_string(count));
    }
    EXPECT_EQ(ReadBack(welcome), RoomMessage(welcome));
    EXPECT_EQ(ReadBack(settled), RoomMessage(settled));
    welcome.members.push_back({"f", "one more"});
    settled.ids.emplace_back("f");
    EXPECT_FALSE(ReadRoomMessage(WriteRoomMessage(welcome)));
    EXPECT_FALSE(ReadRoomMessage(WriteRoomMessage(settled)));
}

TEST(RoomMessage, CutsALongNameAtACharacter) {
    EXPECT_EQ(CutName(std::string(10'000, 'x')), std::string(kLongestName, 'x'));
    EXPECT_EQ(CutName(std::string(kLongestName, 'x')), std::string(kLongestName, 'x'));
    // Three bytes a character: 85 of them, and a byte to spare.
    std::string euros;
    for (int count = 0; count < 4000; ++count) euros += "\xE2\x82\xAC";
    EXPECT_EQ(CutName(euros), euros.substr(0, 255));
    EXPECT_EQ(CutName(std::string(1000, '\x80')).size(), 0U);
    const auto read =
        ReadRoomMessage(R"({"kind":"hello","version":1,"name":")" + euros + R"(","id":"","key":"ab"})");
    ASSERT_TRUE(read);
    EXPECT_EQ(std::get<Hello>(*read).name, euros.substr(0, 255));
    EXPECT_EQ(std::get<Hello>(ReadBack(Hello{kRoomVersion, euros, "", "ab"})).name, euros.substr(0, 255));
    EXPECT_EQ(std::get<Joined>(ReadBack(Joined{{"ab", euros}, false})).member.name, euros.substr(0, 255));
}

TEST(RoomMessage, ReplacesBytesThatAreNoText) {
    EXPECT_EQ(std::get<To>(ReadBack(To{"ab", "a\xFF\x62"})).payload, "a\xEF\xBF\xBD\x62");
}

TEST(RoomMessage, ReadsOnlyTheVersionOfAnotherHello) {
    for (const auto& [text, version] :
         {std::pair{"2", 2}, std::pair{"0", 0}, std::pair{"2147483647", 2147483647},
          std::pair{"-1", 2147483647}, std::pair{"4294967297", 2147483647},
          std::pair{"18446744073709551615", 2147483647}}) {
        const auto message =
            ReadRoomMessage(std::string(R"({"kind":"hello","name":{},"version":)") + text + "}");
        ASSERT_TRUE(message) << text;
        EXPECT_EQ(std::get<Hello>(*message).version, version) << text;
    }
}

TEST(RoomMessage, MakesAnIdOfEachKey) {
    std::set<std::string> ids;
    for (int key = 0; key < 1000; ++key) {
        const std::string id = MemberIdOf(std::to_string(key));
        EXPECT_TRUE(IsMemberId(id)) << id;
        EXPECT_EQ(id, MemberIdOf(std::to_string(key)));
        ids.insert(id);
    }
    EXPECT_EQ(ids.size(), 1000U);
}

TEST(RoomMessage, KnowsAnId) {
    EXPECT_TRUE(IsMemberId("0123456789abcdef-"));
    EXPECT_TRUE(IsMemberId(std::string(kLongestId, 'a')));
    for (const char* text : {"", "g", "A", "a b", "a\n", "../a"}) EXPECT_FALSE(IsMemberId(text)) << text;
    EXPECT_FALSE(IsMemberId(std::string(kLongestId + 1, 'a')));
    EXPECT_FALSE(IsMemberId(std::string_view("a\0", 2)));
}

}  // namespace
}  // namespace Corvanta::Engine
