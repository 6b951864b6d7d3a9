#include "engine/roomservice/ProfileTable.h"

namespace Corvanta::Engine {

namespace {

constexpr const char* kInsert = "INSERT INTO profile(id, email, display_name) VALUES(?1, ?2, ?3)";
// Numbers only grow, and a profile that is told again gets a new one.
constexpr const char* kTrim =
    "DELETE FROM profile WHERE number <= (SELECT number FROM profile ORDER BY number DESC LIMIT 1 OFFSET ?1)";
constexpr const char* kFind = "SELECT email, display_name FROM profile WHERE id=?1";

}  // namespace

bool ProfileTable::Store(const Profile& profile) {
    return database.Write([&] {
        Statement insert(database, kInsert);
        insert.Bind(1, profile.id).Bind(2, profile.email).Bind(3, profile.displayName);
        Statement trim(database, kTrim);
        return insert.Step() == SQLITE_DONE && trim.Bind(1, kMostProfiles).Step() == SQLITE_DONE;
    });
}

ProfileTable::Found ProfileTable::Find(const std::string& id, Profile& profile) const {
    Statement find(database, kFind);
    switch (find.Bind(1, id).Step()) {
        case SQLITE_ROW:
            profile = {.id = id, .email = find.Text(0), .displayName = find.Text(1)};
            return Found::Yes;
        case SQLITE_DONE: return Found::No;
        default: return Found::Error;
    }
}

}  // namespace Corvanta::Engine
