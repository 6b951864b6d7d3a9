#include "engine/roomservice/ServiceMessage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace Corvanta::Engine {
namespace {

using ::testing::Pair;
using ::testing::UnorderedElementsAre;

TEST(ServiceMessage, ReadsWhatItWrites) {
    const NotesText notes{.revision = 7, .text = "Zeile\n\"zwei\" \xE2\x82\xAC\\"};
    EXPECT_EQ(ReadNotes(WriteNotes(notes)), notes);
    const Profile profile{.id = "id", .email = "me@example.org", .displayName = "Me"};
    EXPECT_EQ(ReadProfile(WriteProfile(profile)), profile);
    RecordingSession session{.id = "1", .name = "cut", .begun = "2024-03-01T12:34:56Z", .ended = {}};
    EXPECT_EQ(ReadSession(WriteSession(session)), session);
    session.ended = "2024-03-01T13:00:00Z";
    EXPECT_EQ(ReadSession(WriteSession(session)), session);
    EXPECT_EQ(ReadEnd(WriteEnd("2024-03-01T13:00:00Z")), "2024-03-01T13:00:00Z");
}

TEST(ServiceMessage, RefusesNotesThatAreNone) {
    for (const char* const json :
         {"", "{", "[]", "3", "null", "{}", R"({"revision":1})", R"({"text":"a"})",
          R"({"revision":-1,"text":"a"})", R"({"revision":1.5,"text":"a"})", R"({"revision":"1","text":"a"})",
          R"({"revision":1,"text":2})", R"({"revision":1,"text":["a"]})", R"({"revision":1,"text":null})",
          R"({"revision":9223372036854775807,"text":"a"})", R"({"revision":18446744073709551616,"text":"a"})",
          "{\"revision\":1,\"text\":\"\xFF\"}", R"({"revision":1,"text":"a"}{)"})
        EXPECT_EQ(ReadNotes(json), std::nullopt) << json;
    EXPECT_EQ(ReadNotes(std::string(1'000'000, '[')), std::nullopt);
}

TEST(ServiceMessage, BoundsTheNotes) {
    NotesText notes{.revision = 1, .text = std::string(kLongestNotes, '\x01')};
    EXPECT_EQ(ReadNotes(WriteNotes(notes)), notes) << "every byte of it is escaped";
    EXPECT_FALSE(AreTooLongNotes(WriteNotes(notes)));
    notes.text = std::string(kLongestNotes + 1, 'x');
    EXPECT_EQ(ReadNotes(WriteNotes(notes)), std::nullopt);
    EXPECT_TRUE(AreTooLongNotes(WriteNotes(notes)));
    EXPECT_FALSE(AreTooLongNotes("nonsense"));
}

TEST(ServiceMessage, RefusesProfilesAndSessionsThatAreNone) {
    const std::string longText(kLongestServiceText + 1, 'x');
    EXPECT_EQ(ReadProfile(R"({"id":"","email":"a","displayName":"b"})"), std::nullopt);
    EXPECT_EQ(ReadProfile(R"({"id":"a","email":1,"displayName":"b"})"), std::nullopt);
    EXPECT_EQ(ReadProfile(WriteProfile({.id = "a", .email = "b", .displayName = longText})), std::nullopt);
    for (const char* const begun : {"", "2024-03-01", "2024-03-01 12:34:56Z", "2024-03-01T12:34:5xZ",
                                    "2024-03-01T12:34:56Z ", "2024-03-01T12:34:56+"}) {
        EXPECT_EQ(ReadSession(WriteSession({.id = "1", .name = "a", .begun = begun, .ended = {}})),
                  std::nullopt)
            << begun;
        EXPECT_EQ(ReadEnd(WriteEnd(begun)), std::nullopt) << begun;
    }
    EXPECT_EQ(ReadSession(R"({"id":"1","name":"a","begun":"2024-03-01T12:34:56Z","ended":null})"),
              std::nullopt);
    EXPECT_EQ(
        ReadSession(WriteSession({.id = "", .name = "a", .begun = "2024-03-01T12:34:56Z", .ended = {}})),
        std::nullopt);
}

TEST(ServiceMessage, ReadsTheParametersOfARequest) {
    EXPECT_THAT(
        *ReadQuery("room=a%20b+c&after=3&empty=&room=other&alone&&x=1=2"),
        UnorderedElementsAre(Pair("room", "a b c"), Pair("after", "3"), Pair("empty", ""), Pair("x", "1=2")));
    EXPECT_EQ((*ReadQuery("room=%00%fF"))["room"], std::string("\0\xFF", 2));
    EXPECT_TRUE(ReadQuery("")->empty());
    for (const char* const query : {"a=%", "a=%2", "a=%xx", "%=1", "a=1&b=2&c=3&d=4&e=5&f=6&g=7&h=8&i=9"})
        EXPECT_EQ(ReadQuery(query), std::nullopt) << query;
}

TEST(ServiceMessage, ReadsRevisionsAlone) {
    EXPECT_EQ(ReadRevision("0"), 0);
    EXPECT_EQ(ReadRevision("9223372036854775807"), INT64_MAX);
    for (const char* const text : {"", "-1", "+1", " 1", "1 ", "1x", "9223372036854775808"})
        EXPECT_EQ(ReadRevision(text), std::nullopt) << text;
}

}  // namespace
}  // namespace Corvanta::Engine
