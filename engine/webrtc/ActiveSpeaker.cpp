#include "engine/webrtc/ActiveSpeaker.h"

#include <algorithm>
#include <vector>

namespace Corvanta::Engine {

namespace {

using std::chrono::milliseconds;

// How long somebody speaks before the picture is theirs.
constexpr milliseconds kSpeech{1000};
// Of two who began together, one is reported first; the louder is to win all the same.
constexpr milliseconds kTogether{200};
// The longest pause inside speech; words of one sentence are hardly ever further apart.
constexpr milliseconds kLongestPause{400};
// At least this share of the reports of a second of speech is sound. Single clicks, as of a keyboard, are
// less.
constexpr std::size_t kPauseShare = 2;
// Mean squares. -40 dB: quieter is room noise. 4 dB: whoever is to take the picture from somebody who speaks
// must be that much louder.
constexpr double kSpeaking = 1e-4;
constexpr double kTakeOver = 2.5;

}  // namespace

void ActiveSpeaker::Note(Voice& voice, double meanSquare, Time now) {
    if (voice.isSpeaking && !Speaks(voice, now)) {
        voice.isSpeaking = false;
        voice.reports.clear();
    }
    if (meanSquare >= kSpeaking) {
        // The sound may have begun and ended anywhere within a report, so only what lies between the first
        // and the last one of a run is sure.
        voice.certain = voice.isSpeaking ? voice.latest : now;
        if (!voice.isSpeaking) voice.first = now;
        voice.latest = now;
        voice.isSpeaking = true;
    }
    if (!voice.isSpeaking) return;
    voice.reports.push_back({now, meanSquare});
    while (now - voice.reports.front().time > kSpeech) voice.reports.pop_front();
}

bool ActiveSpeaker::Speaks(const Voice& voice, Time now) {
    return voice.isSpeaking && now - voice.latest <= kLongestPause;
}

bool ActiveSpeaker::HasSpoken(const Voice& voice, milliseconds duration) {
    const auto sounds = static_cast<std::size_t>(
        std::count_if(voice.reports.begin(), voice.reports.end(),
                      [](const Report& report) { return report.meanSquare >= kSpeaking; }));
    return voice.certain - voice.first >= duration && sounds * kPauseShare >= voice.reports.size();
}

double ActiveSpeaker::Loudness(const Voice& voice) {
    std::vector<double> sounds;
    for (const Report& report : voice.reports) {
        if (report.meanSquare >= kSpeaking) sounds.push_back(report.meanSquare);
    }
    if (sounds.empty()) return 0;
    const auto middle = sounds.begin() + static_cast<std::ptrdiff_t>(sounds.size() / 2);
    std::nth_element(sounds.begin(), middle, sounds.end());
    return *middle;
}

void ActiveSpeaker::ReportJoined(Number participant) {
    const std::lock_guard lock(voicesMutex);
    voices.try_emplace(participant);
}

void ActiveSpeaker::ReportGone(Number participant) {
    const std::lock_guard lock(voicesMutex);
    voices.erase(participant);
    if (speaker == participant) speaker.reset();
}

void ActiveSpeaker::ReportLoudness(Number participant, double meanSquare, Time now) {
    const std::lock_guard lock(voicesMutex);
    const auto found = voices.find(participant);
    if (found == voices.end()) return;
    Voice& voice = found->second;
    Note(voice, meanSquare, now);
    // Only somebody's own sound gives the picture, so the others are compared with, and no more.
    if (speaker == participant || meanSquare < kSpeaking || !Speaks(voice, now) || !HasSpoken(voice, kSpeech))
        return;
    const double loudness = Loudness(voice);
    for (const auto& [number, other] : voices) {
        if (number == participant || !Speaks(other, now)) continue;
        // A noise of somebody else hinders nobody.
        if (speaker != number && !HasSpoken(other, kSpeech - kTogether)) continue;
        const double margin = speaker == number ? kTakeOver : 1.0;
        if (Loudness(other) * margin > loudness) return;
    }
    speaker = participant;
}

void ActiveSpeaker::ReportPicture(Number participant) {
    const std::lock_guard lock(voicesMutex);
    if (const auto found = voices.find(participant); found != voices.end()) found->second.hasPicture = true;
}

std::optional<ActiveSpeaker::Number> ActiveSpeaker::Get() const {
    const std::lock_guard lock(voicesMutex);
    if (speaker) return speaker;
    const auto first =
        std::ranges::find_if(voices, [](const auto& entry) { return entry.second.hasPicture; });
    return first != voices.end() ? std::optional(first->first) : std::nullopt;
}

bool ActiveSpeaker::IsSpeaking(Number participant, Time now) const {
    const std::lock_guard lock(voicesMutex);
    const auto found = voices.find(participant);
    return speaker == participant && found != voices.end() && Speaks(found->second, now);
}

}  // namespace Corvanta::Engine
