#include "engine/roomservice/ServiceDatabase.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <system_error>
#include <utility>

#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

// All other requests wait meanwhile, so whoever keeps the file locked has them answered with 500 before long.
constexpr int kBusyTimeoutMs = 50;
// In the file's header, beside the version of its tables: whose it is.
constexpr int kApplicationId = 0x43525653;
static_assert(kApplicationId == 1129469523 && ServiceDatabase::kTableVersion == 2, "as in kTables");

// What was written stays when the process is killed; the loss of power may cost the last of it.
constexpr const char* kSettings = "PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL;";
// Version 1 had the first table alone, just as it is here.
constexpr const char* kTables =
    "BEGIN IMMEDIATE;"
    "CREATE TABLE IF NOT EXISTS connectivity("
    "  number INTEGER PRIMARY KEY AUTOINCREMENT, session TEXT NOT NULL, stream TEXT NOT NULL,"
    "  report TEXT NOT NULL, UNIQUE(session, stream) ON CONFLICT REPLACE);"
    "CREATE TABLE IF NOT EXISTS profile("
    "  number INTEGER PRIMARY KEY AUTOINCREMENT, id TEXT NOT NULL UNIQUE ON CONFLICT REPLACE,"
    "  email TEXT NOT NULL, display_name TEXT NOT NULL);"
    "CREATE TABLE IF NOT EXISTS notes("
    "  room BLOB PRIMARY KEY NOT NULL, revision INTEGER NOT NULL, text TEXT NOT NULL);"
    "CREATE TABLE IF NOT EXISTS recording_session("
    "  number INTEGER PRIMARY KEY AUTOINCREMENT, id TEXT NOT NULL UNIQUE, room BLOB NOT NULL,"
    "  name TEXT NOT NULL, begun TEXT NOT NULL, ended TEXT);"
    "CREATE INDEX IF NOT EXISTS recording_session_room ON recording_session(room, number);"
    "PRAGMA application_id=1129469523;"
    "PRAGMA user_version=2;"
    "COMMIT;";

constexpr int kMostKeptAside = 100;
// What SQLite has beside a database's file: without them the last that was written is lost.
constexpr std::array kCompanions{"-wal", "-shm"};

std::filesystem::path With(std::filesystem::path path, const std::string& suffix) {
    path += suffix;
    return path;
}

// Over nothing that is kept already.
bool KeepAside(const std::filesystem::path& file) {
    for (int number = 1; number <= kMostKeptAside; ++number) {
        std::string suffix = ".unreadable";
        if (number > 1) {
            suffix += '-';
            suffix += std::to_string(number);
        }
        const std::filesystem::path kept = With(file, suffix);
        if (::renameat2(AT_FDCWD, file.c_str(), AT_FDCWD, kept.c_str(), RENAME_NOREPLACE) != 0) {
            if (errno == EEXIST) continue;
            return false;
        }
        std::error_code error;
        for (const char* const companion : kCompanions)
            std::filesystem::rename(With(file, companion), With(kept, companion), error);
        return true;
    }
    return false;
}

// Its companions get the rights that it has.
void MakeForOwner(const std::filesystem::path& file) {
    const int made = ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (made >= 0) ::close(made);
}

// -1 when it cannot be read.
std::int64_t ReadNumber(sqlite3* database, const char* query) {
    Statement statement(database, query);
    return statement.Step() == SQLITE_ROW ? statement.Number(0) : -1;
}

}  // namespace

Statement::Statement(const ServiceDatabase& database, const char* text)
    : Statement(database.Handle(), text) {}

Statement::Statement(sqlite3* database, const char* text) {
    if (sqlite3_prepare_v2(database, text, -1, &statement, nullptr) != SQLITE_OK) statement = nullptr;
}

Statement::~Statement() {
    sqlite3_finalize(statement);
}

Statement& Statement::Bind(int position, const std::string& text) {
    sqlite3_bind_text64(statement, position, text.data(), text.size(), SQLITE_STATIC, SQLITE_UTF8);
    return *this;
}

Statement& Statement::Bind(int position, std::int64_t number) {
    sqlite3_bind_int64(statement, position, number);
    return *this;
}

Statement& Statement::BindBytes(int position, const std::string& bytes) {
    sqlite3_bind_blob64(statement, position, bytes.data(), bytes.size(), SQLITE_STATIC);
    return *this;
}

int Statement::Step() {
    return statement != nullptr ? sqlite3_step(statement) : SQLITE_ERROR;
}

bool Statement::IsNull(int column) const {
    return sqlite3_column_type(statement, column) == SQLITE_NULL;
}

std::string Statement::Text(int column) const {
    const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
    if (text == nullptr) return {};
    return {text, static_cast<std::size_t>(sqlite3_column_bytes(statement, column))};
}

std::int64_t Statement::Number(int column) const {
    return sqlite3_column_int64(statement, column);
}

