#include "engine/roomservice/RoomServer.h"

#include <gio/gio.h>
#include <gio/gunixsocketaddress.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>
#include <utility>

#include "engine/common/GuardedCall.h"
#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

// Of a body: how large it may be, and how much of it has come. At the message.
constexpr const char* kBytesAllowed = "corvanta-bytes-allowed";
constexpr const char* kBytesTaken = "corvanta-bytes-taken";
// What is read beyond that, so that its sender hears of it.
constexpr gsize kMostBytesBeyond = 1U << 20U;
constexpr mode_t kOwnerOnly = 0600;
constexpr unsigned kTooManyRequests = 429;
constexpr std::string_view kScheme = "Bearer ";
constexpr const char* kRequest = "A request of the room service";

gsize Count(SoupServerMessage* message, const char* name) {
    return GPOINTER_TO_SIZE(g_object_get_data(G_OBJECT(message), name));
}

void SetCount(SoupServerMessage* message, const char* name, gsize count) {
    g_object_set_data(G_OBJECT(message), name, GSIZE_TO_POINTER(count));
}

bool IsTooLarge(SoupServerMessage* message) {
    return Count(message, kBytesTaken) > Count(message, kBytesAllowed);
}

void Send(SoupServerMessage* message, const ServiceAnswer& answer) {
    soup_server_message_set_status(message, answer.status, nullptr);
    if (!answer.allowed.empty())
        soup_message_headers_replace(soup_server_message_get_response_headers(message), "Allow",
                                     answer.allowed.c_str());
    if (!answer.body.empty())
        soup_server_message_set_response(message, "application/json", SOUP_MEMORY_COPY, answer.body.data(),
                                         answer.body.size());
}

std::string Digest(std::string_view text) {
    gchar* const digest = g_compute_checksum_for_data(
        G_CHECKSUM_SHA256, reinterpret_cast<const guchar*>(text.data()), text.size());
    std::string result(digest);
    g_free(digest);
    return result;
}

// Takes as long for every text of one length.
bool AreEqual(const std::string& one, const std::string& other) {
    unsigned difference = one.size() == other.size() ? 0U : 1U;
    for (std::size_t at = 0; at < std::min(one.size(), other.size()); ++at)
        difference |= static_cast<unsigned char>(one[at]) ^ static_cast<unsigned char>(other[at]);
    return difference == 0;
}

// The token of the request, or nothing that could be one.
std::string_view TokenOf(SoupServerMessage* message) {
    const char* const header =
        soup_message_headers_get_one(soup_server_message_get_request_headers(message), "Authorization");
    const std::string_view text(header != nullptr ? header : "");
    const bool isBearer =
        text.size() > kScheme.size() && g_ascii_strncasecmp(text.data(), kScheme.data(), kScheme.size()) == 0;
    return isBearer ? text.substr(kScheme.size()) : std::string_view();
}

GSocketAddress* AddressOf(const RoomServer::Options& options, GError** error) {
    if (options.socket.native().size() >= sizeof(sockaddr_un::sun_path)) {
        // It would be cut, and lie somewhere else.
        g_set_error(error, G_IO_ERROR, G_IO_ERROR_FILENAME_TOO_LONG, "its name is too long");
        return nullptr;
    }
    if (!options.socket.empty()) return g_unix_socket_address_new(options.socket.c_str());
    GSocketAddress* const address =
        g_inet_socket_address_new_from_string(options.address.c_str(), options.port);
    if (address == nullptr) {
        g_set_error(error, G_IO_ERROR, G_IO_ERROR_INVALID_ARGUMENT, "'%s' is no number address",
                    options.address.c_str());
    }
    return address;
}

// A bound socket that listens, or null with the reason.
GSocket* Bind(const RoomServer::Options& options, GError** error) {
    GSocketAddress* const address = AddressOf(options, error);
    if (address == nullptr) return nullptr;
    GSocket* socket = g_socket_new(g_socket_address_get_family(address), G_SOCKET_TYPE_STREAM,
                                   G_SOCKET_PROTOCOL_DEFAULT, error);
    if (socket != nullptr) {
        const bool isFile = !options.socket.empty();
        if (isFile) ::unlink(options.socket.c_str());
        bool isBound = g_socket_bind(socket, address, TRUE, error) != FALSE;
        // Between the two calls the folder keeps others out.
        if (isBound && isFile && ::chmod(options.socket.c_str(), kOwnerOnly) != 0) {
            isBound = false;
            g_set_error(error, G_IO_ERROR, G_IO_ERROR_FAILED, "its rights cannot be set");
        }
        if (!isBound || g_socket_listen(socket, error) == FALSE) {
            g_object_unref(socket);
            socket = nullptr;
        }
    }
    g_object_unref(address);
    return socket;
}

