// The tie to a server that behaves as the test wants.
#include "engine/janus/JanusClient.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <mutex>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/engine/Eventually.h"
#include "tests/engine/janus/FakeServer.h"
#include "tests/engine/peer/PeerPair.h"
#include "tests/engine/signalling/LogLines.h"

namespace Corvanta::Engine {
namespace {

using nlohmann::json;
using Said = std::vector<std::string>;

class ClientRig final {
public:
    explicit ClientRig(JanusServer server) {
        running.Do([&] {
            client = std::make_unique<JanusClient>(
                running.loop, std::move(server),
                JanusClientEvents{.opened = [this](bool isFormer) { ++(isFormer ? returns : openings); },
                                  .lost = [this] { ++losses; },
                                  .failed =
                                      [this](const std::string& line) {
                                          const std::lock_guard lock(mutex);
                                          failure = line;
                                      }});
            client->Start();
        });
    }
    ~ClientRig() {
        running.Do([&] {
            if (client) client->Stop();
            client.reset();
        });
    }

    void Do(const std::function<void(JanusClient& client)>& task) {
        running.Do([&] { task(*client); });
    }
    void End() {
        running.Do([&] {
            client->Stop();
            client.reset();
        });
    }
    [[nodiscard]] std::string Failure() const {
        const std::lock_guard lock(mutex);
        return failure;
    }

