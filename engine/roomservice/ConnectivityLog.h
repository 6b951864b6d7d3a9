// The newest connectivity report of each stream of each session, in a database file. One thread at a time.
#pragma once

#include <sqlite3.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "engine/roomservice/ConnectivityReport.h"

namespace Corvanta::Engine {

class ConnectivityLog final {
public:
    // Streams beyond this number push out those that were silent longest.
    static constexpr int kMostStreams = 4096;

    // Makes the file where it is missing. A file that is damaged or another program's is kept aside, and a
    // new one begun. Null, and a log line, when there can be none.
    [[nodiscard]] static std::unique_ptr<ConnectivityLog> Open(const std::filesystem::path& file);

    // Written for good, in one transaction, when it returns true.
    [[nodiscard]] bool Store(const ConnectivityReport& report);

    enum class Found { Yes, No, Error };
    // The report as JSON.
    [[nodiscard]] Found Find(const std::string& sessionName, const std::string& streamId, std::string& json);

private:
    struct CloseDatabase {
        void operator()(sqlite3* opened) const { sqlite3_close_v2(opened); }
    };
    using Database = std::unique_ptr<sqlite3, CloseDatabase>;

    explicit ConnectivityLog(Database opened) : database(std::move(opened)) {}
    static Database OpenFile(const std::filesystem::path& file, std::string& problem, bool& isForeign);
    [[nodiscard]] bool Execute(const char* statement);
    [[nodiscard]] bool Insert(const ConnectivityReport& report);

    Database database;
};

}  // namespace Corvanta::Engine
