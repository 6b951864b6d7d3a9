#include "engine/roomservice/RecordingTable.h"

#include <utility>

namespace Corvanta::Engine {

namespace {

constexpr const char* kFind = "SELECT 1 FROM recording_session WHERE id=?1";
constexpr const char* kCount = "SELECT COUNT(*) FROM recording_session";
constexpr const char* kInsert =
    "INSERT INTO recording_session(id, room, name, begun, ended) VALUES(?1, ?2, ?3, ?4, ?5)";
constexpr const char* kEnd = "UPDATE recording_session SET ended=?2 WHERE id=?1";
constexpr const char* kEndLast =
    "UPDATE recording_session SET ended=?2 WHERE number = (SELECT number FROM recording_session "
    "WHERE room=?1 AND ended IS NULL ORDER BY number DESC LIMIT 1)";
constexpr const char* kRemove = "DELETE FROM recording_session WHERE id=?1";
constexpr const char* kList =
    "SELECT id, name, begun, ended FROM recording_session WHERE room=?1 ORDER BY number DESC LIMIT ?2";

}  // namespace

RecordingTable::Done RecordingTable::Add(const std::string& room, const RecordingSession& session) {
    auto result = Done::Error;
    const bool isWritten = database.Write([&] {
        Statement find(database, kFind);
        const int found = find.Bind(1, session.id).Step();
        if (found == SQLITE_ROW) result = Done::IsThere;
        if (found != SQLITE_DONE) return false;
        Statement count(database, kCount);
        if (count.Step() != SQLITE_ROW) return false;
        if (count.Number(0) >= kMostSessions) {
            result = Done::TooMany;
            return false;
        }
        Statement insert(database, kInsert);
        insert.Bind(1, session.id).BindBytes(2, room).Bind(3, session.name).Bind(4, session.begun);
        if (session.ended) insert.Bind(5, *session.ended);
        return insert.Step() == SQLITE_DONE;
    });
    return isWritten ? Done::Yes : result;
}

RecordingTable::Done RecordingTable::ChangeOne(Statement& change) {
    auto result = Done::Error;
    const bool isWritten = database.Write([&] {
        if (change.Step() != SQLITE_DONE) return false;
        if (sqlite3_changes(database.Handle()) > 0) return true;
        result = Done::NotThere;
        return false;
    });
    return isWritten ? Done::Yes : result;
}

RecordingTable::Done RecordingTable::End(const std::string& id, const std::string& ended) {
    Statement end(database, kEnd);
    return ChangeOne(end.Bind(1, id).Bind(2, ended));
}

RecordingTable::Done RecordingTable::EndLast(const std::string& room, const std::string& ended) {
    Statement end(database, kEndLast);
    return ChangeOne(end.BindBytes(1, room).Bind(2, ended));
}

RecordingTable::Done RecordingTable::Remove(const std::string& id) {
    Statement remove(database, kRemove);
    return ChangeOne(remove.Bind(1, id));
}

std::optional<std::vector<RecordingSession>> RecordingTable::List(const std::string& room) const {
    Statement list(database, kList);
    list.BindBytes(1, room).Bind(2, kMostListed);
    std::vector<RecordingSession> sessions;
    while (true) {
        switch (list.Step()) {
            case SQLITE_ROW: {
                RecordingSession session{
                    .id = list.Text(0), .name = list.Text(1), .begun = list.Text(2), .ended = {}};
                if (!list.IsNull(3)) session.ended = list.Text(3);
                sessions.push_back(std::move(session));
                break;
            }
            case SQLITE_DONE: return sessions;
            default: return std::nullopt;
        }
    }
}

}  // namespace Corvanta::Engine
