// What is read out of a server's texts, and what is refused.
#include "engine/janus/JanusMessage.h"

#include <gtest/gtest.h>

#include <string>

#include "engine/janus/FeedFacts.h"
#include "engine/janus/JanusTransport.h"
#include "engine/peer/PeerDescription.h"

namespace Corvanta::Engine {
namespace {

using Kind = JanusMessage::Kind;

JanusMessage Read(const std::string& text) {
    const auto message = ReadJanusMessage(text);
    EXPECT_TRUE(message) << text;
    return message.value_or(JanusMessage{});
}

JanusRoomWords ReadWords(const std::string& data) {
    const auto message =
        Read(R"({"janus":"event","sender":7,"plugindata":{"plugin":"p","data":)" + data + "}}");
    EXPECT_TRUE(message.room);
    return message.room.value_or(JanusRoomWords{});
}

TEST(JanusMessage, ReadsAnswersWithTheirIds) {
    const auto message = Read(R"({"janus":"success","transaction":"12","data":{"id":4503599627370497}})");
    EXPECT_EQ(message.kind, Kind::Success);
    EXPECT_EQ(message.transaction, "12");
    EXPECT_EQ(message.id, 4503599627370497U);
    EXPECT_FALSE(message.room);
    EXPECT_FALSE(message.description);
}

TEST(JanusMessage, ReadsErrorsOfTheServerAndOfItsRooms) {
    const auto server = Read(R"({"janus":"error","transaction":"1","error":{"code":403,"reason":"no"}})");
    EXPECT_EQ(server.kind, Kind::Error);
    EXPECT_EQ(server.errorCode, JanusErrors::kRefusedToken);
    EXPECT_EQ(server.reason, "no");
    const auto room = ReadWords(R"({"videoroom":"event","error_code":426,"error":"No such room"})");
    EXPECT_EQ(room.errorCode, JanusErrors::kNoSuchRoom);
    EXPECT_EQ(room.error, "No such room");
}

TEST(JanusMessage, ReadsWhoPublishes) {
    const auto joined = ReadWords(R"({"videoroom":"joined","id":"me","publishers":[
        {"id":"a-camera","display":"A","streams":[]},{"id":17},{"display":"no id"},5]})");
    EXPECT_EQ(joined.kind, "joined");
    EXPECT_EQ(joined.id, "me");
    EXPECT_EQ(joined.publishers, (std::vector<JanusFeed>{{"a-camera", "A"}, {"17", ""}}));
    EXPECT_FALSE(joined.participants);
    const auto listed = ReadWords(R"({"videoroom":"participants","participants":[
        {"id":"a","display":"A","publisher":true},{"id":"b","publisher":false},{"id":"c"}]})");
    ASSERT_TRUE(listed.participants);
    EXPECT_EQ(*listed.participants, (std::vector<JanusFeed>{{"a", "A"}}));
}

TEST(JanusMessage, ReadsWhoGoes) {
    EXPECT_EQ(ReadWords(R"({"videoroom":"event","leaving":"a"})").leaving, "a");
    EXPECT_EQ(ReadWords(R"({"videoroom":"event","unpublished":"a"})").unpublished, "a");
    EXPECT_EQ(ReadWords(R"({"videoroom":"event","kicked":"a"})").kicked, "a");
    const auto own = ReadWords(R"({"videoroom":"event","leaving":"ok","reason":"kicked"})");
    EXPECT_EQ(own.leaving, "ok");
    EXPECT_EQ(own.reason, "kicked");
}

TEST(JanusMessage, ReadsOffersAndCandidates) {
    const auto offer = Read(R"({"janus":"event","sender":7,"plugindata":{"data":{"videoroom":"attached",
        "streams":[{"mid":"0","type":"video"},{"type":"audio"}]}},"jsep":{"type":"offer","sdp":"v=0"}})");
    EXPECT_EQ(offer.handle, 7U);
    ASSERT_TRUE(offer.description);
    EXPECT_TRUE(offer.description->isOffer);
    EXPECT_EQ(offer.description->sdp, "v=0");
    EXPECT_EQ(offer.room->streams, (std::vector<JanusStream>{{"0", "video"}}));
    const auto trickle =
        Read(R"({"janus":"trickle","sender":7,"candidate":{"sdpMLineIndex":1,"candidate":"c"}})");
    ASSERT_TRUE(trickle.candidate);
    EXPECT_EQ(trickle.candidate->mediaLine, 1U);
    EXPECT_EQ(trickle.candidate->text, "c");
}