ServiceDatabase::Owner ServiceDatabase::OpenFile(const std::filesystem::path& file, std::string& problem,
                                                 Trouble& trouble) {
    trouble = Trouble::Other;
    MakeForOwner(file);
    sqlite3* opened = nullptr;
    const int result = sqlite3_open_v2(
        file.c_str(), &opened, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
    Owner database(opened);
    if (result != SQLITE_OK) {
        problem = sqlite3_errstr(result);
        return nullptr;
    }
    sqlite3_busy_timeout(opened, kBusyTimeoutMs);
    const std::int64_t application = ReadNumber(opened, "PRAGMA application_id");
    const std::int64_t version = ReadNumber(opened, "PRAGMA user_version");
    const int readResult = sqlite3_errcode(opened);
    const std::int64_t tables = ReadNumber(opened, "SELECT COUNT(*) FROM sqlite_master");
    const bool isOurs = application == kApplicationId && version >= 1;
    const bool isEmpty = application == 0 && version == 0 && tables == 0;
    if (isOurs && version > kTableVersion) {
        trouble = Trouble::Newer;
        problem = "a newer version has written it";
        return nullptr;
    }
    if (!isOurs && !isEmpty) {
        // One that cannot be read at the moment says nothing about whose it is.
        if (application >= 0 || readResult == SQLITE_NOTADB || readResult == SQLITE_CORRUPT)
            trouble = Trouble::Foreign;
        problem = trouble == Trouble::Foreign ? "it is damaged or another program's" : sqlite3_errmsg(opened);
        return nullptr;
    }
    if (sqlite3_exec(opened, kSettings, nullptr, nullptr, nullptr) != SQLITE_OK ||
        sqlite3_exec(opened, kTables, nullptr, nullptr, nullptr) != SQLITE_OK) {
        problem = sqlite3_errmsg(opened);
        if (sqlite3_errcode(opened) == SQLITE_CORRUPT || sqlite3_errcode(opened) == SQLITE_NOTADB)
            trouble = Trouble::Foreign;
        return nullptr;
    }
    trouble = Trouble::None;
    return database;
}

std::unique_ptr<ServiceDatabase> ServiceDatabase::Open(const std::filesystem::path& file) {
    std::string problem;
    Trouble trouble = Trouble::None;
    Owner database = OpenFile(file, problem, trouble);
    if (database == nullptr && trouble == Trouble::Foreign && KeepAside(file)) {
        LOG(kLogWarning, "%s is kept aside: %s", file.c_str(), problem.c_str());
        database = OpenFile(file, problem, trouble);
    }
    if (database == nullptr) {
        LOG(kLogError, "%s cannot be opened: %s", file.c_str(), problem.c_str());
        return nullptr;
    }
    return std::unique_ptr<ServiceDatabase>(new ServiceDatabase(std::move(database)));
}

bool ServiceDatabase::Copy(const std::filesystem::path& file, const std::filesystem::path& target) {
    std::error_code error;
    std::filesystem::path written = target;
    written += ".new";
    std::filesystem::remove(written, error);
    const auto source = Open(file);
    if (source == nullptr) return false;
    // Only an empty file is written into.
    MakeForOwner(written);
    const std::string name = written.string();
    Statement copy(*source, "VACUUM INTO ?1");
    const bool isCopied = copy.Bind(1, name).Step() == SQLITE_DONE;
    if (isCopied) std::filesystem::rename(written, target, error);
    if (isCopied && !error) return true;
    LOG(kLogError, "%s cannot be copied to %s: %s", file.c_str(), target.c_str(),
        isCopied ? error.message().c_str() : sqlite3_errmsg(source->Handle()));
    std::filesystem::remove(written, error);
    return false;
}

bool ServiceDatabase::Execute(const char* statement) {
    return sqlite3_exec(handle.get(), statement, nullptr, nullptr, nullptr) == SQLITE_OK;
}

bool ServiceDatabase::Write(const std::function<bool()>& work) {
    if (!Execute("BEGIN IMMEDIATE")) {
        LOG(kLogWarning, "The room service's database takes nothing: %s", sqlite3_errmsg(handle.get()));
        return false;
    }
    // Also when the work throws, nothing of it stays, and the next one finds no transaction open.
    struct Rollback {
        ~Rollback() {
            // Some errors have ended the transaction already.
            if (sqlite3_get_autocommit(handle) == 0 &&
                sqlite3_exec(handle, "ROLLBACK", nullptr, nullptr, nullptr) != SQLITE_OK)
                LOG(kLogWarning, "The room service's database is in trouble: %s", sqlite3_errmsg(handle));
        }
        sqlite3* const handle;
    } const rollback{handle.get()};
    const bool isDone = work();
    if (isDone && Execute("COMMIT")) return true;
    const int result = sqlite3_errcode(handle.get());
    if (isDone || (result != SQLITE_OK && result != SQLITE_ROW && result != SQLITE_DONE))
        LOG(kLogWarning, "The room service's database has not taken a request: %s",
            sqlite3_errmsg(handle.get()));
    return false;
}

}  // namespace Corvanta::Engine
