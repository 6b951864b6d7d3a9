// One look at the thread's message queue without taking anything out. Host thread.
#pragma once

namespace Corvanta::Interface {

// 1 if a message waits, else 0. Always 0 where threads have no message queue.
[[nodiscard]] int PeekThreadMessages();

}  // namespace Corvanta::Interface
