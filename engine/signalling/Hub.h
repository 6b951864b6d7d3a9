// The meeting place of a room: tells its members of each other and carries their messages. One process of a
// room has it, whoever holds the room's lock; when that one goes, another opens the next. Lives on the thread
// of one GLib main context and calls nobody.
//
// A new hub knows those who were members with the hub before. For kReturnTime each of them that comes back
// under its id is taken for the one that it was, and those who knew it hear of nothing. Whoever has not come
// by then has left, and is new if it comes later. Two of whom one does not know the other, since the hub
// before went when only one of them had been told, are new to each other.
//
// Nobody can hold up the others: a member that does not read is cut off and told as left, one that sends too
// much is read more slowly, one that sends nonsense is cut off alone.
#pragma once

#include <gio/gio.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "engine/signalling/LineConnection.h"
#include "engine/signalling/OwnedSource.h"
#include "engine/signalling/RateLimit.h"
#include "engine/signalling/RoomFolder.h"
#include "engine/signalling/RoomMessage.h"

namespace Corvanta::Engine {

class Hub final {
public:
    static constexpr std::chrono::milliseconds kReturnTime{3000};
    // From a client that connects to its first words.
    static constexpr std::chrono::milliseconds kGreetingTime{5000};
    // Clients that have said nothing yet; one more, and the first of them goes.
    static constexpr std::size_t kMostSilent = 16;
    static constexpr double kBytesPerSecond = 2.0 * 1024 * 1024;
    static constexpr double kConnectionsPerSecond = 100.0;

    // Opens the hub in the folder, whose lock is held and kept as long as the hub. `expected` are the ids of
    // those who were members with the hub before. Null when the socket cannot be opened, and `complaint` is
    // one line for the user.
    [[nodiscard]] static std::unique_ptr<Hub> Open(GMainContext* context, const RoomFolder& folder,
                                                   std::unique_ptr<HubLock> lock,
                                                   std::vector<std::string> expected, std::string& complaint);
    // The members notice that the hub has gone. The lock is let go of last.
    ~Hub();
    Hub(const Hub&) = delete;
    Hub& operator=(const Hub&) = delete;

    // Ends the member's connection and tells the others that it has left in order. Nothing happens without
    // such a member.
    void Remove(const std::string& memberId);

    [[nodiscard]] std::size_t Members() const;
    // Connections, whoever they belong to.
    [[nodiscard]] std::size_t Clients() const { return clients.size(); }

private:
    struct Client {
        std::shared_ptr<LineConnection> connection;
        // Empty until it has said hello.
        RoomMember member;
        // Whom it knew with the hub before, if it has come back from there.
        std::set<std::string> known;
        RateLimit messages{kMessagesPerSecond, kMessagesPerSecond};
        RateLimit bytes{kBytesPerSecond, kBytesPerSecond / 2};
        // What its messages have cost since the last reading.
        std::chrono::milliseconds rest{0};
        OwnedSource greeting;
    };
    // Whether who leaves has said so.
    enum class Goodbye { None, Said };
    using ClientNumber = std::uint64_t;
    using ClientMap = std::map<ClientNumber, Client>;

    Hub(GMainContext* mainContext, RoomFolder roomFolder, std::unique_ptr<HubLock> heldLock,
        std::vector<std::string> expectedIds, GSocket* listeningSocket);

    static gboolean OnConnections(GSocket* socket, GIOCondition condition, gpointer self);

    void StartAccepting();
    void Accept();
    void Add(GSocket* connected);
    void DropFirstOfManySilent();

    void OnLine(ClientNumber number, std::string_view line);
    [[nodiscard]] std::chrono::milliseconds OnRead(ClientNumber number, std::size_t bytes);
    void OnEnd(ClientNumber number, LineConnection::End end);
    void OnHello(ClientMap::iterator client, const RoomMessages::Hello& hello);
    void Carry(ClientMap::iterator client, RoomMessages::To message);
    void Settle();

    void Send(ClientMap::value_type& client, std::string_view line);
    // To all members.
    void Broadcast(const RoomMessage& message);
    [[nodiscard]] ClientMap::iterator Find(std::string_view memberId);
    void Refuse(ClientMap::iterator client, const std::string& reason);
    void CutOff(ClientMap::iterator client, const char* reason);
    // The client goes at once; the others hear of it if it was a member.
    void Drop(ClientMap::iterator client, Goodbye goodbye = Goodbye::None);
    // Those that did not take what was sent to them go, and then those that do not take the news of it.
    void DropOverfull();

    GMainContext* const context;
    const RoomFolder folder;
    std::unique_ptr<HubLock> lock;
    std::vector<std::string> expected;
    GSocket* const listening;
    OwnedSource accepting;
    OwnedSource settling;
    RateLimit connections{kConnectionsPerSecond, kConnectionsPerSecond};
    ClientMap clients;
    ClientNumber nextNumber = 1;
    std::vector<ClientNumber> overfull;
};

}  // namespace Corvanta::Engine
