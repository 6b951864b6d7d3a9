#include "engine/roomservice/ServiceAddress.h"

#include <gio/gio.h>

#include <algorithm>
#include <utility>

#include "engine/roomservice/RoomServicePlace.h"

namespace Corvanta::Engine {

namespace {

constexpr std::size_t kLongestToken = 1024;
constexpr const char* kEncryptedScheme = "https";

// Nothing but a scheme, a host and a port.
bool IsUrl(const std::string& text) {
    gchar* scheme = nullptr;
    gchar* userInfo = nullptr;
    gchar* host = nullptr;
    gchar* path = nullptr;
    gchar* query = nullptr;
    gchar* fragment = nullptr;
    bool isUrl = g_uri_split(text.c_str(), G_URI_FLAGS_NONE, &scheme, &userInfo, &host, nullptr, &path,
                             &query, &fragment, nullptr) != FALSE;
    const auto isEmpty = [](const gchar* part) { return part == nullptr || part[0] == '\0'; };
    isUrl = isUrl && scheme != nullptr &&
            (g_ascii_strcasecmp(scheme, "http") == 0 || g_ascii_strcasecmp(scheme, kEncryptedScheme) == 0) &&
            !isEmpty(host) && isEmpty(path) && userInfo == nullptr && query == nullptr && fragment == nullptr;
    for (gchar* const part : {scheme, userInfo, host, path, query, fragment}) g_free(part);
    return isUrl;
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

ServiceAddress ServiceOf(const EngineOptions& options) {
    if (options.service.empty())
        return {.socket = UserRoomService().socket, .url = {}, .token = {}, .certificateAuthority = {}};
    std::string url = options.service;
    while (url.ends_with('/')) url.pop_back();
    return {.socket = {},
            .url = std::move(url),
            .token = options.serverToken,
            .certificateAuthority = options.certificateAuthority};
}

std::optional<std::string> CheckService(const EngineOptions& options) {
    if (options.service.empty()) return std::nullopt;
    const ServiceAddress address = ServiceOf(options);
    if (!IsUrl(address.url)) {
        std::string problem = "the room service '";
        problem += options.service;
        problem += "' is no address like http://HOST:PORT or https://HOST:PORT";
        return problem;
    }
    if (!IsToken(address.token)) {
        return address.token.empty() ? "the room service wants a token, and there is none"
                                     : "the token has blanks, or what is no ASCII, or is too long";
    }
    if (address.url.starts_with(kEncryptedScheme) && !address.certificateAuthority.empty())
        return CheckAuthority(address.certificateAuthority);
    return std::nullopt;
}

}  // namespace Corvanta::Engine
