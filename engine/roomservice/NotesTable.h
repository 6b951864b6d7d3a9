// The notes of the rooms, in the service's database: of each room one text, whose revision grows by one with
// every write. One thread at a time.
#pragma once

#include <optional>
#include <string>

#include "engine/roomservice/ServiceDatabase.h"
#include "engine/roomservice/ServiceMessage.h"

namespace Corvanta::Engine {

class NotesTable final {
public:
    // Rooms with notes. Nothing is thrown away to make place for another.
    static constexpr int kMostRooms = 1024;

    // The database outlives this.
    explicit NotesTable(ServiceDatabase& openedDatabase) : database(openedDatabase) {}

    // Revision 0 and no text for a room without notes; nothing when the database cannot be read.
    [[nodiscard]] std::optional<NotesText> Find(const std::string& room) const;

    enum class Written { Yes, OtherRevision, TooMany, Error };
    // Takes the text if its revision is the one that is there. With Yes, `notes` then has the new revision;
    // with OtherRevision it is what is there.
    [[nodiscard]] Written Write(const std::string& room, NotesText& notes);

private:
    ServiceDatabase& database;
};

}  // namespace Corvanta::Engine
