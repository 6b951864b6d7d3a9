#include "engine/peer/OutboundFeed.h"

#include <gst/video/video.h>

#include <algorithm>
#include <array>
#include <utility>

#include "engine/webrtc/SoundMixer.h"
#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

// The encoder's input: what is older is dropped, so that a busy machine keeps to real time.
constexpr guint64 kQueuedPictures = 2;
constexpr GstClockTime kQueuedSound = 200 * GST_MSECOND;
// Peers that ask for key frames one after the other share one.
constexpr guint64 kKeyFrameInterval = 200 * GST_MSECOND;
// One peer alone is given a key frame so often at most, which keeps a bad one from costing the others much.
constexpr std::chrono::milliseconds kRequestInterval{1000};
// From an encoder's failure to the next attempt.
constexpr std::chrono::milliseconds kReopenAfter{1000};
// A source that rests longer gets its last picture sent again to whoever needs a key frame.
constexpr GstClockTime kRestingTime = 150 * GST_MSECOND;
// A source that rests gets its last picture sent again so often: one that was lost on its way is replaced.
constexpr guint kRepeatIntervalMs = 500;
// Sound whose time differs by less from the end of the piece before is continued from there.
constexpr GstClockTimeDiff kSoundTolerance = 60 * GST_MSECOND;
constexpr std::uint32_t kLowestBitrate = 50'000;

// All pipelines of the peers run on the system's clock from its own zero, so that times mean the same in
// each.
GstClockTime Now() {
    const GstOwned<GstClock> clock(gst_system_clock_obtain());
    return gst_clock_get_time(clock.get());
}

GstVideoFormat FormatOf(VideoFrameBufferType type) {
    switch (type) {
        case VideoFrameBufferType::RGB: return GST_VIDEO_FORMAT_BGRA;
        case VideoFrameBufferType::YUV420: return GST_VIDEO_FORMAT_I420;
        case VideoFrameBufferType::YUV422: return GST_VIDEO_FORMAT_Y42B;
        case VideoFrameBufferType::YUV444: return GST_VIDEO_FORMAT_Y444;
        case VideoFrameBufferType::YUV420_16: return GST_VIDEO_FORMAT_I420_10LE;
        case VideoFrameBufferType::YUV422_16: return GST_VIDEO_FORMAT_I422_10LE;
        case VideoFrameBufferType::YUV444_16: return GST_VIDEO_FORMAT_Y444_10LE;
        default: return GST_VIDEO_FORMAT_UNKNOWN;
    }
}

GstVideoColorimetry ColorOf(const ColorSpace& color, bool isRgb) {
    GstVideoColorimetry described{};
    described.range =
        color.GetRange() == ColorRange::Full ? GST_VIDEO_COLOR_RANGE_0_255 : GST_VIDEO_COLOR_RANGE_16_235;
    described.matrix = gst_video_color_matrix_from_iso(static_cast<guint>(color.GetMatrix()));
    if (isRgb) {
        described.range = GST_VIDEO_COLOR_RANGE_0_255;
        described.matrix = GST_VIDEO_COLOR_MATRIX_RGB;
    } else if (described.matrix == GST_VIDEO_COLOR_MATRIX_UNKNOWN ||
               described.matrix == GST_VIDEO_COLOR_MATRIX_RGB) {
        described.matrix = GST_VIDEO_COLOR_MATRIX_BT601;
    }
    // Transfer and primaries are passed through, so the two ends name them alike and nothing is converted.
    described.transfer = GST_VIDEO_TRANSFER_BT709;
    described.primaries = GST_VIDEO_COLOR_PRIMARIES_BT709;
    return described;
}

