#include "tests/engine/janus/RogueMember.h"

#include <future>
#include <nlohmann/json.hpp>
#include <utility>

#include "engine/janus/FeedFacts.h"
#include "engine/transport/StreamNames.h"
#include "engine/webrtc/GstSupport.h"
#include "tests/engine/Eventually.h"

namespace Corvanta::Engine {

namespace {

constexpr const char* kRoom = "review";
constexpr const char* kStateBegins = "s1 ";

std::string NewId() {
    return GstOwned<gchar>(g_uuid_string_random()).get();
}

}  // namespace

RogueMember::RogueMember(const std::string& address, const std::string& name, const std::string& display)
    : memberId(NewId()),
      shownText(display.empty() ? WriteFeedFacts({name, memberId, StreamType::Camera, true}) : display) {
    static_cast<void>(EnsureGStreamer());
    loop.Start([this] { loop.Run(); });
    Do([&] {
        client = std::make_unique<JanusClient>(
            loop, JanusServer{.address = address, .certificateAuthority = {}, .token = {}},
            JanusClientEvents{.opened = [this](bool) { publisher->Open(); },
                              .lost = [] {},
                              .failed = [](const std::string&) {}});
        publisher = std::make_shared<JanusPublisher>(
            loop, *client,
            JanusPublisher::Facts{.room = kRoom,
                                  .feedId = StreamIdOf(memberId, StreamType::Camera),
                                  .display = shownText,
                                  .name = "the server"},
            JanusPublisherEvents{
                .joined = [this](const std::vector<JanusFeed>& publishers) { Hear(publishers); },
                .published = {},
                .refused = {},
                .words = [this](const JanusRoomWords& words) { Hear(words.publishers); },
                .channel = {},
                .drained = {}});
        client->Start();
    });
}

RogueMember::~RogueMember() {
    Do([this] {
        for (const auto& receiver : receivers) receiver->Close();
        receivers.clear();
        publisher->Close();
        client->Stop();
        publisher.reset();
        client.reset();
    });
    loop.Quit();
    loop.Join();
}

void RogueMember::Do(const std::function<void()>& task) {
    std::promise<void> done;
    loop.Post([&] {
        task();
        done.set_value();
    });
    done.get_future().wait();
}

void RogueMember::Hear(const std::vector<JanusFeed>& publishers) {
    for (const JanusFeed& published : publishers) {
        const auto facts = ReadFeedFacts(published.id, published.display);
        if (!facts || !heard.insert(published.id).second) continue;
        receivers.push_back(std::make_shared<JanusReceiver>(
            loop, *client, JanusReceiver::Facts{kRoom, published.id, facts->name},
            JanusReceiverEvents{.ear = [](bool) {},
                                .message = [this, from = facts->memberId](
                                               const std::string& message) { Take(from, message); }},
            nullptr));
        receivers.back()->Connect();
    }
}

void RogueMember::Take(const std::string& from, const std::string& message) {
    if (!message.starts_with(kStateBegins)) return;
    const auto state =
        nlohmann::json::parse(message.substr(std::string(kStateBegins).size()), nullptr, false);
    if (!state.is_object() || !state["hears"].contains(memberId)) return;
    const auto& hearing = state["hears"][memberId];
    if (hearing[1] != 0) {
        const std::lock_guard lock(mutex);
        listeners.insert(from);
        return;
    }
    nlohmann::json answer;
    answer["from"][from] = {hearing[0], 1};
    static_cast<void>(publisher->SendMessage(kStateBegins + answer.dump()));
}

bool RogueMember::IsHeardBy(std::size_t count) const {
    return Eventually([&] {
        const std::lock_guard lock(mutex);
        return listeners.size() >= count;
    });
}

bool RogueMember::Put(const std::vector<std::string>& messages) {
    std::size_t put = 0;
    return Eventually([&] {
        Do([&] {
            while (put < messages.size() && publisher->SendMessage(messages[put])) ++put;
        });
        return put == messages.size();
    });
}

}  // namespace Corvanta::Engine