std::uint16_t PortOf(GSocket* socket) {
    GSocketAddress* const address = g_socket_get_local_address(socket, nullptr);
    if (address == nullptr) return 0;
    const std::uint16_t port = G_IS_INET_SOCKET_ADDRESS(address)
                                   ? g_inet_socket_address_get_port(G_INET_SOCKET_ADDRESS(address))
                                   : 0;
    g_object_unref(address);
    return port;
}

}  // namespace

RoomServer::RoomServer(const Options& serverOptions)
    : options(serverOptions),
      expectedDigest(serverOptions.token.empty() ? std::string() : Digest(serverOptions.token)),
      // Over TCP come people of several machines, whose rooms without a name have nothing to do with each
      // other.
      requests(serverOptions.database,
               serverOptions.socket.empty() ? RoomRequests::Rooms::Named : RoomRequests::Rooms::All),
      rates(serverOptions.rates),
      server(soup_server_new(nullptr, nullptr)) {
    soup_server_add_early_handler(server, nullptr, OnHeaders, this, nullptr);
    soup_server_add_handler(server, nullptr, OnRequest, this, nullptr);
    g_signal_connect(server, "request-read", G_CALLBACK(OnRequestRead), this);
    g_signal_connect(server, "request-finished", G_CALLBACK(OnRequestEnded), this);
    g_signal_connect(server, "request-aborted", G_CALLBACK(OnRequestEnded), this);
}

RoomServer::~RoomServer() {
    soup_server_disconnect(server);
    keeper.reset();
    g_signal_handlers_disconnect_by_data(server, this);
    for (const Waiting& left : waiting) g_object_unref(left.message);
    g_object_unref(server);
    if (!options.socket.empty()) ::unlink(options.socket.c_str());
}

std::unique_ptr<RoomServer> RoomServer::Listen(const Options& options, std::string& problem) {
    GError* error = nullptr;
    GTlsCertificate* certificate = nullptr;
    std::unique_ptr<RoomServer> result;
    if (!options.certificate.empty())
        certificate =
            g_tls_certificate_new_from_files(options.certificate.c_str(), options.key.c_str(), &error);
    GSocket* const socket = error == nullptr ? Bind(options, &error) : nullptr;
    if (socket != nullptr) {
        result.reset(new RoomServer(options));
        result->port = PortOf(socket);
        result->keeper = std::make_unique<ConnectionKeeper>(
            socket, certificate, options.connections,
            [self = result.get()](GIOStream* stream, GSocketAddress* local, GSocketAddress* remote) {
                self->Accept(stream, local, remote);
            });
        g_object_unref(socket);
    } else {
        problem = error != nullptr ? error->message : "nothing can be listened to";
    }
    g_clear_object(&certificate);
    g_clear_error(&error);
    return result;
}

void RoomServer::Accept(GIOStream* stream, GSocketAddress* local, GSocketAddress* remote) {
    GError* error = nullptr;
    if (soup_server_accept_iostream(server, stream, local, remote, &error) == FALSE)
        LOG(kLogDebug, "A connection to the room service is left out: %s", error->message);
    g_clear_error(&error);
}

void RoomServer::OnHeaders(SoupServer*, SoupServerMessage* message, const char* path, GHashTable*,
                           gpointer data) {
    auto* const self = static_cast<RoomServer*>(data);
    const bool isJudged = CallGuarded(kRequest, [&] {
        SetCount(message, kBytesAllowed, RoomRequests::LargestBody(path));
        g_signal_connect(message, "got-chunk", G_CALLBACK(OnChunk), self);
        self->keeper->OnHead(soup_server_message_get_remote_address(message));
        const unsigned refusal = self->Refusal(message);
        if (refusal != 0) Send(message, {refusal});
    });
    // Nobody comes in unjudged.
    if (!isJudged) Send(message, {SOUP_STATUS_INTERNAL_SERVER_ERROR});
}

