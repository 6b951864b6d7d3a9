#include "engine/connections/Room.h"

#include <algorithm>
#include <cmath>
#include <condition_variable>
#include <mutex>
#include <utility>

#include "engine/common/CallTracker.h"
#include "engine/connections/ConnectionCallbacks.h"
#include "engine/connections/RoomStatus.h"
#include "engine/connections/TrackSettings.h"
#include "engine/mediamanager/MediaCallbacks.h"
#include "engine/webrtc/CameraChoice.h"
#include "engine/webrtc/DeviceCapture.h"
#include "engine/webrtc/SourceCheck.h"
#include "platform/Logger.h"
#include "platform/WebRTC.h"

namespace Corvanta::Engine {

namespace {

// Where the user has asked for no other.
constexpr PictureShape kDeviceShape{.width = 1280, .height = 720, .frameRate = 30};
// How often a source is offered again while the library has no room for it.
constexpr std::chrono::milliseconds kOfferInterval{50};
// How often it is looked whether there is a picture to draw on.
constexpr std::chrono::milliseconds kLookForViewEvery{500};

struct Registry {
    static Registry& Get() {
        static Registry registry;
        return registry;
    }

    // Guards: opening and closing as a whole. Held while a room's thread is waited for, so never taken inside
    // a callback of the engine.
    std::mutex lifeMutex;

    std::mutex roomMutex;  // guards: everything below
    std::condition_variable roomEnded;
    std::shared_ptr<Room> room;
    // Rooms that were closed from inside one of their callbacks and still have to end.
    int ending = 0;