// The picture's planes as they lie; the buffer keeps the picture.
GstBuffer* WrapPicture(const std::shared_ptr<const MappedPicture>& picture, const GstVideoInfo& info) {
    GstBuffer* buffer = gst_buffer_new();
    std::array<gsize, GST_VIDEO_MAX_PLANES> offsets{};
    std::array<gint, GST_VIDEO_MAX_PLANES> strides{};
    gsize offset = 0;
    const guint planes = GST_VIDEO_INFO_N_PLANES(&info);
    for (guint plane = 0; plane < planes; ++plane) {
        const int index = static_cast<int>(plane);
        const auto rows = static_cast<gsize>(GST_VIDEO_INFO_COMP_HEIGHT(&info, plane));
        const auto size = static_cast<gsize>(picture->Stride(index)) * (rows - 1) +
                          static_cast<gsize>(GST_VIDEO_INFO_COMP_WIDTH(&info, plane)) *
                              static_cast<gsize>(GST_VIDEO_INFO_COMP_PSTRIDE(&info, plane));
        gst_buffer_append_memory(
            buffer, gst_memory_new_wrapped(
                        GST_MEMORY_FLAG_READONLY, const_cast<uint8_t*>(picture->Plane(index)), size, 0, size,
                        new std::shared_ptr<const MappedPicture>(picture), [](gpointer data) {
                            delete static_cast<std::shared_ptr<const MappedPicture>*>(data);
                        }));
        offsets[plane] = offset;
        strides[plane] = picture->Stride(index);
        offset += size;
    }
    gst_buffer_add_video_meta_full(buffer, GST_VIDEO_FRAME_FLAG_NONE, GST_VIDEO_INFO_FORMAT(&info),
                                   static_cast<guint>(GST_VIDEO_INFO_WIDTH(&info)),
                                   static_cast<guint>(GST_VIDEO_INFO_HEIGHT(&info)), planes, offsets.data(),
                                   strides.data());
    return buffer;
}

constexpr const char* kPipeline =
    "appsrc name=pictures is-live=true format=time leaky-type=downstream ! videoconvertscale ! "
    "capsfilter name=filter ! vp8enc name=encoder deadline=1 cpu-used=8 threads=1 error-resilient=1 "
    "keyframe-max-dist=60 end-usage=cbr lag-in-frames=0 buffer-size=600 buffer-initial-size=300 "
    "buffer-optimal-size=400 undershoot=95 ! "
    "rtpvp8pay picture-id-mode=2 pt=96 mtu=1200 timestamp-offset=0 ! "
    "appsink name=video sync=false async=false "
    "appsrc name=sound is-live=true format=time leaky-type=downstream ! audioconvert ! audioresample ! "
    "opusenc bitrate=32000 frame-size=20 ! rtpopuspay pt=111 timestamp-offset=0 ! "
    "appsink name=audio sync=false async=false";

}  // namespace

OutboundFeed::OutboundFeed(EngineLoop& engineLoop, Settings feedSettings)
    : loop(engineLoop), settings(std::move(feedSettings)), targetBitrate(settings.targetBitrate) {}

OutboundFeed::~OutboundFeed() {
    Close();
}

bool OutboundFeed::Open() {
    Close();
    if (!EnsureGStreamer() || !Build()) {
        Release();
        return false;
    }
    return true;
}

void OutboundFeed::Close() {
    ++openings;
    Release();
}

