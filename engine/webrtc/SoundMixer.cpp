#include "engine/webrtc/SoundMixer.h"

#include <gst/app/gstappsrc.h>
#include <gst/audio/audio.h>
#include <gst/base/gstbasesink.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "engine/webrtc/AudioSink.h"
#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

// How late sound may enter and still be heard, so that a busy machine does not tear holes into it.
constexpr GstClockTime kPatience = 60 * GST_MSECOND;
// Longer pieces are less work.
constexpr GstClockTime kPiece = 20 * GST_MSECOND;
// Steady sound is not moved for less.
constexpr GstClockTimeDiff kJitter = 40 * GST_MSECOND;
// Sound that is later than this would be lost; it is played when it comes.
constexpr GstClockTimeDiff kLate = 30 * GST_MSECOND;
// A source that runs ahead of itself loses its oldest sound.
constexpr guint64 kLongestQueue = 500 * GST_MSECOND;
constexpr GstClockTime kLevelInterval = 50 * GST_MSECOND;

GstClockTimeDiff Distance(GstClockTime one, GstClockTime other) {
    return std::abs(GST_CLOCK_DIFF(one, other));
}

GstClockTime Duration(gsize bytes) {
    const gsize frames = bytes / (SoundMixer::kChannels * sizeof(float));
    return gst_util_uint64_scale(frames, GST_SECOND, SoundMixer::kRate);
}

bool IsSilent(GstBuffer* buffer) {
    // All bytes are equal when the first is zero and each equals the next.
    GstMapInfo map;
    if (gst_buffer_map(buffer, &map, GST_MAP_READ) == FALSE) return false;
    const bool isSilent =
        map.size == 0 || (map.data[0] == 0 && std::memcmp(map.data, map.data + 1, map.size - 1) == 0);
    gst_buffer_unmap(buffer, &map);
    return isSilent;
}

// A pipeline whose sink waits for its first sound before it plays stands still for good when an input goes in
// the meantime: GStreamer forgets that it was on its way. So no sink in it waits.
void LetSinksPlayAtOnce(GstElement* pipeline) {
    const auto onAdded = +[](GstBin*, GstBin*, GstElement* element, gpointer) {
        if (GST_IS_BASE_SINK(element)) gst_base_sink_set_async_enabled(GST_BASE_SINK(element), FALSE);
    };
    g_signal_connect(pipeline, "deep-element-added", G_CALLBACK(onAdded), nullptr);
}

}  // namespace

SoundMixer::Input::~Input() {
    Detach();
}

void SoundMixer::Input::Attach(GstElement* roomPipeline, GstElement* mixingElement) {
    Detach();
    auto newSource = MakeElement("appsrc");
    if (!newSource) return;
    const auto format = Format();
    // The latency is what its queue can hold; a source that names none makes the mixer wait for it for ever.
    g_object_set(newSource.get(), "caps", format.get(), "format", GST_FORMAT_TIME, "is-live", TRUE,
                 "max-buffers", guint64{0}, "max-bytes", guint64{0}, "max-time", kLongestQueue, "leaky-type",
                 GST_APP_LEAKY_TYPE_DOWNSTREAM, "min-latency", gint64{0}, "max-latency",
                 static_cast<gint64>(kLongestQueue), nullptr);
    gst_bin_add(GST_BIN(roomPipeline), GST_ELEMENT(gst_object_ref(newSource.get())));
    GstOwned<GstPad> newPad(gst_element_request_pad_simple(mixingElement, "sink_%u"));
    const GstOwned<GstPad> output(gst_element_get_static_pad(newSource.get(), "src"));
    gst_pad_link(output.get(), newPad.get());
    gst_element_sync_state_with_parent(newSource.get());
    const std::lock_guard lock(elementsMutex);
    g_object_set(newPad.get(), "volume", gain, nullptr);
    source = std::move(newSource);
    pad = std::move(newPad);
    mixer.reset(GST_ELEMENT(gst_object_ref(mixingElement)));
    next = GST_CLOCK_TIME_NONE;
}

