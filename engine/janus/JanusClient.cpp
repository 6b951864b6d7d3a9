#include "engine/janus/JanusClient.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

#include "engine/webrtc/GstSupport.h"
#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

using nlohmann::json;
using std::chrono::milliseconds;
using std::chrono::steady_clock;
using Kind = JanusMessage::Kind;

constexpr const char* kProtocol = "janus-protocol";
constexpr const char* kPlugin = "janus.plugin.videoroom";
// What the server may say in the long run, and at once. The candidates and events of a full room stay below.
constexpr double kTextsPerSecond = 500, kTextsAtOnce = 2000;
constexpr milliseconds kGoodbye{300};
constexpr const char* kGarbage = "it says what makes no sense";

bool IsUsableAddress(const std::string& address) {
    GUri* const uri = g_uri_parse(address.c_str(), static_cast<GUriFlags>(SOUP_HTTP_URI_FLAGS), nullptr);
    if (uri == nullptr) return false;
    const std::string_view scheme = g_uri_get_scheme(uri);
    const char* const host = g_uri_get_host(uri);
    const bool isUsable = (scheme == "ws" || scheme == "wss") && host != nullptr && *host != '\0' &&
                          g_uri_get_port(uri) != 0 && g_uri_get_userinfo(uri) == nullptr;
    g_uri_unref(uri);
    return isUsable;
}

std::string Text(const json& value) {
    return value.dump(-1, ' ', false, json::error_handler_t::replace);
}

}  // namespace

JanusClient::JanusClient(EngineLoop& engineLoop, JanusServer forwardingServer, JanusClientEvents clientEvents)
    : loop(engineLoop),
      server(std::move(forwardingServer)),
      events(std::move(clientEvents)),
      context(std::make_unique<NestedContext>(loop.Context())),
      limit(kTextsPerSecond, kTextsAtOnce) {}

JanusClient::~JanusClient() {
    hasEnded = true;
    *isAlive = false;
    CloseTie();
    // What it still does is cancelled, and must be seen to its end.
    const auto done = [] { return false; };
    if (session) {
        // Everything that it begins even then hangs on the context, which is served to its end.
        context->Run([&] {
            soup_session_abort(session.get());
            session.reset();
        });
        context->ServeUntil(done, milliseconds(1));
    }
}

void JanusClient::Start() {
    loop.Post([this, alive = isAlive] {
        if (*alive && !hasEnded) Connect();
    });
}

void JanusClient::Stop() {
    if (!hasEnded && tie && sessionId != 0) {
        bool isDone = false;
        handles.clear();
        pending.clear();
        Send({{"janus", "destroy"}}, [&](const JanusMessage&) { isDone = true; });
        context->ServeUntil([&] { return isDone || !tie; }, kGoodbye);
    }
    hasEnded = true;
    handles.clear();
    pending.clear();
    CloseTie();
}

void JanusClient::Connect() {
    const std::uint64_t own = ++attempt;
    if (!session) {
        context->Run([&] {
            session.reset(
                soup_session_new_with_options("proxy-resolver", nullptr, "user-agent", "corvanta", nullptr));
            soup_session_remove_feature_by_type(session.get(), SOUP_TYPE_AUTH_MANAGER);
        });
        if (!server.certificateAuthority.empty()) {
            GError* error = nullptr;
            GTlsDatabase* const database =
                g_tls_file_database_new(server.certificateAuthority.c_str(), &error);
            if (database == nullptr) {
                const GstOwned<GError> owned(error);
                session.reset();
                Break("the certificates in \"" + server.certificateAuthority.string() +
                      "\" cannot be read: " + error->message);
                return;
            }
            soup_session_set_tls_database(session.get(), database);
            g_object_unref(database);
        }
    }
    if (!IsUsableAddress(server.address)) {
        Break("its address makes no sense");
        return;
    }
    const Owned<SoupMessage> request(soup_message_new("GET", server.address.c_str()));
    // What is said there, the token with it, is for nobody to whom that server points.
    soup_message_add_flags(request.get(), SOUP_MESSAGE_NO_REDIRECT);
    connecting.reset(g_cancellable_new());
    timer = StartTimer(context->Context(), kPatience, [this] {
        if (connecting) g_cancellable_cancel(connecting.get());
    });
    struct Call {
        JanusClient* self;
        std::shared_ptr<bool> isAlive;
        std::uint64_t attempt;
    };
    const GAsyncReadyCallback onConnected = [](GObject* source, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<Call> call(static_cast<Call*>(data));
        GError* error = nullptr;
        SoupWebsocketConnection* const made =
            soup_session_websocket_connect_finish(SOUP_SESSION(source), result, &error);
        const GstOwned<GError> owned(error);
        if (*call->isAlive && call->self->attempt == call->attempt) {
            call->self->OnConnected(made, error);
        } else if (made != nullptr) {
            g_object_unref(made);
        }
    };
    context->Run([&] {
        std::string protocol(kProtocol);
        char* protocols[] = {protocol.data(), nullptr};
        soup_session_websocket_connect_async(session.get(), request.get(), nullptr, protocols,
                                             G_PRIORITY_DEFAULT, connecting.get(), onConnected,
                                             new Call{this, isAlive, own});
    });
}

