#include "guest/Guest.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

#include "engine/connections/ChatMessage.h"
#include "engine/transport/StreamNames.h"
#include "engine/webrtc/ClipScene.h"
#include "engine/webrtc/SourceCheck.h"
#include "platform/Logger.h"

namespace Corvanta::Guest {

namespace {

using Engine::LocalTracks;
using Engine::MappedPicture;
using Engine::MediaTracks;
using Engine::ParticipantDescription;
using Engine::PlaybackSource;
using Engine::ResolvedSource;

// All marks are told no oftener, whoever comes and goes.
constexpr std::chrono::milliseconds kTellingInterval{1000};
// What a guest wants of the others: that they hear what it says.
constexpr MediaTracks kTextsAlone{.audio = false, .video = false, .data = true};

}  // namespace

Guest::Guest(Engine::EngineLoop& engineLoop, GuestOptions guestOptions,
             const Engine::TransportMaker& makeTransport, GuestEvents guestEvents)
    : loop(engineLoop),
      options(std::move(guestOptions)),
      events(std::move(guestEvents)),
      mixer(std::make_shared<Engine::SoundMixer>(loop)),
      transport(makeTransport(loop, mixer)),
      script(options.role),
      marks(options.role.seed, options.role.index) {}

Guest::~Guest() = default;

void Guest::Enter() {
    // While the way into the room is looked for, the clip is painted.
    OpenClip();
    transport->Start(EventsOfTransport());
}

void Guest::Leave() {
    hasLeft = true;
    if (playback) playback->Close();
    outlet->Set(nullptr);
    for (const auto& [id, media] : others) media->Close();
    others.clear();
    transport->Stop();
    reports.reset();
}

Engine::TransportEvents Guest::EventsOfTransport() {
    return {.entered = [this] { OnEntered(); },
            .failed = [this](const std::string& problem) { events.failed(problem); },
            .joined = [this](const ParticipantDescription& description) { OnJoined(description); },
            .left = [this](const std::string& streamId, const std::string&) { OnLeft(streamId); },
            .dropped =
                [this](bool willRetry) {
                    if (!willRetry)
                        events.failed("the room is gone, or another participant has had it leave");
                },
            .muted =
                [this] {
                    *isMuted = true;
                    transport->SetCameraTracks({.audio = false, .video = true});
                }};
}

void Guest::ReportConnection() {
    if (hasLeft) return;
    std::vector<Engine::ParticipantFigures> ways;
    for (const auto& way : transport->OwnFigures()) ways.push_back(way.figures);
    for (const auto& [id, media] : others) ways.push_back(media->Figures());
    reports->Report(Engine::FiguresOfAll(ways));
    loop.PostAfter(std::chrono::seconds(Engine::kSecondsPerReport), [this] { ReportConnection(); });
}

PlaybackSource Guest::Source() const {
    const ResolvedSource resolved = Engine::ResolveSource(options.source);
    const Engine::SpeakingTurn turn = script.Turn();
    PlaybackSource source{
        .name = options.name,
        .uri = resolved.uri,
        .makeScene = {},
        .clipEpoch = std::chrono::steady_clock::now() - ClipTimeAt(std::chrono::system_clock::now(), turn)};
    if (resolved.kind == ResolvedSource::Kind::Person) {
        const Engine::ClipFormat format{.width = options.picture.width,
                                        .height = options.picture.height,
                                        .frameRate = options.picture.frameRate};
        source.makeScene = [name = options.name, turn, format] {
            // The first look is that of a person whose own camera is a clip.
            return Engine::MakePersonScene(name, turn.index + 1, turn, format);
        };
        return source;
    }
    if (resolved.kind == ResolvedSource::Kind::TestPicture) {
        source.makeScene = [name = options.name] { return Engine::MakeTestScene(name); };
    }
    if (resolved.kind == ResolvedSource::Kind::TestPicture || options.pictureIsAsked) {
        source.shape = options.picture;
    }
    return source;
}

void Guest::OpenClip() {
    // The playback is this object's own, but a piece of it may be under way while it is closed.
    playback = std::make_shared<Engine::Playback>(
        loop, Source(), nullptr,
        Engine::PlaybackEvents{.picture =
                                   [way = outlet](const std::shared_ptr<const MappedPicture>& picture) {
                                       way->PushPicture(picture);
                                   },
                               .loudness = [](double) {},
                               .withoutPicture = [] {},
                               .connection = [](bool) {},
                               .ended = [] {},
                               .failed = {},
                               .sound =
                                   [way = outlet, muted = isMuted](GstBuffer* samples, GstClockTime due) {
                                       if (!*muted) way->PushSound(samples, due);
                                   }});
    playback->Open();
}

void Guest::OnEntered() {
    if (hasLeft || std::exchange(isIn, true)) return;
    startedAt = std::chrono::steady_clock::now();
    outlet->Set(transport->PublishCamera(LocalTracks{}));
    playback->Play();
    std::vector<std::string> waiting;
    for (const auto& [id, media] : others) waiting.push_back(id);
    for (const std::string& id : waiting) OpenMedia(id);
    PerformNext();
    reports.emplace(options.room, OwnStreamId());
    ReportConnection();
    events.entered();
}

void Guest::OnJoined(const ParticipantDescription& description) {
    if (hasLeft || !description.media || !others.emplace(description.id, description.media).second) return;
    if (isIn) OpenMedia(description.id);
}

void Guest::OnLeft(const std::string& streamId) {
    const auto found = others.find(streamId);
    if (found == others.end()) return;
    const auto media = std::move(found->second);
    others.erase(found);
    marks.Forget(streamId);
    media->Close();
}

void Guest::OpenMedia(const std::string& streamId) {
    // Posted, so that it is not inside an event of the transport's.
    loop.Post([this, streamId] {
        const auto found = others.find(streamId);
        if (hasLeft || found == others.end()) return;
        const auto media = found->second;
        media->Open({.picture = [](const std::shared_ptr<const MappedPicture>&) {},
                     .loudness = [](double) {},
                     .withoutPicture = [] {},
                     .connection = [](bool) {},
                     // Each new channel is somebody who may not know the marks yet.
                     .channel =
                         [this](bool isOpen) {
                             if (isOpen) TellMarks();
                         },
                     .text = [](const std::string&) {},
                     .ended = [] {}});
        media->SetTracks(kTextsAlone);
        media->Play();
    });
}

void Guest::TellMarks() {
    const auto now = std::chrono::steady_clock::now();
    const auto due = marksToldAt ? *marksToldAt + kTellingInterval : now;
    if (due <= now) {
        marksToldAt = now;
        for (std::string& text : marks.TellAll()) Send(std::move(text));
    } else if (!std::exchange(isTellingPlanned, true)) {
        loop.PostAfter(std::chrono::ceil<std::chrono::milliseconds>(due - now), [this] {
            isTellingPlanned = false;
            if (!hasLeft) TellMarks();
        });
    }
}

void Guest::PerformNext() {
    GuestAct act = script.Next();
    const auto now = std::chrono::steady_clock::now();
    // Who was held up goes on from there, rather than catch up all at once.
    startedAt = std::max(startedAt, now - act.at);
    const auto wait = std::chrono::ceil<std::chrono::milliseconds>(startedAt + act.at - now);
    loop.PostAfter(wait, [this, act = std::move(act)] {
        if (hasLeft) return;
        Perform(act);
        PerformNext();
    });
}

void Guest::Perform(const GuestAct& act) {
    switch (act.kind) {
        case GuestAct::Kind::Draw:
            if (const std::string streamId = StreamFor(act); !streamId.empty()) Send(marks.Draw(streamId));
            break;
        case GuestAct::Kind::TakeBack: Send(marks.TakeBack()); break;
        case GuestAct::Kind::Chat:
            Send(Engine::WriteChat({.text = act.line, .time = std::chrono::system_clock::now()}));
            break;
    }
}

std::string Guest::StreamFor(const GuestAct& act) const {
    if (!act.othersStream || others.empty()) return OwnStreamId();
    const std::size_t place = *act.othersStream % others.size();
    return std::next(others.begin(), static_cast<std::ptrdiff_t>(place))->first;
}

void Guest::Send(std::optional<std::string> text) {
    if (text) transport->SendText(*std::move(text));
}

std::string Guest::OwnStreamId() const {
    return Engine::StreamIdOf(transport->OwnId(), StreamType::Camera);
}

}  // namespace Corvanta::Guest
