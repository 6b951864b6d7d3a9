// Which way to the others the options ask for.
#pragma once

#include <string>

#include "engine/Engine.h"
#include "engine/transport/Transport.h"

namespace Corvanta::Engine {

// Embedded without a room's name, mesh with one, over the server where one is named. `displayName` is what
// the others see of the local user. Any thread.
[[nodiscard]] TransportMaker ChooseTransport(const EngineOptions& options, const std::string& displayName);

}  // namespace Corvanta::Engine
