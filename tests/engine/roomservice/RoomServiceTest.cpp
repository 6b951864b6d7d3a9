// The room service over its socket: what it keeps, whom it serves, what it refuses.
#include "engine/roomservice/RoomService.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "engine/restful/HttpClient.h"
#include "engine/roomservice/ConnectivityLog.h"
#include "engine/roomservice/ConnectivityReport.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/RawConnection.h"
#include "tests/engine/TemporaryFolder.h"

namespace Corvanta::Engine {
namespace {

using ::testing::StartsWith;

ConnectivityReport ReportOf(const std::string& streamId, int32_t jitter = 0) {
    ConnectivityReport report{.sessionName = "session", .figures = {}};
    report.figures.streamId = streamId;
    report.figures.jitter = jitter;
    return report;
}

class RoomServiceTest : public ::testing::Test {
protected:
    RoomServiceTest() : place(RoomServiceIn(folder.path)) {
        std::filesystem::permissions(folder.path, std::filesystem::perms::owner_all);
    }

    [[nodiscard]] unsigned Post(const std::string& body) const {
        const auto answer = SendRequest(place.socket, {"POST", "/connectivity", body});
        return answer ? answer->status : 0;
    }
    [[nodiscard]] unsigned Post(const ConnectivityReport& report) const { return Post(ToJson(report)); }
    [[nodiscard]] std::optional<HttpAnswer> Get(const std::string& streamId) const {
        return SendRequest(place.socket,
                           {"GET", "/connectivity?session=session&stream=" + Escape(streamId), {}});
    }
    [[nodiscard]] unsigned Status(const std::string& method, const std::string& target) const {
        const auto answer = SendRequest(place.socket, {method, target, {}});
        return answer ? answer->status : 0;
    }
    // The jitter of the stream's last report, or -1.
    [[nodiscard]] int Jitter(const std::string& streamId) const {
        const auto answer = Get(streamId);
        const auto report = answer && answer->status == 200 ? ParseReport(answer->body) : std::nullopt;
        return report ? report->figures.jitter : -1;
    }

