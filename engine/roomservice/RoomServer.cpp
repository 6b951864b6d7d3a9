#include "engine/roomservice/RoomServer.h"

#include <gio/gio.h>
#include <gio/gunixsocketaddress.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

constexpr const char* kPath = "/connectivity";
// The count of a body's bytes so far, at the message.
constexpr const char* kBytesTaken = "corvanta-bytes-taken";
constexpr gsize kMostBytesRead = 1U << 20U;
constexpr mode_t kOwnerOnly = 0600;

void Answer(SoupServerMessage* message, guint status) {
    soup_server_message_set_status(message, status, nullptr);
}

gsize BytesTaken(SoupServerMessage* message) {
    return GPOINTER_TO_SIZE(g_object_get_data(G_OBJECT(message), kBytesTaken));
}

bool IsTooLarge(SoupServerMessage* message) {
    return BytesTaken(message) > kLargestReport;
}

// Counts a body as it comes. What is too large is not kept but read to its end, so that its sender hears of
// it; whoever goes on and on is not listened to.
void OnChunk(SoupServerMessage* message, GBytes* chunk, gpointer) {
    const gsize taken = BytesTaken(message) + g_bytes_get_size(chunk);
    g_object_set_data(G_OBJECT(message), kBytesTaken, GSIZE_TO_POINTER(taken));
    if (!IsTooLarge(message)) return;
    SoupMessageBody* const body = soup_server_message_get_request_body(message);
    soup_message_body_set_accumulate(body, FALSE);
    soup_message_body_truncate(body);
    GSocket* const socket = soup_server_message_get_socket(message);
    if (taken > kMostBytesRead && socket != nullptr) g_socket_shutdown(socket, TRUE, FALSE, nullptr);
}

void AnswerJson(SoupServerMessage* message, const std::string& json) {
    soup_server_message_set_status(message, SOUP_STATUS_OK, nullptr);
    soup_server_message_set_response(message, "application/json", SOUP_MEMORY_COPY, json.data(), json.size());
}

const char* FindParameter(GHashTable* query, const char* name) {
    return query != nullptr ? static_cast<const char*>(g_hash_table_lookup(query, name)) : nullptr;
}

// A bound socket that listens, or null with the reason.
GSocket* Bind(const std::filesystem::path& file, GError** error) {
    GSocket* const socket =
        g_socket_new(G_SOCKET_FAMILY_UNIX, G_SOCKET_TYPE_STREAM, G_SOCKET_PROTOCOL_DEFAULT, error);
    if (socket == nullptr) return nullptr;
    ::unlink(file.c_str());
    GSocketAddress* const address = g_unix_socket_address_new(file.c_str());
    // Between the two calls the folder keeps others out.
    const bool isBound = g_socket_bind(socket, address, FALSE, error) != FALSE &&
                         ::chmod(file.c_str(), kOwnerOnly) == 0 && g_socket_listen(socket, error) != FALSE;
    g_object_unref(address);
    if (isBound) return socket;
    g_object_unref(socket);
    return nullptr;
}

}  // namespace

RoomServer::RoomServer(std::filesystem::path socketFile, std::unique_ptr<ConnectivityLog> openedLog)
    : socket(std::move(socketFile)), log(std::move(openedLog)), server(soup_server_new(nullptr, nullptr)) {
    soup_server_add_early_handler(server, kPath, OnHeaders, this, nullptr);
    soup_server_add_handler(server, kPath, OnRequest, this, nullptr);
}

RoomServer::~RoomServer() {
    soup_server_disconnect(server);
    g_object_unref(server);
    ::unlink(socket.c_str());
}

std::unique_ptr<RoomServer> RoomServer::Listen(const std::filesystem::path& socket,
                                               std::unique_ptr<ConnectivityLog> log) {
    GError* error = nullptr;
    GSocket* const listening = Bind(socket, &error);
    std::unique_ptr<RoomServer> result;
    if (listening != nullptr) {
        result.reset(new RoomServer(socket, std::move(log)));
        if (soup_server_listen_socket(result->server, listening, static_cast<SoupServerListenOptions>(0),
                                      &error) == FALSE)
            result.reset();
        g_object_unref(listening);
    }
    if (!result) {
        LOG(kLogWarning, "No room service: %s cannot be listened to (%s)", socket.c_str(),
            error != nullptr ? error->message : "its rights cannot be set");
    }
    g_clear_error(&error);
    return result;
}

void RoomServer::OnHeaders(SoupServer*, SoupServerMessage* message, const char*, GHashTable*, gpointer) {
    g_signal_connect(message, "got-chunk", G_CALLBACK(OnChunk), nullptr);
}

void RoomServer::OnRequest(SoupServer*, SoupServerMessage* message, const char* path, GHashTable* query,
                           gpointer data) {
    auto* const self = static_cast<RoomServer*>(data);
    const std::string_view method = soup_server_message_get_method(message);
    if (IsTooLarge(message)) {
        Answer(message, SOUP_STATUS_REQUEST_ENTITY_TOO_LARGE);
    } else if (std::string_view(path) != kPath) {
        Answer(message, SOUP_STATUS_NOT_FOUND);
    } else if (method == "POST") {
        self->Post(message);
    } else if (method == "GET") {
        self->Get(message, query);
    } else {
        Answer(message, SOUP_STATUS_METHOD_NOT_ALLOWED);
    }
}

void RoomServer::Post(SoupServerMessage* message) {
    GBytes* const body = soup_message_body_flatten(soup_server_message_get_request_body(message));
    gsize size = 0;
    const auto* const data = static_cast<const char*>(g_bytes_get_data(body, &size));
    const auto report = ParseReport(data != nullptr ? std::string(data, size) : std::string());
    g_bytes_unref(body);
    if (!report) {
        Answer(message, SOUP_STATUS_BAD_REQUEST);
        return;
    }
    Answer(message, log->Store(*report) ? SOUP_STATUS_NO_CONTENT : SOUP_STATUS_INTERNAL_SERVER_ERROR);
}

void RoomServer::Get(SoupServerMessage* message, GHashTable* query) {
    const char* const sessionName = FindParameter(query, "session");
    const char* const streamId = FindParameter(query, "stream");
    if (sessionName == nullptr || streamId == nullptr) {
        Answer(message, SOUP_STATUS_BAD_REQUEST);
        return;
    }
    std::string json;
    switch (log->Find(sessionName, streamId, json)) {
        case ConnectivityLog::Found::Yes: AnswerJson(message, json); return;
        case ConnectivityLog::Found::No: Answer(message, SOUP_STATUS_NOT_FOUND); return;
        case ConnectivityLog::Found::Error: Answer(message, SOUP_STATUS_INTERNAL_SERVER_ERROR); return;
    }
}

}  // namespace Corvanta::Engine
