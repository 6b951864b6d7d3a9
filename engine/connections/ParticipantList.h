// Who is in the open room, the local user left out, in the order in which they joined. Changed on the
// engine's thread, read on any: a snapshot stays as it is, whoever comes and goes.
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "engine/connections/RoomParticipant.h"

namespace Corvanta::Engine {

class ParticipantList final {
public:
    using Snapshot = std::shared_ptr<const std::vector<std::shared_ptr<RoomParticipant>>>;

    // Never null. To be kept in a variable while it is gone through: a loop over `*Get()` keeps nothing.
    [[nodiscard]] Snapshot Get() const;
    // Null when there is none of that stream id.
    [[nodiscard]] std::shared_ptr<RoomParticipant> Find(const std::string& streamId) const;

    void Add(std::shared_ptr<RoomParticipant> participant);
    void Remove(const std::shared_ptr<RoomParticipant>& participant);

private:
    mutable std::mutex listMutex;  // guards: list
    Snapshot list = std::make_shared<std::vector<std::shared_ptr<RoomParticipant>>>();
};

}  // namespace Corvanta::Engine
