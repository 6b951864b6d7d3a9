// A feed on its way to a room, of a server that says what the test has it say.
#include "engine/janus/JanusPublisher.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "engine/janus/JanusClient.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/janus/FakeServer.h"
#include "tests/engine/peer/PeerPair.h"

namespace Corvanta::Engine {
namespace {

using Strings = std::vector<std::string>;

const std::string kTaken =
    R"({"janus":"event","transaction":"T","sender":77,"plugindata":{"data":{"videoroom":"event"}},)"
    R"("jsep":{"type":"answer","sdp":"v=0"}})";
const std::string kRefused =
    R"({"janus":"error","transaction":"T","error":{"code":490,"reason":"Error setting ICE locally"}})";
const std::string kUnpublished =
    R"({"janus":"event","transaction":"T","sender":77,"plugindata":{"data":{"unpublished":"ok"}}})";
const std::string kNotPublished =
    R"({"janus":"event","transaction":"T","sender":77,"plugindata":{"data":{"error_code":435}}})";
const std::string kHangup = R"({"janus":"hangup","sender":77})";

class JanusPublisherTest : public testing::Test {
protected:
    JanusPublisherTest() {
        running.Do([this] {
            client = std::make_unique<JanusClient>(
                running.loop,
                JanusServer{.address = server.Address(), .certificateAuthority = {}, .token = {}},
                JanusClientEvents{.opened =
                                      [this](bool isFormer) {
                                          if (isFormer) {
                                              publisher->OnFormerSession();
                                          } else {
                                              publisher->Open();
                                          }
                                      },
                                  .lost = [] {},
                                  .failed = [](const std::string&) {}});
            publisher = std::make_shared<JanusPublisher>(
                running.loop, *client, JanusPublisher::Facts{"review", "feed", "{}", "the server"},
                JanusPublisherEvents{.joined = {},
                                     .published = [this] { ++taken; },
                                     .refused = [this](const std::string&) { ++refusals; },
                                     .words = {},
                                     .channel = {},
                                     .drained = {}});
            client->Start();
        });
    }
    ~JanusPublisherTest() override {
        running.Do([this] {
            publisher->Close();
            client->Stop();
            publisher.reset();
            client.reset();
        });
    }

    // What the server answers to the next requests of that kind, ahead of what it answers else; an empty one
    // is no answer.
    void Plan(std::deque<std::string>& answers, const Strings& next) {
        const std::lock_guard lock(mutex);
        answers.insert(answers.end(), next.begin(), next.end());
    }
    [[nodiscard]] int Asked(const std::string& words) const {
        const auto heard = server.Heard();
        return static_cast<int>(std::count_if(heard.begin(), heard.end(), [&](const std::string& text) {
            return text.find(words) != std::string::npos;
        }));
    }
    [[nodiscard]] int Publishes() const { return Asked(R"("request":"publish")"); }
    [[nodiscard]] int Unpublishes() const { return Asked(R"("request":"unpublish")"); }
    // Has the connection set up anew, of a publisher that the server has taken.
    void BeginAnew() { server.CutOff(); }
    // One stay in the room, whatever happened to the connection.
    void ExpectStays() const {
        EXPECT_EQ(Asked(R"("request":"join")"), 1);
        EXPECT_EQ(Asked(R"("janus":"detach")"), 0);
        EXPECT_EQ(refusals, 0);
    }

    std::mutex mutex;  // guards: the planned answers
    std::deque<std::string> toPublish, toUnpublish;
    std::atomic<int> taken = 0, refusals = 0;
    FakeServer server{[this](const std::string& text) { return Answer(text); }};
    RunningLoop running;
    std::unique_ptr<JanusClient> client;
    std::shared_ptr<JanusPublisher> publisher;

private:
    [[nodiscard]] Strings Answer(const std::string& text) {
        const auto has = [&](const char* words) { return text.find(words) != std::string::npos; };
        const std::lock_guard lock(mutex);
        if (has(R"("request":"join")")) {
            return {WithTransaction(
                text,
                R"({"janus":"event","transaction":"T","sender":77,"plugindata":{"data":{"videoroom":"joined"}}})")};
        }
        if (has(R"("request":"publish")")) return Next(toPublish, text, {kTaken});
        if (has(R"("request":"unpublish")")) return Next(toUnpublish, text, {kUnpublished, kHangup});
        return {Success(text)};
    }
    [[nodiscard]] static Strings Next(std::deque<std::string>& planned, const std::string& request,
                                      Strings otherwise) {
        if (!planned.empty()) {
            otherwise = {planned.front()};
            planned.pop_front();
        }
        Strings texts;
        for (const std::string& each : otherwise) {
            if (!each.empty()) texts.push_back(WithTransaction(request, each));
        }
        return texts;
    }
};

TEST_F(JanusPublisherTest, OffersOnlyOnceTheServerHasEndedTheConnectionBefore) {
    ASSERT_TRUE(Eventually([&] { return taken == 1; }));
    // The server is beyond a network that is cut: nothing of what it says arrives.
    Plan(toUnpublish, {""});
    BeginAnew();
    ASSERT_TRUE(Eventually([&] { return Unpublishes() == 1; }));
    // Longer than it takes to end a connection once it has begun to.
    EXPECT_FALSE(Eventually([&] { return Publishes() > 1; }, std::chrono::milliseconds{1500}));
    // It hears nothing, and asks again.
    EXPECT_TRUE(Eventually([&] { return taken == 2; }));
    EXPECT_EQ(Publishes(), 2);
    ExpectStays();
}

TEST_F(JanusPublisherTest, StaysInTheRoomWhenTheServerHasNotClearedUpYet) {
    ASSERT_TRUE(Eventually([&] { return taken == 1; }));
    Plan(toPublish, {kRefused, kRefused});
    Plan(toUnpublish, {kUnpublished, kNotPublished, kNotPublished});
    BeginAnew();
    EXPECT_TRUE(Eventually([&] { return taken == 2; }));
    EXPECT_EQ(Publishes(), 4);
    ExpectStays();
}

TEST_F(JanusPublisherTest, EntersAgainWhenTheServerWillNotTakeItAnyMore) {
    ASSERT_TRUE(Eventually([&] { return taken == 1; }));
    Plan(toPublish, Strings(5, kRefused));
    BeginAnew();
    EXPECT_TRUE(Eventually([&] { return taken == 2; }));
    EXPECT_EQ(Asked(R"("request":"join")"), 2);
    EXPECT_EQ(refusals, 1);
}

TEST_F(JanusPublisherTest, StaysInTheRoomWhenAnAnswerIsLostWithTheTie) {
    ASSERT_TRUE(Eventually([&] { return taken == 1; }));
    Plan(toPublish, {""});
    BeginAnew();
    ASSERT_TRUE(Eventually([&] { return Publishes() == 2; }));
    BeginAnew();
    EXPECT_TRUE(Eventually([&] { return taken == 2; }));
    EXPECT_EQ(Unpublishes(), 2);
    ExpectStays();
}

}  // namespace
}  // namespace Corvanta::Engine
