#include "engine/connections/ParticipantList.h"

#include <algorithm>
#include <utility>

namespace Corvanta::Engine {

ParticipantList::Snapshot ParticipantList::Get() const {
    const std::lock_guard lock(listMutex);
    return list;
}

std::shared_ptr<RoomParticipant> ParticipantList::Find(const std::string& streamId) const {
    const Snapshot all = Get();
    const auto found =
        std::ranges::find_if(*all, [&](const auto& participant) { return participant->id == streamId; });
    return found != all->end() ? *found : nullptr;
}

void ParticipantList::Add(std::shared_ptr<RoomParticipant> participant) {
    auto changed = std::make_shared<std::vector<std::shared_ptr<RoomParticipant>>>(*Get());
    changed->push_back(std::move(participant));
    const std::lock_guard lock(listMutex);
    list = std::move(changed);
}

void ParticipantList::Remove(const std::shared_ptr<RoomParticipant>& participant) {
    auto changed = std::make_shared<std::vector<std::shared_ptr<RoomParticipant>>>(*Get());
    std::erase(*changed, participant);
    const std::lock_guard lock(listMutex);
    list = std::move(changed);
}

}  // namespace Corvanta::Engine
