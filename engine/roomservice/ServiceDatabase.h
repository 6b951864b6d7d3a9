// The database file behind the room service: opened, brought to the newest form of its tables, and spoken to
// in statements and transactions. One thread at a time.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

namespace Corvanta::Engine {

class ServiceDatabase final {
public:
    // What is written into a file of this form; files of older ones are brought to it with all they hold.
    static constexpr int kTableVersion = 2;

    // Makes the file where it is missing, open to its user alone. A file that is damaged or another program's
    // is kept aside, and a new one begun; one that a newer version has written is left alone. Null, and a log
    // line, when there can be none.
    [[nodiscard]] static std::unique_ptr<ServiceDatabase> Open(const std::filesystem::path& file);

    // Has the file's content, whatever is still in its log, in a new file at the other place, in one step.
    // False, and a log line, when that is impossible; then there is no new file.
    [[nodiscard]] static bool Copy(const std::filesystem::path& file, const std::filesystem::path& target);

    // Runs the work in one transaction: when this returns true, it is written for good, and the death of the
    // process changes nothing about it. False, with everything as before, when the work or the file says so;
    // a trouble of the file's is logged.
    [[nodiscard]] bool Write(const std::function<bool()>& work);

    [[nodiscard]] sqlite3* Handle() const { return handle.get(); }

private:
    struct Close {
        void operator()(sqlite3* opened) const { sqlite3_close_v2(opened); }
    };
    using Owner = std::unique_ptr<sqlite3, Close>;
    enum class Trouble { None, Foreign, Newer, Other };

    explicit ServiceDatabase(Owner opened) : handle(std::move(opened)) {}
    static Owner OpenFile(const std::filesystem::path& file, std::string& problem, Trouble& trouble);
    [[nodiscard]] bool Execute(const char* statement);

    Owner handle;
};

// One statement of the database's. Parameters and columns count from 1 and from 0, as SQLite has it.
class Statement final {
public:
    Statement(const ServiceDatabase& database, const char* text);
    Statement(sqlite3* database, const char* text);
    ~Statement();
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    // The text must live as long as this.
    Statement& Bind(int position, const std::string& text);
    Statement& Bind(int position, std::int64_t number);
    // Bytes of any kind, which are compared byte by byte.
    Statement& BindBytes(int position, const std::string& bytes);

    // SQLITE_ROW, SQLITE_DONE or an error.
    [[nodiscard]] int Step();
    [[nodiscard]] bool IsNull(int column) const;
    [[nodiscard]] std::string Text(int column) const;
    [[nodiscard]] std::int64_t Number(int column) const;

private:
    sqlite3_stmt* statement = nullptr;
};

}  // namespace Corvanta::Engine
