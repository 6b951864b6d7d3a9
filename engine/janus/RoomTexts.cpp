#include "engine/janus/RoomTexts.h"

#include <glib.h>

#include <algorithm>
#include <charconv>
#include <nlohmann/json.hpp>
#include <utility>

#include "engine/signalling/RoomMessage.h"
#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

using nlohmann::json;

constexpr std::string_view kPieceBegins = "t1 ";
constexpr std::string_view kStateBegins = "r1 ";
constexpr char kUserText = 'T';
constexpr char kMuteText = 'M';
constexpr std::size_t kBytesPerText = 64;
// Leaves room for what else the state says.
constexpr std::size_t kMostStateBytes = kLongestPiece - 512;

struct PiecePlace {
    std::uint64_t sequence = 0;
    std::uint64_t offset = 0;
};

// Of a text that begins as a piece does. The rest of it is the joiner's matter.
std::optional<PiecePlace> PlaceOf(std::string_view piece) {
    PiecePlace place;
    const char* const end = piece.data() + piece.size();
    const auto first = std::from_chars(piece.data() + kPieceBegins.size(), end, place.sequence);
    if (first.ec != std::errc() || first.ptr == end || *first.ptr != ' ') return std::nullopt;
    const auto second = std::from_chars(first.ptr + 1, end, place.offset);
    if (second.ec != std::errc() || second.ptr == end || *second.ptr != ' ') return std::nullopt;
    return place;
}

struct Place {
    std::uint32_t ear = 0;
    std::uint64_t sequence = 0;
};

std::optional<Place> PlaceFor(const json& object, const char* key, const std::string& memberId) {
    const auto list = object.find(key);
    if (list == object.end() || !list->is_object()) return std::nullopt;
    const auto entry = list->find(memberId);
    if (entry == list->end() || !entry->is_array() || entry->size() != 2) return std::nullopt;
    const json &ear = (*entry)[0], &sequence = (*entry)[1];
    if (!ear.is_number_unsigned() || !sequence.is_number_unsigned()) return std::nullopt;
    return Place{static_cast<std::uint32_t>(ear.get<std::uint64_t>()), sequence.get<std::uint64_t>()};
}

bool FlagOf(const json& object, const char* key) {
    const auto flag = object.find(key);
    return flag == object.end() || !flag->is_boolean() || flag->get<bool>();
}

}  // namespace

RoomTexts::Member::Member(const std::string& memberName)
    : name(memberName), limit(kMessagesPerSecond, kMessagesPerSecond) {}

RoomTexts::RoomTexts(std::string ownMemberId, RoomTextsEvents handlers)
    : ownId(std::move(ownMemberId)), events(std::move(handlers)), ears(g_random_int() & 0xFFFFFFU) {}

RoomTexts::Member* RoomTexts::Find(const std::string& memberId) {
    const auto place = members.find(memberId);
    return place == members.end() ? nullptr : &place->second;
}

std::optional<RoomTexts::Clock::time_point> RoomTexts::LastHeard(const std::string& memberId) const {
    const auto place = members.find(memberId);
    return place == members.end() ? std::nullopt : place->second.lastHeard;
}

void RoomTexts::Say(std::string text) {
    Remember(kUserText, text);
}

void RoomTexts::Mute(const std::string& streamId) {
    Remember(kMuteText, streamId);
}

void RoomTexts::SetTracks(const LocalTracks& tracks) {
    if (ownTracks == tracks) return;
    ownTracks = tracks;
    SayState();
}

void RoomTexts::Remember(char kind, std::string_view text) {
    if (text.size() + 1 > kLongestText) {
        LOG(kLogWarning, "A text of %zu bytes is too long to be sent", text.size());
        return;
    }
    std::string payload(1, kind);
    payload += text;
    saidBytes += payload.size() + kBytesPerText;
    said.push_back({nextSequence++, std::move(payload)});
    while (said.size() > 1 && (saidBytes > kMostBytes || said.size() > kMostTexts)) {
        if (said.front().sequence >= cursor && !std::exchange(dropWasLogged, true)) {
            LOG(kLogWarning,
                "The room cannot be reached, and more waits for it than is kept: the oldest "
                "texts go");
        }
        saidBytes -= said.front().text.size() + kBytesPerText;
        said.pop_front();
    }
    if (cursor < said.front().sequence) Forward(said.front().sequence);
    Pump();
}

