#include "engine/embedded/EmbeddedTransport.h"

#include <algorithm>
#include <utility>

#include "engine/transport/StreamNames.h"
#include "engine/webrtc/SourceCheck.h"

namespace Corvanta::Engine {

namespace {

// How often it is looked whether there is a picture to draw on.
constexpr std::chrono::milliseconds kLookForViewEvery{500};

bool IsPerson(const Participant& participant) {
    return ResolveSource(participant.source).kind == ResolvedSource::Kind::Person;
}

// The turn of one among the generated persons, who alone take turns.
SpeakingTurn TurnOf(const std::vector<Participant>& all, std::size_t index) {
    const auto before =
        std::count_if(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(index), IsPerson);
    return {.index = static_cast<std::size_t>(before), .count = CountPersons(all)};
}

std::string NameOf(const Participant& description, std::size_t index) {
    return description.name.empty() ? "Participant " + std::to_string(index + 1) : description.name;
}

}  // namespace

std::size_t CountPersons(const std::vector<Participant>& participants) {
    return static_cast<std::size_t>(std::ranges::count_if(participants, IsPerson));
}

EmbeddedTransport::EmbeddedTransport(EngineLoop& engineLoop, std::shared_ptr<SoundMixer> roomMixer,
                                     std::vector<Participant> participants,
                                     std::optional<std::chrono::milliseconds> drawingBegins)
    : loop(engineLoop),
      mixer(std::move(roomMixer)),
      all(std::move(participants)),
      drawAfter(drawingBegins),
      epoch(std::chrono::steady_clock::now()) {}

void EmbeddedTransport::Start(TransportEvents handlers) {
    events = std::move(handlers);
    for (std::size_t index = 0; index < all.size(); ++index) events.joined(Describe(index));
    events.entered();
    if (drawAfter) DrawAfter(*drawAfter);
}

void EmbeddedTransport::Stop() {
    isStopped = true;
}

std::string EmbeddedTransport::OwnId() const {
    return kEmbeddedOwnId;
}

ParticipantDescription EmbeddedTransport::Describe(std::size_t index) {
    const std::string name = NameOf(all[index], index);
    const ResolvedSource resolved = ResolveSource(all[index].source);
    PlaybackSource source{.name = name, .uri = resolved.uri, .makeScene = {}, .clipEpoch = epoch};
    if (resolved.kind == ResolvedSource::Kind::TestPicture) {
        source.makeScene = [name] { return MakeTestScene(name); };
    } else if (resolved.kind == ResolvedSource::Kind::Person) {
        const SpeakingTurn turn = TurnOf(all, index);
        source.makeScene = [name, turn] {
            return MakePersonScene(name, turn.index % kPlainLooks, turn, ClipFormatFor(turn.count));
        };
    }
    const auto played = std::make_shared<PlaybackMedia>(loop, std::move(source), mixer);
    ParticipantDescription description{
        .id = "participant-" + std::to_string(index + 1) + "-" + name, .name = name, .media = played};
    media[description.id] = played;
    return description;
}

void EmbeddedTransport::DrawAfter(std::chrono::milliseconds wait) {
    loop.PostAfter(wait, [this] {
        if (isStopped) return;
        DrawAfter(Draw() ? drawings.NextWait() : kLookForViewEvery);
    });
}

bool EmbeddedTransport::Draw() {
    auto message = drawings.Next(events.inView(), events.speaker());
    if (!message) return false;
    if (const auto sender = media[message->senderId].lock()) sender->Say(std::move(message->text));
    return true;
}

}  // namespace Corvanta::Engine
