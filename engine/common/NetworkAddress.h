// Addresses of servers as people give them: a scheme, a host and a port, and nothing that could be a secret.
// Plain functions of values, which need no other library; any thread.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace Corvanta::Engine {

// What carries rooms, and what keeps their notes. Of each pair the second is encrypted.
inline constexpr std::array<std::string_view, 2> kServerSchemes{"ws", "wss"};
inline constexpr std::array<std::string_view, 2> kServiceSchemes{"http", "https"};

struct NetworkAddress {
    std::string scheme = {};
    // A name or a number address, without the brackets that IPv6 has in an address.
    std::string host = {};
    // 0 for the scheme's own.
    std::uint16_t port = 0;

    // As it is said and logged: "scheme://host:port".
    [[nodiscard]] std::string ToString() const;
    [[nodiscard]] bool IsEncrypted() const;
    // Whether what is sent there stays on this machine.
    [[nodiscard]] bool IsLoopback() const;
};

// Nothing unless it is "SCHEME://HOST" or "SCHEME://HOST:PORT" with one of those schemes. Slashes at its end
// do not count; a user, a path and a query make it none.
[[nodiscard]] std::optional<NetworkAddress> ReadNetworkAddress(std::string_view text,
                                                               std::span<const std::string_view> schemes);

}  // namespace Corvanta::Engine
