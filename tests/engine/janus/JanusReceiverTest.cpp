// A subscription, of a server that says what the test has it say.
#include "engine/janus/JanusReceiver.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>

#include "engine/janus/JanusClient.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/janus/FakeServer.h"
#include "tests/engine/peer/PeerPair.h"

namespace Corvanta::Engine {
namespace {

TEST(JanusReceiver, LeavesASubscriptionAloneThatIsOnItsWay) {
    FakeServer server([](const std::string& text) -> std::vector<std::string> {
        // The room takes its time to answer.
        if (text.find(R"("janus":"message")") != std::string::npos) return {};
        return {Success(text)};
    });
    const auto asked = [&](const char* words) {
        const auto heard = server.Heard();
        return std::count_if(heard.begin(), heard.end(), [words](const std::string& text) {
            return text.find(words) != std::string::npos;
        });
    };
    const auto subscriptions = [&] { return asked(R"("request":"join")"); };
    RunningLoop running;
    std::unique_ptr<JanusClient> client;
    std::shared_ptr<JanusReceiver> receiver;
    running.Do([&] {
        client = std::make_unique<JanusClient>(
            running.loop, JanusServer{.address = server.Address(), .certificateAuthority = {}, .token = {}},
            JanusClientEvents{.opened = [&](bool) { receiver->Connect(); },
                              .lost = [] {},
                              .failed = [](const std::string&) {}});
        receiver = std::make_shared<JanusReceiver>(
            running.loop, *client, JanusReceiver::Facts{"review", "feed", "somebody"},
            JanusReceiverEvents{.ear = [](bool) {}, .message = [](const std::string&) {}}, nullptr);
        client->Start();
    });
    EXPECT_TRUE(Eventually([&] { return subscriptions() == 1; }));
    // Whoever misses it asks for it, and asks again.
    for (int count = 0; count < 3; ++count) running.Do([&] { receiver->Restart(true); });
    // The publisher begins anew, and that is heeded at once.
    running.Do([&] { receiver->OnNewFeed(); });
    EXPECT_TRUE(Eventually([&] { return subscriptions() >= 2; }));
    EXPECT_EQ(asked(R"("janus":"attach")"), 2);
    running.Do([&] {
        receiver->Close();
        client->Stop();
        receiver.reset();
        client.reset();
    });
}

}  // namespace
}  // namespace Corvanta::Engine