void RoomTexts::Forward(std::uint64_t sequence) {
    cursor = sequence;
    pieces.clear();
    nextPiece = 0;
}

void RoomTexts::Rewind(std::uint64_t sequence) {
    if (said.empty() || sequence >= cursor) return;
    Forward(std::max(sequence, said.front().sequence));
}

void RoomTexts::Pump() {
    // What is sent may lead to another text at once.
    if (isPumping || !channelIsOpen) return;
    isPumping = true;
    bool isTaken = !stateWaits || SayState();
    while (isTaken && cursor < nextSequence) {
        if (pieces.empty()) {
            const auto index = static_cast<std::size_t>(cursor - said.front().sequence);
            pieces = SplitText(said[index].text, cursor);
            nextPiece = 0;
        }
        isTaken = events.send(pieces[nextPiece]);
        if (isTaken && ++nextPiece == pieces.size()) Forward(cursor + 1);
    }
    if (isTaken) dropWasLogged = false;
    isPumping = false;
}

bool RoomTexts::SayState() {
    json hears = json::object(), from = json::object();
    std::size_t bytes = 0;
    for (const auto& [id, member] : members) {
        bytes += id.size() + 40;
        if (bytes > kMostStateBytes / 2) break;
        if (member.isHeard) hears[id] = {member.ear, member.expected};
        if (member.hearsUs && member.first > 0) from[id] = {member.itsEar, member.first};
    }
    const json state = {{"hears", std::move(hears)},
                        {"from", std::move(from)},
                        {"sound", ownTracks.audio},
                        {"picture", ownTracks.video}};
    std::string message(kStateBegins);
    message += state.dump(-1, ' ', false, json::error_handler_t::replace);
    stateWaits = !channelIsOpen || !events.send(message);
    return !stateWaits;
}

void RoomTexts::OnOwnChannel(bool isOpen) {
    channelIsOpen = isOpen;
    // What was under way may have been lost with the channel before.
    pieces.clear();
    nextPiece = 0;
    if (!isOpen) return;
    SayState();
    Pump();
}

void RoomTexts::OnEar(const std::string& memberId, const std::string& name, bool isOpen) {
    if (!IsMemberId(memberId) || (!isOpen && Find(memberId) == nullptr)) return;
    if (Find(memberId) == nullptr && members.size() >= kMostMembers) return;
    Member& member = members.try_emplace(memberId, name).first->second;
    member.isHeard = isOpen;
    member.hearsUs = false;
    member.lastHeard.reset();
    member.joiner = isOpen ? std::make_unique<TextJoiner>(member.name) : nullptr;
    member.hasBegun = false;
    if (isOpen) member.ear = ++ears;
    SetOpen(memberId, false);
    SayState();
}

void RoomTexts::Forget(const std::string& memberId) {
    SetOpen(memberId, false);
    members.erase(memberId);
}

void RoomTexts::SetOpen(const std::string& memberId, bool isOpen) {
    Member* const member = Find(memberId);
    if (member != nullptr && std::exchange(member->isOpen, isOpen) != isOpen) {
        events.channel(memberId, isOpen);
    }
}

void RoomTexts::Tick(Clock::time_point now) {
    for (auto& [id, member] : members) {
        if (member.joiner) member.joiner->Expire(now);
    }
    SayState();
    Pump();
}

void RoomTexts::Take(const std::string& memberId, const std::string& message, Clock::time_point now) {
    Member* const member = Find(memberId);
    if (member == nullptr || !member->isHeard || message.size() > kLongestPiece) return;
    member->lastHeard = now;
    if (message.starts_with(kStateBegins)) {
        TakeState(memberId, *member, std::string_view(message).substr(kStateBegins.size()), now);
    } else if (message.starts_with(kPieceBegins)) {
        TakePiece(memberId, *member, message, now);
    }
}

