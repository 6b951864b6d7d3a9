// The HTTP server of the room service: answers requests on a Unix socket from the database. Lives on one
// thread, whose GLib main context serves it.
//
//   POST /connectivity                         takes a report (see ConnectivityReport)
//   GET  /connectivity?session=...&stream=...  the stream's last report, or 404
//
// A request that makes no sense is answered 400, one that is too large 413, and 500 stands for trouble with
// the database.
#pragma once

#include <libsoup/soup.h>

#include <filesystem>
#include <memory>

#include "engine/roomservice/ConnectivityLog.h"

namespace Corvanta::Engine {

class RoomServer final {
public:
    // Listens on the socket, whose file is replaced: the caller has made sure that nobody serves it. Null,
    // and a log line, when that is impossible.
    [[nodiscard]] static std::unique_ptr<RoomServer> Listen(const std::filesystem::path& socket,
                                                            std::unique_ptr<ConnectivityLog> log);
    // Ends all connections and removes the socket.
    ~RoomServer();
    RoomServer(const RoomServer&) = delete;
    RoomServer& operator=(const RoomServer&) = delete;

private:
    RoomServer(std::filesystem::path socketFile, std::unique_ptr<ConnectivityLog> openedLog);

    static void OnHeaders(SoupServer* server, SoupServerMessage* message, const char* path, GHashTable* query,
                          gpointer self);
    static void OnRequest(SoupServer* server, SoupServerMessage* message, const char* path, GHashTable* query,
                          gpointer self);
    void Post(SoupServerMessage* message);
    void Get(SoupServerMessage* message, GHashTable* query);

    const std::filesystem::path socket;
    const std::unique_ptr<ConnectivityLog> log;
    SoupServer* const server;
};

}  // namespace Corvanta::Engine
