// Notes, profiles and sessions of recordings over the service's socket.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include "engine/roomservice/NotesTable.h"
#include "engine/roomservice/RecordingTable.h"
#include "engine/roomservice/RoomService.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/RawConnection.h"
#include "tests/engine/TemporaryFolder.h"
#include "tests/engine/roomservice/ServingThread.h"

namespace Corvanta::Engine {
namespace {

using std::chrono::milliseconds;

class ServiceRequests : public ::testing::Test {
protected:
    ServiceRequests() : socket(folder.File("socket")) {}

    [[nodiscard]] RoomServer::Options OptionsHere() const {
        return {.socket = socket, .database = folder.File("database")};
    }
    [[nodiscard]] NotesClient Notes(const std::string& room) const { return {{.socket = socket}, room}; }
    [[nodiscard]] std::optional<HttpAnswer> Ask(const std::string& method, const std::string& target,
                                                const std::string& body = {}) const {
        return SendRequest(socket, {method, target, body}, kAnswerPatience);
    }
    [[nodiscard]] unsigned Status(const std::string& method, const std::string& target,
                                  const std::string& body = {}) const {
        return StatusOf(Ask(method, target, body));
    }

    TemporaryFolder folder;
    const std::filesystem::path socket;
};

TEST_F(ServiceRequests, KeepsNotesThatWereWrittenOnWhatIsThere) {
    const ServingThread serving(OptionsHere());
    const NotesClient notes = Notes("review");
    EXPECT_EQ(notes.Get(), NotesText{});
    const auto written = notes.Put({.revision = 0, .text = "one\n\"two\" \xE2\x82\xAC"});
    ASSERT_EQ(StatusOf(written), 200U);
    EXPECT_EQ(ReadNotes(written->body)->revision, 1);
    EXPECT_EQ(notes.Get(), (NotesText{.revision = 1, .text = "one\n\"two\" \xE2\x82\xAC"}));
    EXPECT_EQ(notes.Put(1, ""), 200U);
    EXPECT_EQ(notes.Get(), (NotesText{.revision = 2, .text = ""}));
    EXPECT_EQ(Notes("other").Get(), NotesText{});
}

TEST_F(ServiceRequests, TellsOfAConflictWhatIsThere) {
    const ServingThread serving(OptionsHere());
    const NotesClient one = Notes("review");
    const NotesClient other = Notes("review");
    ASSERT_EQ(one.Put(0, "mine"), 200U);
    for (const std::int64_t revision : {0, 2, 1000}) {
        const auto refused = other.Put({.revision = revision, .text = "theirs"});
        ASSERT_EQ(StatusOf(refused), 409U);
        EXPECT_EQ(ReadNotes(refused->body), (NotesText{.revision = 1, .text = "mine"}));
    }
    EXPECT_EQ(one.Get(), (NotesText{.revision = 1, .text = "mine"}));
    EXPECT_EQ(other.Put(1, "both"), 200U);
}

TEST_F(ServiceRequests, LosesNoWriteOfEightClients) {
    const ServingThread serving(OptionsHere());
    std::vector<std::thread> clients;
    for (int client = 0; client < 8; ++client) {
        clients.emplace_back([&, client] {
            const NotesClient notes = Notes("review");
            const std::string line = "client " + std::to_string(client) + "\n";
            for (int round = 0; round < 10;) {
                auto there = notes.Get();
                ASSERT_TRUE(there.has_value());
                there->text += line;
                const unsigned status = StatusOf(notes.Put(*there));
                ASSERT_TRUE(status == 200 || status == 409) << status;
                if (status == 200) ++round;
            }
        });
    }
    for (std::thread& client : clients) client.join();
    const auto notes = Notes("review").Get();
    ASSERT_TRUE(notes.has_value());
    EXPECT_EQ(notes->revision, 80);
    EXPECT_EQ(notes->text.size(), 80 * std::string("client 0\n").size());
}

TEST_F(ServiceRequests, TakesRoomsOfAnyName) {
    const ServingThread serving(OptionsHere());
    for (const std::string& room :
         {std::string(), std::string("a/b?c&d=e#f %41+"), std::string("\xFF\0\xFE", 3),
          std::string("'; DROP TABLE notes; --"), std::string(kLongestRoomName, '\xE2')}) {
        EXPECT_EQ(Notes(room).Put(0, "of " + Escape(room)), 200U) << room;
        EXPECT_EQ(Notes(room).Get()->text, "of " + Escape(room)) << room;
    }
    EXPECT_EQ(Notes(std::string(kLongestRoomName + 1, 'x')).Put(0, ""), 400U);
}

TEST_F(ServiceRequests, BoundsTheNotes) {
    const ServingThread serving(OptionsHere());
    const NotesClient notes = Notes("review");
    // Escaped it is six times as long.
    const std::string longest(kLongestNotes, '\x01');
    EXPECT_EQ(notes.Put(0, longest), 200U);
    EXPECT_EQ(notes.Get()->text, longest);
    EXPECT_EQ(notes.Put(1, std::string(kLongestNotes + 1, 'x')), 413U);
    EXPECT_EQ(Status("PUT", "/notes?room=review", std::string(kLargestNotesMessage + 1, ' ')), 413U);
    EXPECT_EQ(notes.Put(1, "short"), 200U);
}

TEST_F(ServiceRequests, TellsWhoeverWaitsWhatAnotherHasWritten) {
    const ServingThread serving(OptionsHere());
    ASSERT_EQ(Notes("review").Put(0, "one"), 200U);
    EXPECT_EQ(StatusOf(Notes("review").GetAfter(0)), 200U) << "there is a newer one already";
    auto waiting = std::async(std::launch::async, [this] { return Notes("review").GetAfter(1); });
    auto elsewhere =
        std::async(std::launch::async, [this] { return Notes("other").GetAfter(0, milliseconds(500)); });
    EXPECT_EQ(elsewhere.wait_for(milliseconds(100)), std::future_status::timeout);
    EXPECT_EQ(waiting.wait_for(milliseconds(100)), std::future_status::timeout);
    ASSERT_EQ(Notes("review").Put(1, "two"), 200U);
    const auto told = waiting.get();
    ASSERT_EQ(StatusOf(told), 200U);
    EXPECT_EQ(ReadNotes(told->body), (NotesText{.revision = 2, .text = "two"}));
    EXPECT_EQ(elsewhere.get(), std::nullopt) << "nobody has written there";
    // One that another database had.
    EXPECT_EQ(StatusOf(Notes("review").GetAfter(77)), 200U);
}

TEST_F(ServiceRequests, EndsAWaitWithoutNewsWith204) {
    RoomServer::Options options = OptionsHere();
    options.longestWait = milliseconds(50);
    const ServingThread serving(options);
    EXPECT_EQ(StatusOf(Notes("review").GetAfter(0)), 204U);
    EXPECT_EQ(Notes("review").Put(0, "one"), 200U);
    EXPECT_EQ(StatusOf(Notes("review").GetAfter(1)), 204U);
}

TEST_F(ServiceRequests, ForgetsWhoeverWaitsNoMore) {
    ServingThread serving(OptionsHere());
    for (int round = 0; round < 10; ++round) {
        const RawConnection impatient(socket);
        EXPECT_TRUE(impatient.Send("GET /notes?room=review&after=0 HTTP/1.1\r\nHost: a\r\n\r\n"));
    }
    EXPECT_EQ(StatusOf(Notes("review").GetAfter(0, milliseconds(50))), 0U);
    EXPECT_EQ(Notes("review").Put(0, "one"), 200U);
    EXPECT_TRUE(Eventually([&] { return serving.Connections() == 0; }));
}

TEST_F(ServiceRequests, EndsWhileSomebodyWaits) {
    ServingThread serving(OptionsHere());
    auto waiting = std::async(std::launch::async, [this] { return Notes("review").GetAfter(0); });
    EXPECT_TRUE(Eventually([&] { return serving.Connections() == 1; }));
    serving.Stop();
    EXPECT_EQ(waiting.get(), std::nullopt);
}

TEST_F(ServiceRequests, KnowsWhoTheUsersAre) {
    const ServingThread serving(OptionsHere());
    const Profile profile{.id = "a b", .email = "me@example.org", .displayName = "Me"};
    EXPECT_EQ(Status("GET", "/profile?id=a%20b"), 404U);
    EXPECT_EQ(Status("PUT", "/profile", WriteProfile(profile)), 204U);
    EXPECT_EQ(ReadProfile(Ask("GET", "/profile?id=a%20b")->body), profile);
    EXPECT_EQ(Status("PUT", "/profile", WriteProfile({.id = "a b", .email = "", .displayName = "Myself"})),
              204U);
    EXPECT_EQ(ReadProfile(Ask("GET", "/profile?id=a%20b")->body)->displayName, "Myself");
}

TEST_F(ServiceRequests, FilesTheSessionsOfRecordings) {
    const ServingThread serving(OptionsHere());
    const auto session = [](const std::string& id) {
        return WriteSession({.id = id, .name = "cut " + id, .begun = "2024-03-01T12:34:56Z", .ended = {}});
    };
    EXPECT_EQ(Ask("GET", "/sessions?room=review")->body, R"({"sessions":[]})");
    EXPECT_EQ(Status("POST", "/sessions?room=review", session("1")), 204U);
    EXPECT_EQ(Status("POST", "/sessions?room=review", session("2")), 204U);
    EXPECT_EQ(Status("POST", "/sessions?room=other", session("3")), 204U);
    EXPECT_EQ(Status("POST", "/sessions?room=other", session("1")), 409U) << "an id is there once";
    EXPECT_EQ(Status("PUT", "/sessions?id=1", WriteEnd("2024-03-01T13:00:00Z")), 204U);
    EXPECT_EQ(Status("PUT", "/sessions?id=9", WriteEnd("2024-03-01T13:00:00Z")), 404U);
    EXPECT_EQ(Status("PUT", "/sessions?room=review", WriteEnd("2024-03-01T14:00:00Z")), 204U);
    EXPECT_EQ(Status("PUT", "/sessions?room=review", WriteEnd("2024-03-01T15:00:00Z")), 404U)
        << "none is open any more";
    EXPECT_EQ(Ask("GET", "/sessions?room=review")->body,
              R"({"sessions":[{"begun":"2024-03-01T12:34:56Z","ended":"2024-03-01T14:00:00Z","id":"2",)"
              R"("name":"cut 2"},{"begun":"2024-03-01T12:34:56Z","ended":"2024-03-01T13:00:00Z","id":"1",)"
              R"("name":"cut 1"}]})");
    EXPECT_EQ(Status("DELETE", "/sessions?id=2"), 204U);
    EXPECT_EQ(Status("DELETE", "/sessions?id=2"), 404U);
    EXPECT_EQ(Ask("GET", "/sessions?room=other")->body,
              R"({"sessions":[{"begun":"2024-03-01T12:34:56Z","id":"3","name":"cut 3"}]})");
}

TEST_F(ServiceRequests, HasAnAnswerToEveryBadRequest) {
    const ServingThread serving(OptionsHere());
    for (const char* const target :
         {"/notes", "/notes?room", "/notes?room=a&after=x", "/notes?room=a&after=-1", "/profile",
          "/profile?name=a", "/sessions", "/sessions?id=3"})
        EXPECT_EQ(Status("GET", target), 400U) << target;
    for (const char* const body : {"", "{", "[]", "nonsense", R"({"revision":0})",
                                   R"({"revision":"0","text":""})", "{\"revision\":0,\"text\":\"\xFF\"}"})
        EXPECT_EQ(Status("PUT", "/notes?room=a", body), 400U) << body;
    EXPECT_EQ(Status("PUT", "/notes?room=a", std::string(5'000'000, '[')), 400U);
    EXPECT_EQ(Status("PUT", "/notes", R"({"revision":0,"text":""})"), 400U);
    EXPECT_EQ(Status("PUT", "/profile", R"({"id":3})"), 400U);
    EXPECT_EQ(Status("POST", "/sessions?room=a", R"({"id":"1","name":"a","begun":"today"})"), 400U);
    EXPECT_EQ(Status("PUT", "/sessions", WriteEnd("2024-03-01T13:00:00Z")), 400U);
    EXPECT_EQ(Status("DELETE", "/sessions?room=a"), 400U);
    for (const char* const target : {"/", "/note", "/notes/", "/notes/a?room=a", "/%6e"})
        EXPECT_EQ(Status("GET", target), 404U) << target;
    EXPECT_EQ(Status("DELETE", "/notes?room=a"), 405U);
    EXPECT_EQ(Status("POST", "/notes?room=a", R"({"revision":0,"text":""})"), 405U);
    EXPECT_EQ(Status("PATCH", "/profile"), 405U);
    EXPECT_EQ(Status("OPTIONS", "/sessions"), 405U);
    EXPECT_EQ(Status("PUT", "/connectivity", "{}"), 405U);
    const RawConnection escaping(socket);
    escaping.Send("GET /notes?room=%G0 HTTP/1.1\r\nHost: a\r\n\r\n");
    EXPECT_THAT(escaping.Receive(), ::testing::StartsWith("HTTP/1.1 400 "));
    const RawConnection asking(socket);
    asking.Send("DELETE /notes?room=a HTTP/1.1\r\nHost: a\r\n\r\n");
    EXPECT_THAT(asking.Receive(), ::testing::HasSubstr("Allow: GET, PUT\r\n"));
    EXPECT_EQ(Notes("a").Get(), NotesText{});
}

TEST_F(ServiceRequests, TellsAClientThatAsksTooOften) {
    RoomServer::Options options = OptionsHere();
    options.rates = {.requestsPerSecond = 0.001, .burst = 5};
    const ServingThread serving(options);
    for (int count = 0; count < 5; ++count) EXPECT_EQ(Status("GET", "/notes?room=a"), 200U);
    EXPECT_EQ(Status("GET", "/notes?room=a"), 429U);
    EXPECT_EQ(Status("PUT", "/notes?room=a", std::string(1'000'000, 'x')), 429U);
}

TEST_F(ServiceRequests, HasPlaceForAsManyRoomsAsItSays) {
    const auto database = ServiceDatabase::Open(folder.File("database"));
    ASSERT_NE(database, nullptr);
    NotesTable notes(*database);
    for (int room = 0; room < NotesTable::kMostRooms; ++room) {
        NotesText text{.revision = 0, .text = "text"};
        ASSERT_EQ(notes.Write(std::to_string(room), text), NotesTable::Written::Yes);
    }
    const ServingThread serving(OptionsHere());
    EXPECT_EQ(Notes("one more").Put(0, "text"), 507U);
    EXPECT_EQ(Notes("7").Put(1, "other"), 200U) << "those that are there go on";
}

}  // namespace
}  // namespace Corvanta::Engine
