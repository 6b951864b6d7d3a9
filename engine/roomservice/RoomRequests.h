// What the room service answers, from its database and without knowing of sockets (see RoomServer.h for the
// requests). One thread.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "engine/roomservice/ServiceDatabase.h"

namespace Corvanta::Engine {

struct ServiceRequest {
    std::string method;
    std::string path;
    // As it stands in the address.
    std::string query;
    std::string body;
};

// Somebody who wants to hear when a room's notes are another revision than this.
struct NotesWait {
    std::string room;
    std::int64_t revision = 0;
};

struct ServiceAnswer {
    unsigned status = 0;
    // JSON; empty for none.
    std::string body = {};
    // Of a method that is not allowed: those that are.
    std::string allowed = {};
    // The room whose notes are others by this request.
    std::optional<std::string> changedNotes = {};
    // There is nothing to tell yet: 204, unless the notes change while somebody waits.
    std::optional<NotesWait> wait = {};
};

class RoomRequests final {
public:
    using Clock = std::chrono::steady_clock;

    // Which rooms can be asked for.
    enum class Rooms {
        All,
        // A room without a name is one of somebody's machine.
        Named,
    };

    // The database's file is made where it is missing. One that cannot be opened is tried again now and then;
    // until then there are no answers but 500.
    explicit RoomRequests(std::filesystem::path databaseFile, Rooms servedRooms = Rooms::All);

    [[nodiscard]] ServiceAnswer Answer(const ServiceRequest& request);
    // What the notes are now, or a wait that goes on.
    [[nodiscard]] ServiceAnswer Look(const NotesWait& wait);

    // Bytes of a body that is looked at.
    [[nodiscard]] static std::size_t LargestBody(const std::string& path);

private:
    using Parameters = std::map<std::string, std::string>;
    using Handler = ServiceAnswer (RoomRequests::*)(const Parameters& parameters, const std::string& body);
    struct Route {
        const char* path;
        const char* method;
        Handler handler;
    };
    static const Route kRoutes[];

    // The room's name, or null for a request without one that can be asked for.
    [[nodiscard]] const std::string* FindRoom(const Parameters& parameters) const;
    // Null while it cannot be opened.
    [[nodiscard]] ServiceDatabase* Database();

    ServiceAnswer GetConnectivity(const Parameters& parameters, const std::string& body);
    ServiceAnswer PostConnectivity(const Parameters& parameters, const std::string& body);
    ServiceAnswer GetProfile(const Parameters& parameters, const std::string& body);
    ServiceAnswer PutProfile(const Parameters& parameters, const std::string& body);
    ServiceAnswer GetNotes(const Parameters& parameters, const std::string& body);
    ServiceAnswer PutNotes(const Parameters& parameters, const std::string& body);
    ServiceAnswer GetSessions(const Parameters& parameters, const std::string& body);
    ServiceAnswer PostSession(const Parameters& parameters, const std::string& body);
    ServiceAnswer PutSession(const Parameters& parameters, const std::string& body);
    ServiceAnswer DeleteSession(const Parameters& parameters, const std::string& body);

    const std::filesystem::path file;
    const Rooms rooms;
    std::unique_ptr<ServiceDatabase> database;
    std::optional<Clock::time_point> lastTry;
};

}  // namespace Corvanta::Engine
