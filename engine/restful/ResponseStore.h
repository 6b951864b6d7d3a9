// Owns the responses that the library is given, for as long as it may read them. Any thread.
#pragma once

#include <cstddef>
#include <deque>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include "platform/RESTfulAPI.h"

namespace Corvanta::Engine {

struct StoredResponse final : Model::API::ConnectivityLogResponse {
    int32_t status = 0;
};

class ResponseStore final {
public:
    // Those of one stream that stay alive: one is promised, but several may ask for the same stream at a
    // time.
    static constexpr std::size_t kKeptOfAStream = 8;
    // The streams that were asked for last.
    static constexpr std::size_t kMostStreams = 4096;

    static ResponseStore& Get();

    StoredResponse* Add(const std::string& sessionName, const std::string& streamId, StoredResponse response);

private:
    using Key = std::pair<std::string, std::string>;
    struct Stream {
        std::deque<std::unique_ptr<StoredResponse>> responses;
        std::list<Key>::iterator age;
    };

    std::mutex mutex;  // guards: everything below
    std::map<Key, Stream> streams;
    // The oldest first.
    std::list<Key> ages;
};

}  // namespace Corvanta::Engine
