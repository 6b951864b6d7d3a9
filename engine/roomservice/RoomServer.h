// The HTTP server of the room service. Lives on one thread, whose GLib main context serves it. Rooms are
// named in the address, since their names may be any bytes; the JSON is described in ServiceMessage.h and
// ConnectivityReport.h.
//
//   POST   /connectivity                         takes a report: 204
//   GET    /connectivity?session=...&stream=...  the stream's last report, or 404
//   PUT    /profile                              takes who a user is: 204
//   GET    /profile?id=...                       who that is, or 404
//   GET    /notes?room=...                       the room's notes and their revision; 0 where there are none
//   GET    /notes?room=...&after=REVISION        the same as soon as they are another revision than that;
//                                                204 when they still are that one after kLongestWait
//   PUT    /notes?room=...                       takes notes that were written on the revision they name: 200
//                                                with the new one and no text, or 409 with what is there
//   GET    /sessions?room=...                    the room's recording sessions, the newest first
//   POST   /sessions?room=...                    takes one: 204, or 409 when its id is there
//   PUT    /sessions?id=...  or  ?room=...       says when it, or the room's last open one, ended: 204 or 404
//   DELETE /sessions?id=...                      forgets it: 204 or 404
//
// Further answers: 400 to what makes no sense, and over TCP to a room without a name, 404 and 405 to what
// there is not, 413 to what is too large, 429 to a client that asks too often, 500 for trouble with the
// database, 507 when there is no place for more. Over TCP 401, and no more, to whoever does not bear the
// token.
#pragma once

#include <libsoup/soup.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <list>
#include <memory>
#include <string>

#include "engine/roomservice/ClientRates.h"
#include "engine/roomservice/ConnectionKeeper.h"
#include "engine/roomservice/RoomRequests.h"
#include "engine/signalling/OwnedSource.h"

namespace Corvanta::Engine {

class RoomServer final {
public:
    static constexpr std::chrono::milliseconds kLongestWait{25'000};

    struct Options {
        // Listened to when it is not empty. Its file is replaced: the caller has made sure that nobody serves
        // it.
        std::filesystem::path socket = {};
        // Else these: a number address, and a port or 0 for any.
        std::string address = {};
        std::uint16_t port = 0;
        // What a caller over TCP has to bear; never empty there.
        std::string token = {};
        // For https, both in PEM; http without.
        std::filesystem::path certificate = {};
        std::filesystem::path key = {};

        std::filesystem::path database = {};

        ConnectionKeeper::Limits connections = {};
        ClientRates::Limits rates = {};
        std::chrono::milliseconds longestWait = kLongestWait;
    };

    // Null, with one line for the user in `problem`, when nothing can be listened to.
    [[nodiscard]] static std::unique_ptr<RoomServer> Listen(const Options& options, std::string& problem);
    // Ends all connections and removes the socket.
    ~RoomServer();
    RoomServer(const RoomServer&) = delete;
    RoomServer& operator=(const RoomServer&) = delete;

    // Over TCP.
    [[nodiscard]] std::uint16_t Port() const { return port; }
    [[nodiscard]] std::size_t Connections() const { return keeper->Connections(); }

private:
    // A request that is answered when the notes change.
    struct Waiting {
        SoupServerMessage* message = nullptr;
        NotesWait wait = {};
        OwnedSource alarm = {};
    };

    explicit RoomServer(const Options& serverOptions);

    static void OnRequestRead(SoupServer* server, SoupServerMessage* message, gpointer self);
    static void OnRequestEnded(SoupServer* server, SoupServerMessage* message, gpointer self);
    static void OnHeaders(SoupServer* server, SoupServerMessage* message, const char* path, GHashTable* query,
                          gpointer self);
    static void OnRequest(SoupServer* server, SoupServerMessage* message, const char* path, GHashTable* query,
                          gpointer self);

    // Counts a body as it comes. What is too large, or of no interest, is not kept but read to its end;
    // whoever goes on and on is not listened to.
    static void OnChunk(SoupServerMessage* message, GBytes* chunk, gpointer self);

    void Accept(GIOStream* stream, GSocketAddress* local, GSocketAddress* remote);
    // The answer to a request whose body is of no interest, from its head alone; 0 for none.
    [[nodiscard]] unsigned Refusal(SoupServerMessage* message);
    void Respond(SoupServerMessage* message, const char* path);
    void Wait(SoupServerMessage* message, NotesWait wait);
    void AnswerWaiting(const std::string& room);
    void Resume(std::list<Waiting>::iterator waiting, const ServiceAnswer& answer);

    const Options options;
    // The token itself is not kept.
    const std::string expectedDigest;
    RoomRequests requests;
    ClientRates rates;
    std::list<Waiting> waiting;
    std::uint16_t port = 0;
    SoupServer* const server;
    std::unique_ptr<ConnectionKeeper> keeper;
};

}  // namespace Corvanta::Engine
