// A network of the test's own: one address that is no loopback address, which the server for rooms would not
// offer, and nobody else in it. Before any thread is started.
#pragma once

#include <string>

namespace Corvanta::Engine {

// Puts the process into it. False where the system does not allow that.
[[nodiscard]] bool EnterOwnNetwork();

// An IPv4 address under which this process, and what it starts, can be reached by itself; empty for none.
[[nodiscard]] std::string OwnAddress();
// That nobody listens on at the moment.
[[nodiscard]] int FreePort(const std::string& address);

}  // namespace Corvanta::Engine
