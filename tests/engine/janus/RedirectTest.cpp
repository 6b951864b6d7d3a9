// What is said to a server, the token with it, is for that server alone.
#include <gtest/gtest.h>
#include <libsoup/soup.h>

#include <atomic>
#include <memory>
#include <string>

#include "engine/janus/JanusClient.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/janus/FakeServer.h"
#include "tests/engine/peer/PeerPair.h"
#include "tests/engine/signalling/LoopThread.h"

namespace Corvanta::Engine {
namespace {

// Points everybody who comes to another server.
class Signpost final {
public:
    explicit Signpost(const std::string& address) : target(address) {
        loop.Do([this] {
            server = soup_server_new(nullptr, nullptr);
            soup_server_add_handler(server, nullptr, Point, this, nullptr);
            EXPECT_TRUE(soup_server_listen_local(server, 0, SOUP_SERVER_LISTEN_IPV4_ONLY, nullptr));
            GSList* const uris = soup_server_get_uris(server);
            port = g_uri_get_port(static_cast<GUri*>(uris->data));
            g_slist_free_full(uris, reinterpret_cast<GDestroyNotify>(g_uri_unref));
        });
    }
    ~Signpost() {
        loop.Do([this] {
            soup_server_disconnect(server);
            g_object_unref(server);
        });
    }
    Signpost(const Signpost&) = delete;
    Signpost& operator=(const Signpost&) = delete;

    [[nodiscard]] std::string Address() const { return "ws://127.0.0.1:" + std::to_string(port); }

    std::atomic<int> visits = 0;

private:
    static void Point(SoupServer*, SoupServerMessage* message, const char*, GHashTable*, gpointer data) {
        auto* const self = static_cast<Signpost*>(data);
        ++self->visits;
        soup_server_message_set_redirect(message, SOUP_STATUS_FOUND, self->target.c_str());
    }

    const std::string target;
    LoopThread loop;
    SoupServer* server = nullptr;
    int port = 0;
};

TEST(JanusRedirect, IsNotFollowed) {
    FakeServer other([](const std::string& text) { return std::vector<std::string>{Success(text)}; });
    std::string target = other.Address();
    target.replace(0, 2, "http");
    Signpost signpost(target);
    RunningLoop running;
    std::unique_ptr<JanusClient> client;
    std::atomic<bool> hasOpened = false, hasFailed = false;
    running.Do([&] {
        client = std::make_unique<JanusClient>(
            running.loop,
            JanusServer{.address = signpost.Address(), .certificateAuthority = {}, .token = "secret"},
            JanusClientEvents{.opened = [&](bool) { hasOpened = true; },
                              .lost = [] {},
                              .failed = [&](const std::string&) { hasFailed = true; }});
        client->Start();
    });
    EXPECT_TRUE(Eventually([&] { return hasFailed || hasOpened; }));
    running.Do([&] {
        client->Stop();
        client.reset();
    });
    EXPECT_GT(signpost.visits, 0);
    EXPECT_FALSE(hasOpened);
    EXPECT_EQ(other.connections, 0);
}

}  // namespace
}  // namespace Corvanta::Engine
