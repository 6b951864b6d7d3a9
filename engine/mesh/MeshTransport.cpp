#include "engine/mesh/MeshTransport.h"

#include <utility>

#include "engine/transport/StreamNames.h"
#include "platform/Logger.h"

namespace Corvanta::Engine {

MeshTransport::MeshTransport(EngineLoop& engineLoop, std::shared_ptr<SoundMixer> roomMixer,
                             MeshOptions meshOptions)
    : loop(engineLoop),
      mixer(std::move(roomMixer)),
      options(std::move(meshOptions)),
      client(engineLoop.Context(), HubEvents()) {}

MeshTransport::~MeshTransport() {
    Stop();
}

HubClientEvents MeshTransport::HubEvents() {
    return {
        .onEntered = [this](const std::string& id,
                            const std::vector<RoomMember>& others) { OnEntered(id, others); },
        .onMemberJoined = [this](const RoomMember& member, Initiator initiator) { Add(member, initiator); },
        .onMemberLeft = [this](const std::string& memberId,
                               bool orderly) { OnMemberLeft(memberId, orderly); },
        .onMessage =
            [this](const std::string& fromId, const std::string& payload) {
                const auto place = members.find(fromId);
                if (place == members.end()) return;
                if (auto message = ReadMeshMessage(payload)) place->second->Take(std::move(*message));
            },
        .onHubLost = [this] { OnHubLost(); },
        .onHubBack = [this] { OnHubBack(); },
        .onFailed = [this](const std::string& line) { OnFailed(line); }};
}

void MeshTransport::Start(TransportEvents handlers) {
    events = std::move(handlers);
    client.Join(options.room, options.name, options.folder);
}

void MeshTransport::Stop() {
    if (std::exchange(isStopped, true)) return;
    *life = false;
    client.Leave();
    for (const auto& [id, member] : members) member->Close();
    members.clear();
    for (const auto& [type, stream] : own) stream.stream->Close();
    own.clear();
}

std::string MeshTransport::OwnId() const {
    const std::lock_guard lock(idMutex);
    return ownId;
}

void MeshTransport::OnEntered(const std::string& id, const std::vector<RoomMember>& others) {
    OnHubFound();
    // We were given up meanwhile; nobody knows us any more, and all is made anew.
    ForgetAll("the room was entered again");
    {
        const std::lock_guard lock(idMutex);
        ownId = id;
    }
    for (const RoomMember& member : others) Add(member, Initiator::Us);
    if (!std::exchange(hasEntered, true)) events.entered();
}

void MeshTransport::Add(const RoomMember& member, Initiator initiator) {
    if (isStopped) return;
    if (removed.contains(member.id)) {
        SendRemoval(member.id);
        return;
    }
    Forget(member.id, "it has come again");
    const auto joining = std::make_shared<MeshMember>(loop,
                                                      MeshMember::Facts{.id = member.id,
                                                                        .name = member.name,
                                                                        .ownId = OwnId(),
                                                                        .offers = initiator == Initiator::Us,
                                                                        .loopbackOnly = options.loopbackOnly},
                                                      EventsOf(member.id), mixer);
    members.emplace(member.id, joining);
    joining->Open();
    for (const auto& [type, stream] : own) joining->Publish(type, stream.name, stream.stream);
}

MeshMemberEvents MeshTransport::EventsOf(const std::string& memberId) {
    return {.send =
                [this, memberId](const MeshMessage& message) {
                    if (client.Send(memberId, WriteMeshMessage(message))) return;
                    LOG(kLogDebug, "A message for %s is left out", memberId.c_str());
                },
            .joined = [this](ParticipantDescription description) { events.joined(std::move(description)); },
            .left = [this](const std::string& streamId,
                           const std::string& reason) { events.left(streamId, reason); },
            .measured =
                [this, memberId](StreamType type, const PeerStatistics& statistics) {
                    // The camera's way carries theirs too, and has its figures there.
                    if (type != StreamType::Camera) sentFigures.Set(memberId, type, statistics);
                    const auto stream = own.find(type);
                    if (stream != own.end() && statistics.remoteLossShare)
                        stream->second.stream->ReportLoss(memberId, *statistics.remoteLossShare);
                },
            .unreached = [this, memberId](StreamType type) { ForgetFigures(memberId, type); },
            .muted =
                [this](StreamType type) {
                    if (type == StreamType::Camera) {
                        events.muted();
                    } else {
                        Configure(StreamIdOf(OwnId(), type), {.audio = false, .video = {}, .data = {}});
                    }
                },
            // Posted, since the member that says so goes then.
            .removed =
                [this] {
                    loop.Post([this, weak = std::weak_ptr<bool>(life)] {
                        if (const auto alive = weak.lock(); alive && *alive) OnRemoved();
                    });
                }};
}

void MeshTransport::OnMemberLeft(const std::string& memberId, bool orderly) {
    const auto place = members.find(memberId);
    if (place == members.end()) return;
    if (orderly) {
        Forget(memberId, "it has said goodbye");
        return;
    }
    const auto lost = place->second;
    lost->Lose();
    loop.PostAfter(kGoneAfter, [this, weak = std::weak_ptr(lost)] {
        const auto member = weak.lock();
        if (!member) return;
        const auto found = members.find(member->Id());
        if (found != members.end() && found->second == member) Forget(member->Id(), "its connection is lost");
    });
}

void MeshTransport::Forget(const std::string& memberId, const std::string& reason) {
    const auto place = members.find(memberId);
    if (place == members.end()) return;
    const auto gone = place->second;
    members.erase(place);
    for (const auto& [type, stream] : own) ForgetFigures(memberId, type);
    gone->Leave(reason);
}

void MeshTransport::ForgetFigures(const std::string& memberId, StreamType type) {
    sentFigures.Forget(memberId, type);
    if (const auto stream = own.find(type); stream != own.end())
        stream->second.stream->ForgetReceiver(memberId);
}

void MeshTransport::ForgetAll(const std::string& reason) {
    while (!members.empty()) {
        const std::string id = members.begin()->first;
        Forget(id, reason);
    }
}

void MeshTransport::OnHubLost() {
    hubIsLost = true;
    loop.PostAfter(kHubPatience, [this, weak = std::weak_ptr<bool>(life), loss = ++hubLosses] {
        const auto alive = weak.lock();
        if (!alive || !*alive || !hubIsLost || hubLosses != loss) return;
        lossIsTold = true;
        events.dropped(true);
    });
}

void MeshTransport::OnHubFound() {
    hubIsLost = false;
    if (std::exchange(lossIsTold, false) && events.restored) events.restored();
}

void MeshTransport::OnHubBack() {
    OnHubFound();
    for (const auto& [id, member] : std::map(members)) member->OnWayLost();
    // The first word may have been lost with the hub.
    for (const RoomMember& member : std::vector(client.Members())) {
        if (removed.contains(member.id)) SendRemoval(member.id);
    }
}

void MeshTransport::OnFailed(const std::string& line) {
    ForgetAll("the room is gone");
    if (hasEntered) {
        events.dropped(false);
    } else {
        events.failed(line);
    }
}

void MeshTransport::OnRemoved() {
    LOG(kLogInformation, "Another participant has had this one leave the room");
    client.Leave();
    ForgetAll("the local user was removed");
    events.dropped(false);
}

void MeshTransport::SendRemoval(const std::string& memberId) {
    // Where it cannot be sent now, the member is not there or is told when the hub is back.
    static_cast<void>(client.Send(memberId, WriteMeshMessage(MeshMessages::Remove{})));
}

void MeshTransport::SendText(std::string text) {
    for (const auto& [id, member] : members) member->SendText(text);
}

std::shared_ptr<LocalFeed> MeshTransport::PublishCamera(const LocalTracks& tracks) {
    return Publish(StreamType::Camera, options.name, tracks);
}

std::shared_ptr<LocalFeed> MeshTransport::PublishStream(StreamType type, const std::string& displayName) {
    return Publish(type, displayName, {});
}

std::shared_ptr<LocalFeed> MeshTransport::Publish(StreamType type, const std::string& name,
                                                  const LocalTracks& tracks) {
    if (isStopped) return nullptr;
    auto stream = SentStream::Open(loop, name);
    if (!stream) return nullptr;
    stream->SetTracks(tracks);
    Unpublish(type);
    own[type] = {name, stream};
    TellPublished(type);
    return stream;
}

void MeshTransport::TellPublished(StreamType type) {
    const OwnStream& published = own.at(type);
    for (const auto& [id, member] : members) member->Publish(type, published.name, published.stream);
}

void MeshTransport::Unpublish(StreamType type) {
    const auto place = own.find(type);
    if (place == own.end()) return;
    for (const auto& [id, member] : members) {
        member->Unpublish(type);
        ForgetFigures(id, type);
    }
    place->second.stream->Close();
    own.erase(place);
}

void MeshTransport::SetCameraTracks(const LocalTracks& tracks) {
    const auto place = own.find(StreamType::Camera);
    if (place == own.end()) return;
    place->second.stream->SetTracks(tracks);
    TellPublished(StreamType::Camera);
}

void MeshTransport::SetOutboundBitrate(uint32_t bitsPerSecond) {
    for (const auto& [type, stream] : own) {
        if (type == StreamType::Camera) stream.stream->SetTargetBitrate(bitsPerSecond);
    }
}

void MeshTransport::SetCameraAdaptation(const VideoFrameAdaptation& adaptation) {
    const auto place = own.find(StreamType::Camera);
    if (place != own.end()) place->second.stream->SetAdaptation(adaptation);
}

void MeshTransport::Configure(const std::string& streamId, const TrackSwitches& switches) {
    const auto type = TypeOfStream(OwnId(), streamId);
    const auto place = type ? own.find(*type) : own.end();
    if (place == own.end()) return;
    place->second.stream->Switch(switches);
    TellPublished(*type);
}

void MeshTransport::RequestRestart(const std::string& streamId, const RestartRequest& request) {
    const auto type = TypeOfStream(OwnId(), streamId);
    if (!type || !own.contains(*type)) return;
    if (*type == StreamType::Camera) SetCameraTracks(request.tracks);
    for (const auto& [id, member] : members) member->RestartSending(*type, request.immediately);
}

std::shared_ptr<MeshMember> MeshTransport::FindPublisher(const std::string& streamId,
                                                         StreamType& type) const {
    for (const auto& [id, member] : members) {
        if (const auto found = TypeOfStream(id, streamId)) {
            type = *found;
            return member;
        }
    }
    return nullptr;
}

void MeshTransport::Mute(const std::string& streamId) {
    StreamType type{};
    const auto member = FindPublisher(streamId, type);
    if (!member) return;
    static_cast<void>(client.Send(member->Id(), WriteMeshMessage(MeshMessages::Mute{type})));
}

void MeshTransport::Remove(const std::string& streamId) {
    StreamType type{};
    const auto member = FindPublisher(streamId, type);
    if (!member) return;
    SendRemoval(member->Id());
    removed.insert(member->Id());
    Forget(member->Id(), "removed by the local user");
}

}  // namespace Corvanta::Engine