void JanusClient::OnConnected(SoupWebsocketConnection* made, const GError* error) {
    timer.reset();
    connecting.reset();
    if (made == nullptr) {
        if (error->domain == G_TLS_ERROR) {
            Break(std::string("its certificate is refused: ") + error->message);
        } else if (g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED) != FALSE) {
            Break("it does not answer");
        } else {
            Break(std::string("it cannot be reached: ") + error->message);
        }
        return;
    }
    tie.reset(made);
    const char* const protocol = soup_websocket_connection_get_protocol(made);
    if (protocol == nullptr || std::string_view(protocol) != kProtocol) {
        Break("it is no server for rooms");
        return;
    }
    soup_websocket_connection_set_max_incoming_payload_size(made, kLongestServerText);
    g_signal_connect(made, "message",
                     G_CALLBACK(+[](SoupWebsocketConnection*, gint, GBytes* bytes, JanusClient* self) {
                         gsize size = 0;
                         const gconstpointer data = g_bytes_get_data(bytes, &size);
                         self->OnText({static_cast<const char*>(data), size});
                     }),
                     this);
    g_signal_connect(made, "closed", G_CALLBACK(+[](SoupWebsocketConnection*, JanusClient* self) {
                         self->Break("the connection is closed");
                     }),
                     this);
    lastHeard = steady_clock::now();
    KeepAlive();
    if (sessionId != 0) {
        Claim();
    } else {
        Create();
    }
}

void JanusClient::Claim() {
    Send({{"janus", "claim"}}, [this](const JanusMessage& answer) {
        if (answer.kind == Kind::Success) {
            Open(true);
        } else if (answer.errorCode != kNoAnswer) {
            sessionId = 0;
            handles.clear();
            Create();
        }
    });
}

void JanusClient::Create() {
    Send({{"janus", "create"}}, [this](const JanusMessage& answer) {
        if (answer.kind == Kind::Success && answer.id != 0) {
            sessionId = answer.id;
            Open(false);
        } else if (answer.errorCode == JanusErrors::kRefusedToken) {
            Break(server.token.empty() ? "it asks for a token" : "it refuses the token");
        } else if (answer.errorCode != kNoAnswer) {
            Break("it makes no session: " + answer.reason);
        }
    });
}

void JanusClient::Open(bool isFormer) {
    delay = kFirstDelay;
    isOpen = true;
    hasOpened = true;
    if (std::exchange(breakWasLogged, false)) {
        LOG(kLogInformation, "The server %s is back", server.address.c_str());
    }
    events.opened(isFormer);
}

void JanusClient::Break(const std::string& problem) {
    if (hasEnded) return;
    CloseTie();
    std::string line = "The server ";
    line += server.address;
    line += " cannot be used, ";
    line += WithoutToken(problem);
    if (!hasOpened) {
        hasEnded = true;
        events.failed(line);
        return;
    }
    if (!std::exchange(breakWasLogged, true)) LOG(kLogWarning, "%s; it is tried again", line.c_str());
    retry = StartTimer(context->Context(), delay, [this] { Connect(); });
    delay = std::min(delay * 2, kLongestDelay);
    // What is asked for in these calls is refused.
    const bool wasOpen = std::exchange(isOpen, false);
    for (auto& [transaction, request] : std::exchange(pending, {})) Refuse(request.handler);
    if (wasOpen && !hasEnded) events.lost();
}

void JanusClient::CloseTie() {
    ++attempt;
    timer.reset();
    retry.reset();
    if (connecting) g_cancellable_cancel(connecting.get());
    connecting.reset();
    if (!tie) return;
    g_signal_handlers_disconnect_by_data(tie.get(), this);
    context->Run([&] {
        if (soup_websocket_connection_get_state(tie.get()) == SOUP_WEBSOCKET_STATE_OPEN) {
            soup_websocket_connection_close(tie.get(), SOUP_WEBSOCKET_CLOSE_GOING_AWAY, nullptr);
        }
        // The server need not answer that.
        g_io_stream_close(soup_websocket_connection_get_io_stream(tie.get()), nullptr, nullptr);
        tie.reset();
    });
}