void SoundMixer::Input::Detach() {
    GstOwned<GstElement> oldSource, oldMixer;
    GstOwned<GstPad> oldPad;
    {
        const std::lock_guard lock(elementsMutex);
        oldSource = std::move(source);
        oldMixer = std::move(mixer);
        oldPad = std::move(pad);
    }
    if (!oldSource) return;
    // The pad first: it lets go of a buffer that the source would otherwise be waiting with.
    gst_element_release_request_pad(oldMixer.get(), oldPad.get());
    gst_element_set_locked_state(oldSource.get(), TRUE);
    gst_element_set_state(oldSource.get(), GST_STATE_NULL);
    const GstOwned<GstElement> bin(GST_ELEMENT(gst_object_get_parent(GST_OBJECT(oldSource.get()))));
    if (bin) gst_bin_remove(GST_BIN(bin.get()), oldSource.get());
}

void SoundMixer::Input::Push(GstBuffer* buffer, GstClockTime due) {
    const std::lock_guard lock(elementsMutex);
    if (!source) return;
    const GstClockTime now = gst_element_get_current_running_time(source.get());
    const GstClockTime start = gst_element_get_base_time(source.get());
    if (!GST_CLOCK_TIME_IS_VALID(now)) return;
    GstClockTime time = now;
    if (GST_CLOCK_TIME_IS_VALID(due) && due >= start && Distance(due - start, now) <= kLate) {
        time = due - start;
    }
    const bool isSteady = GST_CLOCK_TIME_IS_VALID(next) && Distance(next, time) <= kJitter;
    if (isSteady) time = next;
    next = time + Duration(gst_buffer_get_size(buffer));
    // Most of a room is silent at most times, and the mixer plays silence where nothing comes.
    const bool wasPausing = std::exchange(isPausing, gain == 0 || IsSilent(buffer));
    const bool isContinued = isSteady && !wasPausing;
    if (isPausing) return;

    GstBuffer* const stamped = gst_buffer_copy(buffer);
    GST_BUFFER_PTS(stamped) = time;
    GST_BUFFER_DTS(stamped) = GST_CLOCK_TIME_NONE;
    GST_BUFFER_DURATION(stamped) = next - time;
    GST_BUFFER_OFFSET(stamped) = GST_BUFFER_OFFSET_NONE;
    GST_BUFFER_OFFSET_END(stamped) = GST_BUFFER_OFFSET_NONE;
    if (isContinued) {
        GST_BUFFER_FLAG_UNSET(stamped, GST_BUFFER_FLAG_DISCONT);
    } else {
        GST_BUFFER_FLAG_SET(stamped, GST_BUFFER_FLAG_DISCONT);
    }
    gst_app_src_push_buffer(GST_APP_SRC(source.get()), stamped);
}

void SoundMixer::Input::SetGain(double linear) {
    const std::lock_guard lock(elementsMutex);
    gain = linear;
    if (pad) g_object_set(pad.get(), "volume", gain, nullptr);
}

SoundMixer::SoundMixer(EngineLoop& engineLoop) : loop(engineLoop) {}

SoundMixer::~SoundMixer() {
    Close();
}

GstOwned<GstCaps> SoundMixer::Format() {
    return GstOwned<GstCaps>(gst_caps_new_simple("audio/x-raw", "format", G_TYPE_STRING, GST_AUDIO_NE(F32),
                                                 "rate", G_TYPE_INT, kRate, "channels", G_TYPE_INT, kChannels,
                                                 "layout", G_TYPE_STRING, "interleaved", nullptr));
}

bool SoundMixer::Build(const GstOwned<GstElement>& sink) {
    const auto silence = MakeElement("audiotestsrc");
    auto mixing = MakeElement("audiomixer");
    const auto filter = MakeElement("capsfilter");
    const auto level = MakeElement("level");
    const auto convert = MakeElement("audioconvert");
    const auto resample = MakeElement("audioresample");
    if (!silence || !mixing || !filter || !level || !convert || !resample) return false;
    // Keeps the device fed while nobody is there.
    gst_util_set_object_arg(G_OBJECT(silence.get()), "wave", "silence");
    g_object_set(silence.get(), "is-live", TRUE, "samplesperbuffer",
                 static_cast<gint>(gst_util_uint64_scale(kPiece, kRate, GST_SECOND)), nullptr);
    g_object_set(mixing.get(), "latency", kPatience, "output-buffer-duration", kPiece, nullptr);
    const auto format = Format();
    g_object_set(filter.get(), "caps", format.get(), nullptr);
    g_object_set(level.get(), "interval", kLevelInterval, "post-messages", TRUE, nullptr);
    auto* const bin = GST_BIN(pipeline.get());
    for (GstElement* element : {silence.get(), mixing.get(), filter.get(), level.get(), convert.get(),
                                resample.get(), sink.get()}) {
        gst_bin_add(bin, GST_ELEMENT(gst_object_ref(element)));
    }
    if (gst_element_link_many(mixing.get(), filter.get(), level.get(), convert.get(), resample.get(),
                              sink.get(), nullptr) == FALSE ||
        gst_element_link_filtered(silence.get(), mixing.get(), format.get()) == FALSE) {
        return false;
    }
    mixer = std::move(mixing);
    return true;
}