void RoomServer::OnChunk(SoupServerMessage* message, GBytes* chunk, gpointer data) {
    const gsize taken = Count(message, kBytesTaken) + g_bytes_get_size(chunk);
    SetCount(message, kBytesTaken, taken);
    if (!IsTooLarge(message) && soup_server_message_get_status(message) == 0) return;
    SoupMessageBody* const body = soup_server_message_get_request_body(message);
    soup_message_body_set_accumulate(body, FALSE);
    soup_message_body_truncate(body);
    if (taken > Count(message, kBytesAllowed) + kMostBytesBeyond)
        static_cast<RoomServer*>(data)->keeper->Refuse(soup_server_message_get_remote_address(message));
}

unsigned RoomServer::Refusal(SoupServerMessage* message) {
    const auto now = RateLimit::Clock::now();
    const std::string client = ClientOf(soup_server_message_get_remote_address(message));
    if (!rates.Allow(client, now)) return kTooManyRequests;
    if (options.token.empty() || AreEqual(Digest(TokenOf(message)), expectedDigest)) return 0;
    rates.Punish(client, now);
    return SOUP_STATUS_UNAUTHORIZED;
}

void RoomServer::OnRequest(SoupServer*, SoupServerMessage* message, const char* path, GHashTable*,
                           gpointer data) {
    if (!CallGuarded(kRequest, [&] { static_cast<RoomServer*>(data)->Respond(message, path); }))
        Send(message, {SOUP_STATUS_INTERNAL_SERVER_ERROR});
}

void RoomServer::OnRequestRead(SoupServer*, SoupServerMessage* message, gpointer data) {
    static_cast<RoomServer*>(data)->keeper->OnRequest(soup_server_message_get_remote_address(message));
}

void RoomServer::OnRequestEnded(SoupServer*, SoupServerMessage* message, gpointer data) {
    auto* const self = static_cast<RoomServer*>(data);
    self->keeper->OnAnswered(soup_server_message_get_remote_address(message));
    const auto found = std::ranges::find(self->waiting, message, &Waiting::message);
    if (found == self->waiting.end()) return;
    self->waiting.erase(found);
    g_object_unref(message);
}

void RoomServer::Respond(SoupServerMessage* message, const char* path) {
    if (IsTooLarge(message)) {
        Send(message, {SOUP_STATUS_REQUEST_ENTITY_TOO_LARGE});
        return;
    }
    ServiceRequest request{
        .method = soup_server_message_get_method(message), .path = path, .query = {}, .body = {}};
    if (const char* const query = g_uri_get_query(soup_server_message_get_uri(message)))
        request.query = query;
    GBytes* const body = soup_message_body_flatten(soup_server_message_get_request_body(message));
    gsize size = 0;
    const auto* const data = static_cast<const char*>(g_bytes_get_data(body, &size));
    if (data != nullptr) request.body.assign(data, size);
    g_bytes_unref(body);
    ServiceAnswer answer = requests.Answer(request);
    if (answer.wait) {
        Wait(message, std::move(*answer.wait));
        return;
    }
    Send(message, answer);
    if (answer.changedNotes) AnswerWaiting(*answer.changedNotes);
}

void RoomServer::Wait(SoupServerMessage* message, NotesWait wait) {
    soup_server_message_pause(message);
    g_object_ref(message);
    const auto place =
        waiting.insert(waiting.end(), {.message = message, .wait = std::move(wait), .alarm = {}});
    GMainContext* const context = g_main_context_ref_thread_default();
    place->alarm =
        StartTimer(context, options.longestWait, [this, place] { Resume(place, {SOUP_STATUS_NO_CONTENT}); });
    g_main_context_unref(context);
}

void RoomServer::AnswerWaiting(const std::string& room) {
    for (auto place = waiting.begin(); place != waiting.end();) {
        const auto current = place++;
        if (current->wait.room != room) continue;
        const ServiceAnswer answer = requests.Look(current->wait);
        if (!answer.wait) Resume(current, answer);
    }
}

void RoomServer::Resume(std::list<Waiting>::iterator place, const ServiceAnswer& answer) {
    SoupServerMessage* const message = place->message;
    // It may be its own alarm that calls this.
    const Waiting ended = std::move(*place);
    waiting.erase(place);
    Send(message, answer);
    soup_server_message_unpause(message);
    g_object_unref(message);
}

}  // namespace Corvanta::Engine
