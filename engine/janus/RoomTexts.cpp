#include "engine/janus/RoomTexts.h"

#include <glib.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

#include "engine/signalling/RoomMessage.h"
#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

using nlohmann::json;

constexpr std::string_view kStateBegins = "s1 ";
constexpr char kUserText = 'T';
constexpr char kMuteText = 'M';
constexpr std::size_t kBytesPerText = 64;
// Leaves room for what else the state says.
constexpr std::size_t kMostStateBytes = kLongestPiece - 512;

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

RoomTexts::Member::Member(const std::string& memberName, std::uint64_t firstForIt)
    : name(memberName), met(firstForIt) {}

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

void RoomTexts::Say(const std::string& text) {
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

std::size_t RoomTexts::Cost(const Said& text) {
    return text.text.size() + kBytesPerText;
}

void RoomTexts::Remember(char kind, std::string_view text) {
    if (text.size() + 1 > kLongestText) {
        LOG(kLogWarning, "A text of %zu bytes is too long to be sent", text.size());
        return;
    }
    std::string payload(1, kind);
    payload += text;
    said.push_back({nextSequence++, std::move(payload)});
    saidBytes += Cost(said.back());
    while (said.size() > 1 && (saidBytes > kMostBytes || said.size() > kMostTexts)) {
        if (said.front().sequence >= cursor && !std::exchange(dropWasLogged, true)) {
            LOG(kLogWarning, "More waits to be said in the room than is kept: the oldest texts go");
        }
        saidBytes -= Cost(said.front());
        said.pop_front();
    }
    const std::uint64_t oldest = said.front().sequence;
    if (atHand < oldest) PutBack();
    cursor = std::max(cursor, oldest);
    again = std::max(again, oldest);
    Pump();
}

void RoomTexts::Begin(std::uint64_t sequence) {
    atHand = sequence;
    pieces = SplitText(said[static_cast<std::size_t>(sequence - said.front().sequence)].text, sequence);
    nextPiece = 0;
}

void RoomTexts::PutBack() {
    pieces.clear();
    nextPiece = 0;
}

bool RoomTexts::HasPieces() {
    if (!pieces.empty()) return true;
    if (cursor < nextSequence && newLeft > 0) {
        --newLeft;
        Begin(cursor);
    } else if (again < cursor && againLeft > 0) {
        --againLeft;
        Begin(again);
    }
    return !pieces.empty();
}

void RoomTexts::SayAgain(Member& member, std::uint64_t sequence, Clock::time_point now) {
    if (said.empty()) return;
    sequence = std::max(sequence, said.front().sequence);
    if (sequence >= cursor || IsOnItsWay(sequence)) return;
    double bytes = 0;
    for (std::uint64_t number = sequence; number < cursor; ++number) {
        bytes += static_cast<double>(Cost(said[static_cast<std::size_t>(number - said.front().sequence)]));
    }
    if (!member.again.Allow(now, std::min(bytes, kMostBytesAgainAtOnce))) return;
    if (again == atHand) PutBack();
    again = sequence;
}

bool RoomTexts::IsOnItsWay(std::uint64_t sequence) const {
    return sequence >= cursor ? cursor < nextSequence : again < cursor && again <= sequence;
}

void RoomTexts::Pump() {
    // What is sent may lead to another text at once.
    if (isPumping || !channelIsOpen) return;
    isPumping = true;
    bool isTaken = !stateWaits || SayState();
    while (isTaken && HasPieces()) {
        isTaken = events.send(pieces[nextPiece]);
        // It may have been dropped in that call.
        if (!isTaken || pieces.empty() || ++nextPiece < pieces.size()) continue;
        PutBack();
        if (atHand < cursor) {
            ++again;
        } else if (again == cursor++) {
            again = cursor;
        }
    }
    if (cursor == nextSequence) dropWasLogged = false;
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
    PutBack();
    if (!isOpen) return;
    SayState();
    Pump();
}

void RoomTexts::Meet(const std::string& memberId, const std::string& name) {
    if (!IsMemberId(memberId) || members.size() >= kMostMembers) return;
    members.try_emplace(memberId, name, nextSequence);
}

void RoomTexts::OnEar(const std::string& memberId, const std::string& name, bool isOpen) {
    if (isOpen) Meet(memberId, name);
    Member* const known = Find(memberId);
    if (known == nullptr) return;
    Member& member = *known;
    member.isHeard = isOpen;
    member.hearsUs = false;
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
    newLeft = againLeft = kTextsPerTick;
    SayState();
    Pump();
}

void RoomTexts::Take(const std::string& memberId, const std::string& message, Clock::time_point now) {
    Member* const member = Find(memberId);
    if (member == nullptr || !member->isHeard || member->hasBegunAnew) return;
    if (message.size() > kLongestPiece) return;
    member->lastHeard = now;
    if (IsTextPiece(message)) {
        TakePiece(memberId, *member, message, now);
    } else if (message.starts_with(kStateBegins) && member->states.Allow(now)) {
        TakeState(memberId, *member, std::string_view(message).substr(kStateBegins.size()), now);
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
    // Nobody waits for what comes after the next text.
    if (member == nullptr || next > nextSequence) return;
    const std::uint64_t oldest = said.empty() ? nextSequence : said.front().sequence;
    const bool isNew = !member->hearsUs || member->itsEar != ear;
    // The next state says it again. Each beginning may lead to all marks being said.
    if (isNew && !member->beginnings.Allow(now)) return;
    // It knew where it was, and we know it too: it has given us up, and not we it.
    if (isNew && next == 0 && member->itsNext > 0 && member->expected > 0) {
        member->hasBegunAnew = true;
        events.begunAnew(memberId);
        return;
    }
    if (isNew) {
        member->first = next == 0 ? std::max(member->met, oldest) : 0;
    } else if (next > 0) {
        member->first = 0;
    }
    member->hearsUs = true;
    member->itsEar = ear;
    // It waits for what is remembered no more.
    const bool isBehind = next > 0 && next < oldest && member->first != oldest;
    if (isBehind) member->first = oldest;
    const std::uint64_t wanted = std::max(next, member->first);
    if (isNew || next != member->itsNext || IsOnItsWay(wanted)) member->progress = now;
    member->itsNext = next;
    const bool isStalled = now - member->progress >= kStall;
    if (isNew || isBehind || isStalled) {
        member->progress = now;
        SayAgain(*member, wanted, now);
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

bool RoomTexts::MayBegin(Member& member, Clock::time_point now) {
    if (member.limit.Allow(now)) return true;
    if (!std::exchange(member.limitWasLogged, true)) {
        LOG(kLogWarning, "\"%s\" says more than can be read, and has to say it again", member.name.c_str());
    }
    return false;
}

void RoomTexts::TakePiece(const std::string& memberId, Member& member, const std::string& piece,
                          Clock::time_point now) {
    const auto place = ReadTextPiece(piece);
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
        if (!MayBegin(member, now)) return;
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
    Deliver(memberId, std::move(*text));
}

void RoomTexts::Deliver(const std::string& memberId, std::string text) {
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