void RoomTexts::TakeState(const std::string& memberId, Member& member, std::string_view text,
                          Clock::time_point now) {
    const json state = json::parse(
        text, [](int depth, json::parse_event_t, json&) { return depth <= 4; }, false);
    if (!state.is_object()) return;
    if (const auto from = PlaceFor(state, "from", ownId); from && from->ear == member.ear) {
        if (from->sequence > member.expected) {
            if (member.expected > 0) {
                LOG(kLogWarning, "Texts of \"%s\" are lost, which said more than it could keep",
                    member.name.c_str());
            }
            member.expected = from->sequence;
            member.hasBegun = false;
            stateWaits = true;
        }
    }
    const LocalTracks tracks{.audio = FlagOf(state, "sound"), .video = FlagOf(state, "picture")};
    if (member.tracks != tracks) {
        member.tracks = tracks;
        events.tracks(memberId, tracks);
    }
    // The event may have led to anything.
    if (const auto hearing = PlaceFor(state, "hears", ownId)) {
        TakeHearing(memberId, hearing->ear, hearing->sequence, now);
    } else if (Member* const still = Find(memberId); still != nullptr && still->hearsUs) {
        still->hearsUs = false;
        SetOpen(memberId, false);
    }
    Pump();
}

void RoomTexts::TakeHearing(const std::string& memberId, std::uint32_t ear, std::uint64_t next,
                            Clock::time_point now) {
    Member* const member = Find(memberId);
    if (member == nullptr) return;
    const std::uint64_t oldest = said.empty() ? nextSequence : said.front().sequence;
    const bool isNew = !member->hearsUs || member->itsEar != ear;
    if (isNew || next != member->itsNext) member->progress = now;
    if (isNew) {
        member->first = next == 0 ? nextSequence : 0;
    } else if (next > 0) {
        member->first = 0;
    }
    member->hearsUs = true;
    member->itsEar = ear;
    member->itsNext = next;
    // It waits for what is remembered no more.
    const bool isBehind = next > 0 && next < oldest && member->first != oldest;
    if (isBehind) member->first = oldest;
    const std::uint64_t wanted = std::max(next, member->first);
    const bool isStalled = now - member->progress >= kStall && cursor == nextSequence;
    if (isNew || isBehind || isStalled) {
        member->progress = now;
        Rewind(wanted);
    }
    if (!isNew) {
        stateWaits = stateWaits || member->first > 0;
        return;
    }
    // It is told where to begin before anything more is said.
    SayState();
    SetOpen(memberId, false);
    SetOpen(memberId, true);
}

void RoomTexts::TakePiece(const std::string& memberId, Member& member, const std::string& piece,
                          Clock::time_point now) {
    const auto place = PlaceOf(piece);
    if (!place || member.expected == 0 || !member.joiner) return;
    if (place->sequence > member.expected) {
        // What was to come before is said again, unless it has come to nothing often enough.
        if (place->offset > 0 || !std::exchange(member.hasBegun, false)) return;
        if (++member.tries < kMostTries) {
            member.joiner = std::make_unique<TextJoiner>(member.name);
            return;
        }
        member.tries = 0;
        ++member.expected;
    }
    if (place->sequence != member.expected) return;
    if (place->offset == 0) {
        // The joiner takes up no text again that it has dropped.
        if (member.hasBegun && member.joiner->UnfinishedTexts() == 0) {
            member.joiner = std::make_unique<TextJoiner>(member.name);
        }
        member.hasBegun = true;
    }
    auto text = member.joiner->Take(piece, now);
    if (!text) return;
    ++member.expected;
    member.hasBegun = false;
    member.tries = 0;
    Deliver(memberId, member, std::move(*text), now);
}

void RoomTexts::Deliver(const std::string& memberId, Member& member, std::string text,
                        Clock::time_point now) {
    if (!member.limit.Allow(now)) {
        if (!std::exchange(member.limitWasLogged, true)) {
            LOG(kLogWarning, "\"%s\" says more than can be read; some of it is left out",
                member.name.c_str());
        }
        return;
    }
    if (text.empty()) return;
    const char kind = text.front();
    text.erase(0, 1);
    if (kind == kUserText) {
        events.text(memberId, std::move(text));
    } else if (kind == kMuteText) {
        events.mute(text);
    }
}

}  // namespace Corvanta::Engine
