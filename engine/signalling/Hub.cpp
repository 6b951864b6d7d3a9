#include "engine/signalling/Hub.h"

#include <gio/gunixsocketaddress.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <exception>
#include <optional>
#include <utility>
#include <variant>

#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

using namespace RoomMessages;
using std::chrono::milliseconds;

constexpr mode_t kOwnerOnly = 0600;
constexpr int kWaitingConnections = 64;
// Between two looks at those who have connected, the others have their turn.
constexpr int kAcceptedAtOnce = 8;
// After an accept that failed, for want of descriptors above all.
constexpr milliseconds kAcceptPause{100};

// A bound socket that listens, or null with the reason.
GSocket* Bind(const std::filesystem::path& file, GError** error) {
    GSocket* const socket =
        g_socket_new(G_SOCKET_FAMILY_UNIX, G_SOCKET_TYPE_STREAM, G_SOCKET_PROTOCOL_DEFAULT, error);
    if (socket == nullptr) return nullptr;
    g_socket_set_blocking(socket, FALSE);
    g_socket_set_listen_backlog(socket, kWaitingConnections);
    // Of a hub that crashed: the lock is ours, so nobody listens to it.
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

std::unique_ptr<Hub> Hub::Open(GMainContext* context, const RoomFolder& folder, std::unique_ptr<HubLock> lock,
                               std::vector<std::string> expected, std::string& complaint) {
    GError* error = nullptr;
    GSocket* const listening = Bind(folder.socket, &error);
    if (listening == nullptr) {
        complaint = "No room can be opened: ";
        complaint += folder.socket.string();
        complaint += " cannot be listened to (";
        complaint += error != nullptr ? error->message : "its rights cannot be set";
        complaint += ')';
        g_clear_error(&error);
        return nullptr;
    }
    return std::unique_ptr<Hub>(new Hub(context, folder, std::move(lock), std::move(expected), listening));
}

Hub::Hub(GMainContext* mainContext, RoomFolder roomFolder, std::unique_ptr<HubLock> heldLock,
         std::vector<std::string> expectedIds, GSocket* listeningSocket)
    : context(mainContext),
      folder(std::move(roomFolder)),
      lock(std::move(heldLock)),
      expected(std::move(expectedIds)),
      listening(listeningSocket) {
    StartAccepting();
    if (!expected.empty()) settling = StartTimer(context, kReturnTime, [this] { Settle(); });
}

Hub::~Hub() {
    accepting.reset();
    // Left for newcomers where members are, who are about to open the next hub: see that they come first.
    const bool isLast = Members() == 0;
    clients.clear();
    g_socket_close(listening, nullptr);
    g_object_unref(listening);
    if (isLast) ::unlink(folder.socket.c_str());
    lock.reset();
}

void Hub::Remove(const std::string& memberId) {
    const auto client = Find(memberId);
    if (client == clients.end()) return;
    Drop(client, Goodbye::Said);
    DropOverfull();
}

std::size_t Hub::Members() const {
    return static_cast<std::size_t>(std::count_if(
        clients.begin(), clients.end(), [](const auto& client) { return !client.second.member.id.empty(); }));
}

gboolean Hub::OnConnections(GSocket*, GIOCondition, gpointer data) {
    try {
        static_cast<Hub*>(data)->Accept();
    } catch (const std::exception& error) {
        // GLib's frames cannot be unwound.
        LOG(kLogError, "A room could not take somebody in: %s", error.what());
    }
    return G_SOURCE_CONTINUE;
}

void Hub::StartAccepting() {
    accepting.reset(g_socket_create_source(listening, G_IO_IN, nullptr));
    g_source_set_callback(accepting.get(), G_SOURCE_FUNC(OnConnections), this, nullptr);
    g_source_attach(accepting.get(), context);
}

void Hub::Accept() {
    auto rest = milliseconds::zero();
    for (int count = 0; count < kAcceptedAtOnce && rest == milliseconds::zero(); ++count) {
        GError* error = nullptr;
        GSocket* const connected = g_socket_accept(listening, nullptr, &error);
        if (connected == nullptr) {
            const bool isNobody = g_error_matches(error, G_IO_ERROR, G_IO_ERROR_WOULD_BLOCK) != FALSE;
            g_clear_error(&error);
            if (isNobody) break;
            rest = kAcceptPause;
        } else {
            Add(connected);
            rest = connections.Charge(RateLimit::Clock::now(), 1.0);
        }
    }
    if (rest > milliseconds::zero()) accepting = StartTimer(context, rest, [this] { StartAccepting(); });
}

void Hub::Add(GSocket* connected) {
    DropFirstOfManySilent();
    const ClientNumber number = nextNumber++;
    Client& client = clients[number];
    client.connection = std::make_shared<LineConnection>(
        context, connected,
        LineConnection::Events{.onLine = [this, number](const std::string& line) { OnLine(number, line); },
                               .onRead = [this, number](std::size_t bytes) { return OnRead(number, bytes); },
                               .onEnd = [this, number](LineConnection::End end) { OnEnd(number, end); }});
    client.greeting = StartTimer(context, kGreetingTime, [this, number] {
        const auto silent = clients.find(number);
        if (silent != clients.end()) CutOff(silent, "it says nothing");
    });
    client.connection->Open();
}

void Hub::DropFirstOfManySilent() {
    const auto isSilent = [](const auto& client) { return client.second.member.id.empty(); };
    if (clients.size() - Members() < kMostSilent) return;
    CutOff(std::find_if(clients.begin(), clients.end(), isSilent), "too many say nothing");
}

void Hub::OnLine(ClientNumber number, std::string_view line) {
    const auto client = clients.find(number);
    if (client == clients.end()) return;
    Client& sender = client->second;
    sender.rest = std::max(sender.rest, sender.messages.Charge(RateLimit::Clock::now(), 1.0));
    std::optional<RoomMessage> message = ReadRoomMessage(line);
    const bool isMember = !sender.member.id.empty();
    if (message && std::holds_alternative<Hello>(*message) && !isMember) {
        OnHello(client, std::get<Hello>(*message));
    } else if (message && std::holds_alternative<To>(*message) && isMember) {
        Carry(client, std::get<To>(std::move(*message)));
    } else if (message && std::holds_alternative<Leaving>(*message) && isMember) {
        Drop(client, Goodbye::Said);
    } else if (!message || !std::holds_alternative<Unknown>(*message)) {
        CutOff(client, "what it says makes no sense");
    }
    DropOverfull();
}

milliseconds Hub::OnRead(ClientNumber number, std::size_t bytes) {
    const auto client = clients.find(number);
    if (client == clients.end()) return milliseconds::zero();
    Client& sender = client->second;
    const milliseconds rest = sender.bytes.Charge(RateLimit::Clock::now(), static_cast<double>(bytes));
    return std::max(rest, std::exchange(sender.rest, milliseconds::zero()));
}

void Hub::OnEnd(ClientNumber number, LineConnection::End end) {
    const auto client = clients.find(number);
    if (client == clients.end()) return;
    switch (end) {
        case LineConnection::End::Closed: Drop(client); break;
        case LineConnection::End::TooLongLine: CutOff(client, "its line is too long"); break;
    }
    DropOverfull();
}

void Hub::OnHello(ClientMap::iterator client, const Hello& hello) {
    if (hello.version != kRoomVersion) {
        std::string reason = "This room speaks version ";
        reason += std::to_string(kRoomVersion);
        reason += ", and who would enter another one: ";
        reason += std::to_string(hello.version);
        Refuse(client, reason);
        return;
    }
    const std::string id = MemberIdOf(hello.key);
    // The same client, whose end the hub has not noticed, or which was given up.
    if (const auto former = Find(id); former != clients.end()) Drop(former);
    const bool wasExpected = std::erase(expected, id) > 0;
    if (Members() >= kMostAtHub) {
        Refuse(client, "The room is full");
        return;
    }
    Welcome welcome{id, wasExpected && hello.id == id, {}, {}};
    std::set<std::string> known;
    if (welcome.returned) known.insert(hello.known.begin(), hello.known.end());
    const RoomMember joining{id, hello.name};
    for (auto& other : clients) {
        const RoomMember& member = other.second.member;
        if (member.id.empty()) continue;
        const bool isMutual = known.contains(member.id) && other.second.known.contains(id);
        welcome.members.push_back(member);
        if (isMutual) welcome.known.push_back(member.id);
        Send(other, WriteRoomMessage(Joined{joining, isMutual}));
    }
    client->second.member = joining;
    client->second.known = std::move(known);
    client->second.greeting.reset();
    Send(*client, WriteRoomMessage(welcome));
    if (settling && expected.empty()) Settle();
}

void Hub::Carry(ClientMap::iterator client, To message) {
    const auto receiver = Find(message.member);
    // Has just gone.
    if (receiver == clients.end()) return;
    const std::string line = WriteRoomMessage(From{client->second.member.id, std::move(message.payload)});
    // Would end the receiver's connection.
    if (line.size() > kLongestLine) {
        CutOff(client, "its message is too long");
        return;
    }
    Send(*receiver, line);
}

void Hub::Settle() {
    settling.reset();
    expected.clear();
    Settled settled;
    for (const auto& [number, client] : clients)
        if (!client.member.id.empty()) settled.ids.push_back(client.member.id);
    Broadcast(settled);
    DropOverfull();
}

void Hub::Send(ClientMap::value_type& client, std::string_view line) {
    if (!client.second.connection->Send(line)) overfull.push_back(client.first);
}

void Hub::Broadcast(const RoomMessage& message) {
    const std::string line = WriteRoomMessage(message);
    for (auto& client : clients)
        if (!client.second.member.id.empty()) Send(client, line);
}

Hub::ClientMap::iterator Hub::Find(std::string_view memberId) {
    return std::find_if(clients.begin(), clients.end(), [memberId](const auto& client) {
        return !memberId.empty() && client.second.member.id == memberId;
    });
}

void Hub::Refuse(ClientMap::iterator client, const std::string& reason) {
    LOG(kLogWarning, "Somebody was not let into the room: %s", reason.c_str());
    Send(*client, WriteRoomMessage(Refused{reason}));
    Drop(client);
}

void Hub::CutOff(ClientMap::iterator client, const char* reason) {
    const std::string& id = client->second.member.id;
    LOG(kLogWarning, "The room cuts off %s: %s", id.empty() ? "somebody" : id.c_str(), reason);
    Drop(client);
}

void Hub::Drop(ClientMap::iterator client, Goodbye goodbye) {
    const std::string id = client->second.member.id;
    client->second.connection->Close();
    clients.erase(client);
    if (!id.empty()) Broadcast(Left{id, goodbye == Goodbye::Said});
}

void Hub::DropOverfull() {
    while (!overfull.empty()) {
        const auto client = clients.find(overfull.back());
        overfull.pop_back();
        if (client != clients.end()) CutOff(client, "it does not read");
    }
}

}  // namespace Corvanta::Engine
