// Who the users are that have been here, in the service's database. One thread at a time.
#pragma once

#include <optional>
#include <string>

#include "engine/roomservice/ServiceDatabase.h"
#include "engine/roomservice/ServiceMessage.h"

namespace Corvanta::Engine {

class ProfileTable final {
public:
    // Profiles beyond this number push out those that were told longest ago.
    static constexpr int kMostProfiles = 4096;

    // The database outlives this.
    explicit ProfileTable(ServiceDatabase& openedDatabase) : database(openedDatabase) {}

    // In the place of what was known of that id.
    [[nodiscard]] bool Store(const Profile& profile);

    enum class Found { Yes, No, Error };
    [[nodiscard]] Found Find(const std::string& id, Profile& profile) const;

private:
    ServiceDatabase& database;
};

}  // namespace Corvanta::Engine
