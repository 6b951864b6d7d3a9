// People for a room that has none of its own. Plain values.
#pragma once

#include <span>
#include <vector>

#include "host/Options.h"

namespace Corvanta::Host {

// That many participants with generated clips, each with a name that nobody else has, `others` included. More
// than there are names are numbered. The same arguments give the same people.
[[nodiscard]] std::vector<ParticipantOption> GenerateParticipants(int count,
                                                                  std::span<const ParticipantOption> others);

}  // namespace Corvanta::Host
