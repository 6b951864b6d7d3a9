// Accepts the room service's connections and ends those that keep it waiting. Lives on one thread, whose GLib
// main context serves it.
#pragma once

#include <gio/gio.h>

#include <chrono>
#include <cstddef>
#include <functional>
#include <map>

#include "engine/signalling/OwnedSource.h"

namespace Corvanta::Engine {

class ConnectionKeeper final {
public:
    using Clock = std::chrono::steady_clock;

    struct Limits {
        // Those beyond are closed at once.
        std::size_t connections = 256;
        // How long a connection may take until its next request is there as a whole, and how long for an
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
        Clock::time_point deadline;
    };

    static gboolean OnReadable(GSocket* socket, GIOCondition condition, gpointer self);
    static void OnStreamGone(gpointer connection, GObject* stream);

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
