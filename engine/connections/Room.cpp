#include "engine/connections/Room.h"

#include <algorithm>
#include <cmath>
#include <condition_variable>
#include <mutex>
#include <utility>

#include "engine/EngineSettings.h"
#include "engine/common/CallTracker.h"
#include "engine/common/NetworkTypes.h"
#include "engine/configuration/ConfigurationStore.h"
#include "engine/connections/ConnectionCallbacks.h"
#include "engine/connections/RoomStatus.h"
#include "engine/connections/TrackSettings.h"
#include "engine/connections/TransportChoice.h"
#include "engine/embedded/EmbeddedTransport.h"
#include "engine/mediamanager/MediaCallbacks.h"
#include "engine/roomservice/ServiceAddress.h"
#include "engine/transport/StreamNames.h"
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
// How often the library is asked how the camera is to be sent.
constexpr std::chrono::milliseconds kAdaptationInterval{500};
// How long the transport may take to let the local user in.
constexpr std::chrono::seconds kEntryPatience{30};

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

}  // namespace

std::shared_ptr<Room> Room::Current() {
    Registry& registry = Registry::Get();
    const std::lock_guard lock(registry.roomMutex);
    return registry.room;
}

bool Room::Open(const EngineOptions& options, std::string localDisplayName, std::string sessionName,
                const TransportMaker& makeTransport) {
    if (CallTracker::InsideCall()) {
        LOG(kLogError, "A room cannot be entered from inside a callback of the engine");
        return false;
    }
    if (!EnsureGStreamer()) return false;
    EnsureNetworkTypes();
    CloseCurrent();
    SetEntryProblem({});
    Registry& registry = Registry::Get();
    const std::lock_guard life(registry.lifeMutex);
    const auto room =
        std::make_shared<Room>(options, std::move(localDisplayName), std::move(sessionName), makeTransport);
    // Before anybody learns of the room: the first report must find the service.
    if (HasOwnService(options)) room->service.Start();
    room->serviceLink.Start();
    {
        const std::lock_guard lock(registry.roomMutex);
        registry.room = room;
    }
    room->loop.Start([room] { room->Run(); });
    if (room->WaitForEntry()) return true;
    static_cast<void>(registry.Take());
    room->isClosing = true;
    room->loop.Quit();
    room->loop.Join();
    return false;
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

Room::Room(const EngineOptions& options, std::string localDisplayName, std::string sessionName,
           const TransportMaker& makeTransport)
    : settings(options),
      localName(std::move(localDisplayName)),
      epoch(std::chrono::steady_clock::now()),
      service(LastingRoomService(ConfigurationStore::Get().Folder())),
      serviceLink(options),
      reports(std::move(sessionName), participants,
              {.idOf =
                   [this](StreamType type) {
                       return settings.room.empty() ? std::string() : StreamIdOf(OwnId(), type);
                   },
               .shared = [this] { return streams.Types(); },
               .figures = [this] { return transport->OwnFigures(); }}),
      sound(loop),
      transport((makeTransport ? makeTransport : ChooseTransport(options, localName))(loop, sound.Mixer())),
      camera(std::make_shared<RoomCamera>(
          loop, [this](int32_t index) { return CameraSource(index); }, CaptureIndexOf(nullptr), isClosing,
          [this] { ApplyCameraTracks(); })),
      streams(loop, sound.Mixer(), *transport, isClosing),
      texts(loop, participants, chat) {}

Room::~Room() = default;

bool Room::WaitForEntry() {
    auto told = entry.get_future();
    if (told.wait_for(kEntryPatience) == std::future_status::ready) return told.get();
    LOG(kLogError, "The room does not answer");
    SetEntryProblem("The room does not answer");
    return false;
}

void Room::Run() {
    loop.Post([this] { transport->Start(EventsOfTransport()); });
    loop.Run();
    reports.Stop();
    serviceLink.Stop();
    service.Stop();
    sound.Close();
    if (isIn) TellRoomStatus(kRoomClosed);
    camera->End();
    camera->outlet.Set(nullptr);
    sound.Outlet().Set(nullptr);
    streams.Close();
    const ParticipantList::Snapshot all = participants.Get();
    for (const auto& participant : *all) {
        participant->media->Close();
        participant->sinks.Clear();
        participant->channel.Close();
    }
    transport->Stop();
    // Only a room that was closed from inside a callback is waited for by this count.
    Registry& registry = Registry::Get();
    const std::lock_guard lock(registry.roomMutex);
    if (!loop.IsDetached()) return;
    --registry.ending;
    registry.roomEnded.notify_all();
}

TransportEvents Room::EventsOfTransport() {
    return {.entered = [this] { Enter(); },
            .failed =
                [this](const std::string& problem) {
                    LOG(kLogError, "The room cannot be entered: %s", problem.c_str());
                    SetEntryProblem(problem);
                    if (!std::exchange(entryIsTold, true)) entry.set_value(false);
                },
            .joined = [this](ParticipantDescription description) { Add(std::move(description)); },
            .left =
                [this](const std::string& streamId, const std::string& reason) {
                    if (const auto participant = Find(streamId)) Leave(participant, reason);
                },
            .dropped =
                [this](bool willRetry) {
                    isConnected = false;
                    hasEnded = hasEnded || !willRetry;
                    ConnectionCallbacks::Get().connectionDropped.Call(static_cast<bool>(willRetry), false);
                },
            .restored = [this] { isConnected = !hasEnded; },
            .ownConnection =
                [this](bool lost) {
                    if (!isIn || isClosing) return;
                    cameraIsLost = lost;
                    MediaCallbacks::Get().connectionStatus.Call(StreamIdOf(OwnId(), StreamType::Camera),
                                                                static_cast<bool>(lost));
                },
            .muted = [] { TellMutedRemotely(); }};
}

void Room::Enter() {
    if (isClosing || std::exchange(entryIsTold, true)) return;
    isIn = true;
    toldTracks = OwnTracks();
    const auto feed = transport->PublishCamera(toldTracks);
    camera->outlet.Set(feed);
    sound.Outlet().Set(feed);
    if (const uint32_t bitrate = TrackSettings::Get().WantedBitrate(); bitrate > 0)
        transport->SetOutboundBitrate(bitrate);
    reports.Start();
    // Before anything of the library is called, which may wait for the thread that opens the room.
    entry.set_value(true);
    loop.Post([] { TellRoomStatus(kRoomOpen); });
    loop.Post([this] { sound.Open(); });
    loop.Post([this] { camera->Follow(); });
    loop.Post([this] { FollowAdaptation(); });
    const ParticipantList::Snapshot all = participants.Get();
    for (const auto& participant : *all) Bring(participant);
}

void Room::Add(ParticipantDescription description) {
    if (isClosing || !description.media) return;
    if (Find(description.id)) {
        LOG(kLogWarning, "\"%s\" is in the room already", description.id.c_str());
        return;
    }
    description.name = NameOf(description);
    const auto participant = std::make_shared<RoomParticipant>(joined++, std::move(description));
    // Of what is shared, the sound is nobody's voice.
    if (participant->type == StreamType::Camera) speaker.ReportJoined(participant->number);
    participants.Add(participant);
    if (isIn) Bring(participant);
}

std::string Room::NameOf(const ParticipantDescription& description) const {
    if (description.type == StreamType::Camera) return description.name;
    const ParticipantList::Snapshot all = participants.Get();
    const auto sharer = std::ranges::find_if(*all, [&](const auto& other) {
        return other->type == StreamType::Camera && other->memberId == description.memberId;
    });
    if (sharer == all->end()) return description.name;
    return description.name + " (" + (*sharer)->name + ')';
}

void Room::Bring(const std::shared_ptr<RoomParticipant>& participant) {
    loop.Post([this, participant] { OpenMedia(participant); });
    loop.Post([this, participant] { Announce(participant); });
}

void Room::OpenMedia(const std::shared_ptr<RoomParticipant>& participant) {
    if (isClosing || participant->hasLeft) return;
    // The participant owns the media, so the events do not own the participant.
    RoomParticipant* const self = participant.get();
    const std::weak_ptr<RoomParticipant> weak = participant;
    participant->media->Open({.picture =
                                  [this, self, weak](const std::shared_ptr<const MappedPicture>& picture) {
                                      self->Deliver(picture);
                                      if (self->hasPicture.exchange(true)) return;
                                      speaker.ReportPicture(self->number);
                                      // One picture was wanted in any case, and no more where the video is
                                      // off.
                                      if (const auto shown = weak.lock()) ApplyTracks(shown);
                                  },
                              .loudness =
                                  [this, self](double meanSquare) {
                                      self->loudness = std::clamp(std::sqrt(meanSquare), 0.0, 1.0);
                                      speaker.ReportLoudness(self->number, self->Speaks() ? meanSquare : 0.0,
                                                             std::chrono::steady_clock::now());
                                  },
                              .withoutPicture = [self] { self->hasNoPicture = true; },
                              .soundPublished =
                                  [this, weak](bool isOn) {
                                      // Its person has switched it on again after it was muted for all.
                                      const auto speaking = weak.lock();
                                      if (!speaking || !isOn || !speaking->muted.exchange(false)) return;
                                      ApplyVolume(speaking);
                                  },
                              .connection =
                                  [self](bool lost) {
                                      self->isLost = lost;
                                      // Nothing is shown yet that could be called lost.
                                      if (!self->hasEntered) return;
                                      MediaCallbacks::Get().connectionStatus.Call(self->id,
                                                                                  static_cast<bool>(lost));
                                  },
                              .channel =
                                  [this, weak](bool isOpen) {
                                      if (const auto speaking = weak.lock())
                                          texts.OnChannel(speaking, isOpen);
                                  },
                              .text =
                                  [this, weak](std::string text) {
                                      if (const auto speaking = weak.lock())
                                          texts.Take(speaking, std::move(text));
                                  },
                              .ended =
                                  [this, weak] {
                                      loop.Post([this, weak] {
                                          if (const auto leaving = weak.lock())
                                              Leave(leaving, "the source has ended");
                                      });
                                  }});
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
    participant->enteredAt = std::chrono::steady_clock::now();
    participant->hasEntered = true;
    LOG(kLogInformation, "\"%s\" has entered the room", participant->name.c_str());
    callbacks.videoTrackAdded.Call(participant->id);
    if (participant->isLost) callbacks.connectionStatus.Call(participant->id, true);
    texts.OnEntered(participant);
    participant->media->Play();
}

void Room::Leave(const std::shared_ptr<RoomParticipant>& participant, const std::string& reason) {
    if (isClosing || participant->hasLeft.exchange(true)) return;
    LOG(kLogInformation, "\"%s\" has left the room: %s", participant->name.c_str(), reason.c_str());
    speaker.ReportGone(participant->number);
    chat.Forget(*participant);
    participant->media->Close();
    participant->sinks.Clear();
    participant->channel.Close();
    // The library asks what it was while it is told that it has gone.
    if (participant->hasEntered) MediaCallbacks::Get().removeRemoteVideoSource.Call(participant->id);
    participants.Remove(participant);
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
        // It looks like none of the participants, nor like somebody else in a room where others have clips
        // too.
        const std::size_t others = CountPersons(settings.participants);
        // A second turn where there is but one never comes: nobody hears the camera, so it does not speak.
        source.makeScene = [shownName, others] {
            return MakePersonScene(shownName, LookOf(shownName), {.index = 1, .count = 1},
                                   ClipFormatFor(others + 1));
        };
    }
    return source;
}