bool OutboundFeed::Build() {
    GError* error = nullptr;
    GstElement* parsed = gst_parse_launch_full(kPipeline, nullptr, GST_PARSE_FLAG_FATAL_ERRORS, &error);
    const GstOwned<GError> owned(error);
    if (parsed == nullptr) {
        LOG(kLogError, "\"%s\" cannot be sent: %s", settings.name.c_str(),
            owned ? owned->message : "an element is missing");
        return false;
    }
    pipeline.reset(GST_ELEMENT(gst_object_ref_sink(parsed)));
    const GstOwned<GstClock> clock(gst_system_clock_obtain());
    gst_pipeline_use_clock(GST_PIPELINE(parsed), clock.get());
    gst_element_set_start_time(parsed, GST_CLOCK_TIME_NONE);
    gst_element_set_base_time(parsed, 0);
    const auto find = [&](const char* name) {
        return GstOwned<GstElement>(gst_bin_get_by_name(GST_BIN(parsed), name));
    };
    const auto connect = [&](const char* name, GstFlowReturn (*onSample)(GstAppSink*, gpointer)) {
        GstAppSinkCallbacks callbacks{};
        callbacks.new_sample = onSample;
        gst_app_sink_set_callbacks(GST_APP_SINK(find(name).get()), &callbacks, this, nullptr);
    };
    connect("video", [](GstAppSink* sink, gpointer self) {
        return static_cast<OutboundFeed*>(self)->OnPacket(sink, true);
    });
    connect("audio", [](GstAppSink* sink, gpointer self) {
        return static_cast<OutboundFeed*>(self)->OnPacket(sink, false);
    });

    const GstOwned<GstBus> bus(gst_element_get_bus(parsed));
    watch.reset(gst_bus_create_watch(bus.get()));
    const GstBusFunc onMessage = [](GstBus*, GstMessage* message, gpointer self) -> gboolean {
        return static_cast<OutboundFeed*>(self)->OnMessage(message) ? TRUE : FALSE;
    };
    g_source_set_callback(watch.get(), G_SOURCE_FUNC(onMessage), this, nullptr);
    g_source_attach(watch.get(), loop.Context());

    repeater.reset(g_timeout_source_new(kRepeatIntervalMs));
    const GSourceFunc repeat = [](gpointer self) -> gboolean {
        // A little less, since a timer is never exact.
        static_cast<OutboundFeed*>(self)->RepeatPicture(kRepeatIntervalMs * GST_MSECOND * 7 / 8);
        return G_SOURCE_CONTINUE;
    };
    g_source_set_callback(repeater.get(), repeat, this, nullptr);
    g_source_attach(repeater.get(), loop.Context());

    auto encoding = find("encoder");
    g_object_set(encoding.get(), "min-force-key-unit-interval", kKeyFrameInterval, nullptr);
    const GstOwned<GstPad> encoded(gst_element_get_static_pad(encoding.get(), "src"));
    const auto count = [](GstPad*, GstPadProbeInfo* info, gpointer data) -> GstPadProbeReturn {
        auto* const self = static_cast<OutboundFeed*>(data);
        ++self->pictures;
        if (!GST_BUFFER_FLAG_IS_SET(GST_PAD_PROBE_INFO_BUFFER(info), GST_BUFFER_FLAG_DELTA_UNIT)) {
            ++self->keyFrames;
        }
        return GST_PAD_PROBE_OK;
    };
    gst_pad_add_probe(encoded.get(), GST_PAD_PROBE_TYPE_BUFFER, count, this, nullptr);
    {
        const std::lock_guard lock(pictureMutex);
        videoSource = find("pictures");
        pictureFilter = find("filter");
        encoder = std::move(encoding);
        g_object_set(videoSource.get(), "max-buffers", kQueuedPictures, "max-bytes", guint64{0}, nullptr);
    }
    {
        const std::lock_guard lock(soundMutex);
        audioSource = find("sound");
        const auto format = SoundMixer::Format();
        g_object_set(audioSource.get(), "caps", format.get(), "max-time", kQueuedSound, "max-bytes",
                     guint64{0}, nullptr);
    }
    ApplyBitrate();
    return gst_element_set_state(parsed, GST_STATE_PLAYING) != GST_STATE_CHANGE_FAILURE;
}

