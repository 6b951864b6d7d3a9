// A member of a room on a server that keeps to no rule: it shows nothing and says what a test wants, to
// whom it hears, so that it is listened to. Driven from the test's thread.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "engine/common/EngineLoop.h"
#include "engine/janus/JanusClient.h"
#include "engine/janus/JanusPublisher.h"
#include "engine/janus/JanusReceiver.h"

namespace Corvanta::Engine {

class RogueMember final {
public:
    // `display`: what it says of itself, see FeedFacts.h; made of the name where it is empty.
    RogueMember(const std::string& address, const std::string& name, const std::string& display = {});
    ~RogueMember();
    RogueMember(const RogueMember&) = delete;
    RogueMember& operator=(const RogueMember&) = delete;

    // Waits until so many members listen to its texts from number 1 on.
    [[nodiscard]] bool IsHeardBy(std::size_t count) const;
    // Puts messages, which are not empty and have no zero byte, into its channel as they are, waiting while
    // it is full. False where it stays so.
    [[nodiscard]] bool Put(const std::vector<std::string>& messages);

private:
    void Do(const std::function<void()>& task);
    void Hear(const std::vector<JanusFeed>& publishers);
    void Take(const std::string& memberId, const std::string& message);

    EngineLoop loop;
    const std::string memberId;
    const std::string shownText;
    std::unique_ptr<JanusClient> client;
    std::shared_ptr<JanusPublisher> publisher;
    std::vector<std::shared_ptr<JanusReceiver>> receivers;
    std::set<std::string> heard;
    mutable std::mutex mutex;  // guards: listeners
    std::set<std::string> listeners;
};

}  // namespace Corvanta::Engine
