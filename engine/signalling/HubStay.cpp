#include "engine/signalling/HubStay.h"

#include <gio/gunixsocketaddress.h>
#include <sys/socket.h>
#include <sys/types.h>

#include <algorithm>
#include <cstring>
#include <exception>
#include <fstream>
#include <random>
#include <variant>

#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

using namespace RoomMessages;
using std::chrono::milliseconds;

constexpr milliseconds kFirstDelay{10};
constexpr milliseconds kLongestDelay{200};
// A hub that loses us sooner is no hub to come back to at once.
constexpr milliseconds kSoundHub{1000};
// Where a hub has gone, its members come before a newcomer, who knows nobody and would have all meet anew.
constexpr milliseconds kCourtesy{300};
// From hello to welcome, before we wonder.
constexpr milliseconds kAnswerTime{5000};
// What a message grows by at most on its way through the hub.
constexpr std::size_t kGrowth = kLongestId + 16;

std::string MakeKey() {
    constexpr std::string_view kDigits = "0123456789abcdef";
    constexpr int kLength = 32;
    std::random_device random;
    std::string key;
    for (int index = 0; index < kLength; ++index) key += kDigits[random() % kDigits.size()];
    return key;
}

// The process that listens at the other end; 0 where the system does not tell.
pid_t OwnerOf(GSocket* connected) {
    ucred owner{};
    socklen_t size = sizeof owner;
    const bool isTold = ::getsockopt(g_socket_get_fd(connected), SOL_SOCKET, SO_PEERCRED, &owner, &size) == 0;
    return isTold ? owner.pid : 0;
}

// Whether the process stands still until somebody has it go on, by a signal or in a debugger.
bool IsStopped(pid_t process) {
    std::string path = "/proc/";
    path += std::to_string(process);
    path += "/stat";
    std::ifstream file(path);
    std::string line;
    std::getline(file, line);
    // The state follows the name, which may have anything in it.
    const auto nameEnd = line.rfind(") ");
    if (nameEnd == std::string::npos || nameEnd + 2 >= line.size()) return false;
    const char state = line[nameEnd + 2];
    return state == 'T' || state == 't';
}

bool Contains(const std::vector<std::string>& ids, const std::string& id) {
    return std::find(ids.begin(), ids.end(), id) != ids.end();
}

}  // namespace

HubClient::Stay::Stay(GMainContext* mainContext, std::shared_ptr<const HubClientEvents> clientEvents,
                      RoomFolder roomFolder, std::string ownName)
    : context(mainContext),
      events(std::move(clientEvents)),
      folder(std::move(roomFolder)),
      name(std::move(ownName)),
      key(MakeKey()),
      delay(kFirstDelay) {}

void HubClient::Stay::Begin() {
    sought = Clock::now();
    SeekAfter(milliseconds::zero());
}

void HubClient::Stay::End() {
    if (std::exchange(hasEnded, true)) return;
    seeking.reset();
    answering.reset();
    if (const auto ended = std::exchange(connection, nullptr)) {
        // A hub of our own is told below. Another one may miss it, and then sees us go.
        if (isInside && !hub) static_cast<void>(ended->Send(WriteRoomMessage(Leaving{})));
        ended->Close();
    }
    if (hub) {
        hub->Remove(ownId);
        hub.reset();
    }
    ownId.clear();
    members.clear();
    absent.clear();
    kept.clear();
}

template <class Function, class... Arguments>
void HubClient::Stay::Tell(Function HubClientEvents::*function, const Arguments&... arguments) {
    const Function& callee = (*events).*function;
    if (hasEnded || !callee) return;
    try {
        callee(arguments...);
    } catch (const std::exception& error) {
        // What is still to be told is told all the same.
        LOG(kLogError, "An event of a room could not be handled: %s", error.what());
    }
}

bool HubClient::Stay::Send(const std::string& memberId, std::string_view payload) {
    if (hasEnded || !Knows(memberId)) return false;
    std::string line = WriteRoomMessage(To{memberId, std::string(payload)});
    if (line.size() + kGrowth > kLongestLine) return false;
    if (isInside && !absent.contains(memberId)) return connection->Send(line);
    if (keptBytes + line.size() > kMostKept) return false;
    keptBytes += line.size();
    kept.emplace_back(memberId, std::move(line));
    return true;
}

void HubClient::Stay::SeekAfter(milliseconds time) {
    seeking = StartTimer(context, time, [weak = weak_from_this()] {
        if (const auto self = weak.lock()) self->Seek();
    });
}