void OutboundFeed::Release() {
    for (GstOwned<GSource>* source : {&watch, &repeater}) {
        if (*source) g_source_destroy(source->get());
        source->reset();
    }
    {
        const std::lock_guard lock(pictureMutex);
        videoSource.reset();
        pictureFilter.reset();
        encoder.reset();
        lastPicture.reset();
        filteredSize = {};
        pictureInfo = {};
        lastPictureTime = GST_CLOCK_TIME_NONE;
    }
    {
        const std::lock_guard lock(soundMutex);
        audioSource.reset();
        nextSound = GST_CLOCK_TIME_NONE;
    }
    if (pipeline) gst_element_set_state(pipeline.get(), GST_STATE_NULL);
    pipeline.reset();
}

void OutboundFeed::PushPicture(std::shared_ptr<const MappedPicture> picture) {
    if (!picture || !videoEnabled) return;
    const std::lock_guard lock(pictureMutex);
    if (!videoSource || FormatOf(picture->Type()) == GST_VIDEO_FORMAT_UNKNOWN) return;
    lastPicture = std::move(picture);
    if (!hasVideoOutlets) return;
    // An eighth of tolerance, since pictures come a little early or late.
    const GstClockTime interval =
        GST_SECOND * 7 / 8 / static_cast<GstClockTime>(std::max(settings.frameRate, 1));
    if (GST_CLOCK_TIME_IS_VALID(lastPictureTime) && Now() < lastPictureTime + interval) return;
    PushWrapped(lastPicture);
}

void OutboundFeed::SetPictureCaps(const MappedPicture& picture, const VideoFrameAdaptation& wanted) {
    const GstVideoFormat format = FormatOf(picture.Type());
    GstVideoInfo info;
    gst_video_info_set_format(&info, format, static_cast<guint>(picture.Width()),
                              static_cast<guint>(picture.Height()));
    info.colorimetry = ColorOf(picture.Color(), GST_VIDEO_INFO_IS_RGB(&info));
    info.fps_n = 0;
    info.fps_d = 1;
    const PictureSize size = EncodedSize(picture.Width(), picture.Height(), wanted);
    if (size != filteredSize) {
        filteredSize = size;
        std::string text = "video/x-raw,format=I420,pixel-aspect-ratio=1/1,colorimetry=";
        text += kSentColorimetry;
        text += ",width=" + std::to_string(size.width);
        text += ",height=" + std::to_string(size.height);
        const GstOwned<GstCaps> caps(gst_caps_from_string(text.c_str()));
        g_object_set(pictureFilter.get(), "caps", caps.get(), nullptr);
        const std::lock_guard lock(settingsMutex);
        encodedSize = size;
    }
    const bool isFirst = pictureInfo.finfo == nullptr;
    if (!isFirst && gst_video_info_is_equal(&info, &pictureInfo) != FALSE) return;
    pictureInfo = info;
    const GstOwned<GstCaps> caps(gst_video_info_to_caps(&info));
    gst_app_src_set_caps(GST_APP_SRC(videoSource.get()), caps.get());
}

void OutboundFeed::PushWrapped(const std::shared_ptr<const MappedPicture>& picture) {
    VideoFrameAdaptation wanted;
    {
        const std::lock_guard lock(settingsMutex);
        wanted = adaptation;
    }
    SetPictureCaps(*picture, wanted);
    GstBuffer* buffer = WrapPicture(picture, pictureInfo);
    lastPictureTime = Now();
    GST_BUFFER_PTS(buffer) = lastPictureTime;
    gst_app_src_push_buffer(GST_APP_SRC(videoSource.get()), buffer);
}

