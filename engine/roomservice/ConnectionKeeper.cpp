#include "engine/roomservice/ConnectionKeeper.h"

#include <algorithm>
#include <utility>

#include "engine/common/GuardedCall.h"
#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

// When no connection can be accepted, because the process has no file left.
constexpr std::chrono::milliseconds kAcceptPause{500};
constexpr std::chrono::milliseconds kLongestSweep{2000};

}  // namespace

std::string ClientOf(GSocketAddress* address) {
    if (!G_IS_INET_SOCKET_ADDRESS(address)) return {};
    gchar* const text =
        g_inet_address_to_string(g_inet_socket_address_get_address(G_INET_SOCKET_ADDRESS(address)));
    std::string client(text);
    g_free(text);
    return client;
}

ConnectionKeeper::ConnectionKeeper(GSocket* listening, GTlsCertificate* certificate,
                                   const Limits& connectionLimits, OnConnection onConnection)
    : context(g_main_context_ref_thread_default()),
      listener(G_SOCKET(g_object_ref(listening))),
      tlsCertificate(certificate != nullptr ? G_TLS_CERTIFICATE(g_object_ref(certificate)) : nullptr),
      limits(connectionLimits),
      onNew(std::move(onConnection)) {
    g_socket_set_blocking(listener, FALSE);
    StartAccepting();
    Sweep();
}

ConnectionKeeper::~ConnectionKeeper() {
    accepting.reset();
    sweeping.reset();
    for (auto& [address, connection] : connections) {
        g_object_weak_unref(G_OBJECT(connection.stream), OnStreamGone, &connection);
        g_socket_shutdown(connection.socket, TRUE, TRUE, nullptr);
        g_object_unref(connection.socket);
        g_object_unref(connection.remote);
    }
    if (tlsCertificate != nullptr) g_object_unref(tlsCertificate);
    g_socket_close(listener, nullptr);
    g_object_unref(listener);
    g_main_context_unref(context);
}

void ConnectionKeeper::StartAccepting() {
    accepting.reset(g_socket_create_source(listener, G_IO_IN, nullptr));
    g_source_set_callback(accepting.get(), G_SOURCE_FUNC(OnReadable), this, nullptr);
    g_source_attach(accepting.get(), context);
}

gboolean ConnectionKeeper::OnReadable(GSocket*, GIOCondition, gpointer self) {
    CallGuarded("A connection of the room service", [&] { static_cast<ConnectionKeeper*>(self)->Accept(); });
    return G_SOURCE_CONTINUE;
}

void ConnectionKeeper::Accept() {
    GError* error = nullptr;
    GSocket* const socket = g_socket_accept(listener, nullptr, &error);
    if (socket == nullptr) {
        if (g_error_matches(error, G_IO_ERROR, G_IO_ERROR_WOULD_BLOCK) == FALSE) {
            LOG(kLogDebug, "The room service takes no connection: %s", error->message);
            accepting = StartTimer(context, kAcceptPause, [this] { StartAccepting(); });
        }
        g_clear_error(&error);
        return;
    }
    GSocketAddress* local = g_socket_get_local_address(socket, nullptr);
    GSocketAddress* remote = g_socket_get_remote_address(socket, nullptr);
    if (local != nullptr && remote != nullptr && HasPlaceFor(ClientOf(remote))) {
        Keep(socket, local, remote);
    } else {
        g_socket_close(socket, nullptr);
    }
    g_clear_object(&local);
    g_clear_object(&remote);
    g_object_unref(socket);
}

bool ConnectionKeeper::HasPlaceFor(const std::string& client) const {
    if (connections.size() >= limits.connections) return false;
    const auto isOfClient = [&](const auto& entry) { return entry.second.client == client; };
    return client.empty() || static_cast<std::size_t>(std::ranges::count_if(connections, isOfClient)) <
                                 limits.connectionsOfAddress;
}

void ConnectionKeeper::Keep(GSocket* socket, GSocketAddress* local, GSocketAddress* remote) {
    GIOStream* stream = G_IO_STREAM(g_socket_connection_factory_create_connection(socket));
    if (tlsCertificate != nullptr) {
        GIOStream* const plain = stream;
        stream = g_tls_server_connection_new(plain, tlsCertificate, nullptr);
        g_object_unref(plain);
        if (stream == nullptr) return;
    }
    Connection& connection = connections[remote];
    connection = {.keeper = this,
                  .socket = G_SOCKET(g_object_ref(socket)),
                  .remote = G_SOCKET_ADDRESS(g_object_ref(remote)),
                  .stream = stream,
                  .client = ClientOf(remote),
                  .deadline = Clock::now() + std::min(limits.head, limits.request)};
    g_object_weak_ref(G_OBJECT(stream), OnStreamGone, &connection);
    onNew(stream, local, remote);
    g_object_unref(stream);
}

void ConnectionKeeper::OnStreamGone(gpointer data, GObject*) {
    const Connection gone = *static_cast<Connection*>(data);
    gone.keeper->connections.erase(gone.remote);
    g_object_unref(gone.socket);
    g_object_unref(gone.remote);
}

void ConnectionKeeper::OnHead(GSocketAddress* remote) {
    Extend(remote, limits.request);
}

void ConnectionKeeper::OnRequest(GSocketAddress* remote) {
    Extend(remote, limits.answer);
}

void ConnectionKeeper::OnAnswered(GSocketAddress* remote) {
    Extend(remote, limits.request);
}

void ConnectionKeeper::Refuse(GSocketAddress* remote) {
    const auto found = connections.find(remote);
    if (found != connections.end()) g_socket_shutdown(found->second.socket, TRUE, FALSE, nullptr);
}

void ConnectionKeeper::Extend(GSocketAddress* remote, std::chrono::milliseconds patience) {
    const auto found = connections.find(remote);
    if (found != connections.end()) found->second.deadline = Clock::now() + patience;
}

void ConnectionKeeper::Sweep() {
    const auto now = Clock::now();
    for (auto& [address, connection] : connections) {
        // Whoever reads from it or writes to it hears of this and lets go of it.
        if (connection.deadline <= now) g_socket_shutdown(connection.socket, TRUE, TRUE, nullptr);
    }
    const auto interval = std::min({kLongestSweep, limits.head / 4, limits.request / 4, limits.answer / 4});
    sweeping = StartTimer(context, interval, [this] { Sweep(); });
}

}  // namespace Corvanta::Engine
