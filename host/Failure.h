// Why something could not be done, as the one line that the person reads. A plain value.
#pragma once

#include "engine/common/CommandLine.h"

namespace Corvanta::Host {

using Engine::Failure;

}  // namespace Corvanta::Host