void HubClient::Stay::SeekLater() {
    SeekAfter(delay);
    delay = std::min(2 * delay, kLongestDelay);
}

void HubClient::Stay::Seek() {
    if (const auto complaint = PrepareRoomFolder(folder)) {
        OnTrouble(*complaint);
        return;
    }
    bool mayOpen = false;
    std::string complaint;
    GSocket* connected = Connect(mayOpen, complaint);
    if (connected == nullptr && mayOpen && !hub) {
        OpenHub(complaint);
        if (hub) connected = Connect(mayOpen, complaint);
    }
    if (connected != nullptr) {
        Greet(connected);
    } else if (complaint.empty()) {
        SeekLater();
    } else {
        OnTrouble(complaint);
    }
}

GSocket* HubClient::Stay::Connect(bool& mayOpen, std::string& complaint) const {
    GError* error = nullptr;
    GSocket* const socket =
        g_socket_new(G_SOCKET_FAMILY_UNIX, G_SOCKET_TYPE_STREAM, G_SOCKET_PROTOCOL_DEFAULT, &error);
    if (socket != nullptr) {
        g_socket_set_blocking(socket, FALSE);
        GSocketAddress* const address = g_unix_socket_address_new(folder.socket.c_str());
        const bool isConnected = g_socket_connect(socket, address, nullptr, &error) != FALSE;
        g_object_unref(address);
        if (isConnected) return socket;
        g_object_unref(socket);
    }
    const bool isRefused = g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CONNECTION_REFUSED) != FALSE;
    const bool isMissing = g_error_matches(error, G_IO_ERROR, G_IO_ERROR_NOT_FOUND) != FALSE;
    // More have come at a time than the hub has looked at.
    const bool isCrowded = g_error_matches(error, G_IO_ERROR, G_IO_ERROR_WOULD_BLOCK) != FALSE;
    const bool isCourteous = isRefused && !hasEntered && Clock::now() - sought < kCourtesy;
    mayOpen = (isRefused || isMissing) && !isCourteous;
    if (!isRefused && !isMissing && !isCrowded) {
        complaint = "No room can be entered: ";
        complaint += error->message;
    }
    g_clear_error(&error);
    return nullptr;
}

void HubClient::Stay::OpenHub(std::string& complaint) {
    auto lock = std::make_unique<HubLock>(folder.lock);
    if (lock->Error() != 0) {
        complaint = "No room can be opened: ";
        complaint += folder.lock.string();
        complaint += " (";
        complaint += std::strerror(lock->Error());
        complaint += ')';
    } else if (lock->IsHeld()) {
        hub = Hub::Open(context, folder, std::move(lock), ExpectedAtHub(), complaint);
        if (hub) LOG(kLogDebug, "The room's hub is here: %s", folder.socket.c_str());
    }
}

void HubClient::Stay::Greet(GSocket* connected) {
    const auto weak = weak_from_this();
    connection =
        std::make_shared<LineConnection>(context, connected,
                                         LineConnection::Events{.onLine =
                                                                    [weak](const std::string& line) {
                                                                        if (const auto self = weak.lock())
                                                                            self->OnLine(line);
                                                                    },
                                                                .onRead = {},
                                                                .onEnd =
                                                                    [weak](LineConnection::End) {
                                                                        if (const auto self = weak.lock())
                                                                            self->OnLost();
                                                                    }});
    connection->Open();
    // There is room for it.
    static_cast<void>(
        connection->Send(WriteRoomMessage(Hello{kRoomVersion, name, ownId, key, IdsOfMembers()})));
    answering = StartTimer(context, kAnswerTime, [owner = OwnerOf(connected)] {
        LOG(kLogWarning,
            "Nobody can enter the room at the moment: process %lld, which has its hub, does not answer%s",
            static_cast<long long>(owner), IsStopped(owner) ? ", since it is stopped" : "");
    });
}

void HubClient::Stay::OnTrouble(const std::string& complaint) {
    if (!hasEntered) {
        Fail(complaint);
        return;
    }
    if (!std::exchange(hasComplained, true)) LOG(kLogWarning, "%s; it is tried again", complaint.c_str());
    SeekLater();
}

void HubClient::Stay::Fail(const std::string& line) {
    LOG(kLogWarning, "%s", line.c_str());
    End();
    if (events->onFailed) events->onFailed(line);
}

