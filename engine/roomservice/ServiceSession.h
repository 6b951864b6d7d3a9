// The pieces of a request to the room service that every client needs, whether it waits for the answer or
// not. A session stays on one thread, whose GLib main context serves it.
#pragma once

#include <libsoup/soup.h>

#include "engine/restful/HttpClient.h"
#include "engine/roomservice/ServiceAddress.h"

namespace Corvanta::Engine {

// Who answers https is verified: its certificate must come from one of the address's authorities and be for
// its host. Null, and a log line, when the authorities cannot be read. The caller's to unref.
[[nodiscard]] SoupSession* MakeServiceSession(const ServiceAddress& address);

// Bears the address's token, and goes nowhere else. Null for a target that is none. The caller's to unref.
[[nodiscard]] SoupMessage* MakeServiceMessage(const ServiceAddress& address, const HttpRequest& request);

}  // namespace Corvanta::Engine