void OutboundFeed::PushSound(GstBuffer* samples, GstClockTime due) {
    if (!audioEnabled || !hasAudioOutlets || samples == nullptr) return;
    constexpr gsize kFrameBytes = sizeof(float) * SoundMixer::kChannels;
    const GstClockTime length =
        gst_util_uint64_scale(gst_buffer_get_size(samples) / kFrameBytes, GST_SECOND, SoundMixer::kRate);
    const std::lock_guard lock(soundMutex);
    if (!audioSource || length == 0) return;
    const GstClockTime time = GST_CLOCK_TIME_IS_VALID(due) ? due : Now();
    const bool isSteady =
        GST_CLOCK_TIME_IS_VALID(nextSound) &&
        std::abs(GST_CLOCK_DIFF(nextSound, time)) < kSoundTolerance + static_cast<GstClockTimeDiff>(length);
    // Shares the samples.
    GstBuffer* buffer = gst_buffer_copy(samples);
    GST_BUFFER_PTS(buffer) = isSteady ? nextSound : time;
    GST_BUFFER_DTS(buffer) = GST_CLOCK_TIME_NONE;
    GST_BUFFER_DURATION(buffer) = length;
    GST_BUFFER_FLAG_UNSET(buffer, GST_BUFFER_FLAG_DISCONT);
    if (!isSteady) GST_BUFFER_FLAG_SET(buffer, GST_BUFFER_FLAG_DISCONT);
    nextSound = GST_BUFFER_PTS(buffer) + length;
    gst_app_src_push_buffer(GST_APP_SRC(audioSource.get()), buffer);
}

void OutboundFeed::SetVideoEnabled(bool enabled) {
    if (videoEnabled.exchange(enabled) == enabled) return;
    if (enabled) {
        RequestKeyFrame();
        return;
    }
    // A picture of before is not to be sent when it is turned on again.
    const std::lock_guard lock(pictureMutex);
    lastPicture.reset();
}

void OutboundFeed::SetAudioEnabled(bool enabled) {
    audioEnabled = enabled;
}

void OutboundFeed::SetAdaptation(const VideoFrameAdaptation& wanted) {
    {
        const std::lock_guard lock(settingsMutex);
        if (adaptation == wanted) return;
        adaptation = wanted;
    }
    ApplyBitrate();
}

void OutboundFeed::SetTargetBitrate(std::uint32_t bitsPerSecond) {
    {
        const std::lock_guard lock(settingsMutex);
        targetBitrate = bitsPerSecond;
    }
    ApplyBitrate();
}

void OutboundFeed::LimitBitrate(std::uint32_t bitsPerSecond) {
    {
        const std::lock_guard lock(settingsMutex);
        bitrateLimit = bitsPerSecond;
    }
    ApplyBitrate();
}

void OutboundFeed::ApplyBitrate() {
    std::uint32_t wanted = 0;
    {
        const std::lock_guard lock(settingsMutex);
        wanted = adaptation.bitrate != 0 ? adaptation.bitrate : targetBitrate;
        if (bitrateLimit != 0) wanted = std::min(wanted, bitrateLimit);
    }
    wanted = std::clamp<std::uint32_t>(wanted, kLowestBitrate, G_MAXINT32);
    bitrate = wanted;
    const std::lock_guard lock(pictureMutex);
    if (encoder) g_object_set(encoder.get(), "target-bitrate", static_cast<gint>(wanted), nullptr);
}

void OutboundFeed::RequestKeyFrame() {
    {
        const std::lock_guard lock(pictureMutex);
        if (!encoder) return;
        const GstOwned<GstPad> pad(gst_element_get_static_pad(encoder.get(), "src"));
        gst_pad_send_event(pad.get(),
                           gst_video_event_new_upstream_force_key_unit(GST_CLOCK_TIME_NONE, TRUE, 0));
    }
    // One is enough for all who ask meanwhile.
    if (repeatIsPlanned.exchange(true)) return;
    loop.PostAfter(std::chrono::milliseconds(kRestingTime / GST_MSECOND), [weak = weak_from_this()] {
        const auto self = weak.lock();
        if (!self) return;
        self->repeatIsPlanned = false;
        self->RepeatPicture(kRestingTime);
    });
}

void OutboundFeed::RepeatPicture(GstClockTime rest) {
    if (!videoEnabled || !hasVideoOutlets) return;
    const std::lock_guard lock(pictureMutex);
    if (!videoSource || !lastPicture) return;
    if (GST_CLOCK_TIME_IS_VALID(lastPictureTime) && Now() < lastPictureTime + rest) return;
    PushWrapped(lastPicture);
}

