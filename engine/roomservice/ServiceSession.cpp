#include "engine/roomservice/ServiceSession.h"

#include <gio/gunixsocketaddress.h>

#include <string>

#include "engine/common/NetworkTypes.h"
#include "platform/Logger.h"

namespace Corvanta::Engine {

SoupSession* MakeServiceSession(const ServiceAddress& address) {
    EnsureNetworkTypes();
    SoupSession* session = nullptr;
    // Whatever proxy the user's environment names, the service is asked directly.
    if (address.url.empty()) {
        GSocketAddress* const socket = g_unix_socket_address_new(address.socket.c_str());
        session =
            soup_session_new_with_options("remote-connectable", socket, "proxy-resolver", nullptr, nullptr);
        g_object_unref(socket);
    } else {
        session = soup_session_new_with_options("proxy-resolver", nullptr, nullptr);
        // A refused token is no reason to ask the user's other accounts.
        soup_session_remove_feature_by_type(session, SOUP_TYPE_AUTH_MANAGER);
    }
    if (address.url.empty() || address.certificateAuthority.empty()) return session;
    GError* error = nullptr;
    GTlsDatabase* const authorities = g_tls_file_database_new(address.certificateAuthority.c_str(), &error);
    if (authorities == nullptr) {
        LOG(kLogError, "The room service is not asked: %s", error->message);
        g_clear_error(&error);
        g_object_unref(session);
        return nullptr;
    }
    soup_session_set_tls_database(session, authorities);
    g_object_unref(authorities);
    return session;
}

SoupMessage* MakeServiceMessage(const ServiceAddress& address, const HttpRequest& request) {
    // Over a Unix socket the host's name only fills the place that HTTP has for it.
    std::string uri = address.url.empty() ? "http://localhost" : address.url;
    uri += request.target;
    SoupMessage* const message = soup_message_new(request.method.c_str(), uri.c_str());
    if (message == nullptr) return nullptr;
    soup_message_add_flags(message, SOUP_MESSAGE_NO_REDIRECT);
    if (!request.body.empty()) {
        GBytes* const body = g_bytes_new(request.body.data(), request.body.size());
        soup_message_set_request_body_from_bytes(message, "application/json", body);
        g_bytes_unref(body);
    }
    if (!address.token.empty()) {
        std::string header = "Bearer ";
        header += address.token;
        soup_message_headers_replace(soup_message_get_request_headers(message), "Authorization",
                                     header.c_str());
    }
    return message;
}

}  // namespace Corvanta::Engine
