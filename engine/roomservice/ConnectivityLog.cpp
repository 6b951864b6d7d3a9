#include "engine/roomservice/ConnectivityLog.h"

namespace Corvanta::Engine {

namespace {

constexpr const char* kInsert = "INSERT INTO connectivity(session, stream, report) VALUES(?1, ?2, ?3)";
// Numbers only grow, and a stream that reports gets a new one.
constexpr const char* kTrim =
    "DELETE FROM connectivity WHERE number <= "
    "(SELECT number FROM connectivity ORDER BY number DESC LIMIT 1 OFFSET ?1)";
constexpr const char* kFind = "SELECT report FROM connectivity WHERE session=?1 AND stream=?2";

}  // namespace

bool ConnectivityLog::Store(const ConnectivityReport& report) {
    const std::string json = ToJson(report);
    return database.Write([&] {
        Statement insert(database, kInsert);
        insert.Bind(1, report.sessionName).Bind(2, report.figures.streamId).Bind(3, json);
        Statement trim(database, kTrim);
        return insert.Step() == SQLITE_DONE && trim.Bind(1, kMostStreams).Step() == SQLITE_DONE;
    });
}

ConnectivityLog::Found ConnectivityLog::Find(const std::string& sessionName, const std::string& streamId,
                                             std::string& json) {
    Statement find(database, kFind);
    switch (find.Bind(1, sessionName).Bind(2, streamId).Step()) {
        case SQLITE_ROW: json = find.Text(0); return Found::Yes;
        case SQLITE_DONE: return Found::No;
        default: return Found::Error;
    }
}

}  // namespace Corvanta::Engine
