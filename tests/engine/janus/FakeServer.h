// A server that says what a test wants it to say, over WebSocket, on a loop of its own.
#pragma once

#include <libsoup/soup.h>

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "engine/common/EngineLoop.h"

namespace Corvanta::Engine {

class FakeServer final {
public:
    // Gives the answers to a text of the client's. On the server's loop.
    using Answer = std::function<std::vector<std::string>(const std::string& text)>;

    // `protocol`: the one that it offers; empty for none.
    explicit FakeServer(Answer serverAnswer, std::string protocol = "janus-protocol");
    ~FakeServer();
    FakeServer(const FakeServer&) = delete;
    FakeServer& operator=(const FakeServer&) = delete;

    [[nodiscard]] std::string Address() const;
    // Says something unasked to all who are connected, or cuts them off.
    void Say(const std::string& text);
    void CutOff();
    [[nodiscard]] std::vector<std::string> Heard() const;

    std::atomic<int> connections = 0;

private:
    void Do(const std::function<void()>& task);
    void OnConnection(SoupWebsocketConnection* connection);

    const Answer answer;
    std::string protocol;
    EngineLoop loop;
    SoupServer* server = nullptr;
    int port = 0;
    std::vector<SoupWebsocketConnection*> clients;
    mutable std::mutex mutex;  // guards: heard
    std::vector<std::string> heard;
};

// The answer to a request that all is well: a session, a handle or nothing further.
[[nodiscard]] std::string Success(const std::string& request);
// The request's transaction put into a text in which it is called "T".
[[nodiscard]] std::string WithTransaction(const std::string& request, std::string text);

}  // namespace Corvanta::Engine
