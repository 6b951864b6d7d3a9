#include "engine/restful/ResponseStore.h"

namespace Corvanta::Engine {

ResponseStore& ResponseStore::Get() {
    static ResponseStore store;
    return store;
}

StoredResponse* ResponseStore::Add(const std::string& sessionName, const std::string& streamId,
                                   StoredResponse response) {
    const std::lock_guard lock(mutex);
    const Key key{sessionName, streamId};
    const auto [entry, isNew] = streams.try_emplace(key);
    Stream& stream = entry->second;
    if (!isNew) ages.erase(stream.age);
    stream.age = ages.insert(ages.end(), key);
    stream.responses.push_back(std::make_unique<StoredResponse>(std::move(response)));
    StoredResponse* const added = stream.responses.back().get();
    if (stream.responses.size() > kKeptOfAStream) stream.responses.pop_front();
    if (streams.size() > kMostStreams) {
        streams.erase(ages.front());
        ages.pop_front();
    }
    return added;
}

}  // namespace Corvanta::Engine
