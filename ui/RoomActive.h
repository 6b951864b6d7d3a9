// The one flag that all threads read: a room or recording is up. Media paths test it first and do nothing
// when it is false.
#pragma once

#include <atomic>

namespace Corvanta {

inline std::atomic<bool> roomActive{false};

}  // namespace Corvanta
