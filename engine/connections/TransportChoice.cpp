#include "engine/connections/TransportChoice.h"

#include <fstream>
#include <memory>

#include "engine/common/NetworkAddress.h"
#include "engine/embedded/EmbeddedTransport.h"
#include "engine/janus/JanusTransport.h"
#include "engine/mesh/MeshTransport.h"

namespace Corvanta::Engine {

std::optional<std::string> CheckTransport(const EngineOptions& options) {
    if (options.room.size() > kLongestRoomName)
        return "The room's name is longer than " + std::to_string(kLongestRoomName) + " bytes";
    if (options.server.empty()) return std::nullopt;
    if (options.room.empty()) return "A server carries rooms with a name, and none is given";
    // It is not repeated: what is too much in it may be a secret.
    if (!ReadNetworkAddress(options.server, kServerSchemes))
        return "The server's address is none like ws://HOST:PORT or wss://HOST:PORT";
    if (!options.certificateAuthority.empty() && !std::ifstream(options.certificateAuthority))
        return "The certificates cannot be read: " + options.certificateAuthority.string();
    return std::nullopt;
}

TransportMaker ChooseTransport(const EngineOptions& options, const std::string& displayName) {
    if (options.room.empty()) {
        return [participants = options.participants](EngineLoop& loop,
                                                     const std::shared_ptr<SoundMixer>& mixer) {
            return std::make_unique<EmbeddedTransport>(loop, mixer, participants);
        };
    }
    if (options.server.empty()) {
        return [mesh = MeshOptions{.room = options.room, .name = displayName}](
                   EngineLoop& loop, const std::shared_ptr<SoundMixer>& mixer) {
            return std::make_unique<MeshTransport>(loop, mixer, mesh);
        };
    }
    return [janus = JanusOptions{.server = {.address = options.server,
                                            .certificateAuthority = options.certificateAuthority,
                                            .token = options.serverToken},
                                 .room = options.room,
                                 .name = displayName}](EngineLoop& loop,
                                                       const std::shared_ptr<SoundMixer>& mixer) {
        return std::make_unique<JanusTransport>(loop, mixer, janus);
    };
}

}  // namespace Corvanta::Engine