    std::shared_ptr<Room> Take() {
        const std::lock_guard lock(roomMutex);
        return std::exchange(room, nullptr);
    }
};

std::string NameOf(const Participant& description, std::size_t index) {
    return description.name.empty() ? "Participant " + std::to_string(index + 1) : description.name;
}

// The turn of one among the generated persons, who alone take turns.
SpeakingTurn TurnOf(const std::vector<Participant>& all, std::size_t index) {
    SpeakingTurn turn{0, 0};
    for (std::size_t other = 0; other < all.size(); ++other) {
        if (ResolveSource(all[other].source).kind != ResolvedSource::Kind::Person) continue;
        if (other < index) ++turn.index;
        ++turn.count;
    }
    return turn;
}

}  // namespace

std::shared_ptr<Room> Room::Current() {
    Registry& registry = Registry::Get();
    const std::lock_guard lock(registry.roomMutex);
    return registry.room;
}

bool Room::Open(const EngineOptions& options, std::string localDisplayName, std::string sessionName) {
    if (CallTracker::InsideCall()) {
        LOG(kLogError, "A room cannot be entered from inside a callback of the engine");
        return false;
    }
    if (!EnsureGStreamer()) return false;
    CloseCurrent();
    Registry& registry = Registry::Get();
    const std::lock_guard life(registry.lifeMutex);
    const auto room = std::make_shared<Room>(options, std::move(localDisplayName), std::move(sessionName));
    // Before anybody learns of the room: the first report must find the service.
    room->service.Start();
    {
        const std::lock_guard lock(registry.roomMutex);
        registry.room = room;
    }
    room->loop.Start([room] { room->Run(); });
    return true;
}

void Room::CloseCurrent() {
    Registry& registry = Registry::Get();
    if (CallTracker::InsideCall()) {
        // Waiting here would be waiting for the very thread that waits.
        const auto room = registry.Take();
        if (!room) return;
        {
            const std::lock_guard lock(registry.roomMutex);
            ++registry.ending;
        }
        room->isClosing = true;
        room->loop.Detach();
        room->loop.Quit();
        return;
    }
    const std::lock_guard life(registry.lifeMutex);
    if (const auto room = registry.Take()) {
        room->isClosing = true;
        room->loop.Quit();
        room->loop.Join();
    }
    std::unique_lock lock(registry.roomMutex);
    registry.roomEnded.wait(lock, [&] { return registry.ending == 0; });
}

Room::Room(const EngineOptions& options, std::string localDisplayName, std::string sessionName)
    : settings(options),
      localName(std::move(localDisplayName)),
      epoch(std::chrono::steady_clock::now()),
      speaker(options.participants.size()),
      service(UserRoomService()),
      sound(loop),
      camera(std::make_shared<RoomCamera>(
          loop, [this](int32_t index) { return CameraSource(index); }, CaptureIndexOf(nullptr), isClosing)),
      streams(loop, sound.Mixer(), isClosing) {
    for (std::size_t index = 0; index < settings.participants.size(); ++index) {
        const std::string name = NameOf(settings.participants[index], index);
        participants.push_back(std::make_shared<RoomParticipant>(
            index, "participant-" + std::to_string(index + 1) + "-" + name, name));
    }
    reports = std::make_unique<ParticipantReports>(std::move(sessionName), participants);
}

Room::~Room() = default;

void Room::Run() {
    loop.Post([] { TellRoomStatus(kRoomOpen); });
    loop.Post([this] { sound.Open(); });
    loop.Post([this] { camera->Follow(); });
    for (const auto& participant : participants) {
        loop.Post(
            [this, participant] { OpenPlayback(participant, settings.participants[participant->index]); });
        loop.Post([this, participant] { Announce(participant); });
    }
    if (settings.drawAfter) DrawAfter(*settings.drawAfter);
    reports->Start();
    loop.Run();
    reports->Stop();
    service.Stop();
    sound.Close();
    TellRoomStatus(kRoomClosed);
    camera->End();
    streams.Close();
    for (const auto& participant : participants) {
        if (participant->playback) participant->playback->Close();
        participant->sinks.Clear();
        participant->playback.reset();
        participant->channel.Close();
    }
    // Only a room that was closed from inside a callback is waited for by this count.
    Registry& registry = Registry::Get();
    const std::lock_guard lock(registry.roomMutex);
    if (!loop.IsDetached()) return;
    --registry.ending;
    registry.roomEnded.notify_all();
}

void Room::OpenPlayback(const std::shared_ptr<RoomParticipant>& participant, const Participant& description) {
    const ResolvedSource resolved = ResolveSource(description.source);
    PlaybackSource source{
        .name = participant->name, .uri = resolved.uri, .makeScene = {}, .clipEpoch = epoch};
    if (resolved.kind == ResolvedSource::Kind::TestPicture) {
        source.makeScene = [name = participant->name] { return MakeTestScene(name); };
    } else if (resolved.kind == ResolvedSource::Kind::Person) {
        const SpeakingTurn turn = TurnOf(settings.participants, participant->index);
        source.makeScene = [name = participant->name, turn] {
            return MakePersonScene(name, turn.index, turn, ClipFormatFor(turn.count));
        };
    }

    // The participant owns the playback, so the events do not own the participant.
    RoomParticipant* const self = participant.get();
    const std::weak_ptr<RoomParticipant> weak = participant;
    PlaybackEvents events{.picture =
                              [this, self](const std::shared_ptr<const MappedPicture>& picture) {
                                  self->Deliver(picture);
                                  if (!self->hasPicture.exchange(true)) speaker.ReportPicture(self->index);
                              },
                          .loudness =
                              [this, self](double meanSquare) {
                                  self->loudness = std::clamp(std::sqrt(meanSquare), 0.0, 1.0);
                                  speaker.ReportLoudness(self->index, self->Speaks() ? meanSquare : 0.0,
                                                         std::chrono::steady_clock::now());
                              },
                          .withoutPicture = [self] { self->hasNoPicture = true; },
                          .connection =
                              [self](bool lost) {
                                  MediaCallbacks::Get().connectionStatus.Call(self->id,
                                                                              static_cast<bool>(lost));
                              },
                          .ended =
                              [this, weak] {
                                  loop.Post([this, weak] {
                                      if (const auto leaving = weak.lock())
                                          Leave(leaving, "the source has ended");
                                  });
                              }};
    participant->playback =
        std::make_shared<Playback>(loop, std::move(source), sound.Mixer(), std::move(events));
    participant->playback->Open();
    ApplyVolume(participant);
}

void Room::Announce(const std::shared_ptr<RoomParticipant>& participant) {
    if (isClosing || participant->hasLeft) return;
    MediaCallbacks& callbacks = MediaCallbacks::Get();
    const auto sink = callbacks.addRemoteVideoSource.Call(participant->id);
    if (!sink || *sink == nullptr) {
        loop.PostAfter(kOfferInterval, [this, participant] { Announce(participant); });
        return;
    }
    participant->sinks.AddOwned(std::unique_ptr<FrameCallback>(*sink));
    participant->hasEntered = true;
    LOG(kLogInformation, "\"%s\" has entered the room", participant->name.c_str());
    participant->channel.Open();
    callbacks.videoTrackAdded.Call(participant->id);
    ConnectionCallbacks::Get().participantJoined.Call();
    if (participant->playback) participant->playback->Play();
}

void Room::Leave(const std::shared_ptr<RoomParticipant>& participant, const char* reason) {
    if (isClosing || participant->hasLeft.exchange(true)) return;
    LOG(kLogInformation, "\"%s\" has left the room: %s", participant->name.c_str(), reason);
    speaker.ReportGone(participant->index);
    if (participant->playback) participant->playback->Close();
    participant->sinks.Clear();
    participant->channel.Close();
    MediaCallbacks::Get().removeRemoteVideoSource.Call(participant->id);
}

void Room::DrawAfter(std::chrono::milliseconds wait) {
    loop.PostAfter(wait, [this] {
        if (isClosing) return;
        DrawAfter(Draw() ? drawings.NextWait() : kLookForViewEvery);
    });
}

bool Room::Draw() {
    std::vector<std::string> inView;
    for (const auto& participant : participants) {
        const bool isSeen = participant->hasEntered && participant->pictures > 0;
        if (isSeen && !participant->hasLeft) inView.push_back(participant->id);
    }
    const auto message = drawings.Next(inView, SpeakerId());
    const auto sender = message ? Find(message->senderId) : nullptr;
    if (sender && sender->dataPublished) sender->channel.Deliver(*message);
    return message.has_value();
}

void Room::Remove(const std::shared_ptr<RoomParticipant>& participant) {
    loop.Post([this, participant] { Leave(participant, "removed by the local user"); });
}

std::optional<PlaybackSource> Room::CameraSource(int32_t index) const {
    const auto capture = FindCapture(index);
    if (!capture) return std::nullopt;
    PlaybackSource source{.name = "Own camera",
                          .uri = {},
                          .makeScene = {},
                          .clipEpoch = epoch,
                          .makeCapture = {},
                          .shape = GetCameraProperties().shape};
    const bool isTestPicture = capture->device == kTestPicture;
    if (!capture->device.empty() && !isTestPicture) {
        source.makeCapture = [device = capture->device, shape = source.shape.value_or(kDeviceShape)] {
            return MakeCameraElement(device, shape);
        };
        return source;
    }
    const std::string shownName = localName.empty() ? source.name : localName;
    const ResolvedSource resolved = isTestPicture ? ResolvedSource{ResolvedSource::Kind::TestPicture, {}}
                                                  : ResolveSource(settings.camera);
    source.uri = resolved.uri;
    if (resolved.kind == ResolvedSource::Kind::TestPicture) {
        source.makeScene = [shownName] { return MakeTestScene(shownName); };
    } else if (resolved.kind == ResolvedSource::Kind::Person) {
        // It looks like none of the participants.
        const std::size_t others = TurnOf(settings.participants, 0).count;
        // A second turn where there is but one never comes: nobody hears the camera, so it does not speak.
        source.makeScene = [shownName, others] {
            return MakePersonScene(shownName, others, {.index = 1, .count = 1}, ClipFormatFor(others + 1));
        };
    }
    return source;
}

std::shared_ptr<RoomParticipant> Room::Find(const std::string& streamId) const {
    for (const auto& participant : participants) {
        if (participant->id == streamId && !participant->hasLeft) return participant;
    }
    return nullptr;
}

std::shared_ptr<SinkList> Room::FindSinks(const std::string& sourceId) const {
    if (sourceId == RoomCamera::kSourceId) return {camera, &camera->sinks};
    if (const auto own = streams.FindSource(sourceId)) return {own, &own->sinks};
    const auto participant = Find(sourceId);
    return participant ? std::shared_ptr<SinkList>(participant, &participant->sinks) : nullptr;
}

std::optional<std::string> Room::SpeakerId() const {
    const auto index = speaker.Get();
    if (!index) return std::nullopt;
    return participants[*index]->id;
}

RoomStatus Room::Status() const {
    RoomStatus status{.connected = true};
    for (const auto& participant : participants) {
        if (participant->hasLeft) continue;
        const std::size_t pictures = participant->pictures;
        ++status.participants;
        status.pictures += pictures;
        if (pictures > 0) {
            ++status.showing;
        } else if (participant->hasNoPicture) {
            ++status.withoutPicture;
        }
    }
    return status;
}

std::vector<ParticipantInfo> Room::Participants() const {
    const auto speaking = SpeakerId();
    std::vector<ParticipantInfo> all;
    for (const auto& participant : participants) {
        if (participant->hasLeft || !participant->hasEntered) continue;
        all.push_back({.streamId = participant->id,
                       .name = participant->name,
                       .volume = participant->volume,
                       .loudness = participant->Speaks() ? participant->loudness.load() : 0.0,
                       .isSpeaking = speaking == participant->id});
    }
    return all;
}

void Room::ApplyVolume(const std::shared_ptr<RoomParticipant>& participant) {
    loop.Post([participant] {
        if (!participant->playback) return;
        const auto group =
            participant->isExternalSource ? RemoteAudioGroup::Streams : RemoteAudioGroup::Participants;
        participant->playback->SetGain(participant->Volume() *
                                       TrackSettings::Get().groupFactors[static_cast<std::size_t>(group)]);
    });
}

void Room::ApplyVolumes() {
    for (const auto& participant : participants) ApplyVolume(participant);
    streams.ApplyVolume();
}

void Room::OpenSoundDevices() {
    loop.Post([this] { sound.Open(); });
}

void Room::ApplyMicrophone() {
    loop.Post([this] { sound.FollowMicrophone(); });
}

void Room::ReportMuted() {
    loop.Post(TellMutedRemotely);
}

void Room::Restart(const std::shared_ptr<RoomParticipant>& participant, bool immediately) {
    loop.Post([participant, immediately] {
        if (participant->playback && !participant->hasLeft) participant->playback->Restart(immediately);
    });
}

}  // namespace Corvanta::Engine