void JanusClient::KeepAlive() {
    timer = StartTimer(context->Context(), kKeepAlive / 2, [this] {
        const auto now = steady_clock::now();
        if (now - lastHeard > kLongestSilence) {
            Break("it does not answer");
            return;
        }
        std::vector<AnswerHandler> overdue;
        for (auto request = pending.begin(); request != pending.end();) {
            if (now - request->second.asked < kPatience) {
                ++request;
                continue;
            }
            overdue.push_back(std::move(request->second.handler));
            request = pending.erase(request);
        }
        const std::uint64_t own = attempt;
        for (const AnswerHandler& handler : overdue) Refuse(handler);
        if (hasEnded || attempt != own) return;
        if (!isOpen && !overdue.empty()) {
            Break("it does not answer");
            return;
        }
        if (isOpen && now - lastHeard >= kKeepAlive) Send({{"janus", "keepalive"}}, nullptr);
        KeepAlive();
    });
}

void JanusClient::Refuse(const AnswerHandler& handler) {
    if (!handler || hasEnded) return;
    JanusMessage none;
    none.kind = Kind::Error;
    none.errorCode = kNoAnswer;
    none.reason = "no answer";
    handler(none);
}

std::string JanusClient::WithoutToken(std::string text) const {
    if (server.token.empty()) return text;
    for (auto place = text.find(server.token); place != std::string::npos; place = text.find(server.token)) {
        text.erase(place, server.token.size());
    }
    return text;
}

void JanusClient::Send(json request, AnswerHandler onAnswer) {
    if (!tie || soup_websocket_connection_get_state(tie.get()) != SOUP_WEBSOCKET_STATE_OPEN) {
        // As if nobody had answered: not inside the call.
        loop.Post([this, alive = isAlive, handler = std::move(onAnswer)] {
            if (*alive) Refuse(handler);
        });
        return;
    }
    const std::string transaction = std::to_string(++transactions);
    request["transaction"] = transaction;
    if (sessionId != 0) request["session_id"] = sessionId;
    // By one of the two ways it asks for it.
    if (!server.token.empty()) request["token"] = request["apisecret"] = server.token;
    if (onAnswer) pending[transaction] = {std::move(onAnswer), steady_clock::now()};
    context->Run([&] { soup_websocket_connection_send_text(tie.get(), Text(request).c_str()); });
}

void JanusClient::OnText(std::string_view text) {
    lastHeard = steady_clock::now();
    auto message = ReadJanusMessage(text);
    if (!message) {
        Break(kGarbage);
        return;
    }
    if (!limit.Allow(lastHeard)) {
        Break("it says more than can be read");
        return;
    }
    message->reason = WithoutToken(std::move(message->reason));
    if (message->kind == Kind::Ack) return;
    const bool isAnswer =
        message->kind == Kind::Success || message->kind == Kind::Error || message->kind == Kind::Event;
    if (const auto request = pending.find(message->transaction); isAnswer && request != pending.end()) {
        const AnswerHandler handler = std::move(request->second.handler);
        pending.erase(request);
        handler(*message);
        return;
    }
    if (message->kind == Kind::Error && message->errorCode == JanusErrors::kNoSuchSession && isOpen) {
        Break("it has forgotten the session");
        return;
    }
    if (message->kind == Kind::Timeout) {
        Break("it has ended the session");
        return;
    }
    OnEvent(*message);
}

void JanusClient::OnEvent(const JanusMessage& message) {
    const auto place = handles.find(message.handle);
    if (place == handles.end()) return;
    // It may end its own handle.
    const EventHandler handler = place->second;
    handler(message);
}

void JanusClient::Attach(EventHandler onEvent, std::function<void(Handle)> onAttached) {
    Send({{"janus", "attach"}, {"plugin", kPlugin}},
         [this, event = std::move(onEvent), attached = std::move(onAttached)](const JanusMessage& answer) {
             const bool isAttached = answer.kind == Kind::Success && answer.id != 0;
             if (isAttached) {
                 handles[answer.id] = event;
             } else if (answer.errorCode != kNoAnswer) {
                 LOG(kLogWarning, "The server %s gives no handle: %s", server.address.c_str(),
                     answer.reason.c_str());
             }
             attached(isAttached ? answer.id : 0);
         });
}

void JanusClient::Detach(Handle handle) {
    if (handles.erase(handle) == 0 || !isOpen) return;
    Send({{"janus", "detach"}, {"handle_id", handle}}, nullptr);
}

void JanusClient::Ask(Handle handle, const json& body, const std::optional<JanusDescription>& description,
                      AnswerHandler onAnswer) {
    json request = {{"janus", "message"}, {"handle_id", handle}, {"body", body}};
    if (description) {
        request["jsep"] = {{"type", description->isOffer ? "offer" : "answer"}, {"sdp", description->sdp}};
    }
    Send(std::move(request), std::move(onAnswer));
}

void JanusClient::Trickle(Handle handle, std::uint32_t mediaLine, const std::string& candidate) {
    json told = {{"completed", true}};
    if (!candidate.empty()) told = {{"sdpMLineIndex", mediaLine}, {"candidate", candidate}};
    Send({{"janus", "trickle"}, {"handle_id", handle}, {"candidate", std::move(told)}}, nullptr);
}

}  // namespace Corvanta::Engine