void OutboundFeed::AddOutlet(Outlets& outlets, std::atomic<bool>& isWanted,
                             const std::shared_ptr<PacketOutlet>& outlet) {
    {
        const std::lock_guard lock(outletsMutex);
        outlets.push_back(outlet);
        isWanted = true;
    }
    outlet->SetKeyFrameSource(
        [weak = weak_from_this(), weakOutlet = std::weak_ptr(outlet), &engineLoop = loop] {
            engineLoop.Post([weak] {
                if (const auto self = weak.lock()) self->RequestKeyFrame();
            });
            engineLoop.PostAfter(kRequestInterval, [weakOutlet] {
                if (const auto asking = weakOutlet.lock()) asking->EndKeyFrameInterval();
            });
        });
}

void OutboundFeed::AddVideoOutlet(const std::shared_ptr<PacketOutlet>& outlet) {
    AddOutlet(videoOutlets, hasVideoOutlets, outlet);
}

void OutboundFeed::AddAudioOutlet(const std::shared_ptr<PacketOutlet>& outlet) {
    AddOutlet(audioOutlets, hasAudioOutlets, outlet);
}

void OutboundFeed::RemoveOutlet(const std::shared_ptr<PacketOutlet>& outlet) {
    {
        const std::lock_guard lock(outletsMutex);
        std::erase(videoOutlets, outlet);
        std::erase(audioOutlets, outlet);
        hasVideoOutlets = !videoOutlets.empty();
        hasAudioOutlets = !audioOutlets.empty();
    }
    outlet->SetKeyFrameSource({});
}

OutboundFeed::Counters OutboundFeed::Count() const {
    Counters counters{pictures, keyFrames, videoBytes, audioBytes, {}};
    const std::lock_guard lock(settingsMutex);
    counters.size = encodedSize;
    return counters;
}

bool OutboundFeed::OnMessage(GstMessage* message) {
    if (GST_MESSAGE_TYPE(message) != GST_MESSAGE_ERROR) return true;
    GError* error = nullptr;
    gst_message_parse_error(message, &error, nullptr);
    const GstOwned<GError> owned(error);
    LOG(kLogError, "\"%s\" is not sent for a moment: %s", settings.name.c_str(), error->message);
    Release();
    ReopenLater();
    return false;
}

void OutboundFeed::ReopenLater() {
    loop.PostAfter(kReopenAfter, [weak = weak_from_this(), failed = ++openings] {
        const auto self = weak.lock();
        if (!self || self->openings != failed) return;
        if (!self->Build()) {
            self->Release();
            self->ReopenLater();
        }
    });
}

GstFlowReturn OutboundFeed::OnPacket(GstAppSink* sink, bool isVideo) {
    const GstOwned<GstSample> sample(gst_app_sink_pull_sample(sink));
    if (!sample) return GST_FLOW_EOS;
    if (!(isVideo ? videoEnabled : audioEnabled)) return GST_FLOW_OK;
    Outlets receivers;
    {
        const std::lock_guard lock(outletsMutex);
        receivers = isVideo ? videoOutlets : audioOutlets;
    }
    const auto deliver = [&](GstBuffer* packet) {
        (isVideo ? videoBytes : audioBytes) += gst_buffer_get_size(packet);
        for (const auto& receiver : receivers) receiver->Push(packet);
    };
    if (GstBufferList* list = gst_sample_get_buffer_list(sample.get()); list != nullptr) {
        for (guint index = 0; index < gst_buffer_list_length(list); ++index) {
            deliver(gst_buffer_list_get(list, index));
        }
    } else if (GstBuffer* packet = gst_sample_get_buffer(sample.get()); packet != nullptr) {
        deliver(packet);
    }
    return GST_FLOW_OK;
}

}  // namespace Corvanta::Engine