std::shared_ptr<RoomParticipant> Room::Find(const std::string& streamId) const {
    return participants.Find(streamId);
}

std::shared_ptr<SinkList> Room::FindSinks(const std::string& sourceId) const {
    if (sourceId == RoomCamera::kSourceId) return {camera, &camera->sinks};
    if (const auto own = streams.FindSource(sourceId)) return {own, &own->sinks};
    const auto participant = Find(sourceId);
    return participant ? std::shared_ptr<SinkList>(participant, &participant->sinks) : nullptr;
}

std::optional<std::string> Room::SpeakerId() const {
    const auto number = speaker.Get();
    if (!number) return std::nullopt;
    const ParticipantList::Snapshot all = participants.Get();
    for (const auto& participant : *all) {
        if (participant->number == *number) return participant->id;
    }
    return std::nullopt;
}

RoomStatus Room::Status() const {
    RoomStatus status{.connected = isConnected};
    const ParticipantList::Snapshot all = participants.Get();
    for (const auto& participant : *all) {
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
    const auto now = std::chrono::steady_clock::now();
    std::vector<ParticipantInfo> infos;
    const ParticipantList::Snapshot all = participants.Get();
    for (const auto& participant : *all) {
        if (!participant->hasEntered) continue;
        infos.push_back({.streamId = participant->id,
                         .name = participant->name,
                         .volume = participant->volume,
                         .loudness = participant->Speaks() ? participant->loudness.load() : 0.0,
                         .isSpeaking = speaker.IsSpeaking(participant->number, now)});
    }
    return infos;
}

LocalTracks Room::OwnTracks() const {
    const TrackSettings& tracks = TrackSettings::Get();
    return {.audio = tracks.SendsAudio(), .video = tracks.SendsVideo() && camera->HasDevice()};
}

void Room::ApplyCameraTracks() {
    if (!isIn) return;
    const LocalTracks tracks = OwnTracks();
    if (std::exchange(toldTracks, tracks) != tracks) transport->SetCameraTracks(tracks);
}

void Room::FollowAdaptation() {
    if (isClosing) return;
    const auto wanted = MediaCallbacks::Get().localVideoAdaptation.Call();
    if (wanted && wanted != adaptation) {
        adaptation = wanted;
        transport->SetCameraAdaptation(*wanted);
    }
    loop.PostAfter(kAdaptationInterval, [this] { FollowAdaptation(); });
}

}  // namespace Corvanta::Engine
