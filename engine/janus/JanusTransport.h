// A room that a forwarding server carries, so that its members may be on several machines: each sends its
// streams and texts to the server once, and the server forwards them to the others. Threads as Transport
// says.
#pragma once

#include <chrono>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "engine/common/EngineLoop.h"
#include "engine/janus/FeedFacts.h"
#include "engine/janus/JanusClient.h"
#include "engine/janus/JanusPublisher.h"
#include "engine/janus/JanusReceiver.h"
#include "engine/janus/RoomTexts.h"
#include "engine/signalling/RateLimit.h"
#include "engine/transport/SentFigures.h"
#include "engine/transport/Transport.h"

namespace Corvanta::Engine {

struct JanusOptions {
    JanusServer server;
    // Any bytes.
    std::string room;
    // Under which the others see the local user.
    std::string name;
};

// Under which the server knows the room: its name where that is plain, and short enough; else a digest of it.
[[nodiscard]] std::string ServerRoomId(const std::string& room);

class JanusTransport final : public Transport {
public:
    using Clock = std::chrono::steady_clock;

    // From Start until the local user is in, or is not.
    static constexpr std::chrono::milliseconds kEntryPatience{9000};
    // A server that is away for less is no matter for the user.
    static constexpr std::chrono::milliseconds kServerPatience{3000};
    // After which silence a member's tile shows that the connection is lost.
    static constexpr std::chrono::milliseconds kSilence{4000};
    // How long a feed may be missing that was there before the connection to the server was lost, or whose
    // publisher sets it up anew.
    static constexpr std::chrono::milliseconds kGoneAfter{15000};

    JanusTransport(EngineLoop& engineLoop, std::shared_ptr<SoundMixer> roomMixer, JanusOptions janusOptions);
    ~JanusTransport() override;

    void Start(TransportEvents handlers) override;
    void Stop() override;
    [[nodiscard]] std::string OwnId() const override { return ownId; }
    void SendText(std::string text) override;
    [[nodiscard]] std::shared_ptr<LocalFeed> PublishCamera(const LocalTracks& tracks) override;
    [[nodiscard]] std::shared_ptr<LocalFeed> PublishStream(StreamType type,
                                                           const std::string& displayName) override;
    void Unpublish(StreamType type) override;
    void SetCameraTracks(const LocalTracks& tracks) override;
    void SetOutboundBitrate(uint32_t bitsPerSecond) override;
    void SetCameraAdaptation(const VideoFrameAdaptation& adaptation) override;
    [[nodiscard]] std::vector<OwnStreamFigures> OwnFigures() const override { return sentFigures.All(); }
    void Configure(const std::string& streamId, const TrackSwitches& switches) override;
    void RequestRestart(const std::string& streamId, const RestartRequest& request) override;
    void Mute(const std::string& streamId) override;
    void Remove(const std::string& streamId) override;

private:
    struct Feed {
        FeedFacts facts;
        std::shared_ptr<JanusReceiver> receiver;
        // When it was told last that it is not published any more.
        std::optional<Clock::time_point> missingSince;
    };

    void OnOpened(bool isFormer);
    void OnServerLost();
    void Fail(const std::string& problem);
    // The room is closed to the local user for good.
    void End(const std::string& reason);
    void EndAllFeeds(const std::string& reason);
    void OnWords(const JanusRoomWords& words);
    // Has the server say who is there.
    void ListFeeds();
    // All that are published at the moment.
    void TakeList(const std::vector<JanusFeed>& publishers);
    void AddFeed(const JanusFeed& published);
    void LoseFeed(const std::string& feedId);
    void RemoveFeed(const std::string& feedId, const std::string& reason);
    // The member has given the local user up and met him anew, so that each must know it as a new one too.
    void MeetAnew(const std::string& memberId);
    void Tick();
    [[nodiscard]] RoomTextsEvents TextEvents();
    [[nodiscard]] std::shared_ptr<JanusPublisher> MakePublisher(StreamType type, const std::string& name,
                                                                JanusPublisherEvents publisherEvents);
    [[nodiscard]] std::shared_ptr<JanusReceiver> MakeReceiver(const std::string& feedId,
                                                              const FeedFacts& facts);
    [[nodiscard]] JanusPublisher* FindOwn(StreamType type) const;
    // The receiver of the member's camera; null for none.
    [[nodiscard]] JanusReceiver* FindCamera(const std::string& memberId) const;

    EngineLoop& loop;
    const std::shared_ptr<SoundMixer> mixer;
    const JanusOptions options;
    const std::string ownId;
    const std::string roomId;
    TransportEvents events;
    std::unique_ptr<JanusClient> client;
    RoomTexts texts;
    std::map<StreamType, std::shared_ptr<JanusPublisher>> own;
    std::map<std::string, Feed> feeds;
    RateLimit newFeeds;
    // Some were refused.
    bool feedsWait = false;
    // Members whom the local user has removed; they are not met again.
    std::set<std::string> removed;
    std::optional<Clock::time_point> lostSince;
    bool hasEntered = false;
    bool hasEnded = false;
    // The user knows that the server is lost.
    bool lossIsTold = false;
    SentFigures sentFigures;
    // Ends the tasks that were planned when the transport goes.
    const std::shared_ptr<bool> life = std::make_shared<bool>(true);
};

}  // namespace Corvanta::Engine
