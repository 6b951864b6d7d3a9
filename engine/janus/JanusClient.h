// The tie to a forwarding server over its WebSocket interface: one session, its handles, requests and their
// answers. A tie that breaks is made again, with growing waits; where the server still knows the session it
// goes on, otherwise all handles are void. Lives on the engine's thread, made and destroyed there, outside
// its own calls; it calls back there with no lock held.
//
// Whatever the server says is bounded in size and rate; a server that says nonsense is cut off and tried
// again later.
#pragma once

#include <libsoup/soup.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>

#include "engine/common/EngineLoop.h"
#include "engine/janus/JanusMessage.h"
#include "engine/janus/NestedContext.h"
#include "engine/signalling/OwnedSource.h"
#include "engine/signalling/RateLimit.h"

namespace Corvanta::Engine {

struct JanusServer {
    // ws://HOST:PORT or wss://HOST:PORT.
    std::string address;
    // See EngineOptions.
    std::filesystem::path certificateAuthority;
    std::string token;
};

struct JanusClientEvents {
    // There is a session: the former one with its handles, or a new one without any.
    std::function<void(bool isFormer)> opened;
    // It broke, and is tried again.
    std::function<void()> lost;
    // There never was one: one line for the user. Nothing follows.
    std::function<void(const std::string& problem)> failed;
};

class JanusClient final {
public:
    using Handle = std::uint64_t;
    // What came without being asked for.
    using EventHandler = std::function<void(const JanusMessage& message)>;
    // The answer: of the kind Success or Event, or an Error with its reason; kNoAnswer where none came in
    // time or the tie broke.
    using AnswerHandler = std::function<void(const JanusMessage& answer)>;

    static constexpr int kNoAnswer = -1;
    static constexpr std::chrono::milliseconds kFirstDelay{500}, kLongestDelay{8000};
    // What a connection, and an answer, may take.
    static constexpr std::chrono::milliseconds kPatience{5000};
    // How often the session is kept alive, and after which silence the server is taken for gone.
    static constexpr std::chrono::milliseconds kKeepAlive{2000}, kLongestSilence{8000};

    JanusClient(EngineLoop& engineLoop, JanusServer forwardingServer, JanusClientEvents clientEvents);
    ~JanusClient();
    JanusClient(const JanusClient&) = delete;
    JanusClient& operator=(const JanusClient&) = delete;

    // Calls nothing back before it returns.
    void Start();
    // Ends the session, so that the server forgets its handles at once; waits for a part of a second until
    // the server knows. Nothing is called back any more. The loop need not run.
    void Stop();

    [[nodiscard]] bool IsOpen() const { return isOpen; }

    // A handle of the plugin for rooms; 0 for none.
    void Attach(EventHandler onEvent, std::function<void(Handle handle)> onAttached);
    // Nothing more is called for it. Unknown ones are ignored.
    void Detach(Handle handle);
    // Has the plugin do what the body says.
    void Ask(Handle handle, const nlohmann::json& body, const std::optional<JanusDescription>& description,
             AnswerHandler onAnswer);
    // An empty text: there are no more.
    void Trickle(Handle handle, std::uint32_t mediaLine, const std::string& candidate);

private:
    struct Pending {
        AnswerHandler handler;
        std::chrono::steady_clock::time_point asked;
    };
    struct SoupReleaser {
        void operator()(gpointer object) const { g_object_unref(object); }
    };
    template <class Object>
    using Owned = std::unique_ptr<Object, SoupReleaser>;

    void Connect();
    void OnConnected(SoupWebsocketConnection* made, const GError* error);
    void OnText(std::string_view text);
    void OnEvent(const JanusMessage& message);
    void Claim();
    void Create();
    void Open(bool isFormer);
    // The tie is of no use: it is closed, and made again later; or it never was, and that is told.
    void Break(const std::string& problem);
    void CloseTie();
    void KeepAlive();
    // Fills in what every request bears. Answered with an error where there is no tie.
    void Send(nlohmann::json request, AnswerHandler onAnswer);
    void Refuse(const AnswerHandler& handler);
    [[nodiscard]] std::string WithoutToken(std::string text) const;

    EngineLoop& loop;
    const JanusServer server;
    const JanusClientEvents events;
    const std::unique_ptr<NestedContext> context;
    Owned<SoupSession> session;
    Owned<SoupWebsocketConnection> tie;
    Owned<GCancellable> connecting;
    OwnedSource timer, retry;
    RateLimit limit;
    std::chrono::milliseconds delay = kFirstDelay;
    std::chrono::steady_clock::time_point lastHeard;
    std::map<std::string, Pending> pending;
    std::map<Handle, EventHandler> handles;
    std::uint64_t sessionId = 0;
    std::uint64_t transactions = 0;
    // Of the connection being made or made; what an earlier one still says is void.
    std::uint64_t attempt = 0;
    bool hasOpened = false;
    bool isOpen = false;
    bool hasEnded = false;
    bool breakWasLogged = false;
    const std::shared_ptr<bool> isAlive = std::make_shared<bool>(true);
};

}  // namespace Corvanta::Engine
