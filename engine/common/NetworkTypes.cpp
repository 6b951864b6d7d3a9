#include "engine/common/NetworkTypes.h"

#include <gio/gio.h>
#include <gio/gunixsocketaddress.h>
#include <libsoup/soup.h>

#include <mutex>

namespace Corvanta::Engine {

void EnsureNetworkTypes() {
    static std::once_flag once;
    std::call_once(once, [] {
        for (const GType type :
             {G_TYPE_SOCKET_ADDRESS, G_TYPE_INET_SOCKET_ADDRESS, G_TYPE_UNIX_SOCKET_ADDRESS,
              SOUP_TYPE_SESSION, SOUP_TYPE_MESSAGE, SOUP_TYPE_SERVER, SOUP_TYPE_SERVER_MESSAGE,
              SOUP_TYPE_WEBSOCKET_CONNECTION}) {
            // With its class, whose initialization asks for further types. It stays.
            g_type_class_ref(type);
        }
    });
}

}  // namespace Corvanta::Engine
