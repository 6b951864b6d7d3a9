#include "engine/roomservice/NotesTable.h"

#include <utility>

namespace Corvanta::Engine {

namespace {

constexpr const char* kFind = "SELECT revision, text FROM notes WHERE room=?1";
constexpr const char* kCount = "SELECT COUNT(*) FROM notes";
constexpr const char* kWrite =
    "INSERT INTO notes(room, revision, text) VALUES(?1, ?2, ?3) "
    "ON CONFLICT(room) DO UPDATE SET revision=excluded.revision, text=excluded.text";

}  // namespace

std::optional<NotesText> NotesTable::Find(const std::string& room) const {
    Statement find(database, kFind);
    switch (find.BindBytes(1, room).Step()) {
        case SQLITE_ROW: return NotesText{.revision = find.Number(0), .text = find.Text(1)};
        case SQLITE_DONE: return NotesText{};
        default: return std::nullopt;
    }
}

NotesTable::Written NotesTable::Write(const std::string& room, NotesText& notes) {
    auto result = Written::Error;
    const bool isWritten = database.Write([&] {
        auto found = Find(room);
        if (!found) return false;
        if (found->revision != notes.revision) {
            notes = std::move(*found);
            result = Written::OtherRevision;
            return false;
        }
        Statement count(database, kCount);
        if (count.Step() != SQLITE_ROW) return false;
        if (found->revision == 0 && count.Number(0) >= kMostRooms) {
            result = Written::TooMany;
            return false;
        }
        Statement write(database, kWrite);
        return write.BindBytes(1, room).Bind(2, notes.revision + 1).Bind(3, notes.text).Step() == SQLITE_DONE;
    });
    if (!isWritten) return result;
    ++notes.revision;
    return Written::Yes;
}

}  // namespace Corvanta::Engine
