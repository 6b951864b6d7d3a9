#include "engine/embedded/EmbeddedTransport.h"

#include <algorithm>
#include <utility>

#include "engine/embedded/PlaybackMedia.h"
#include "engine/transport/StreamNames.h"
#include "engine/webrtc/SourceCheck.h"

namespace Corvanta::Engine {

namespace {

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
                                     std::vector<Participant> participants)
    : loop(engineLoop),
      mixer(std::move(roomMixer)),
      all(std::move(participants)),
      epoch(std::chrono::steady_clock::now()) {}

void EmbeddedTransport::Start(TransportEvents handlers) {
    for (std::size_t index = 0; index < all.size(); ++index) handlers.joined(Describe(index));
    handlers.entered();
}

std::string EmbeddedTransport::OwnId() const {
    return kEmbeddedOwnId;
}

ParticipantDescription EmbeddedTransport::Describe(std::size_t index) const {
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
    return {.id = "participant-" + std::to_string(index + 1) + "-" + name,
            .name = name,
            .media = std::make_shared<PlaybackMedia>(loop, std::move(source), mixer)};
}

}  // namespace Corvanta::Engine
