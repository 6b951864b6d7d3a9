// A room of this user's on this machine: its members find each other at a hub and are connected each with
// each other. Threads as Transport says.
#pragma once

#include <chrono>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "engine/common/EngineLoop.h"
#include "engine/mesh/MeshMember.h"
#include "engine/signalling/HubClient.h"
#include "engine/transport/SentFigures.h"
#include "engine/transport/SentStream.h"
#include "engine/transport/Transport.h"

namespace Corvanta::Engine {

struct MeshOptions {
    std::string room;
    // Under which the others see the local user.
    std::string name;
    // The folder in which rooms lie; empty for the user's.
    std::filesystem::path folder = {};
    // See PeerOptions. Members who share the folder but no loopback are connected without it.
    bool loopbackOnly = true;
};

class MeshTransport final : public Transport {
public:
    // How long a member whose process went away without a word is shown as lost before it leaves.
    static constexpr std::chrono::milliseconds kGoneAfter{5000};
    // The next hub is usually there in a moment; the user hears only of one that takes longer.
    static constexpr std::chrono::milliseconds kHubPatience{3000};

    MeshTransport(EngineLoop& engineLoop, std::shared_ptr<SoundMixer> roomMixer, MeshOptions meshOptions);
    ~MeshTransport() override;

    void Start(TransportEvents handlers) override;
    void Stop() override;
    [[nodiscard]] std::string OwnId() const override;
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
    struct OwnStream {
        std::string name;
        std::shared_ptr<SentStream> stream;
    };

    [[nodiscard]] HubClientEvents HubEvents();
    void OnEntered(const std::string& id, const std::vector<RoomMember>& others);
    void OnMemberLeft(const std::string& memberId, bool orderly);
    void OnHubLost();
    void OnHubBack();
    void OnFailed(const std::string& line);
    void Add(const RoomMember& member, Initiator initiator);
    [[nodiscard]] MeshMemberEvents EventsOf(const std::string& memberId);
    void OnHubFound();
    // It has left for good.
    void Forget(const std::string& memberId, const std::string& reason);
    void ForgetAll(const std::string& reason);
    // What the member has last said of the own stream of that kind.
    void ForgetFigures(const std::string& memberId, StreamType type);
    void OnRemoved();
    void SendRemoval(const std::string& memberId);
    [[nodiscard]] std::shared_ptr<LocalFeed> Publish(StreamType type, const std::string& name,
                                                     const LocalTracks& tracks);
    // Tells everybody what is sent of it.
    void TellPublished(StreamType type);
    [[nodiscard]] std::shared_ptr<MeshMember> FindPublisher(const std::string& streamId,
                                                            StreamType& type) const;

    EngineLoop& loop;
    const std::shared_ptr<SoundMixer> mixer;
    const MeshOptions options;
    TransportEvents events;
    HubClient client;
    std::map<std::string, std::shared_ptr<MeshMember>> members;
    std::map<StreamType, OwnStream> own;
    // Whom the local user has removed; they are not met again, and are told so wherever they turn up.
    std::set<std::string> removed;
    bool hasEntered = false;
    bool isStopped = false;
    bool hubIsLost = false;
    // Tells one loss of the hub from the next; and whether the user knows of it.
    unsigned hubLosses = 0;
    bool lossIsTold = false;
    SentFigures sentFigures;
    // Ends the tasks that were planned when the transport goes.
    const std::shared_ptr<bool> life = std::make_shared<bool>(true);

    mutable std::mutex idMutex;  // guards: ownId
    std::string ownId;
};

}  // namespace Corvanta::Engine
