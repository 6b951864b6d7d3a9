// A server for texts in a few lines, which forwards what is said to whoever hears it at the moment and may
// lose some of it, and a clock that is told.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "engine/janus/RoomTexts.h"

namespace Corvanta::Engine {

using Texts = std::vector<std::string>;

inline std::string Join(std::string_view first, std::string_view second) {
    std::string joined(first);
    joined += second;
    return joined;
}

class Forwarder final {
public:
    struct Member {
        std::string id;
        std::unique_ptr<RoomTexts> texts;
        bool speaks = true;
        std::size_t takes = 1'000'000;
        std::set<std::string> hears;
        std::map<std::string, Texts> heard;
        // "+a" and "-a" for a channel.
        Texts channels, mutes, begunAnew;
        std::map<std::string, LocalTracks> tracks;
        std::vector<std::string> said;
        std::vector<std::pair<std::string, std::string>> coming;
    };

    Member& Add(const std::string& id) {
        Member& member = members[id];
        member.id = id;
        member.texts = std::make_unique<RoomTexts>(
            id, RoomTextsEvents{
                    .send =
                        [&member](const std::string& message) {
                            if (member.said.size() >= member.takes) return false;
                            EXPECT_LE(message.size(), kLongestPiece);
                            member.said.push_back(message);
                            return true;
                        },
                    .text = [&member](const std::string& from,
                                      std::string text) { member.heard[from].push_back(std::move(text)); },
                    .channel =
                        [&member](const std::string& from, bool isOpen) {
                            member.channels.push_back(Join(isOpen ? "+" : "-", from));
                        },
                    .tracks = [&member](const std::string& from,
                                        const LocalTracks& tracks) { member.tracks[from] = tracks; },
                    .mute = [&member](const std::string& id_) { member.mutes.push_back(id_); },
                    .begunAnew = [&member](const std::string& from) { member.begunAnew.push_back(from); }});
        member.texts->OnOwnChannel(true);
        return member;
    }

    // `who` hears the other one from this moment on.
    void Hear(const std::string& who, const std::string& other) {
        members[who].hears.insert(other);
        members[who].texts->OnEar(other, other, true);
        Settle();
    }
    void Deafen(const std::string& who, const std::string& other) {
        members[who].hears.erase(other);
        members[who].texts->OnEar(other, other, false);
    }
    void Meet(const std::string& one, const std::string& other) {
        Hear(one, other);
        Hear(other, one);
    }
    void MeetAll() {
        for (auto one = members.begin(); one != members.end(); ++one) {
            for (auto other = std::next(one); other != members.end(); ++other) Meet(one->first, other->first);
        }
    }
    // Carries what was said, until nobody says anything more.
    void Settle() {
        for (bool isQuiet = false; !isQuiet;) {
            isQuiet = true;
            for (auto& [id, speaker] : members) {
                for (const std::string& message : std::exchange(speaker.said, {})) {
                    isQuiet = false;
                    if (onMessage) onMessage(id, message);
                    for (auto& [other, listener] : members) {
                        const bool isLost = loses && loses(message);
                        if (!listener.hears.contains(id) || isLost) continue;
                        listener.coming.emplace_back(id, message);
                    }
                }
                for (auto& [other, listener] : members) {
                    if (other == holdsBack) continue;
                    for (const auto& [from, message] : std::exchange(listener.coming, {})) {
                        isQuiet = false;
                        listener.texts->Take(from, message, now);
                    }
                }
                speaker.texts->Pump();
            }
        }
    }
    void Pass(int secondsPassed) {
        for (int second = 0; second < secondsPassed; ++second) {
            now += std::chrono::seconds(1);
            for (auto& [id, member] : members) member.texts->Tick(now);
            Settle();
        }
    }

    std::map<std::string, Member> members;
    std::function<bool(const std::string& message)> loses;
    std::function<void(const std::string& from, const std::string& message)> onMessage;
    // To whom nothing gets at the moment.
    std::string holdsBack;
    RoomTexts::Clock::time_point now{std::chrono::seconds(1000)};
};

inline constexpr const char* kA = "a";
inline constexpr const char* kB = "b";
inline constexpr const char* kC = "c";

}  // namespace Corvanta::Engine