TEST(JanusMessage, RefusesWhatIsNone) {
    for (const std::string text : {"", "{", "[]", "7", "{}", R"({"janus":7})", R"({"janus":""})", "\xff"}) {
        EXPECT_FALSE(ReadJanusMessage(text)) << text;
    }
    std::string tooLong = R"({"janus":"event","reason":")";
    tooLong.append(kLongestServerText, 'x');
    EXPECT_FALSE(ReadJanusMessage(tooLong + "\"}"));
    // Neither does it take long nor much.
    EXPECT_FALSE(ReadJanusMessage(std::string(kLongestServerText, '[')));
    EXPECT_TRUE(ReadJanusMessage(R"({"janus":"event","x":)" + std::string(100'000, '[') +
                                 std::string(100'000, ']') + "}"));
}

TEST(JanusMessage, LeavesOutWhatIsBeyondItsBounds) {
    const std::string longId(kLongestFeedId + 1, 'i');
    EXPECT_EQ(ReadWords(R"({"videoroom":"event","leaving":")" + longId + "\"}").leaving, "");
    std::string many = R"({"videoroom":"joined","publishers":[)";
    for (std::size_t index = 0; index < kMostFeeds + 50; ++index) many += R"({"id":"a"},)";
    EXPECT_EQ(ReadWords(many + R"({"id":"z"}]})").publishers.size(), kMostFeeds);
    const auto reason =
        Read(R"({"janus":"hangup","reason":")" + std::string(kLongestReason - 1, 'x') + "\u00e9\"}");
    EXPECT_EQ(reason.reason, std::string(kLongestReason - 1, 'x'));
    const auto offer = Read(R"({"janus":"event","jsep":{"type":"offer","sdp":")" +
                            std::string(kMaxDescriptionBytes + 1, 'x') + "\"}}");
    EXPECT_FALSE(offer.description);
    EXPECT_FALSE(Read(R"({"janus":"trickle","candidate":{"sdpMLineIndex":99,"candidate":"c"}})").candidate);
    EXPECT_EQ(Read(R"({"janus":"success","data":{"id":-1}})").id, 0U);
}

TEST(JanusMessage, HasTheServerBeginTheHandshake) {
    EXPECT_EQ(WithServerBeginning("m=a\r\na=setup:actpass\r\nm=b\r\na=setup:actpass\r\n"),
              "m=a\r\na=setup:active\r\nm=b\r\na=setup:active\r\n");
    EXPECT_EQ(WithServerBeginning("a=setup:active"), "a=setup:active");
}

TEST(FeedFacts, ComeBackAsTheyWereWritten) {
    const FeedFacts facts{"J\u00f6rg \"x\"", "ab-12", StreamType::Screenshare, true};
    EXPECT_EQ(ReadFeedFacts("ab-12-screen", WriteFeedFacts(facts)), facts);
}

TEST(FeedFacts, BelongToTheFeedThatTheyNameAlone) {
    const std::string text = WriteFeedFacts({"one", "ab-12", StreamType::Camera, true});
    EXPECT_TRUE(ReadFeedFacts("ab-12-camera", text));
    EXPECT_FALSE(ReadFeedFacts("ab-12-screen", text));
    EXPECT_FALSE(ReadFeedFacts("cd-34-camera", text));
    EXPECT_FALSE(ReadFeedFacts("x-camera", R"({"corvanta":1,"member":"x","stream":"camera"})"));
    EXPECT_FALSE(ReadFeedFacts("ab-", R"({"corvanta":1,"member":"ab","stream":""})"));
}

TEST(FeedFacts, OfAnotherVersionAreItsNameAlone) {
    for (const char* version : {"2", "0", "\"1\"", "null", "[]"}) {
        std::string text = R"({"corvanta":)";
        text += version;
        text += R"(,"name":"Ada","member":"ab12","stream":"camera"})";
        const auto facts = ReadFeedFacts("ab12-camera", text);
        ASSERT_TRUE(facts) << version;
        EXPECT_EQ(facts->name, "Ada");
        EXPECT_EQ(facts->memberId, "ab12-camera");
        EXPECT_FALSE(facts->isOurs);
    }
}

TEST(FeedFacts, OfAForeignProgramAreItsName) {
    const auto facts = ReadFeedFacts("1234", "Somebody");
    ASSERT_TRUE(facts);
    EXPECT_EQ(*facts, (FeedFacts{"Somebody", "1234", StreamType::Camera, false}));
    EXPECT_EQ(ReadFeedFacts("1234", "")->name, "1234");
    EXPECT_EQ(ReadFeedFacts("1234", std::string(10'000, 'n'))->name.size(), 256U);
}

TEST(ServerRoomId, IsThePlainNameOrADigest) {
    EXPECT_EQ(ServerRoomId("review-2.b_A"), "review-2.b_A");
    const std::string digest = ServerRoomId("Sch\u00f6n");
    EXPECT_EQ(digest.size(), 69U);
    EXPECT_NE(digest, ServerRoomId("Schon "));
    EXPECT_EQ(digest, ServerRoomId("Sch\u00f6n"));
    EXPECT_EQ(ServerRoomId(std::string("\0\xff", 2)).size(), 69U);
    EXPECT_EQ(ServerRoomId(std::string(65, 'a')).size(), 69U);
}

}  // namespace
}  // namespace Corvanta::Engine
