// Where the room service is that a client talks to. Plain values; any thread.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "engine/Engine.h"

namespace Corvanta::Engine {

struct ServiceAddress {
    // Of a service of this user's on this machine; not looked at when there is a URL.
    std::filesystem::path socket;
    // "http://HOST:PORT" or "https://HOST:PORT", and what to bear there: a secret.
    std::string url = {};
    std::string token = {};
    // Certificates (PEM) of those whom the service's may come from; empty: the system's.
    std::filesystem::path certificateAuthority = {};
};

// Whether the room is served on this machine: the options name no service, or the room is not one that others
// could ask a shared service for, since it has no name or its name is made up.
[[nodiscard]] bool HasOwnService(const EngineOptions& options);

// Of the options' service; the user's own where HasOwnService says so.
[[nodiscard]] ServiceAddress ServiceOf(const EngineOptions& options);

// What is wrong with the options' service, in one line for the user that does not tell the token; nothing
// when all is well or none is named.
[[nodiscard]] std::optional<std::string> CheckService(const EngineOptions& options);

// What the person should know who has a token sent in the clear to another machine, in one line that does not
// tell it; nothing where it stays on this machine or is encrypted on its way.
[[nodiscard]] std::optional<std::string> WarnOfBareToken(const EngineOptions& options);

// Whether a header can carry it: printable, without blanks, of 1 to 1024 bytes.
[[nodiscard]] bool IsToken(const std::string& text);

}  // namespace Corvanta::Engine
