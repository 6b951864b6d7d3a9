#include "engine/webrtc/ActiveSpeaker.h"

#include <algorithm>
#include <numeric>

namespace Corvanta::Engine {

namespace {

// Long enough to bridge the gaps between syllables, short enough to follow a change of turns within a second.
constexpr std::chrono::milliseconds kWindow{700};
// One report is no window: a click must not take the picture.
constexpr std::size_t kFewestReports = 3;
// Mean squares. -40 dB: quieter is room noise. 4 dB: whoever is to take the picture from a speaker must be
// that much louder.
constexpr double kSpeaking = 1e-4;
constexpr double kTakeOver = 2.5;

}  // namespace

ActiveSpeaker::ActiveSpeaker(std::size_t participants) : voices(participants) {}

double ActiveSpeaker::Loudness(const Voice& voice) {
    if (voice.isGone || voice.reports.size() < kFewestReports) return 0;
    const double sum =
        std::accumulate(voice.reports.begin(), voice.reports.end(), 0.0,
                        [](double total, const Report& report) { return total + report.meanSquare; });
    return sum / static_cast<double>(voice.reports.size());
}

void ActiveSpeaker::ReportLoudness(std::size_t participant, double meanSquare, Time now) {
    const std::lock_guard lock(voicesMutex);
    if (participant >= voices.size()) return;
    voices[participant].reports.push_back({now, meanSquare});
    for (Voice& voice : voices) {
        while (!voice.reports.empty() && now - voice.reports.front().time > kWindow)
            voice.reports.pop_front();
    }

    const auto loudest = std::max_element(
        voices.begin(), voices.end(),
        [](const Voice& left, const Voice& right) { return Loudness(left) < Loudness(right); });
    const double loudness = Loudness(*loudest);
    if (loudness < kSpeaking) return;
    const double present = speaker ? Loudness(voices[*speaker]) : 0;
    const bool isChallenged = present < kSpeaking || loudness > present * kTakeOver;
    if (isChallenged) speaker = static_cast<std::size_t>(loudest - voices.begin());
}

void ActiveSpeaker::ReportPicture(std::size_t participant) {
    const std::lock_guard lock(voicesMutex);
    if (participant < voices.size()) voices[participant].hasPicture = true;
}

void ActiveSpeaker::ReportGone(std::size_t participant) {
    const std::lock_guard lock(voicesMutex);
    if (participant >= voices.size()) return;
    voices[participant].isGone = true;
    if (speaker == participant) speaker.reset();
}

std::optional<std::size_t> ActiveSpeaker::Get() const {
    const std::lock_guard lock(voicesMutex);
    if (speaker) return speaker;
    for (std::size_t index = 0; index < voices.size(); ++index) {
        if (voices[index].hasPicture && !voices[index].isGone) return index;
    }
    return std::nullopt;
}

}  // namespace Corvanta::Engine
