// The newest connectivity report of each stream of each session, in the service's database. One thread at a
// time.
#pragma once

#include <string>

#include "engine/roomservice/ConnectivityReport.h"
#include "engine/roomservice/ServiceDatabase.h"

namespace Corvanta::Engine {

class ConnectivityLog final {
public:
    // Streams beyond this number push out those that were silent longest.
    static constexpr int kMostStreams = 4096;

    // The database outlives this.
    explicit ConnectivityLog(ServiceDatabase& openedDatabase) : database(openedDatabase) {}

    // Written for good, in one transaction, when it returns true.
    [[nodiscard]] bool Store(const ConnectivityReport& report);

    enum class Found { Yes, No, Error };
    // The report as JSON.
    [[nodiscard]] Found Find(const std::string& sessionName, const std::string& streamId, std::string& json);

private:
    ServiceDatabase& database;
};

}  // namespace Corvanta::Engine
