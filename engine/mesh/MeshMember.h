// One other member of a mesh: the connection of the two cameras, the streams that it publishes beside its
// camera, and the ways of the local user's streams to it. The engine's thread alone.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "engine/common/EngineLoop.h"
#include "engine/mesh/MeshMessage.h"
#include "engine/signalling/RateLimit.h"
#include "engine/transport/PeerStream.h"
#include "engine/transport/SentStream.h"
#include "engine/transport/Transport.h"
#include "engine/webrtc/SoundMixer.h"

namespace Corvanta::Engine {

// How a member's doings reach the transport. Not called after Close.
struct MeshMemberEvents {
    // To the member, over the hub.
    std::function<void(const MeshMessage& message)> send;
    std::function<void(ParticipantDescription description)> joined;
    std::function<void(const std::string& streamId, const std::string& reason)> left;
    // How a stream of the local user's does on its way to the member; and that it does not reach it.
    std::function<void(StreamType type, const PeerStatistics& statistics)> measured;
    std::function<void(StreamType type)> unreached;
    // The member asks it of the local user.
    std::function<void(StreamType type)> muted;
    std::function<void()> removed;
};

class MeshMember final : public std::enable_shared_from_this<MeshMember> {
public:
    // How often it may publish another stream beside the camera, since each is a connection; so many may come
    // at once. Those that come faster are connected later.
    static constexpr double kStreamsPerSecond = 1.0;
    static constexpr double kMostStreamsAtOnce = 8.0;

    struct Facts {
        std::string id;
        std::string name;
        std::string ownId;
        // Whether this side makes the offers of the cameras' connection.
        bool offers = false;
        // See PeerOptions.
        bool loopbackOnly = true;
    };

    MeshMember(EngineLoop& engineLoop, Facts memberFacts, MeshMemberEvents memberEvents,
               std::shared_ptr<SoundMixer> roomMixer);
    MeshMember(const MeshMember&) = delete;
    MeshMember& operator=(const MeshMember&) = delete;

    // Tells of its camera and begins to connect.
    void Open();
    // Ends all connections; nothing is told.
    void Close();
    // Its streams have left.
    void Leave(const std::string& reason);
    // It is not to be found. What is known of it stays, and shows that the connection is lost.
    void Lose();

    // The local user's stream is there, or has changed.
    void Publish(StreamType type, const std::string& name, const std::shared_ptr<SentStream>& stream);
    void Unpublish(StreamType type);

    // What the member says, which may be anything of its kind.
    void Take(MeshMessage message);
    // Messages that were on their way to the member, or from it, may be lost: what is not connected yet
    // begins anew.
    void OnWayLost();
    // Connects the local user's stream with the member again; nothing where there is none.
    void RestartSending(StreamType type, bool immediately);
    // Kept until the member has it.
    void SendText(const std::string& text) { camera->Send(text); }

    [[nodiscard]] const std::string& Id() const { return facts.id; }

private:
    struct Sending {
        std::shared_ptr<PeerLink> link;
        std::shared_ptr<SentStream> stream;
    };

    // A stream of the member's that is connected later, and what has come for its connection.
    struct Delayed {
        MeshMessages::Publish publish;
        std::optional<MeshMessages::Description> offer;
        std::vector<MeshMessages::Candidate> candidates;
    };

    // What a connection has to tell the member's end of it, which is named by the link.
    [[nodiscard]] std::function<void(const std::string&)> DescriptionSender(const std::string& link);
    [[nodiscard]] std::function<void(std::uint32_t, const std::string&)> CandidateSender(
        const std::string& link);
    [[nodiscard]] std::shared_ptr<PeerStream> MakeStream(StreamType type, const std::string& link,
                                                         const PeerOptions& options);
    void TakeKind(const MeshMessages::Description& message);
    void TakeKind(const MeshMessages::Candidate& message);
    void TakeKind(const MeshMessages::Publish& message);
    void TakeKind(const MeshMessages::Unpublish& message);
    void TakeKind(const MeshMessages::Want& message);
    void TakeKind(const MeshMessages::Mute& message);
    void TakeKind(const MeshMessages::Remove& message);
    void AddStream(const MeshMessages::Publish& message);
    void AddDelayedLater();
    void AddDelayed();
    [[nodiscard]] Delayed* FindDelayed(const std::string& link);
    void OpenSending(StreamType type, Sending& sending);
    // The end of that link that is here; null for an unknown one.
    [[nodiscard]] PeerLink* FindLink(const std::string& link) const;

    EngineLoop& loop;
    const Facts facts;
    const MeshMemberEvents events;
    const std::shared_ptr<SoundMixer> mixer;
    std::shared_ptr<PeerStream> camera;
    // Its own, beside the camera.
    std::map<StreamType, std::shared_ptr<PeerStream>> streams;
    // The local user's; the camera has no link of its own.
    std::map<StreamType, Sending> sendings;
    std::map<StreamType, Delayed> delayed;
    RateLimit newStreams{kStreamsPerSecond, kMostStreamsAtOnce};
    bool addsDelayed = false;
    bool isLost = false;
    bool isClosed = false;
};

}  // namespace Corvanta::Engine
