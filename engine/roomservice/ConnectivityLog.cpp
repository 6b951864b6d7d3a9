#include "engine/roomservice/ConnectivityLog.h"

#include <system_error>
#include <utility>

#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

constexpr int kBusyTimeoutMs = 500;
// In the file's header: whose it is, and the version of its tables.
constexpr int kApplicationId = 0x43525653;
constexpr int kTableVersion = 1;

// A report that was written stays when the process is killed; the loss of power may cost the last ones.
constexpr const char* kSettings = "PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL;";
constexpr const char* kTables =
    "BEGIN IMMEDIATE;"
    "CREATE TABLE IF NOT EXISTS connectivity("
    "  number INTEGER PRIMARY KEY AUTOINCREMENT, session TEXT NOT NULL, stream TEXT NOT NULL,"
    "  report TEXT NOT NULL, UNIQUE(session, stream) ON CONFLICT REPLACE);"
    "PRAGMA application_id=1129469523;"
    "PRAGMA user_version=1;"
    "COMMIT;";
constexpr const char* kInsert = "INSERT INTO connectivity(session, stream, report) VALUES(?1, ?2, ?3)";
// Numbers only grow, and a stream that reports gets a new one.
constexpr const char* kTrim =
    "DELETE FROM connectivity WHERE number <= "
    "(SELECT number FROM connectivity ORDER BY number DESC LIMIT 1 OFFSET ?1)";
constexpr const char* kFind = "SELECT report FROM connectivity WHERE session=?1 AND stream=?2";

static_assert(kApplicationId == 1129469523);

class Statement final {
public:
    Statement(sqlite3* database, const char* text) {
        if (sqlite3_prepare_v2(database, text, -1, &statement, nullptr) != SQLITE_OK) statement = nullptr;
    }
    ~Statement() { sqlite3_finalize(statement); }
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    // The text must live as long as this.
    Statement& Bind(int position, const std::string& text) {
        sqlite3_bind_text(statement, position, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
        return *this;
    }
    Statement& Bind(int position, int number) {
        sqlite3_bind_int(statement, position, number);
        return *this;
    }
    // SQLITE_ROW, SQLITE_DONE or an error.
    [[nodiscard]] int Step() { return statement != nullptr ? sqlite3_step(statement) : SQLITE_ERROR; }
    [[nodiscard]] std::string Text() {
        const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(statement, 0));
        if (text == nullptr) return {};
        return {text, static_cast<std::size_t>(sqlite3_column_bytes(statement, 0))};
    }
    [[nodiscard]] int Number() { return sqlite3_column_int(statement, 0); }

private:
    sqlite3_stmt* statement = nullptr;
};

bool KeepAside(const std::filesystem::path& file) {
    std::error_code error;
    std::filesystem::path kept = file;
    kept += ".unreadable";
    std::filesystem::rename(file, kept, error);
    if (error) return false;
    for (const char* const suffix : {"-wal", "-shm"}) {
        std::filesystem::path companion = file;
        companion += suffix;
        std::filesystem::remove(companion, error);
    }
    return true;
}

// -1 when it cannot be read.
int ReadPragma(sqlite3* database, const char* query) {
    Statement statement(database, query);
    return statement.Step() == SQLITE_ROW ? statement.Number() : -1;
}

}  // namespace

ConnectivityLog::Database ConnectivityLog::OpenFile(const std::filesystem::path& file, std::string& problem,
                                                    bool& isForeign) {
    sqlite3* opened = nullptr;
    const int result = sqlite3_open_v2(
        file.c_str(), &opened, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
    Database database(opened);
    if (result != SQLITE_OK) {
        problem = sqlite3_errstr(result);
        return nullptr;
    }
    sqlite3_busy_timeout(opened, kBusyTimeoutMs);
    const int application = ReadPragma(opened, "PRAGMA application_id");
    const int version = ReadPragma(opened, "PRAGMA user_version");
    const bool isOurs = application == kApplicationId && version == kTableVersion;
    const bool isEmpty =
        application == 0 && version == 0 && ReadPragma(opened, "SELECT COUNT(*) FROM sqlite_master") == 0;
    if (!isOurs && !isEmpty) {
        isForeign = true;
        problem = "it is damaged or another program's";
        return nullptr;
    }
    if (sqlite3_exec(opened, kSettings, nullptr, nullptr, nullptr) != SQLITE_OK ||
        sqlite3_exec(opened, kTables, nullptr, nullptr, nullptr) != SQLITE_OK) {
        problem = sqlite3_errmsg(opened);
        isForeign = sqlite3_errcode(opened) == SQLITE_CORRUPT || sqlite3_errcode(opened) == SQLITE_NOTADB;
        return nullptr;
    }
    return database;
}

std::unique_ptr<ConnectivityLog> ConnectivityLog::Open(const std::filesystem::path& file) {
    std::string problem;
    bool isForeign = false;
    Database database = OpenFile(file, problem, isForeign);
    if (database == nullptr && isForeign && KeepAside(file)) {
        LOG(kLogWarning, "%s is kept aside: %s", file.c_str(), problem.c_str());
        database = OpenFile(file, problem, isForeign);
    }
    if (database == nullptr) {
        LOG(kLogError, "%s cannot be opened: %s", file.c_str(), problem.c_str());
        return nullptr;
    }
    return std::unique_ptr<ConnectivityLog>(new ConnectivityLog(std::move(database)));
}

bool ConnectivityLog::Execute(const char* statement) {
    return sqlite3_exec(database.get(), statement, nullptr, nullptr, nullptr) == SQLITE_OK;
}

bool ConnectivityLog::Insert(const ConnectivityReport& report) {
    const std::string json = ToJson(report);
    Statement insert(database.get(), kInsert);
    if (insert.Bind(1, report.sessionName).Bind(2, report.figures.streamId).Bind(3, json).Step() !=
        SQLITE_DONE)
        return false;
    Statement trim(database.get(), kTrim);
    return trim.Bind(1, kMostStreams).Step() == SQLITE_DONE;
}

bool ConnectivityLog::Store(const ConnectivityReport& report) {
    if (!Execute("BEGIN IMMEDIATE")) return false;
    if (Insert(report) && Execute("COMMIT")) return true;
    LOG(kLogWarning, "A connectivity report was not stored: %s", sqlite3_errmsg(database.get()));
    if (!Execute("ROLLBACK")) LOG(kLogWarning, "The room service's database is in trouble");
    return false;
}

ConnectivityLog::Found ConnectivityLog::Find(const std::string& sessionName, const std::string& streamId,
                                             std::string& json) {
    Statement find(database.get(), kFind);
    switch (find.Bind(1, sessionName).Bind(2, streamId).Step()) {
        case SQLITE_ROW: json = find.Text(); return Found::Yes;
        case SQLITE_DONE: return Found::No;
        default: return Found::Error;
    }
}

}  // namespace Corvanta::Engine
