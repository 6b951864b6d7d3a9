// How a connection with the forwarding server is made, whichever way it carries. Values; any thread.
#pragma once

#include <string>

#include "engine/peer/PeerConnection.h"

namespace Corvanta::Engine {

enum class ServerWay { ToServer, FromServer };

// Who receives answers. `name` is for the log.
[[nodiscard]] inline PeerOptions ServerOptions(const std::string& name, ServerWay way) {
    const bool sends = way == ServerWay::ToServer;
    // The server's side of the channel bears no name, and ours must bear this one.
    return {.name = name,
            .role = sends ? PeerOptions::Role::Offerer : PeerOptions::Role::Answerer,
            .sends = sends,
            .receives = !sends,
            .channelLabel = "JanusDataChannel",
            .answererMakesChannel = true,
            .loopbackOnly = false};
}

}  // namespace Corvanta::Engine