    TemporaryFolder folder;
    RoomServicePlace place;
};

TEST_F(RoomServiceTest, GivesBackTheLastReportOfAStream) {
    RoomService service(place);
    service.Start();
    ASSERT_TRUE(service.IsServing());
    EXPECT_EQ(Get("you")->status, 404U);
    EXPECT_EQ(Post(ReportOf("you", 1)), 204U);
    EXPECT_EQ(Post(ReportOf("other", 5)), 204U);
    EXPECT_EQ(Post(ReportOf("you", 2)), 204U);
    EXPECT_EQ(Jitter("you"), 2);
    EXPECT_EQ(Jitter("other"), 5);
    EXPECT_EQ(SendRequest(place.socket, {"GET", "/connectivity?session=else&stream=you", {}})->status, 404U);
}

TEST_F(RoomServiceTest, TakesAnyNames) {
    RoomService service(place);
    service.Start();
    for (const std::string& name :
         {std::string(), std::string("a/b?c&d=e#f %41+"), std::string("\xE2\x82\xAC"),
          std::string("'; DROP TABLE connectivity; --"), std::string(1024, 'x')}) {
        EXPECT_EQ(Post(ReportOf(name, 9)), 204U) << name;
        EXPECT_EQ(Jitter(name), 9) << name;
    }
}

TEST_F(RoomServiceTest, IsOpenToItsUserAlone) {
    RoomService service(place);
    service.Start();
    for (const auto& [path, mode] : {std::pair{place.socket, 0600U}, std::pair{folder.path, 0700U}}) {
        struct stat found {};
        ASSERT_EQ(::stat(path.c_str(), &found), 0);
        EXPECT_EQ(found.st_mode & 0777U, mode) << path;
    }
}

TEST_F(RoomServiceTest, DoesNotServeFromAFolderThatOthersCanEnter) {
    std::filesystem::permissions(folder.path, std::filesystem::perms::group_read,
                                 std::filesystem::perm_options::add);
    RoomService service(place);
    service.Start();
    EXPECT_FALSE(service.IsServing());
    EXPECT_FALSE(std::filesystem::exists(place.socket));
}

TEST_F(RoomServiceTest, DoesNotFollowALinkInPlaceOfItsFolder) {
    const auto link = folder.path / "link";
    std::filesystem::create_directory_symlink("/tmp", link);
    RoomService service(RoomServiceIn(link));
    service.Start();
    EXPECT_FALSE(service.IsServing());
}

TEST_F(RoomServiceTest, LivesWithoutAFolder) {
    RoomService service(RoomServiceIn("/nowhere/at/all"));
    service.Start();
    EXPECT_FALSE(service.IsServing());
    RoomService longName(RoomServiceIn(folder.path / std::string(150, 'x')));
    longName.Start();
    EXPECT_FALSE(longName.IsServing());
}

TEST_F(RoomServiceTest, AnswersNonsenseWith400) {
    RoomService service(place);
    service.Start();
    const std::string good = ToJson(ReportOf("you", 3));
    for (const std::string& body :
         {std::string("{"), std::string("nonsense"), std::string("[]"), std::string("{}"),
          std::string("\xFF\0", 2), good.substr(0, good.size() - 1), good + good, std::string(50'000, '[')})
        EXPECT_EQ(Post(body), 400U) << body.substr(0, 40);
    EXPECT_EQ(Post(""), 400U);
    EXPECT_EQ(Status("GET", "/connectivity"), 400U);
    EXPECT_EQ(Status("GET", "/connectivity?stream=a"), 400U);
    EXPECT_EQ(Status("GET", "/connectivity?session&stream"), 400U);
    EXPECT_EQ(Status("GET", "/connectivity/more?session=a&stream=b"), 404U);
    EXPECT_EQ(Status("GET", "/"), 404U);
    EXPECT_EQ(Status("DELETE", "/connectivity?session=a&stream=b"), 405U);
    EXPECT_EQ(Post(good), 204U);
    EXPECT_EQ(Jitter("you"), 3);
}

TEST_F(RoomServiceTest, RefusesABodyThatIsTooLarge) {
    RoomService service(place);
    service.Start();
    EXPECT_EQ(Post(std::string(kLargestReport, ' ')), 400U);
    EXPECT_EQ(Post(std::string(kLargestReport + 1, ' ')), 413U);
    EXPECT_EQ(Post(std::string(500'000, 'x')), 413U);
    EXPECT_EQ(Post(ReportOf("you")), 204U);
}

TEST_F(RoomServiceTest, StopsListeningToABodyWithoutEnd) {
    RoomService service(place);
    service.Start();
    const RawConnection connection(place.socket);
    connection.Send("POST /connectivity HTTP/1.1\r\nHost: a\r\nTransfer-Encoding: chunked\r\n\r\n");
    const std::string chunk = "8000\r\n" + std::string(0x8000, 'x') + "\r\n";
    bool isRefused = false;
    for (int count = 0; count < 10'000 && !isRefused; ++count) isRefused = !connection.Send(chunk);
    EXPECT_TRUE(isRefused) << "300 MB were taken";
    EXPECT_EQ(Post(ReportOf("you")), 204U);
}

TEST_F(RoomServiceTest, SurvivesWhatIsNoHttp) {
    RoomService service(place);
    service.Start();
    for (const std::string& bytes :
         {std::string("\r\n\r\n\r\n"), std::string(1000, '\0'), std::string("GET\r\n\r\n"),
          std::string("GET /connectivity HTTP/9.9\r\n\r\n"),
          std::string("POST /connectivity HTTP/1.1\r\n\r\n"),
          std::string("POST /connectivity HTTP/1.1\r\nContent-Length: -5\r\n\r\n{}"),
          std::string(300'000, 'x')}) {
        const RawConnection connection(place.socket);
        connection.Send(bytes);
    }
    const RawConnection silent(place.socket);
    EXPECT_EQ(Post(ReportOf("you", 4)), 204U);
    EXPECT_EQ(Jitter("you"), 4);
}

TEST_F(RoomServiceTest, ServesEightClientsAtATime) {
    RoomService service(place);
    service.Start();
    constexpr int kRounds = 25;
    std::atomic<int> failures = 0;
    std::vector<std::thread> clients;
    for (int client = 0; client < 8; ++client) {
        clients.emplace_back([&, client] {
            const std::string stream = "stream-" + std::to_string(client);
            for (int round = 1; round <= kRounds; ++round) {
                if (Post(ReportOf(stream, round)) != 204U) ++failures;
                if (Jitter(stream) != round) ++failures;
            }
        });
    }
    for (std::thread& client : clients) client.join();
    EXPECT_EQ(failures, 0);
}

TEST_F(RoomServiceTest, IsReplacedByAnotherWhenItStops) {
    auto first = std::make_unique<RoomService>(place);
    first->Start();
    RoomService second(place);
    second.Start();
    EXPECT_TRUE(first->IsServing());
    EXPECT_FALSE(second.IsServing());
    EXPECT_EQ(Post(ReportOf("you", 6)), 204U);
    first.reset();
    EXPECT_TRUE(Eventually([&] { return second.IsServing(); }));
    EXPECT_EQ(Jitter("you"), 6);
    second.Stop();
    EXPECT_FALSE(second.IsServing());
    EXPECT_FALSE(std::filesystem::exists(place.socket));
}

TEST_F(RoomServiceTest, ServesAsSoonAsItCanBeListenedTo) {
    // In the way of its socket.
    std::filesystem::create_directories(place.socket / "a");
    RoomService service(place);
    service.Start();
    EXPECT_FALSE(service.IsServing());
    std::filesystem::remove_all(place.socket);
    EXPECT_TRUE(Eventually([&] { return service.IsServing(); }));
    EXPECT_EQ(Post(ReportOf("you")), 204U);
}

// What a process that serves has stored is there for the next one, although the first was killed.
TEST_F(RoomServiceTest, KeepsItsDatabaseWhenItsProcessIsKilled) {
    std::string program = CORVANTA_ROOM_SERVICE_PROCESS;
    std::string argument = folder.path.string();
    char* const arguments[] = {program.data(), argument.data(), nullptr};
    pid_t child = 0;
    ASSERT_EQ(::posix_spawn(&child, program.c_str(), nullptr, nullptr, arguments, environ), 0);
    EXPECT_TRUE(Eventually([&] { return Post(ReportOf("you")) == 204U; }));
    RoomService heir(place);
    heir.Start();
    EXPECT_FALSE(heir.IsServing());
    for (int round = 1; round <= 20; ++round) EXPECT_EQ(Post(ReportOf("you", round)), 204U);
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    EXPECT_TRUE(Eventually([&] { return heir.IsServing(); }));
    EXPECT_EQ(Jitter("you"), 20);
    EXPECT_EQ(Post(ReportOf("you", 21)), 204U);
}

TEST_F(RoomServiceTest, KeepsADamagedDatabaseAside) {
    folder.Write("room-service.sqlite", std::string(100'000, 'x'));
    RoomService service(place);
    service.Start();
    EXPECT_TRUE(service.IsServing());
    EXPECT_EQ(Post(ReportOf("you", 2)), 204U);
    EXPECT_EQ(folder.Read("room-service.sqlite.unreadable"), std::string(100'000, 'x'));
}

TEST_F(RoomServiceTest, ForgetsTheStreamsThatWereSilentLongest) {
    const auto database = ServiceDatabase::Open(place.database);
    ASSERT_NE(database, nullptr);
    ConnectivityLog reports(*database);
    ConnectivityLog* const log = &reports;
    ASSERT_TRUE(log->Store(ReportOf("first")));
    ASSERT_TRUE(log->Store(ReportOf("second")));
    ASSERT_TRUE(log->Store(ReportOf("first")));
    for (int index = 2; index < ConnectivityLog::kMostStreams; ++index)
        ASSERT_TRUE(log->Store(ReportOf("stream-" + std::to_string(index))));
    std::string json;
    EXPECT_EQ(log->Find("session", "second", json), ConnectivityLog::Found::Yes);
    ASSERT_TRUE(log->Store(ReportOf("one more")));
    EXPECT_EQ(log->Find("session", "second", json), ConnectivityLog::Found::No);
    EXPECT_EQ(log->Find("session", "first", json), ConnectivityLog::Found::Yes);
    EXPECT_EQ(log->Find("session", "one more", json), ConnectivityLog::Found::Yes);
}

}  // namespace
}  // namespace Corvanta::Engine
