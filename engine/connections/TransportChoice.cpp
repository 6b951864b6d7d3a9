#include "engine/connections/TransportChoice.h"

#include <memory>

#include "engine/embedded/EmbeddedTransport.h"
#include "engine/mesh/MeshTransport.h"

namespace Corvanta::Engine {

TransportMaker ChooseTransport(const EngineOptions& options, const std::string& displayName) {
    if (!options.room.empty()) {
        return [mesh = MeshOptions{.room = options.room, .name = displayName}](
                   EngineLoop& loop, const std::shared_ptr<SoundMixer>& mixer) {
            return std::make_unique<MeshTransport>(loop, mixer, mesh);
        };
    }
    return [participants = options.participants, drawAfter = options.drawAfter](
               EngineLoop& loop, const std::shared_ptr<SoundMixer>& mixer) {
        return std::make_unique<EmbeddedTransport>(loop, mixer, participants, drawAfter);
    };
}

}  // namespace Corvanta::Engine
