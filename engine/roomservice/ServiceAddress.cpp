#include "engine/roomservice/ServiceAddress.h"

#include <gio/gio.h>

#include <algorithm>
#include <utility>

#include "engine/common/NetworkAddress.h"
#include "engine/roomservice/RoomServicePlace.h"

namespace Corvanta::Engine {

namespace {

constexpr std::size_t kLongestToken = 1024;

std::string UrlOf(const EngineOptions& options) {
    std::string url = options.service;
    while (url.ends_with('/')) url.pop_back();
    return url;
}

std::optional<std::string> CheckAuthority(const std::filesystem::path& file) {
    GError* error = nullptr;
    GTlsDatabase* database = g_tls_file_database_new(file.c_str(), &error);
    g_clear_object(&database);
    if (error == nullptr) return std::nullopt;
    std::string problem = "the certificates in '";
    problem += file.string();
    problem += "' cannot be used: ";
    problem += error->message;
    g_clear_error(&error);
    return problem;
}

}  // namespace

bool IsToken(const std::string& text) {
    return !text.empty() && text.size() <= kLongestToken &&
           std::ranges::all_of(text, [](char letter) { return g_ascii_isgraph(letter) != FALSE; });
}

bool HasOwnService(const EngineOptions& options) {
    return options.service.empty() || options.isPrivate || options.room.empty();
}

ServiceAddress ServiceOf(const EngineOptions& options) {
    return HasOwnService(options) ? ServiceAddress{.socket = UserRoomService().socket}
                                  : ServiceAddress{.socket = {},
                                                   .url = UrlOf(options),
                                                   .token = options.serverToken,
                                                   .certificateAuthority = options.certificateAuthority};
}

std::optional<std::string> CheckService(const EngineOptions& options) {
    if (options.service.empty()) return std::nullopt;
    // It is not repeated: what is too much in it may be a secret.
    const auto address = ReadNetworkAddress(options.service, kServiceSchemes);
    if (!address) return "the room service's address is none like http://HOST:PORT or https://HOST:PORT";
    if (!IsToken(options.serverToken)) {
        return options.serverToken.empty() ? "the room service wants a token, and there is none"
                                           : "the token has blanks, or what is no ASCII, or is too long";
    }
    if (address->IsEncrypted() && !options.certificateAuthority.empty())
        return CheckAuthority(options.certificateAuthority);
    return std::nullopt;
}

std::optional<std::string> WarnOfBareToken(const EngineOptions& options) {
    if (options.serverToken.empty()) return std::nullopt;
    const std::string service = HasOwnService(options) ? std::string() : options.service;
    std::string bare;
    for (const auto& address :
         {ReadNetworkAddress(options.server, kServerSchemes), ReadNetworkAddress(service, kServiceSchemes)}) {
        if (!address || address->IsEncrypted() || address->IsLoopback()) continue;
        if (!bare.empty()) bare += " and ";
        bare += address->ToString();
    }
    if (bare.empty()) return std::nullopt;
    std::string warning = "The token goes to ";
    warning += bare;
    warning += " in the clear: whoever is on the way can read it";
    return warning;
}

}  // namespace Corvanta::Engine
