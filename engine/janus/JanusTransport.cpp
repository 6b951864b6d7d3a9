#include "engine/janus/JanusTransport.h"

#include <glib.h>

#include <algorithm>
#include <utility>

#include "engine/transport/StreamNames.h"
#include "engine/webrtc/GstSupport.h"
#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

using std::chrono::milliseconds;

constexpr std::size_t kLongestPlainRoom = 64;
// Feeds that come: a full room at once, and what people do after that. Each costs a connection.
constexpr double kFeedsPerSecond = 5, kMostFeedsAtOnce = kMostFeeds;
constexpr milliseconds kTick{1000};
constexpr const char* kDigestMark = "room~";

bool IsPlain(char c) {
    return g_ascii_isalnum(c) != FALSE || c == '-' || c == '_' || c == '.';
}

}  // namespace

std::string ServerRoomId(const std::string& room) {
    const bool isPlain =
        !room.empty() && room.size() <= kLongestPlainRoom && std::all_of(room.begin(), room.end(), IsPlain);
    if (isPlain) return room;
    const GstOwned<gchar> digest(g_compute_checksum_for_data(
        G_CHECKSUM_SHA256, reinterpret_cast<const guchar*>(room.data()), room.size()));
    return std::string(kDigestMark) + digest.get();
}

JanusTransport::JanusTransport(EngineLoop& engineLoop, std::shared_ptr<SoundMixer> roomMixer,
                               JanusOptions janusOptions)
    : loop(engineLoop),
      mixer(std::move(roomMixer)),
      options(std::move(janusOptions)),
      ownId(GstOwned<gchar>(g_uuid_string_random()).get()),
      roomId(ServerRoomId(options.room)),
      texts(ownId, TextEvents()),
      newFeeds(kFeedsPerSecond, kMostFeedsAtOnce) {}

JanusTransport::~JanusTransport() {
    *life = false;
}

void JanusTransport::Start(TransportEvents handlers) {
    events = std::move(handlers);
    client = std::make_unique<JanusClient>(
        loop, options.server,
        JanusClientEvents{.opened = [this](bool isFormer) { OnOpened(isFormer); },
                          .lost = [this] { OnServerLost(); },
                          .failed = [this](const std::string& problem) { Fail(problem); }});
    client->Start();
    loop.PostAfter(kEntryPatience, [this, alive = life] {
        if (*alive && !hasEntered && !hasEnded)
            Fail("The server " + options.server.address + " does not let us in in time");
    });
    loop.PostAfter(kTick, [this, alive = life] {
        if (*alive) Tick();
    });
}

void JanusTransport::Stop() {
    hasEnded = true;
    *life = false;
    events = {};
    for (auto& [id, feed] : feeds) feed.receiver->Close();
    feeds.clear();
    for (auto& [type, publisher] : own) publisher->Close();
    own.clear();
    if (client) client->Stop();
    client.reset();
}

void JanusTransport::Fail(const std::string& problem) {
    if (std::exchange(hasEnded, true)) return;
    EndAllFeeds("the room cannot be entered");
    if (hasEntered) {
        events.dropped(false);
    } else {
        events.failed(problem);
    }
}

void JanusTransport::End(const std::string& reason) {
    if (std::exchange(hasEnded, true)) return;
    LOG(kLogInformation, "The room has ended for the local user: %s", reason.c_str());
    for (auto& [type, publisher] : own) publisher->Close();
    EndAllFeeds(reason);
    if (hasEntered) {
        events.dropped(false);
    } else {
        events.failed("The room cannot be entered: " + reason);
    }
}

void JanusTransport::EndAllFeeds(const std::string& reason) {
    while (!feeds.empty()) {
        const std::string feedId = feeds.begin()->first;
        RemoveFeed(feedId, reason);
    }
}

