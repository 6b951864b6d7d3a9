// The connectivity log as the library calls it, with a service that works, is late, silent, mad or not there.
#include "platform/RESTfulAPI.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "engine/restful/HttpClient.h"
#include "engine/restful/ResponseStore.h"
#include "engine/roomservice/RoomService.h"
#include "platform/Connections.h"
#include "platform/WebRTC.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/RawConnection.h"
#include "tests/engine/RoomVisitor.h"
#include "tests/engine/TemporaryFolder.h"

namespace Corvanta::Engine {
namespace {

using Model::API::ConnectivityLogResponse;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

bool Send(const std::string& streamId, double download = 125000.0, int32_t jitter = 4) {
    return RESTApi_SendConnectivityLog("session", "then", download, "profile", 31, 250000.0, jitter, "Wi-Fi",
                                       "Chip", "1%", "2%", "6.1", "System", streamId);
}

ConnectivityLogResponse* Receive(const std::string& streamId) {
    return RESTApi_ReceiveParticipantsConnectivityLog("session", streamId);
}

// Of a failed request.
void ExpectFailure(const ConnectivityLogResponse* response) {
    ASSERT_NE(response, nullptr);
    EXPECT_EQ(RESTApi_ResponseGetStatus(response), 0);
}

class RESTfulAPI : public ::testing::Test {
protected:
    RESTfulAPI() {
        const char* const before = std::getenv("XDG_RUNTIME_DIR");
        if (before != nullptr) former = before;
        ::setenv("XDG_RUNTIME_DIR", folder.path.c_str(), 1);
    }
    ~RESTfulAPI() override {
        if (former) {
            ::setenv("XDG_RUNTIME_DIR", former->c_str(), 1);
        } else {
            ::unsetenv("XDG_RUNTIME_DIR");
        }
    }

    TemporaryFolder folder;

private:
    std::optional<std::string> former;
};

// Takes every connection in the service's place and treats it as it likes.
class FalseService final {
public:
    explicit FalseService(std::function<void(RawConnection&)> treat) {
        const RoomServicePlace place = UserRoomService();
        EXPECT_TRUE(PrepareFolder(place));
        listener = std::make_unique<RawListener>(place.socket);
        EXPECT_TRUE(listener->IsListening());
        thread = std::thread([this, act = std::move(treat)] {
            while (true) {
                const int accepted = listener->Accept();
                if (accepted < 0) return;
                auto connection = std::make_unique<RawConnection>(accepted);
                act(*connection);
                if (holds) held.push_back(std::move(connection));
            }
        });
    }
    ~FalseService() {
        listener->Close();
        thread.join();
    }
    FalseService(const FalseService&) = delete;
    FalseService& operator=(const FalseService&) = delete;