    std::atomic<int> openings = 0, returns = 0, losses = 0;

private:
    RunningLoop running;
    std::unique_ptr<JanusClient> client;
    mutable std::mutex mutex;  // guards: failure
    std::string failure;
};

JanusServer ServerAt(const std::string& address, const std::string& token = {}) {
    return {.address = address, .certificateAuthority = {}, .token = token};
}

Said Agree(const std::string& request) {
    return {Success(request)};
}

std::string KindOf(const std::string& request) {
    return json::parse(request).at("janus");
}

TEST(JanusClient, AnswersRequestsAndHandsOnEvents) {
    FakeServer server([](const std::string& request) {
        if (KindOf(request) != "message") return Agree(request);
        return Said{WithTransaction(request, R"({"janus":"ack","transaction":"T"})"),
                    WithTransaction(request, R"({"janus":"event","sender":77,"transaction":"T",
                                                 "plugindata":{"data":{"videoroom":"joined"}}})")};
    });
    ClientRig rig(ServerAt(server.Address(), "the-token"));
    ASSERT_TRUE(Eventually([&] { return rig.openings == 1; }));
    std::atomic<JanusClient::Handle> handle = 0;
    std::atomic<int> events = 0, answers = 0;
    rig.Do([&](JanusClient& client) {
        client.Attach(
            [&](const JanusMessage& message) { events += message.kind == JanusMessage::Kind::WebRtcUp; },
            [&](JanusClient::Handle attached) { handle = attached; });
    });
    ASSERT_TRUE(Eventually([&] { return handle == 77; }));
    rig.Do([&](JanusClient& client) {
        client.Ask(handle, {{"request", "join"}}, std::nullopt, [&](const JanusMessage& answer) {
            answers += answer.room && answer.room->kind == "joined";
        });
    });
    EXPECT_TRUE(Eventually([&] { return answers == 1; }));
    server.Say(R"({"janus":"webrtcup","sender":77})");
    server.Say(R"({"janus":"webrtcup","sender":78})");
    EXPECT_TRUE(Eventually([&] { return events == 1; }));
    for (const std::string& request : server.Heard())
        EXPECT_EQ(json::parse(request).at("token"), "the-token");
    rig.Do([&](JanusClient& client) { client.Detach(handle); });
    server.Say(R"({"janus":"webrtcup","sender":77})");
    rig.End();
    EXPECT_EQ(events, 1);
    // Its goodbye.
    EXPECT_TRUE(Eventually([&] { return KindOf(server.Heard().back()) == "destroy"; }));
}

TEST(JanusClient, ReturnsToItsSessionAfterABreak) {
    FakeServer server(Agree);
    ClientRig rig(ServerAt(server.Address()));
    ASSERT_TRUE(Eventually([&] { return rig.openings == 1; }));
    server.CutOff();
    EXPECT_TRUE(Eventually([&] { return rig.returns == 1; }));
    EXPECT_EQ(rig.losses, 1);
    EXPECT_EQ(rig.openings, 1);
}

TEST(JanusClient, MakesANewSessionWhereTheServerHasForgottenTheLast) {
    FakeServer server([](const std::string& request) {
        if (KindOf(request) != "claim") return Agree(request);
        return Said{WithTransaction(
            request, R"({"janus":"error","transaction":"T","error":{"code":458,"reason":"none"}})")};
    });
    ClientRig rig(ServerAt(server.Address()));
    ASSERT_TRUE(Eventually([&] { return rig.openings == 1; }));
    std::atomic<int> refused = 0;
    server.CutOff();
    EXPECT_TRUE(Eventually([&] { return rig.openings == 2; }));
    EXPECT_EQ(rig.returns, 0);
    // A handle of the session before is void.
    rig.Do([&](JanusClient& client) {
        client.Ask(5, json::object(), std::nullopt, [&](const JanusMessage&) { ++refused; });
    });
    EXPECT_TRUE(Eventually([&] { return refused == 1; }));
}

TEST(JanusClient, CutsOffAServerThatSaysNonsense) {
    LogLines log;
    FakeServer server(Agree);
    ClientRig rig(ServerAt(server.Address(), "the-token"));
    int losses = 0;
    const std::string deep(100'000, '[');
    for (const std::string& text : {std::string("{"), std::string("7"), std::string("{\"janus\":7}"), deep,
                                    std::string(1'000'000, 'x')}) {
        ASSERT_TRUE(Eventually([&] { return rig.openings + rig.returns == losses + 1; }));
        server.Say(text);
        ++losses;
        EXPECT_TRUE(Eventually([&] { return rig.losses == losses; })) << text.substr(0, 20);
    }
    EXPECT_EQ(log.Count("it says what makes no sense; it is tried again"), 5);
    EXPECT_EQ(log.Count("the-token"), 0);
}

TEST(JanusClient, PassesOverWhatIsStrangeButHarmless) {
    FakeServer server(Agree);
    ClientRig rig(ServerAt(server.Address()));
    ASSERT_TRUE(Eventually([&] { return rig.openings == 1; }));
    for (const char* text : {R"({"janus":"success","transaction":"999"})", R"({"janus":"event","sender":-1})",
                             R"({"janus":"success","transaction":"","data":[]})", R"({"janus":"news"})",
                             R"({"janus":"error","error":7})", R"({"janus":"hangup","sender":1e30})",
                             R"({"janus":"trickle","sender":77,"candidate":{}})"}) {
        server.Say(text);
    }
    std::atomic<JanusClient::Handle> handle = 0;
    rig.Do([&](JanusClient& client) {
        client.Attach([](const JanusMessage&) {}, [&](JanusClient::Handle attached) { handle = attached; });
    });
    EXPECT_TRUE(Eventually([&] { return handle == 77; }));
    EXPECT_EQ(rig.losses, 0);
}

TEST(JanusClient, CutsOffAServerThatSaysTooMuch) {
    LogLines log;
    FakeServer server(Agree);
    ClientRig rig(ServerAt(server.Address()));
    ASSERT_TRUE(Eventually([&] { return rig.openings == 1; }));
    EXPECT_TRUE(Eventually([&] {
        for (int count = 0; count < 200; ++count) server.Say(R"({"janus":"event","sender":77})");
        return rig.losses > 0;
    }));
    EXPECT_EQ(log.Count("it says more than can be read"), 1);
    EXPECT_TRUE(Eventually([&] { return rig.returns > 0; }));
}

TEST(JanusClient, CutsOffAServerWhoseTextIsTooLong) {
    FakeServer server(Agree);
    ClientRig rig(ServerAt(server.Address()));
    ASSERT_TRUE(Eventually([&] { return rig.openings == 1; }));
    server.Say(R"({"janus":"event","x":")" + std::string(2 * kLongestServerText, 'x') + "\"}");
    EXPECT_TRUE(Eventually([&] { return rig.losses == 1 && rig.returns == 1; }));
}

TEST(JanusClient, GivesUpOnAServerThatNeverAnswers) {
    FakeServer server([](const std::string&) { return Said{}; });
    ClientRig rig(ServerAt(server.Address(), "the-token"));
    EXPECT_TRUE(Eventually([&] { return !rig.Failure().empty(); }));
    EXPECT_EQ(rig.Failure(), "The server " + server.Address() + " cannot be used, it does not answer");
    EXPECT_EQ(rig.openings, 0);
}

TEST(JanusClient, TellsAServerForRoomsFromAnother) {
    FakeServer server(Agree, "");
    ClientRig rig(ServerAt(server.Address()));
    EXPECT_TRUE(Eventually([&] { return !rig.Failure().empty(); }));
    EXPECT_EQ(rig.Failure(), "The server " + server.Address() + " cannot be used, it is no server for rooms");
}

TEST(JanusClient, SaysNothingOfTheTokenThoughTheServerDoes) {
    FakeServer server([](const std::string& request) {
        return Said{WithTransaction(
            request,
            R"({"janus":"error","transaction":"T","error":{"code":490,"reason":"bad the-token!"}})")};
    });
    ClientRig rig(ServerAt(server.Address(), "the-token"));
    EXPECT_TRUE(Eventually([&] { return !rig.Failure().empty(); }));
    EXPECT_EQ(rig.Failure().find("the-token"), std::string::npos) << rig.Failure();
}

TEST(JanusClient, RefusesAnAddressThatMakesNoSense) {
    for (const char* address : {"ws://", "nonsense", "ws://127.0.0.1:0"}) {
        ClientRig rig(ServerAt(address));
        EXPECT_TRUE(Eventually([&] { return !rig.Failure().empty(); })) << address;
    }
}

TEST(JanusClient, EndsWhileItConnects) {
    for (int turn = 0; turn < 20; ++turn) {
        FakeServer server(Agree);
        ClientRig rig(ServerAt(server.Address()));
        EXPECT_TRUE(turn % 2 == 0 || Eventually([&] { return server.connections == 1; }));
        rig.End();
    }
}

}  // namespace
}  // namespace Corvanta::Engine
