// The options that the host gave, for the rest of the engine. Any thread.
#pragma once

#include "engine/Engine.h"

namespace Corvanta::Engine {

// With the default participants filled in where the host named none.
[[nodiscard]] EngineOptions CurrentOptions();

}  // namespace Corvanta::Engine
