// The room service over TCP, as clients of other machines have it: who may come, and how often.
#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <chrono>
#include <future>
#include <list>
#include <string>

#include "engine/roomservice/RoomServiceClient.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/RawConnection.h"
#include "tests/engine/TemporaryFolder.h"
#include "tests/engine/roomservice/ServingThread.h"
#include "tests/engine/roomservice/TestAuthority.h"
#include "tests/engine/signalling/LogLines.h"

namespace Corvanta::Engine {
namespace {

using std::chrono::milliseconds;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

constexpr const char* kToken = "open-sesame-4711";

// A connection to this machine's own port, without any protocol. From one of its addresses.
int Connect(std::uint16_t port, const char* from = "127.0.0.1") {
    const int file = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = ::inet_addr(from);
    EXPECT_EQ(::bind(file, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(::connect(file, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    return file;
}

class TcpService : public ::testing::Test {
protected:
    [[nodiscard]] RoomServer::Options OptionsHere() const {
        return {.address = "127.0.0.1", .token = kToken, .database = folder.File("database")};
    }
    [[nodiscard]] static ServiceAddress AddressOf(const ServingThread& serving,
                                                  const std::string& token = kToken) {
        return {.socket = {}, .url = "http://127.0.0.1:" + std::to_string(serving.port), .token = token};
    }

    TemporaryFolder folder;
};

TEST_F(TcpService, ServesWhoeverBearsTheToken) {
    const ServingThread serving(OptionsHere());
    ASSERT_TRUE(serving.IsServing()) << serving.problem;
    const NotesClient one(AddressOf(serving), "review");
    const NotesClient other(AddressOf(serving), "review");
    EXPECT_EQ(one.Put(0, "one"), 200U);
    auto waiting = std::async(std::launch::async, [&] { return other.GetAfter(1); });
    EXPECT_EQ(one.Put(1, "two"), 200U);
    EXPECT_EQ(ReadNotes(waiting.get()->body)->text, "two");
}

TEST_F(TcpService, SaysNothingButNoToWhoeverDoesNot) {
    LogLines log;
    const ServingThread serving(OptionsHere());
    for (const std::string& token :
         {std::string(), std::string("wrong"), std::string("open-sesame-4712"),
          std::string("open-sesame-471"), std::string("open-sesame-47111"), std::string(500, 'x')}) {
        const auto answer = SendRequest(AddressOf(serving, token), {"GET", "/notes?room=review", {}});
        EXPECT_EQ(StatusOf(answer), 401U) << token;
        EXPECT_EQ(answer->body, "");
    }
    // What is there and what is not looks the same from outside.
    for (const char* const target : {"/", "/nothing", "/notes"})
        EXPECT_EQ(StatusOf(SendRequest(AddressOf(serving, "wrong"), {"GET", target, {}})), 401U);
    EXPECT_EQ(StatusOf(SendRequest(AddressOf(serving, "wrong"), {"PUT", "/notes?room=a", "nonsense"})), 401U);
    for (const char* const header :
         {"Basic b3Blbi1zZXNhbWUtNDcxMQ==", "open-sesame-4711", "Bearer", "Bearer "}) {
        const RawConnection raw(Connect(serving.port));
        std::string request = "GET /notes?room=a HTTP/1.1\r\nHost: a\r\nAuthorization: ";
        request += header;
        raw.Send(request + "\r\n\r\n");
        EXPECT_THAT(raw.Receive(), StartsWith("HTTP/1.1 401 ")) << header;
    }
    EXPECT_EQ(NotesClient(AddressOf(serving), "a").Get(), NotesText{}) << "nothing was taken";
    EXPECT_EQ(log.Count(kToken), 0);
    EXPECT_EQ(log.Count("wrong"), 0);
}

// Which is a room of somebody's own machine.
TEST_F(TcpService, KeepsNothingForARoomWithoutAName) {
    const ServingThread serving(OptionsHere());
    const NotesClient nameless(AddressOf(serving), "");
    EXPECT_EQ(nameless.Put(0, "whose?"), 400U);
    EXPECT_EQ(nameless.Get(), std::nullopt);
    const auto status = [&](const std::string& method, const std::string& body) {
        return StatusOf(SendRequest(AddressOf(serving), {method, "/sessions?room=", body}));
    };
    EXPECT_EQ(status("GET", {}), 400U);
    EXPECT_EQ(
        status("POST", WriteSession({.id = "1", .name = "a", .begun = "2024-03-01T12:34:56Z", .ended = {}})),
        400U);
    EXPECT_EQ(NotesClient(AddressOf(serving), "review").Put(0, "ours"), 200U);
}

TEST_F(TcpService, EndsConnectionsOnWhichNothingIsAskedSoonerThanThoseThatAreInUse) {
    RoomServer::Options options = OptionsHere();
    options.connections.head = milliseconds(800);
    ServingThread serving(options);
    const RawConnection asking(Connect(serving.port));
    asking.Send(
        "PUT /notes?room=a HTTP/1.1\r\nHost: a\r\nAuthorization: Bearer open-sesame-4711\r\n"
        "Content-Length: 2\r\n\r\n{");
    const RawConnection silent(Connect(serving.port));
    const RawConnection slow(Connect(serving.port));
    slow.Send("GET /notes?room=a HTTP/1.1\r\nHo");
    EXPECT_EQ(silent.Receive(), "");
    EXPECT_EQ(slow.Receive(), "");
    EXPECT_TRUE(Eventually([&] { return serving.Connections() == 1; }));
    asking.Send("}");
    EXPECT_THAT(asking.Receive(), StartsWith("HTTP/1.1 400 "));
}

TEST_F(TcpService, LeavesPlaceForOtherAddressesThanTheOneThatTakesAll) {
    RoomServer::Options options = OptionsHere();
    options.connections.connectionsOfAddress = 2;
    ServingThread serving(options);
    const RawConnection one(Connect(serving.port));
    const RawConnection two(Connect(serving.port));
    EXPECT_TRUE(Eventually([&] { return serving.Connections() == 2; }));
    const RawConnection beyond(Connect(serving.port));
    EXPECT_EQ(beyond.Receive(), "") << "it is closed";
    const RawConnection other(Connect(serving.port, "127.0.0.2"));
    other.Send("GET /notes?room=a HTTP/1.1\r\nHost: a\r\nAuthorization: Bearer open-sesame-4711\r\n\r\n");
    EXPECT_THAT(other.Receive(), StartsWith("HTTP/1.1 200 "));
}

TEST_F(TcpService, LetsNobodyTryTokensForLong) {
    RoomServer::Options options = OptionsHere();
    options.rates = {.requestsPerSecond = 0.001, .burst = 100};
    const ServingThread serving(options);
    int tries = 0;
    while (tries < 50 && StatusOf(SendRequest(AddressOf(serving, "wrong"), {"GET", "/", {}})) == 401U)
        ++tries;
    EXPECT_LE(tries, 5);
    EXPECT_EQ(StatusOf(SendRequest(AddressOf(serving, "wrong"), {"GET", "/", {}})), 429U);
}

TEST_F(TcpService, EndsConnectionsThatKeepItWaiting) {
    RoomServer::Options options = OptionsHere();
    options.connections.request = milliseconds(200);
    ServingThread serving(options);
    const RawConnection silent(Connect(serving.port));
    const RawConnection slow(Connect(serving.port));
    slow.Send(
        "PUT /notes?room=a HTTP/1.1\r\nHost: a\r\nAuthorization: Bearer open-sesame-4711\r\n"
        "Content-Length: 1000\r\n\r\n{");
    const RawConnection idle(Connect(serving.port));
    idle.Send("GET /notes?room=a HTTP/1.1\r\nHost: a\r\nAuthorization: Bearer open-sesame-4711\r\n\r\n");
    EXPECT_THAT(idle.Receive(), StartsWith("HTTP/1.1 200 "));
    EXPECT_TRUE(Eventually([&] { return serving.Connections() == 0; }));
    EXPECT_EQ(silent.Receive(), "");
    EXPECT_EQ(slow.Receive(), "");
}

TEST_F(TcpService, LetsAnAnswerThatIsWaitedForTakeLonger) {
    RoomServer::Options options = OptionsHere();
    options.connections.request = milliseconds(100);
    options.longestWait = milliseconds(800);
    const ServingThread serving(options);
    EXPECT_EQ(StatusOf(NotesClient(AddressOf(serving), "a").GetAfter(0)), 204U);
}

TEST_F(TcpService, TakesNoMoreConnectionsThanItSays) {
    RoomServer::Options options = OptionsHere();
    options.connections.connections = 3;
    ServingThread serving(options);
    std::list<RawConnection> held;
    for (int count = 0; count < 3; ++count) held.emplace_back(Connect(serving.port));
    EXPECT_TRUE(Eventually([&] { return serving.Connections() == 3; }));
    const RawConnection beyond(Connect(serving.port));
    EXPECT_EQ(beyond.Receive(), "") << "it is closed";
    held.pop_front();
    EXPECT_TRUE(Eventually([&] { return NotesClient(AddressOf(serving), "a").Get().has_value(); }));
}

TEST_F(TcpService, BelievesACertificateOfItsAuthorityAlone) {
    const TestAuthority authority;
    const TestAuthority stranger;
    RoomServer::Options options = OptionsHere();
    options.certificate = authority.Certificate();
    options.key = authority.Key();
    // A sanitizer makes the handshake take long.
    options.connections.head = kAnswerPatience;
    const ServingThread serving(options);
    ASSERT_TRUE(serving.IsServing()) << serving.problem;
    ServiceAddress address = AddressOf(serving);
    address.url = "https://127.0.0.1:" + std::to_string(serving.port);
    const auto ask = [&] {
        return StatusOf(SendRequest(address, {"GET", "/notes?room=a", {}}, kAnswerPatience));
    };
    EXPECT_EQ(ask(), 0U) << "the system does not know the authority";
    address.certificateAuthority = stranger.Authority();
    EXPECT_EQ(ask(), 0U);
    address.certificateAuthority = folder.File("nothing");
    EXPECT_EQ(ask(), 0U) << "and never the system's in its place";
    address.certificateAuthority = authority.Authority();
    EXPECT_EQ(ask(), 200U);
    EXPECT_EQ(NotesClient(address, "a").Put(0, std::string(kLongestNotes, 'x')), 200U);
    EXPECT_EQ(NotesClient(address, "a").Get()->text.size(), kLongestNotes);
    // The name must be right, too: it is another one of the same machine's.
    address.url = "https://127.0.0.2:" + std::to_string(serving.port);
    EXPECT_EQ(ask(), 0U);
    address.url = "http://127.0.0.1:" + std::to_string(serving.port);
    EXPECT_EQ(ask(), 0U) << "nothing goes in the clear";
}

TEST_F(TcpService, SaysWhyItCannotListen) {
    const ServingThread first(OptionsHere());
    RoomServer::Options options = OptionsHere();
    options.port = first.port;
    EXPECT_THAT(ServingThread(options).problem, HasSubstr("in use"));
    options = OptionsHere();
    options.address = "example";
    EXPECT_THAT(ServingThread(options).problem, HasSubstr("'example' is no number address"));
    options = OptionsHere();
    options.certificate = options.key = folder.File("missing.pem");
    EXPECT_THAT(ServingThread(options).problem, Not(::testing::IsEmpty()));
}

TEST_F(TcpService, IsAskedWithoutAnybodyWaiting) {
    const ServingThread serving(OptionsHere());
    RoomServiceClient client(AddressOf(serving));
    client.Start();
    std::promise<unsigned> status;
    client.Send({"PUT", "/profile", WriteProfile({.id = "me", .email = "", .displayName = "Me"})},
                std::chrono::seconds(10), [&](const auto& answer) { status.set_value(StatusOf(answer)); });
    EXPECT_EQ(status.get_future().get(), 204U);
    std::promise<bool> silence;
    client.Send({"GET", "/notes?room=a&after=0", {}}, milliseconds(50),
                [&](const auto& answer) { silence.set_value(!answer); });
    EXPECT_TRUE(silence.get_future().get()) << "it is given up in time";
    std::promise<bool> endless;
    client.Send({"GET", "/profile?id=me", {}, 10}, std::chrono::seconds(10),
                [&](const auto& answer) { endless.set_value(!answer); });
    EXPECT_TRUE(endless.get_future().get()) << "there is too much of it";
    client.Send({"GET", "/notes?room=a&after=0", {}}, std::chrono::seconds(30),
                [&](const auto&) { ADD_FAILURE() << "the client has stopped"; });
    client.Stop();
}

}  // namespace
}  // namespace Corvanta::Engine
