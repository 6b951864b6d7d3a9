// The sessions in which rooms were recorded, in the service's database: what they are called and when they
// were, not the recordings themselves. One thread at a time.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "engine/roomservice/ServiceDatabase.h"
#include "engine/roomservice/ServiceMessage.h"

namespace Corvanta::Engine {

class RecordingTable final {
public:
    // Of all rooms together. Nothing is thrown away to make place for another.
    static constexpr int kMostSessions = 10'000;
    // How many a list has at most: those that were added last.
    static constexpr int kMostListed = 500;

    // The database outlives this.
    explicit RecordingTable(ServiceDatabase& openedDatabase) : database(openedDatabase) {}

    enum class Done { Yes, NotThere, IsThere, TooMany, Error };

    // IsThere: its id is.
    [[nodiscard]] Done Add(const std::string& room, const RecordingSession& session);
    // Sets when it ended, again if need be.
    [[nodiscard]] Done End(const std::string& id, const std::string& ended);
    // Of the room's sessions that have not ended, the one that was added last.
    [[nodiscard]] Done EndLast(const std::string& room, const std::string& ended);
    [[nodiscard]] Done Remove(const std::string& id);

    // The newest first; nothing when the database cannot be read.
    [[nodiscard]] std::optional<std::vector<RecordingSession>> List(const std::string& room) const;

private:
    // Has one statement change one row.
    [[nodiscard]] Done ChangeOne(Statement& change);

    ServiceDatabase& database;
};

}  // namespace Corvanta::Engine