void HubClient::Stay::OnLine(std::string_view line) {
    const std::optional<RoomMessage> message = ReadRoomMessage(line);
    if (!message) {
        OnNonsense();
        return;
    }
    const bool isAnswer =
        std::holds_alternative<Welcome>(*message) || std::holds_alternative<Refused>(*message);
    if (isAnswer == isInside && !std::holds_alternative<Unknown>(*message)) {
        OnNonsense();
        return;
    }
    std::visit([this](const auto& known) { OnMessage(known); }, *message);
}

void HubClient::Stay::OnNonsense() {
    LOG(kLogWarning, "What the room's hub says makes no sense");
    OnLost();
}

void HubClient::Stay::OnLost() {
    connection->Close();
    connection.reset();
    answering.reset();
    const bool wasInside = std::exchange(isInside, false);
    const auto now = Clock::now();
    if (wasInside) {
        if (now - welcomed >= kSoundHub) delay = kFirstDelay;
        sought = now;
        hasComplained = false;
        for (const RoomMember& member : members) absent.insert(member.id);
        Tell(&HubClientEvents::onHubLost);
    }
    if (!hasEnded) SeekLater();
}

void HubClient::Stay::OnMessage(const Welcome& welcome) {
    answering.reset();
    isInside = true;
    welcomed = Clock::now();
    if (!hasEntered || !welcome.returned || welcome.id != ownId) {
        hasEntered = true;
        ownId = welcome.id;
        members = welcome.members;
        absent.clear();
        kept.clear();
        keptBytes = 0;
        // Copies, since the callee may leave.
        const auto [id, others] = std::pair(ownId, members);
        Tell(&HubClientEvents::onEntered, id, others);
        return;
    }
    for (const std::string& id : welcome.known) Deliver(id);
    Tell(&HubClientEvents::onHubBack);
    for (const RoomMember& member : welcome.members) {
        if (Contains(welcome.known, member.id)) continue;
        // One whom we knew, and to whom we are new: it waits for us to begin.
        Remove(member.id);
        Add(member, Initiator::Us);
    }
}

void HubClient::Stay::OnMessage(const Joined& joined) {
    const RoomMember& member = joined.member;
    if (joined.returned && Knows(member.id)) {
        Deliver(member.id);
        return;
    }
    Remove(member.id);
    Add(member, Initiator::Them);
}

void HubClient::Stay::OnMessage(const Left& left) {
    Remove(left.id, left.orderly);
}

void HubClient::Stay::OnMessage(const Settled& settled) {
    std::vector<std::string> gone;
    for (const RoomMember& member : members)
        if (!Contains(settled.ids, member.id)) gone.push_back(member.id);
    for (const std::string& id : gone) Remove(id);
}

void HubClient::Stay::OnMessage(const From& message) {
    if (Knows(message.member)) Tell(&HubClientEvents::onMessage, message.member, message.payload);
}

void HubClient::Stay::OnMessage(const Refused& refused) {
    Fail(refused.reason);
}

bool HubClient::Stay::Knows(const std::string& memberId) const {
    return std::any_of(members.begin(), members.end(),
                       [&memberId](const RoomMember& member) { return member.id == memberId; });
}

void HubClient::Stay::Add(const RoomMember& member, Initiator initiator) {
    if (hasEnded || members.size() >= kMostAtHub) return;
    members.push_back(member);
    Tell(&HubClientEvents::onMemberJoined, member, initiator);
}

void HubClient::Stay::Remove(const std::string& memberId, bool orderly) {
    if (std::erase_if(members, [&memberId](const RoomMember& member) { return member.id == memberId; }) == 0)
        return;
    absent.erase(memberId);
    std::erase_if(kept, [this, &memberId](const auto& waiting) {
        if (waiting.first != memberId) return false;
        keptBytes -= waiting.second.size();
        return true;
    });
    Tell(&HubClientEvents::onMemberLeft, memberId, orderly);
}

void HubClient::Stay::Deliver(const std::string& memberId) {
    absent.erase(memberId);
    std::erase_if(kept, [this, &memberId](const auto& waiting) {
        if (waiting.first != memberId) return false;
        keptBytes -= waiting.second.size();
        // Not more is kept than a connection takes.
        static_cast<void>(connection->Send(waiting.second));
        return true;
    });
}

std::vector<std::string> HubClient::Stay::IdsOfMembers() const {
    std::vector<std::string> ids;
    for (const RoomMember& member : members) ids.push_back(member.id);
    return ids;
}

std::vector<std::string> HubClient::Stay::ExpectedAtHub() const {
    std::vector<std::string> ids = IdsOfMembers();
    if (hasEntered) ids.push_back(ownId);
    return ids;
}

}  // namespace Corvanta::Engine