void JanusTransport::OnOpened(bool isFormer) {
    if (hasEnded) return;
    lostSince.reset();
    if (std::exchange(lossIsTold, false) && events.restored) events.restored();
    if (isFormer) {
        // What was said meanwhile is lost.
        ListFeeds();
        for (const auto& [type, publisher] : std::map(own)) publisher->OnFormerSession();
        for (const auto& [id, feed] : std::map(feeds)) feed.receiver->OnFormerSession();
        return;
    }
    if (FindOwn(StreamType::Camera) == nullptr) {
        own[StreamType::Camera] = MakePublisher(
            StreamType::Camera, options.name,
            {.joined = [this](const std::vector<JanusFeed>& publishers) { TakeList(publishers); },
             .published =
                 [this] {
                     if (!std::exchange(hasEntered, true)) events.entered();
                 },
             .refused =
                 [this](const std::string& problem) {
                     const std::string line =
                         "The server " + options.server.address + " cannot be used, " + problem;
                     if (!hasEntered) {
                         Fail(line);
                     } else {
                         LOG(kLogWarning, "%s; it is tried again", line.c_str());
                     }
                 },
             .words = [this](const JanusRoomWords& words) { OnWords(words); },
             .connection =
                 [this](bool isConnected) {
                     if (events.ownConnection) events.ownConnection(!isConnected);
                 },
             .channel = [this](bool isOpen) { texts.OnOwnChannel(isOpen); },
             .drained = [this] { texts.Pump(); }});
        own[StreamType::Camera]->Open();
        return;
    }
    for (const auto& [type, publisher] : std::map(own)) publisher->OnNewSession();
    for (const auto& [id, feed] : std::map(feeds)) feed.receiver->OnNewSession();
}

void JanusTransport::OnServerLost() {
    lostSince = Clock::now();
    loop.PostAfter(kServerPatience, [this, alive = life] {
        if (!*alive || hasEnded || !hasEntered || !lostSince) return;
        if (Clock::now() - *lostSince < kServerPatience || std::exchange(lossIsTold, true)) return;
        events.dropped(true);
    });
}

void JanusTransport::OnWords(const JanusRoomWords& words) {
    if (hasEnded) return;
    if (words.kind == "destroyed") {
        End("the server has closed it");
        return;
    }
    if (words.leaving == "ok") {
        End(words.reason == "kicked" ? "another participant has removed this one"
                                     : "the server has ended it");
        return;
    }
    for (const JanusFeed& published : words.publishers) AddFeed(published);
    if (!words.kicked.empty()) RemoveFeed(words.kicked, "removed from the room");
    if (!words.leaving.empty()) RemoveFeed(words.leaving, "goes");
    if (!words.unpublished.empty()) LoseFeed(words.unpublished);
}

void JanusTransport::ListFeeds() {
    if (JanusPublisher* const camera = FindOwn(StreamType::Camera)) {
        camera->List([this](const std::vector<JanusFeed>& publishers) { TakeList(publishers); });
    }
}

void JanusTransport::TakeList(const std::vector<JanusFeed>& publishers) {
    if (hasEnded) return;
    std::set<std::string> present;
    for (const JanusFeed& published : publishers) present.insert(published.id);
    for (auto& [id, feed] : feeds) {
        if (!present.contains(id)) LoseFeed(id);
    }
    for (const JanusFeed& published : publishers) AddFeed(published);
}

void JanusTransport::AddFeed(const JanusFeed& published) {
    const auto facts = ReadFeedFacts(published.id, published.display);
    if (!facts || facts->memberId == ownId) return;
    // That it is removed was lost on the way.
    if (removed.contains(facts->memberId)) {
        if (JanusPublisher* const camera = FindOwn(StreamType::Camera)) camera->Kick(published.id);
        return;
    }
    if (const auto known = feeds.find(published.id); known != feeds.end()) {
        if (!std::exchange(known->second.missingSince, std::nullopt)) return;
        const auto receiver = known->second.receiver;
        receiver->OnNewFeed();
        return;
    }
    if (feeds.size() >= kMostFeeds) return;
    // What is refused is looked for later.
    if (!newFeeds.Allow(Clock::now())) {
        feedsWait = true;
        return;
    }
    if (facts->isOurs && facts->type == StreamType::Camera) texts.Meet(facts->memberId, facts->name);
    const auto receiver = MakeReceiver(published.id, *facts);
    feeds[published.id] = {*facts, receiver, std::nullopt};
    receiver->Connect();
    events.joined({.id = published.id,
                   .name = facts->name,
                   .memberId = facts->memberId,
                   .type = facts->type,
                   .isExternalSource = !facts->isOurs || facts->type == StreamType::ExternalScreen,
                   .reportsItself = true,
                   .media = receiver});
}

std::shared_ptr<JanusReceiver> JanusTransport::MakeReceiver(const std::string& feedId,
                                                            const FeedFacts& facts) {
    const bool speaks = facts.isOurs && facts.type == StreamType::Camera;
    return std::make_shared<JanusReceiver>(
        loop, *client, JanusReceiver::Facts{roomId, feedId, facts.name},
        JanusReceiverEvents{.ear =
                                [this, facts, speaks](bool isOpen) {
                                    if (speaks) texts.OnEar(facts.memberId, facts.name, isOpen);
                                },
                            .message =
                                [this, speaks, member = facts.memberId](const std::string& message) {
                                    if (speaks) texts.Take(member, message, Clock::now());
                                }},
        mixer);
}

