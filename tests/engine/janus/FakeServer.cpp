#include "tests/engine/janus/FakeServer.h"

#include <future>
#include <nlohmann/json.hpp>
#include <utility>

namespace Corvanta::Engine {

FakeServer::FakeServer(Answer serverAnswer, std::string offeredProtocol)
    : answer(std::move(serverAnswer)), protocol(std::move(offeredProtocol)) {
    loop.Start([this] { loop.Run(); });
    Do([this] {
        server = soup_server_new("server-header", "fake", nullptr);
        const SoupServerWebsocketCallback onConnection =
            [](SoupServer*, SoupServerMessage*, const char*, SoupWebsocketConnection* connection,
               gpointer self) { static_cast<FakeServer*>(self)->OnConnection(connection); };
        char* protocols[] = {protocol.data(), nullptr};
        soup_server_add_websocket_handler(server, nullptr, nullptr, protocol.empty() ? nullptr : protocols,
                                          onConnection, this, nullptr);
        soup_server_listen_local(server, 0, SOUP_SERVER_LISTEN_IPV4_ONLY, nullptr);
        GSList* const uris = soup_server_get_uris(server);
        port = g_uri_get_port(static_cast<GUri*>(uris->data));
        g_slist_free_full(uris, reinterpret_cast<GDestroyNotify>(g_uri_unref));
    });
}

FakeServer::~FakeServer() {
    Do([this] {
        for (SoupWebsocketConnection* client : clients) {
            g_signal_handlers_disconnect_by_data(client, this);
            g_object_unref(client);
        }
        soup_server_disconnect(server);
        g_object_unref(server);
    });
    loop.Quit();
    loop.Join();
}

void FakeServer::Do(const std::function<void()>& task) {
    std::promise<void> done;
    loop.Post([&] {
        task();
        done.set_value();
    });
    done.get_future().wait();
}

void FakeServer::OnConnection(SoupWebsocketConnection* connection) {
    ++connections;
    clients.push_back(static_cast<SoupWebsocketConnection*>(g_object_ref(connection)));
    g_signal_connect(connection, "message",
                     G_CALLBACK(+[](SoupWebsocketConnection* client, gint, GBytes* bytes, FakeServer* self) {
                         gsize size = 0;
                         const gconstpointer data = g_bytes_get_data(bytes, &size);
                         const std::string text(static_cast<const char*>(data), size);
                         {
                             const std::lock_guard lock(self->mutex);
                             self->heard.push_back(text);
                         }
                         for (const std::string& said : self->answer(text)) {
                             if (soup_websocket_connection_get_state(client) != SOUP_WEBSOCKET_STATE_OPEN)
                                 return;
                             soup_websocket_connection_send_text(client, said.c_str());
                         }
                     }),
                     this);
}

std::string FakeServer::Address() const {
    return "ws://127.0.0.1:" + std::to_string(port);
}

void FakeServer::Say(const std::string& text) {
    Do([&] {
        for (SoupWebsocketConnection* client : clients) {
            if (soup_websocket_connection_get_state(client) == SOUP_WEBSOCKET_STATE_OPEN) {
                soup_websocket_connection_send_text(client, text.c_str());
            }
        }
    });
}

void FakeServer::CutOff() {
    Do([&] {
        for (SoupWebsocketConnection* client : clients) {
            g_io_stream_close(soup_websocket_connection_get_io_stream(client), nullptr, nullptr);
        }
    });
}

std::vector<std::string> FakeServer::Heard() const {
    const std::lock_guard lock(mutex);
    return heard;
}

std::string WithTransaction(const std::string& request, std::string text) {
    const nlohmann::json object = nlohmann::json::parse(request);
    const auto place = text.find("\"T\"");
    if (place != std::string::npos) text.replace(place, 3, object.at("transaction").dump());
    return text;
}

std::string Success(const std::string& request) {
    return WithTransaction(request, R"({"janus":"success","transaction":"T","data":{"id":77}})");
}

}  // namespace Corvanta::Engine
