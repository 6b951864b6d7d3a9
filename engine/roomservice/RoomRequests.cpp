#include "engine/roomservice/RoomRequests.h"

#include <string_view>
#include <utility>

#include "engine/Engine.h"
#include "engine/roomservice/ConnectivityLog.h"
#include "engine/roomservice/ConnectivityReport.h"
#include "engine/roomservice/NotesTable.h"
#include "engine/roomservice/ProfileTable.h"
#include "engine/roomservice/RecordingTable.h"
#include "engine/roomservice/ServiceMessage.h"
#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

constexpr unsigned kOk = 200;
constexpr unsigned kNoContent = 204;
constexpr unsigned kBadRequest = 400;
constexpr unsigned kNotFound = 404;
constexpr unsigned kNotAllowed = 405;
constexpr unsigned kConflict = 409;
constexpr unsigned kTooLarge = 413;
constexpr unsigned kFailed = 500;
constexpr unsigned kFull = 507;

// How often a database that cannot be opened is tried.
constexpr std::chrono::seconds kTryInterval{1};
constexpr const char* kNotesPath = "/notes";

const std::string* FindText(const std::map<std::string, std::string>& parameters, const char* name) {
    const auto found = parameters.find(name);
    return found != parameters.end() && found->second.size() <= kLongestServiceText ? &found->second
                                                                                    : nullptr;
}

ServiceAnswer AnswerOf(RecordingTable::Done done) {
    switch (done) {
        case RecordingTable::Done::Yes: return {kNoContent};
        case RecordingTable::Done::NotThere: return {kNotFound};
        case RecordingTable::Done::IsThere: return {kConflict};
        case RecordingTable::Done::TooMany: return {kFull};
        case RecordingTable::Done::Error: return {kFailed};
    }
    return {kFailed};
}

}  // namespace

const RoomRequests::Route RoomRequests::kRoutes[] = {
    {"/connectivity", "GET", &RoomRequests::GetConnectivity},
    {"/connectivity", "POST", &RoomRequests::PostConnectivity},
    {"/profile", "GET", &RoomRequests::GetProfile},
    {"/profile", "PUT", &RoomRequests::PutProfile},
    {kNotesPath, "GET", &RoomRequests::GetNotes},
    {kNotesPath, "PUT", &RoomRequests::PutNotes},
    {"/sessions", "GET", &RoomRequests::GetSessions},
    {"/sessions", "POST", &RoomRequests::PostSession},
    {"/sessions", "PUT", &RoomRequests::PutSession},
    {"/sessions", "DELETE", &RoomRequests::DeleteSession},
};

RoomRequests::RoomRequests(std::filesystem::path databaseFile, Rooms servedRooms)
    : file(std::move(databaseFile)), rooms(servedRooms) {
    if (Database() == nullptr) LOG(kLogWarning, "The room service keeps nothing until its database is there");
}

std::size_t RoomRequests::LargestBody(const std::string& path) {
    return path == kNotesPath ? kLargestNotesMessage : kLargestReport;
}

const std::string* RoomRequests::FindRoom(const Parameters& parameters) const {
    const auto found = parameters.find("room");
    if (found == parameters.end() || found->second.size() > kLongestRoomName) return nullptr;
    return found->second.empty() && rooms == Rooms::Named ? nullptr : &found->second;
}

ServiceDatabase* RoomRequests::Database() {
    const auto now = Clock::now();
    if (database != nullptr || (lastTry && now - *lastTry < kTryInterval)) return database.get();
    lastTry = now;
    database = ServiceDatabase::Open(file);
    return database.get();
}

ServiceAnswer RoomRequests::Answer(const ServiceRequest& request) {
    std::string allowed;
    for (const Route& route : kRoutes) {
        if (request.path != route.path) continue;
        if (request.method != route.method) {
            if (!allowed.empty()) allowed += ", ";
            allowed += route.method;
            continue;
        }
        const auto parameters = ReadQuery(request.query);
        if (!parameters) return {kBadRequest};
        // The answer is the same whatever is asked for.
        if (Database() == nullptr) return {kFailed};
        return (this->*route.handler)(*parameters, request.body);
    }
    if (allowed.empty()) return {kNotFound};
    return {.status = kNotAllowed, .allowed = std::move(allowed)};
}

ServiceAnswer RoomRequests::GetConnectivity(const Parameters& parameters, const std::string&) {
    const auto session = parameters.find("session");
    const auto stream = parameters.find("stream");
    if (session == parameters.end() || stream == parameters.end()) return {kBadRequest};
    std::string json;
    switch (ConnectivityLog(*database).Find(session->second, stream->second, json)) {
        case ConnectivityLog::Found::Yes: return {kOk, std::move(json)};
        case ConnectivityLog::Found::No: return {kNotFound};
        case ConnectivityLog::Found::Error: break;
    }
    return {kFailed};
}

