// Accepts the room service's connections and ends those that keep it waiting. Lives on one thread, whose GLib
// main context serves it.
#pragma once

#include <gio/gio.h>

#include <chrono>
#include <cstddef>
#include <functional>
#include <map>
#include <string>

#include "engine/signalling/OwnedSource.h"

namespace Corvanta::Engine {

// The number address by which a client is known; empty over a Unix socket, where all processes of the user's
// are one client.
[[nodiscard]] std::string ClientOf(GSocketAddress* address);

class ConnectionKeeper final {
public:
    using Clock = std::chrono::steady_clock;

    struct Limits {
        // Those beyond are closed at once.
        std::size_t connections = 256;
        // Of one address, behind which several people may sit; the processes of this machine are one when
        // they come over a Unix socket, and have all.
        std::size_t connectionsOfAddress = 64;
        // How long a new connection may take until the head of its first request is there.
        std::chrono::milliseconds head{10'000};
        // How long a connection may take then until its next request is there as a whole, and how long for an
        // answer to be made and taken.
        std::chrono::milliseconds request{60'000};
        std::chrono::milliseconds answer{90'000};
    };
    // Whoever keeps a reference of the stream has the connection. The remote address is another object for
    // each connection and stands for it.
    using OnConnection =
        std::function<void(GIOStream* stream, GSocketAddress* local, GSocketAddress* remote)>;

    // The socket listens already; a reference is kept. With a certificate the streams are encrypted.
    ConnectionKeeper(GSocket* listening, GTlsCertificate* certificate, const Limits& connectionLimits,
                     OnConnection onConnection);
    ~ConnectionKeeper();
    ConnectionKeeper(const ConnectionKeeper&) = delete;
    ConnectionKeeper& operator=(const ConnectionKeeper&) = delete;

    // The head of a request has come over the connection. Others are ignored.
    void OnHead(GSocketAddress* remote);
    // A whole request has come over the connection, or its answer has gone. Others are ignored.
    void OnRequest(GSocketAddress* remote);
    void OnAnswered(GSocketAddress* remote);
    // Nothing more is read from the connection.
    void Refuse(GSocketAddress* remote);

    [[nodiscard]] std::size_t Connections() const { return connections.size(); }

private:
    struct Connection {
        ConnectionKeeper* keeper;
        GSocket* socket;
        GSocketAddress* remote;
        GIOStream* stream;
        // Of the client; empty over a Unix socket.
        std::string client;
        Clock::time_point deadline;
    };

    static gboolean OnReadable(GSocket* socket, GIOCondition condition, gpointer self);
    static void OnStreamGone(gpointer connection, GObject* stream);

    [[nodiscard]] bool HasPlaceFor(const std::string& client) const;
    void StartAccepting();
    void Accept();
    void Keep(GSocket* socket, GSocketAddress* local, GSocketAddress* remote);
    void Extend(GSocketAddress* remote, std::chrono::milliseconds patience);
    void Sweep();

    GMainContext* const context;
    GSocket* const listener;
    GTlsCertificate* const tlsCertificate;
    const Limits limits;
    const OnConnection onNew;
    // By their addresses.
    std::map<GSocketAddress*, Connection> connections;
    OwnedSource accepting;
    OwnedSource sweeping;
};

}  // namespace Corvanta::Engine