void JanusTransport::LoseFeed(const std::string& feedId) {
    const auto place = feeds.find(feedId);
    if (place != feeds.end() && !place->second.missingSince) place->second.missingSince = Clock::now();
}

void JanusTransport::RemoveFeed(const std::string& feedId, const std::string& reason) {
    const auto place = feeds.find(feedId);
    if (place == feeds.end()) return;
    const Feed feed = std::move(place->second);
    feeds.erase(place);
    if (feed.facts.type == StreamType::Camera) texts.Forget(feed.facts.memberId);
    if (events.left) events.left(feedId, reason);
    feed.receiver->Close();
}

void JanusTransport::Tick() {
    if (hasEnded) return;
    const auto now = Clock::now();
    texts.Tick(now);
    std::vector<std::string> gone;
    for (auto& [id, feed] : feeds) {
        // Where the server is away, nobody can be said to have gone.
        if (!client->IsOpen()) feed.missingSince = feed.missingSince ? std::optional(now) : std::nullopt;
        if (feed.missingSince && now - *feed.missingSince >= kGoneAfter) gone.push_back(id);
    }
    for (const std::string& id : gone) RemoveFeed(id, "the connection is lost");
    if (std::exchange(feedsWait, false)) ListFeeds();
    for (const auto& [id, feed] : std::map(feeds)) {
        const auto heard = feed.facts.isOurs ? texts.LastHeard(feed.facts.memberId) : std::nullopt;
        const bool isSilent = heard && now - *heard >= kSilence;
        feed.receiver->SetAlive(!isSilent && !feed.missingSince);
    }
    loop.PostAfter(kTick, [this, alive = life] {
        if (*alive) Tick();
    });
}

RoomTextsEvents JanusTransport::TextEvents() {
    return {.send =
                [this](const std::string& message) {
                    JanusPublisher* const camera = FindOwn(StreamType::Camera);
                    return camera != nullptr && camera->SendMessage(message);
                },
            .text =
                [this](const std::string& memberId, std::string text) {
                    if (JanusReceiver* const camera = FindCamera(memberId)) camera->Deliver(std::move(text));
                },
            .channel =
                [this](const std::string& memberId, bool isOpen) {
                    if (JanusReceiver* const camera = FindCamera(memberId)) camera->SetChannel(isOpen);
                },
            .tracks =
                [this](const std::string& memberId, const LocalTracks& tracks) {
                    if (JanusReceiver* const camera = FindCamera(memberId)) camera->SetPublished(tracks);
                },
            .mute =
                [this](const std::string& streamId) {
                    const auto type = TypeOfStream(ownId, streamId);
                    if (!type || hasEnded) return;
                    if (*type == StreamType::Camera) {
                        events.muted();
                    } else if (JanusPublisher* const stream = FindOwn(*type); stream && stream->Stream()) {
                        stream->Stream()->Switch({.audio = false, .video = {}, .data = {}});
                    }
                },
            .begunAnew =
                [this](const std::string& memberId) {
                    // Not inside what it says.
                    loop.Post([this, memberId, alive = life] {
                        if (*alive) MeetAnew(memberId);
                    });
                }};
}

void JanusTransport::MeetAnew(const std::string& memberId) {
    std::vector<JanusFeed> present;
    std::vector<std::string> all;
    for (const auto& [id, feed] : feeds) {
        if (feed.facts.memberId != memberId) continue;
        all.push_back(id);
        if (!feed.missingSince) present.push_back({id, WriteFeedFacts(feed.facts)});
    }
    for (const std::string& id : all) RemoveFeed(id, "it was away, and has come back");
    for (const JanusFeed& published : present) AddFeed(published);
}

JanusPublisher* JanusTransport::FindOwn(StreamType type) const {
    const auto place = own.find(type);
    return place == own.end() ? nullptr : place->second.get();
}

JanusReceiver* JanusTransport::FindCamera(const std::string& memberId) const {
    const auto place = feeds.find(StreamIdOf(memberId, StreamType::Camera));
    return place == feeds.end() ? nullptr : place->second.receiver.get();
}

std::shared_ptr<JanusPublisher> JanusTransport::MakePublisher(StreamType type, const std::string& name,
                                                              JanusPublisherEvents publisherEvents) {
    JanusPublisher::Facts facts{.room = roomId,
                                .feedId = StreamIdOf(ownId, type),
                                .display = WriteFeedFacts({name, ownId, type, true}),
                                .name = "the server"};
    publisherEvents.measured = [this, type](const PeerStatistics& statistics) {
        sentFigures.Set(ownId, type, statistics);
    };
    return std::make_shared<JanusPublisher>(loop, *client, std::move(facts), std::move(publisherEvents));
}