ServiceAnswer RoomRequests::PostConnectivity(const Parameters&, const std::string& body) {
    const auto report = ParseReport(body);
    if (!report) return {kBadRequest};
    return {ConnectivityLog(*database).Store(*report) ? kNoContent : kFailed};
}

ServiceAnswer RoomRequests::GetProfile(const Parameters& parameters, const std::string&) {
    const std::string* const id = FindText(parameters, "id");
    if (id == nullptr) return {kBadRequest};
    Profile profile;
    switch (ProfileTable(*database).Find(*id, profile)) {
        case ProfileTable::Found::Yes: return {kOk, WriteProfile(profile)};
        case ProfileTable::Found::No: return {kNotFound};
        case ProfileTable::Found::Error: break;
    }
    return {kFailed};
}

ServiceAnswer RoomRequests::PutProfile(const Parameters&, const std::string& body) {
    const auto profile = ReadProfile(body);
    if (!profile) return {kBadRequest};
    return {ProfileTable(*database).Store(*profile) ? kNoContent : kFailed};
}

ServiceAnswer RoomRequests::GetNotes(const Parameters& parameters, const std::string&) {
    const std::string* const room = FindRoom(parameters);
    if (room == nullptr) return {kBadRequest};
    const auto after = parameters.find("after");
    if (after != parameters.end()) {
        const auto revision = ReadRevision(after->second);
        return revision ? Look({*room, *revision}) : ServiceAnswer{kBadRequest};
    }
    const auto notes = NotesTable(*database).Find(*room);
    return notes ? ServiceAnswer{kOk, WriteNotes(*notes)} : ServiceAnswer{kFailed};
}

ServiceAnswer RoomRequests::Look(const NotesWait& wait) {
    if (Database() == nullptr) return {kFailed};
    const auto notes = NotesTable(*database).Find(wait.room);
    if (!notes) return {kFailed};
    // A client may know a later revision too, from a database that is lost.
    if (notes->revision != wait.revision) return {kOk, WriteNotes(*notes)};
    return {.status = kNoContent, .wait = wait};
}

ServiceAnswer RoomRequests::PutNotes(const Parameters& parameters, const std::string& body) {
    const std::string* const room = FindRoom(parameters);
    if (room == nullptr) return {kBadRequest};
    auto notes = ReadNotes(body);
    if (!notes) return {AreTooLongNotes(body) ? kTooLarge : kBadRequest};
    switch (NotesTable(*database).Write(*room, *notes)) {
        case NotesTable::Written::Yes: {
            // Its sender knows the text.
            notes->text.clear();
            return {.status = kOk, .body = WriteNotes(*notes), .changedNotes = *room};
        }
        case NotesTable::Written::OtherRevision: return {kConflict, WriteNotes(*notes)};
        case NotesTable::Written::TooMany: return {kFull};
        case NotesTable::Written::Error: break;
    }
    return {kFailed};
}

ServiceAnswer RoomRequests::GetSessions(const Parameters& parameters, const std::string&) {
    const std::string* const room = FindRoom(parameters);
    if (room == nullptr) return {kBadRequest};
    const auto sessions = RecordingTable(*database).List(*room);
    return sessions ? ServiceAnswer{kOk, WriteSessions(*sessions)} : ServiceAnswer{kFailed};
}

ServiceAnswer RoomRequests::PostSession(const Parameters& parameters, const std::string& body) {
    const std::string* const room = FindRoom(parameters);
    const auto session = ReadSession(body);
    if (room == nullptr || !session) return {kBadRequest};
    return AnswerOf(RecordingTable(*database).Add(*room, *session));
}

ServiceAnswer RoomRequests::PutSession(const Parameters& parameters, const std::string& body) {
    const auto ended = ReadEnd(body);
    if (!ended) return {kBadRequest};
    if (const std::string* const id = FindText(parameters, "id"))
        return AnswerOf(RecordingTable(*database).End(*id, *ended));
    if (const std::string* const room = FindRoom(parameters))
        return AnswerOf(RecordingTable(*database).EndLast(*room, *ended));
    return {kBadRequest};
}

ServiceAnswer RoomRequests::DeleteSession(const Parameters& parameters, const std::string&) {
    const std::string* const id = FindText(parameters, "id");
    if (id == nullptr) return {kBadRequest};
    return AnswerOf(RecordingTable(*database).Remove(*id));
}

}  // namespace Corvanta::Engine
