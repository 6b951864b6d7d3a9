// Which way to the others the options ask for.
#pragma once

#include <optional>
#include <string>

#include "engine/Engine.h"
#include "engine/transport/Transport.h"

namespace Corvanta::Engine {

// What is wrong with the room's name, the server or its certificates, as one line for the user; nothing when
// all is well. Whether the server is there is seen when the room is entered.
[[nodiscard]] std::optional<std::string> CheckTransport(const EngineOptions& options);

// Embedded without a room's name, mesh with one, over the server where one is named. `displayName` is what
// the others see of the local user. Any thread.
[[nodiscard]] TransportMaker ChooseTransport(const EngineOptions& options, const std::string& displayName);

}  // namespace Corvanta::Engine