void JanusTransport::SendText(std::string text) {
    if (!hasEnded) texts.Say(text);
}

std::shared_ptr<LocalFeed> JanusTransport::PublishCamera(const LocalTracks& tracks) {
    JanusPublisher* const camera = FindOwn(StreamType::Camera);
    if (hasEnded || camera == nullptr) return nullptr;
    auto stream = SentStream::Open(loop, options.name);
    if (!stream) return nullptr;
    stream->SetTracks(tracks);
    camera->SetStream(stream);
    texts.SetTracks(stream->Sent());
    return stream;
}

std::shared_ptr<LocalFeed> JanusTransport::PublishStream(StreamType type, const std::string& displayName) {
    if (hasEnded || !client || type == StreamType::Camera) return nullptr;
    auto stream = SentStream::Open(loop, displayName);
    if (!stream) return nullptr;
    Unpublish(type);
    const auto publisher =
        MakePublisher(type, displayName,
                      {.joined = {},
                       .published = {},
                       .refused =
                           [displayName](const std::string& problem) {
                               LOG(kLogWarning, "\"%s\" cannot be shared, %s; it is tried again",
                                   displayName.c_str(), problem.c_str());
                           },
                       .words = {},
                       .connection = {},
                       .channel = {},
                       .drained = {}});
    publisher->SetStream(stream);
    own[type] = publisher;
    publisher->Open();
    return stream;
}

void JanusTransport::Unpublish(StreamType type) {
    const auto place = own.find(type);
    if (place == own.end()) return;
    sentFigures.Forget(ownId, type);
    // The camera's publisher is also the way into the room.
    if (type == StreamType::Camera) {
        place->second->SetStream(nullptr);
        return;
    }
    const auto publisher = place->second;
    own.erase(place);
    publisher->Close();
}

void JanusTransport::SetCameraTracks(const LocalTracks& tracks) {
    JanusPublisher* const camera = FindOwn(StreamType::Camera);
    if (camera == nullptr || !camera->Stream()) return;
    camera->Stream()->SetTracks(tracks);
    texts.SetTracks(camera->Stream()->Sent());
}

void JanusTransport::SetOutboundBitrate(uint32_t bitsPerSecond) {
    JanusPublisher* const camera = FindOwn(StreamType::Camera);
    if (camera != nullptr && camera->Stream()) camera->Stream()->SetTargetBitrate(bitsPerSecond);
}

void JanusTransport::SetCameraAdaptation(const VideoFrameAdaptation& adaptation) {
    JanusPublisher* const camera = FindOwn(StreamType::Camera);
    if (camera != nullptr && camera->Stream()) camera->Stream()->SetAdaptation(adaptation);
}

void JanusTransport::Configure(const std::string& streamId, const TrackSwitches& switches) {
    const auto type = TypeOfStream(ownId, streamId);
    JanusPublisher* const publisher = type ? FindOwn(*type) : nullptr;
    if (publisher == nullptr || !publisher->Stream()) return;
    publisher->Stream()->Switch(switches);
    if (*type == StreamType::Camera) texts.SetTracks(publisher->Stream()->Sent());
}

void JanusTransport::RequestRestart(const std::string& streamId, const RestartRequest& request) {
    const auto type = TypeOfStream(ownId, streamId);
    JanusPublisher* const publisher = type ? FindOwn(*type) : nullptr;
    if (publisher == nullptr) return;
    if (*type == StreamType::Camera) SetCameraTracks(request.tracks);
    publisher->Restart(request.immediately);
}

void JanusTransport::Mute(const std::string& streamId) {
    if (!hasEnded && feeds.contains(streamId)) texts.Mute(streamId);
}

void JanusTransport::Remove(const std::string& streamId) {
    const auto place = feeds.find(streamId);
    JanusPublisher* const camera = FindOwn(StreamType::Camera);
    if (place == feeds.end() || camera == nullptr) return;
    const std::string member = place->second.facts.memberId;
    removed.insert(member);
    std::vector<std::string> ids;
    for (const auto& [id, feed] : feeds) {
        if (feed.facts.memberId == member) ids.push_back(id);
    }
    for (const std::string& id : ids) {
        camera->Kick(id);
        RemoveFeed(id, "removed by the local user");
    }
}

}  // namespace Corvanta::Engine