    // Connections stay open after they were treated.
    std::atomic<bool> holds = false;

private:
    std::unique_ptr<RawListener> listener;
    std::vector<std::unique_ptr<RawConnection>> held;
    std::thread thread;
};

TEST_F(RESTfulAPI, BringsBackWhatWasSent) {
    RoomService service(UserRoomService());
    service.Start();
    ASSERT_TRUE(Send("you"));
    const ConnectivityLogResponse* const response = Receive("you");
    ASSERT_EQ(RESTApi_ResponseGetStatus(response), Model::API::kResponseSuccess);
    EXPECT_EQ(response->timestamp, "then");
    EXPECT_EQ(response->download, 125000.0);
    EXPECT_EQ(response->profileId, "profile");
    EXPECT_EQ(response->roundTrip, 31);
    EXPECT_EQ(response->upload, 250000.0);
    EXPECT_EQ(response->jitter, 4);
    EXPECT_EQ(response->connectionType, "Wi-Fi");
    EXPECT_EQ(response->cpuType, "Chip");
    EXPECT_EQ(response->cpuAppUsage, "1%");
    EXPECT_EQ(response->cpuSystemUsage, "2%");
    EXPECT_EQ(response->platformVersion, "6.1");
    EXPECT_EQ(response->operatingSystem, "System");
    EXPECT_EQ(response->streamId, "you");
}

TEST_F(RESTfulAPI, FailsForAStreamThatHasNotReported) {
    RoomService service(UserRoomService());
    service.Start();
    ExpectFailure(Receive("nobody"));
    EXPECT_EQ(RESTApi_ResponseGetStatus(nullptr), 0);
}

TEST_F(RESTfulAPI, KeepsAResponseWhileOthersAreAskedFor) {
    RoomService service(UserRoomService());
    service.Start();
    ASSERT_TRUE(Send("you", 1.0, 7));
    const ConnectivityLogResponse* const response = Receive("you");
    for (int index = 0; index < 5; ++index) ExpectFailure(Receive("other-" + std::to_string(index)));
    EXPECT_EQ(RESTApi_ResponseGetStatus(response), 1);
    EXPECT_EQ(response->jitter, 7);
}

TEST_F(RESTfulAPI, KeepsTheLastFewResponsesOfAStreamAndNoMore) {
    ResponseStore store;
    std::vector<StoredResponse*> responses;
    for (int index = 0; index < 8; ++index) {
        StoredResponse response;
        response.jitter = index;
        responses.push_back(store.Add("session", "you", std::move(response)));
    }
    for (int index = 0; index < 8; ++index) EXPECT_EQ(responses[static_cast<size_t>(index)]->jitter, index);
    // Under the address sanitizer, a leak or a use after the end would show.
    for (int index = 0; index < 5000; ++index) store.Add("session", std::to_string(index), {});
    EXPECT_EQ(store.Add("session", "you", {})->jitter, 0);
}

TEST_F(RESTfulAPI, FailsAtOnceWithoutAService) {
    const auto start = steady_clock::now();
    EXPECT_FALSE(Send("you"));
    ExpectFailure(Receive("you"));
    EXPECT_LT(steady_clock::now() - start, kRequestTimeout);
}

TEST_F(RESTfulAPI, GivesASilentServiceUp) {
    FalseService service([](RawConnection&) {});
    service.holds = true;
    const auto start = steady_clock::now();
    ExpectFailure(Receive("you"));
    const auto took = steady_clock::now() - start;
    EXPECT_GE(took, kRequestTimeout - milliseconds(100));
    EXPECT_LT(took, kRequestTimeout + milliseconds(3000));
}

TEST_F(RESTfulAPI, GivesAServiceUpThatTricklesItsAnswer) {
    std::atomic<bool> isOver = false;
    {
        FalseService service([&](RawConnection& connection) {
            connection.Send("HTTP/1.1 200 OK\r\nContent-Length: 100000\r\n\r\n");
            while (!isOver && connection.Send("x")) std::this_thread::sleep_for(milliseconds(20));
        });
        const auto start = steady_clock::now();
        ExpectFailure(Receive("you"));
        EXPECT_LT(steady_clock::now() - start, kRequestTimeout + milliseconds(3000));
        isOver = true;
    }
}

TEST_F(RESTfulAPI, FailsOnNonsense) {
    const std::string head = "HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n";
    for (const std::string& answer :
         {std::string(), std::string("nonsense\r\n\r\n"), std::string("HTTP/1.1 200 OK\r\n\r\n"), head,
          head + "{}", head + "[1,2", head + std::string(100, '\0'), head + std::string(1'000'000, '['),
          std::string("HTTP/1.1 500 No\r\nContent-Length: 0\r\n\r\n"),
          std::string("HTTP/1.1 302 Away\r\nLocation: http://localhost/x\r\nContent-Length: 0\r\n\r\n")}) {
        FalseService service([&](RawConnection& connection) {
            static_cast<void>(connection.Receive());
            connection.Send(answer);
        });
        ExpectFailure(Receive("you"));
        std::error_code error;
        std::filesystem::remove(UserRoomService().socket, error);
    }
}

TEST_F(RESTfulAPI, GivesEndlessAnswersUp) {
    FalseService service([&](RawConnection& connection) {
        connection.Send("HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n");
        const std::string block(100'000, ' ');
        for (int count = 0; count < 10'000 && connection.Send(block); ++count) {
        }
    });
    ExpectFailure(Receive("you"));
}

TEST_F(RESTfulAPI, ServesManyThreadsAtATime) {
    RoomService service(UserRoomService());
    service.Start();
    std::atomic<int> failures = 0;
    std::vector<std::thread> threads;
    for (int index = 0; index < 8; ++index) {
        threads.emplace_back([&, index] {
            const std::string stream = "stream-" + std::to_string(index % 2);
            for (int round = 0; round < 10; ++round) {
                if (!Send(stream)) ++failures;
                if (RESTApi_ResponseGetStatus(Receive(stream)) != 1) ++failures;
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(failures, 0);
}

TEST_F(RESTfulAPI, HearsOfTheParticipantsOfAnOpenRoom) {
    std::atomic<int> samples = 0;
    WebRTC_SetConnectionStatsCallback([&](int, double, int, double, double, double, double) { ++samples; });
    RoomVisitor visitor;
    visitor.Enter({{"one", "test"}, {"two", "test"}});
    for (const char* stream : {"participant-1-one", "participant-2-two"}) {
        EXPECT_TRUE(Eventually([&] { return RESTApi_ResponseGetStatus(Receive(stream)) == 1; })) << stream;
    }
    EXPECT_EQ(Receive("participant-1-one")->connectionType, "Embedded");
    EXPECT_EQ(Receive("participant-1-one")->streamId, "participant-1-one");
    EXPECT_TRUE(Eventually([&] { return samples > 0; }));
    EXPECT_TRUE(Eventually([&] { return Receive("participant-2-two")->upload > 0; }));
    RoomVisitor::Leave();
    WebRTC_SetConnectionStatsCallback({});
    ExpectFailure(Receive("participant-1-one"));
}

TEST_F(RESTfulAPI, IsServedAgainByTheNextRoom) {
    RoomVisitor visitor;
    for (int round = 0; round < 2; ++round) {
        visitor.Enter({{"one", "test"}});
        EXPECT_TRUE(Eventually([&] { return Send("me", round, round); }));
        EXPECT_EQ(Receive("me")->jitter, round);
        RoomVisitor::Leave();
        EXPECT_FALSE(Send("me"));
    }
}

}  // namespace
}  // namespace Corvanta::Engine
