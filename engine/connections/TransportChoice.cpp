#include "engine/connections/TransportChoice.h"

#include <memory>

#include "engine/embedded/EmbeddedTransport.h"

namespace Corvanta::Engine {

TransportMaker ChooseTransport(const EngineOptions& options, const std::string&) {
    return [participants = options.participants, drawAfter = options.drawAfter](
               EngineLoop& loop, const std::shared_ptr<SoundMixer>& mixer) {
        return std::make_unique<EmbeddedTransport>(loop, mixer, participants, drawAfter);
    };
}

}  // namespace Corvanta::Engine
