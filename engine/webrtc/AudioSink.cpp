#include "engine/webrtc/AudioSink.h"

#include <cmath>
#include <string>
#include <utility>

#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

constexpr guint64 kLevelInterval = 100 * GST_MSECOND;

// How long before it is heard the sink hands a sound on.
GstClockTime LeadOf(GstAppSink* sink) {
    return static_cast<GstClockTime>(-gst_base_sink_get_ts_offset(GST_BASE_SINK(sink)));
}

// When the sound is to be heard, on the clock of the sink's pipeline; none where that is not the mixer's.
GstClockTime HeardTime(GstAppSink* sink, GstSample* sample) {
    const GstOwned<GstClock> clock(gst_element_get_clock(GST_ELEMENT(sink)));
    const GstOwned<GstClock> mixing(gst_system_clock_obtain());
    if (clock != mixing) return GST_CLOCK_TIME_NONE;
    const GstClockTime running = gst_segment_to_running_time(gst_sample_get_segment(sample), GST_FORMAT_TIME,
                                                             GST_BUFFER_PTS(gst_sample_get_buffer(sample)));
    if (!GST_CLOCK_TIME_IS_VALID(running)) return GST_CLOCK_TIME_NONE;
    return gst_element_get_base_time(GST_ELEMENT(sink)) + running +
           gst_base_sink_get_latency(GST_BASE_SINK(sink));
}

}  // namespace

AudioSink::AudioSink(std::shared_ptr<SoundMixer> roomMixer, Listener soundListener)
    : mixer(std::move(roomMixer)), listener(std::move(soundListener)) {}

GstElement* AudioSink::MakeBin(double gain) {
    // Loudness is measured before the volume: who speaks does not depend on whom this listener has turned
    // down.
    std::string description = "audioconvert ! audioresample ! ";
    const bool isTaken = mixer || listener;
    if (isTaken) {
        description += TakeText(gst_caps_to_string(SoundMixer::Format().get()));
        description += " ! level name=loudness ! appsink name=end";
    } else {
        description += "level name=loudness ! fakesink name=end";
    }
    GError* error = nullptr;
    GstElement* bin = gst_parse_bin_from_description_full(description.c_str(), TRUE, nullptr,
                                                          GST_PARSE_FLAG_FATAL_ERRORS, &error);
    const GstOwned<GError> owned(error);
    if (bin == nullptr) {
        LOG(kLogError, "Sound cannot be played: %s", owned ? owned->message : "an element is missing");
        return nullptr;
    }
    const GstOwned<GstElement> level(gst_bin_get_by_name(GST_BIN(bin), "loudness"));
    g_object_set(level.get(), "interval", kLevelInterval, "post-messages", TRUE, nullptr);
    const GstOwned<GstElement> end(gst_bin_get_by_name(GST_BIN(bin), "end"));
    g_object_set(end.get(), "sync", TRUE, nullptr);
    if (!isTaken) return bin;
    // Ahead by as much as the mixing takes, so that the sound is heard when its picture is seen.
    const gint64 lead = mixer ? mixer->Latency().count() : 0;
    g_object_set(end.get(), "wait-on-eos", FALSE, "ts-offset", -lead, nullptr);
    GstAppSinkCallbacks callbacks{};
    callbacks.new_sample = [](GstAppSink* sink, gpointer self) {
        return static_cast<AudioSink*>(self)->OnSample(sink);
    };
    gst_app_sink_set_callbacks(GST_APP_SINK(end.get()), &callbacks, this, nullptr);
    if (!mixer) return bin;
    auto heard = mixer->MakeInput(gain);
    const std::lock_guard lock(inputMutex);
    input.swap(heard);
    return bin;
}

std::shared_ptr<SoundMixer::Input> AudioSink::CurrentInput() {
    const std::lock_guard lock(inputMutex);
    return input;
}

GstFlowReturn AudioSink::OnSample(GstAppSink* sink) {
    const GstOwned<GstSample> sample(gst_app_sink_pull_sample(sink));
    if (!sample) return GST_FLOW_EOS;
    const GstClockTime heard = HeardTime(sink, sample.get());
    if (listener) listener(gst_sample_get_buffer(sample.get()), heard);
    if (const auto current = CurrentInput()) {
        const GstClockTime lead = LeadOf(sink);
        const bool isKnown = GST_CLOCK_TIME_IS_VALID(heard);
        const GstClockTime due = !isKnown ? GST_CLOCK_TIME_NONE : heard > lead ? heard - lead : 0;
        current->Push(gst_sample_get_buffer(sample.get()), due);
    }
    return GST_FLOW_OK;
}

void AudioSink::SetGain(double gain) {
    if (const auto current = CurrentInput()) current->SetGain(gain);
}

std::optional<double> AudioSink::ReadLoudness(GstMessage* message) {
    const GstStructure* structure = gst_message_get_structure(message);
    if (structure == nullptr || gst_structure_has_name(structure, "level") == FALSE) return std::nullopt;
    const GValue* levels = gst_structure_get_value(structure, "rms");
    if (levels == nullptr) return std::nullopt;
    // The element still speaks in GLib's deprecated array type.
    const auto* channels = static_cast<const GValueArray*>(g_value_get_boxed(levels));
    if (channels == nullptr || channels->n_values == 0) return std::nullopt;
    double sum = 0;
    for (guint channel = 0; channel < channels->n_values; ++channel) {
        sum += std::pow(10.0, g_value_get_double(&channels->values[channel]) / 10.0);
    }
    return sum / channels->n_values;
}

void AudioSink::Forget() {
    std::shared_ptr<SoundMixer::Input> gone;
    const std::lock_guard lock(inputMutex);
    gone.swap(input);
}

}  // namespace Corvanta::Engine