bool SoundMixer::Open(const GstOwned<GstElement>& sink, std::function<void()> onFailure) {
    if (!sink) return false;
    const std::lock_guard lock(elementsMutex);
    CloseLocked();
    failureHandler = std::move(onFailure);
    pipeline.reset(GST_ELEMENT(gst_object_ref_sink(gst_pipeline_new(nullptr))));
    // The sources' clock too, whatever the device would offer.
    const GstOwned<GstClock> clock(gst_system_clock_obtain());
    gst_pipeline_use_clock(GST_PIPELINE(pipeline.get()), clock.get());
    LetSinksPlayAtOnce(pipeline.get());
    if (!Build(sink) ||
        gst_element_set_state(pipeline.get(), GST_STATE_PLAYING) == GST_STATE_CHANGE_FAILURE) {
        LOG(kLogError, "The room's sound cannot be played");
        CloseLocked();
        return false;
    }
    const GstOwned<GstBus> bus(gst_element_get_bus(pipeline.get()));
    watch.reset(gst_bus_create_watch(bus.get()));
    const GstBusFunc onMessage = [](GstBus*, GstMessage* message, gpointer self) -> gboolean {
        return static_cast<SoundMixer*>(self)->OnMessage(message) ? TRUE : FALSE;
    };
    g_source_set_callback(watch.get(), G_SOURCE_FUNC(onMessage), this, nullptr);
    g_source_attach(watch.get(), loop.Context());
    for (const auto& each : inputs) {
        if (const auto input = each.lock()) input->Attach(pipeline.get(), mixer.get());
    }
    return true;
}

void SoundMixer::Close() {
    const std::lock_guard lock(elementsMutex);
    CloseLocked();
}

void SoundMixer::CloseLocked() {
    if (watch) {
        g_source_destroy(watch.get());
        watch.reset();
    }
    if (pipeline) gst_element_set_state(pipeline.get(), GST_STATE_NULL);
    std::erase_if(inputs, [](const auto& each) {
        const auto input = each.lock();
        if (input) input->Detach();
        return !input;
    });
    pipeline.reset();
    mixer.reset();
    loudness = 0;
}

std::shared_ptr<SoundMixer::Input> SoundMixer::MakeInput(double gain) {
    std::shared_ptr<Input> input(new Input(gain));
    const std::lock_guard lock(elementsMutex);
    std::erase_if(inputs, [](const auto& each) { return each.expired(); });
    inputs.push_back(input);
    if (pipeline) input->Attach(pipeline.get(), mixer.get());
    return input;
}

std::chrono::nanoseconds SoundMixer::Latency() const {
    const std::lock_guard lock(elementsMutex);
    GstClockTime shortest = kPatience + kPiece;
    const GstOwned<GstQuery> query(gst_query_new_latency());
    if (pipeline && gst_element_query(pipeline.get(), query.get()) != FALSE) {
        gst_query_parse_latency(query.get(), nullptr, &shortest, nullptr);
    }
    return std::chrono::nanoseconds(shortest);
}

bool SoundMixer::OnMessage(GstMessage* message) {
    switch (GST_MESSAGE_TYPE(message)) {
        case GST_MESSAGE_ELEMENT:
            if (const auto measured = AudioSink::ReadLoudness(message)) loudness = *measured;
            break;
        case GST_MESSAGE_LATENCY: gst_bin_recalculate_latency(GST_BIN(pipeline.get())); break;
        case GST_MESSAGE_ERROR: {
            GError* error = nullptr;
            gst_message_parse_error(message, &error, nullptr);
            const GstOwned<GError> owned(error);
            // An input that is taken away complains that nobody takes its sound.
            if (GST_IS_APP_SRC(GST_MESSAGE_SRC(message))) break;
            LOG(kLogWarning, "The room's sound is played no further: %s", error->message);
            const auto handler = std::exchange(failureHandler, nullptr);
            Close();
            if (handler) handler();
            return false;
        }
        default: break;
    }
    return true;
}

}  // namespace Corvanta::Engine
