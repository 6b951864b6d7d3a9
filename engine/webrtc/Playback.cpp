#include "engine/webrtc/Playback.h"

#include <gst/pbutils/missing-plugins.h>

#include <algorithm>
#include <string_view>
#include <utility>

#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

// A still picture, or a clip of one frame, is not to be shown over and over as fast as the machine can.
constexpr milliseconds kShortestLoop{500};
// Rounds of a segment follow each other before the pictures are shown; the queues in between slow them down.
constexpr milliseconds kShortestSegment{10};
// How long a source may say nothing at all about itself, the first time; then it is opened again. GStreamer's
// decoder bin loses the error of a demuxer now and then, when it comes while the demuxer is being connected.
constexpr milliseconds kFilePatience{2000};
constexpr milliseconds kNetworkPatience{20000};
constexpr unsigned kSilentOpenings = 3;
// Some sources accept the seek to a segment and then fall silent.
constexpr milliseconds kCueingPatience{5000};
constexpr milliseconds kFirstRetry{1000};
constexpr milliseconds kLongestRetry{30000};

// The colour description that a container gives overrides the video's own in the parsers, and the MP4 demuxer
// loses its range on the way: full-range files would look washed out. So the container's goes aside, to be
// used where the video says nothing.
GstPadProbeReturn TakeColorAside(GstPad*, GstPadProbeInfo* probe, gpointer data) {
    GstEvent* event = GST_PAD_PROBE_INFO_EVENT(probe);
    if (GST_EVENT_TYPE(event) != GST_EVENT_CAPS) return GST_PAD_PROBE_OK;
    GstCaps* caps = nullptr;
    gst_event_parse_caps(event, &caps);
    const char* text = gst_structure_get_string(gst_caps_get_structure(caps, 0), "colorimetry");
    if (text == nullptr) return GST_PAD_PROBE_OK;
    GstVideoColorimetry color{};
    if (gst_video_colorimetry_from_string(&color, text) != FALSE) {
        (*static_cast<std::shared_ptr<ContainerColor>*>(data))->Set(color);
    }
    const GstOwned<GstCaps> stripped(gst_caps_copy(caps));
    gst_structure_remove_field(gst_caps_get_structure(stripped.get(), 0), "colorimetry");
    GstEvent* replacement = gst_event_new_caps(stripped.get());
    gst_event_set_seqnum(replacement, gst_event_get_seqnum(event));
    GST_PAD_PROBE_INFO_DATA(probe) = replacement;
    gst_event_unref(event);
    return GST_PAD_PROBE_OK;
}

// Whether the tags say that the stream's pictures lie on their side or are mirrored.
bool SaysRotated(GstEvent* event) {
    if (GST_EVENT_TYPE(event) != GST_EVENT_TAG) return false;
    GstTagList* tags = nullptr;
    gst_event_parse_tag(event, &tags);
    gchar* orientation = nullptr;
    return gst_tag_list_get_string(tags, GST_TAG_IMAGE_ORIENTATION, &orientation) != FALSE &&
           TakeText(orientation) != "rotate-0";
}

}  // namespace

Playback::Playback(EngineLoop& engineLoop, PlaybackSource playedSource, std::shared_ptr<SoundMixer> mixer,
                   PlaybackEvents handlers)
    : loop(engineLoop),
      source(std::move(playedSource)),
      events(std::move(handlers)),
      videoSink(source.name, containerColor,
                [this](const std::shared_ptr<const MappedPicture>& picture) {
                    if (!hasDelivered.exchange(true)) PostHere([](Playback& self) { self.OnFirstPicture(); });
                    events.picture(picture);
                }),
      audioSink(std::move(mixer), events.sound) {}

Playback::~Playback() {
    Close();
}

bool Playback::IsNetworkSource() const {
    return !source.uri.empty() && !source.uri.starts_with("file:");
}

void Playback::PostHere(std::function<void(Playback&)> task) {
    PostHereAfter(milliseconds::zero(), std::move(task));
}

void Playback::PostHereAfter(milliseconds delay, std::function<void(Playback&)> task) {
    loop.PostAfter(delay, [weak = weak_from_this(), current = generation.load(), task = std::move(task)] {
        const auto self = weak.lock();
        if (self && self->generation == current) task(*self);
    });
}

void Playback::Open() {
    Close();
    stage = Stage::Opening;
    pipeline.reset(GST_ELEMENT(gst_object_ref_sink(gst_pipeline_new(nullptr))));
    const GstOwned<GstBus> bus(gst_element_get_bus(pipeline.get()));
    watch.reset(gst_bus_create_watch(bus.get()));
    const GstBusFunc onMessage = [](GstBus*, GstMessage* message, gpointer self) -> gboolean {
        return static_cast<Playback*>(self)->OnMessage(message) ? TRUE : FALSE;
    };
    g_source_set_callback(watch.get(), G_SOURCE_FUNC(onMessage), this, nullptr);
    g_source_attach(watch.get(), loop.Context());

    const bool isBuilt = IsCapture() ? BuildCapture() : source.uri.empty() ? BuildClip() : BuildUri();
    if (!isBuilt) {
        Fail(IsCapture() ? "the device is not there" : "the machine lacks a part of GStreamer");
        return;
    }
    const GstStateChangeReturn result = gst_element_set_state(pipeline.get(), GST_STATE_PAUSED);
    isLive = result == GST_STATE_CHANGE_NO_PREROLL;
    // A failure comes as a message with its reason; a live source has nothing to wait for.
    if (isLive) {
        stage = Stage::Ready;
        StartWhenReady();
    } else if (!clip) {
        const auto patience = (IsNetworkSource() ? kNetworkPatience : kFilePatience) * (1U << silentOpenings);
        PostHereAfter(patience, [](Playback& self) { self.OnSilence(); });
    }
}

void Playback::OnSilence() {
    if (stage != Stage::Opening || hasVideo || hasSound) return;
    if (++silentOpenings < kSilentOpenings) {
        Open();
    } else {
        silentOpenings = 0;
        Fail("nothing is found in it");
    }
}

bool Playback::BuildClip() {
    clip = std::make_unique<ClipSource>(source.makeScene());
    GstElement* video = videoSink.MakeBin(clip->PictureCaps(), false, source.shape);
    GstElement* sound = audioSink.MakeBin(gain);
    if (clip->Video() == nullptr || clip->Audio() == nullptr || video == nullptr || sound == nullptr) {
        if (video != nullptr) gst_object_unref(video);
        if (sound != nullptr) gst_object_unref(sound);
        return false;
    }
    hasVideo = true;
    hasSound = true;
    gst_bin_add_many(GST_BIN(pipeline.get()), clip->Video(), video, clip->Audio(), sound, nullptr);
    return gst_element_link(clip->Video(), video) != FALSE && gst_element_link(clip->Audio(), sound) != FALSE;
}

bool Playback::BuildUri() {
    const auto decoder = MakeElement("uridecodebin");
    if (!decoder) return false;
    // Decoders on a graphics card leave the pictures there, out of the frame objects' reach.
    g_object_set(decoder.get(), "uri", source.uri.c_str(), "force-sw-decoders", TRUE, nullptr);
    ConnectDecoder(decoder.get());
    return gst_bin_add(GST_BIN(pipeline.get()), GST_ELEMENT(gst_object_ref(decoder.get()))) != FALSE;
}

bool Playback::BuildCapture() {
    const auto capture = source.makeCapture();
    // Cameras may give compressed pictures.
    const auto decoder = MakeElement("decodebin");
    if (!capture || !decoder) return false;
    ConnectDecoder(decoder.get());
    gst_bin_add_many(GST_BIN(pipeline.get()), GST_ELEMENT(gst_object_ref(capture.get())),
                     GST_ELEMENT(gst_object_ref(decoder.get())), nullptr);
    return gst_element_link(capture.get(), decoder.get()) != FALSE;
}

void Playback::ConnectDecoder(GstElement* decoder) {
    // The handlers run while the pipeline does, which Close ends.
    g_signal_connect(decoder, "pad-added",
                     G_CALLBACK(+[](GstElement*, GstPad* pad, Playback* self) { self->OnPadAdded(pad); }),
                     this);
    g_signal_connect(decoder, "no-more-pads", G_CALLBACK(+[](GstElement*, Playback* self) {
                         self->PostHere([](Playback& playback) {
                             if (!playback.hasVideo) playback.ReportWithoutPicture("it has no video");
                         });
                     }),
                     this);
    g_signal_connect(pipeline.get(), "deep-element-added",
                     G_CALLBACK(+[](GstBin*, GstBin*, GstElement* element, Playback* self) {
                         self->OnElementAdded(element);
                     }),
                     this);
}

void Playback::OnElementAdded(GstElement* element) {
    const GstElementFactory* factory = gst_element_get_factory(element);
    if (factory == nullptr) return;
    const std::string_view name(GST_OBJECT_NAME(factory));
    // Known to fall silent after a seek to a segment.
    if (name == "tsdemux") isWithoutSegments = true;
    if (name != "h264parse" && name != "h265parse") return;
    const GstOwned<GstPad> pad(gst_element_get_static_pad(element, "sink"));
    gst_pad_add_probe(pad.get(), GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM, TakeColorAside,
                      new std::shared_ptr<ContainerColor>(containerColor),
                      [](gpointer data) { delete static_cast<std::shared_ptr<ContainerColor>*>(data); });
}

void Playback::OnPadAdded(GstPad* pad) {
    const GstOwned<GstCaps> caps(gst_pad_get_current_caps(pad));
    if (!caps) return;
    const std::string_view kind(gst_structure_get_name(gst_caps_get_structure(caps.get(), 0)));
    GstElement* bin = nullptr;
    // The first stream of each kind is played; a file may have more.
    if (kind == "video/x-raw" && !hasVideo.exchange(true)) {
        bin = videoSink.MakeBin(caps.get(), isRotated, source.shape);
    }
    if (kind == "audio/x-raw" && !hasSound.exchange(true)) bin = audioSink.MakeBin(gain);
    if (bin == nullptr) return;
    gst_bin_add(GST_BIN(pipeline.get()), bin);
    if (kind == "video/x-raw") {
        gst_pad_add_probe(pad, GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM, OnVideoEvent, this, nullptr);
    }
    const GstOwned<GstPad> sink(gst_element_get_static_pad(bin, "sink"));
    if (gst_pad_link(pad, sink.get()) != GST_PAD_LINK_OK) {
        LOG(kLogError, "\"%s\": a stream of kind %s cannot be played", source.name.c_str(),
            TakeText(gst_caps_to_string(caps.get())).c_str());
    }
    gst_element_sync_state_with_parent(bin);
}

GstPadProbeReturn Playback::OnVideoEvent(GstPad*, GstPadProbeInfo* probe, gpointer data) {
    auto* const self = static_cast<Playback*>(data);
    // Few clips are turned and not every format can be, so the element for it is only there when it is
    // needed; the tags that say so come too late for that, but before the first picture.
    if (SaysRotated(GST_PAD_PROBE_INFO_EVENT(probe)) && !self->isRotated.exchange(true)) {
        self->PostHere([](Playback& playback) { playback.Open(); });
    }
    return GST_PAD_PROBE_OK;
}

void Playback::Play() {
    isWanted = true;
    StartWhenReady();
}

void Playback::StartWhenReady() {
    if (!isWanted || stage != Stage::Ready) return;
    if (clip) clip->SetStart(steady_clock::now() - source.clipEpoch);
    gst_element_set_state(pipeline.get(), GST_STATE_PLAYING);
}

void Playback::Close() {
    ++generation;
    stage = Stage::Closed;
    if (watch) {
        g_source_destroy(watch.get());
        watch.reset();
    }
    if (pipeline) {
        // Ends the streaming threads, and with them every event.
        gst_element_set_state(pipeline.get(), GST_STATE_NULL);
        pipeline.reset();
    }
    videoSink.Forget();
    audioSink.Forget();
    clip.reset();
    hasDelivered = false;
    hasVideo = false;
    hasSound = false;
    isSeekable = false;
    isLive = false;
}

void Playback::Restart(bool immediately) {
    // One that failed is opened again anyway, after a wait; asking for it must not shorten that.
    if (stage == Stage::Closed && failures > 0) return;
    Close();
    OpenAfter(immediately ? milliseconds::zero() : kFirstRetry);
}

void Playback::OpenAfter(milliseconds delay) {
    PostHereAfter(delay, [](Playback& self) { self.Open(); });
}

void Playback::SetGain(double linear) {
    gain = linear;
    audioSink.SetGain(linear);
}

bool Playback::OnMessage(GstMessage* message) {
    switch (GST_MESSAGE_TYPE(message)) {
        case GST_MESSAGE_ERROR: OnError(message); return false;
        case GST_MESSAGE_WARNING: OnWarning(message); break;
        case GST_MESSAGE_EOS: OnEndOfStream(); break;
        case GST_MESSAGE_SEGMENT_DONE: OnSegmentDone(); break;
        case GST_MESSAGE_ASYNC_DONE: OnPrerolled(); break;
        case GST_MESSAGE_ELEMENT: OnElementMessage(message); break;
        case GST_MESSAGE_LATENCY: gst_bin_recalculate_latency(GST_BIN(pipeline.get())); break;
        case GST_MESSAGE_CLOCK_LOST:
            if (!isWanted || stage != Stage::Ready) break;
            gst_element_set_state(pipeline.get(), GST_STATE_PAUSED);
            gst_element_set_state(pipeline.get(), GST_STATE_PLAYING);
            break;
        case GST_MESSAGE_BUFFERING: {
            gint percent = 100;
            gst_message_parse_buffering(message, &percent);
            if (isLive || !isWanted || stage != Stage::Ready) break;
            gst_element_set_state(pipeline.get(), percent < 100 ? GST_STATE_PAUSED : GST_STATE_PLAYING);
            break;
        }
        default: break;
    }
    // A handler that closed the pipeline has destroyed the watch.
    return true;
}

void Playback::OnElementMessage(GstMessage* message) {
    if (const auto loudness = AudioSink::ReadLoudness(message)) {
        events.loudness(*loudness);
        // Sound that plays means that the source is back, also where there is no picture to say so.
        if (stage == Stage::Ready) ReportConnection(false);
        return;
    }
    if (gst_is_missing_plugin_message(message) != FALSE) {
        LOG(kLogWarning, "\"%s\" needs what is not installed: %s", source.name.c_str(),
            TakeText(gst_missing_plugin_message_get_description(message)).c_str());
    }
}

void Playback::OnPrerolled() {
    if (stage == Stage::Opening) {
        silentOpenings = 0;
        if (hasVideo && videoSink.IsAtEnd()) ReportWithoutPicture("it ends before its first picture");
        if (reportedWithoutPicture && !hasSound) {
            Close();
            if (events.failed) events.failed();
            return;
        }
        isSeekable = !clip && !IsCapture() && CanSeek();
        // A segment's end is announced instead of ending the stream, so that the next round follows without a
        // gap.
        if (isSeekable && CanLoopSegments() && Seek(GST_SEEK_FLAG_FLUSH | GST_SEEK_FLAG_SEGMENT)) {
            stage = Stage::Cueing;
            PostHereAfter(kCueingPatience, [](Playback& self) {
                if (self.stage != Stage::Cueing) return;
                self.isWithoutSegments = true;
                self.Open();
            });
            return;
        }
    }
    if (stage == Stage::Opening || stage == Stage::Cueing) {
        stage = Stage::Ready;
        StartWhenReady();
    }
}

bool Playback::CanSeek() const {
    const GstOwned<GstQuery> query(gst_query_new_seeking(GST_FORMAT_TIME));
    gboolean answer = FALSE;
    if (gst_element_query(pipeline.get(), query.get()) == FALSE) return false;
    gst_query_parse_seeking(query.get(), nullptr, &answer, nullptr, nullptr);
    return answer != FALSE;
}

bool Playback::CanLoopSegments() const {
    gint64 duration = 0;
    return !isWithoutSegments &&
           gst_element_query_duration(pipeline.get(), GST_FORMAT_TIME, &duration) != FALSE &&
           duration >= std::chrono::nanoseconds(kShortestLoop).count();
}

bool Playback::Seek(int flags) {
    return gst_element_seek(pipeline.get(), 1.0, GST_FORMAT_TIME, static_cast<GstSeekFlags>(flags),
                            GST_SEEK_TYPE_SET, 0, GST_SEEK_TYPE_NONE, -1) != FALSE;
}

void Playback::OnSegmentDone() {
    LoopAfter(kShortestSegment, true);
}

void Playback::OnEndOfStream() {
    if (!hasDelivered) ReportWithoutPicture("it ends before its first picture");
    if (!hasDelivered && !hasSound && !IsCapture()) {
        Close();
        if (events.failed) events.failed();
    } else if (IsCapture() || (IsNetworkSource() && !isSeekable)) {
        Close();
        events.ended();
    } else {
        LoopAfter(kShortestLoop, false);
    }
}

void Playback::LoopAfter(milliseconds shortestRound, bool isSegment) {
    const auto sinceLast = steady_clock::now() - lastLoop;
    if (sinceLast >= shortestRound) {
        Loop(isSegment);
        return;
    }
    PostHereAfter(std::chrono::ceil<milliseconds>(shortestRound - sinceLast),
                  [isSegment](Playback& self) { self.Loop(isSegment); });
}

void Playback::Loop(bool isSegment) {
    lastLoop = steady_clock::now();
    if (!isSeekable || !Seek(isSegment ? GST_SEEK_FLAG_SEGMENT : GST_SEEK_FLAG_FLUSH)) Open();
}

void Playback::OnWarning(GstMessage* message) {
    GError* warning = nullptr;
    gst_message_parse_warning(message, &warning, nullptr);
    const GstOwned<GError> owned(warning);
    if (std::exchange(warningWasLogged, true)) return;
    LOG(kLogWarning, "\"%s\" (%s): %s", source.name.c_str(), source.uri.c_str(), warning->message);
}

void Playback::OnError(GstMessage* message) {
    GError* error = nullptr;
    gchar* details = nullptr;
    gst_message_parse_error(message, &error, &details);
    const GstOwned<GError> owned(error);
    const std::string explanation = TakeText(details);
    LOG(kLogDebug, "\"%s\": %s", source.name.c_str(), explanation.c_str());
    Fail(error->message);
}

void Playback::OnFirstPicture() {
    failures = 0;
    reportedWithoutPicture = false;
    ReportConnection(false);
}

void Playback::Fail(const std::string& reason) {
    const bool hadPictures = hasDelivered;
    Close();
    // A device that was pulled out may be put in again.
    const bool isRetried = hadPictures || IsNetworkSource() || (IsCapture() && failures > 0);
    if (hadPictures) {
        if (!std::exchange(interruptionWasLogged, true)) {
            LOG(kLogWarning, "\"%s\" was interrupted (%s) and is opened again: %s", source.name.c_str(),
                source.uri.c_str(), reason.c_str());
        }
    } else {
        ReportWithoutPicture(reason);
    }
    if (!isRetried) {
        if (events.failed) events.failed();
        return;
    }
    ReportConnection(true);
    const auto delay = kFirstRetry * (1U << std::min(failures, 10U));
    ++failures;
    OpenAfter(std::min<milliseconds>(delay, kLongestRetry));
}

void Playback::ReportWithoutPicture(const std::string& reason) {
    if (std::exchange(reportedWithoutPicture, true)) return;
    LOG(kLogWarning, "\"%s\" shows no picture (%s): %s", source.name.c_str(), source.uri.c_str(),
        reason.c_str());
    events.withoutPicture();
}

void Playback::ReportConnection(bool lost) {
    if (!IsNetworkSource() || std::exchange(isLost, lost) == lost) return;
    events.connection(lost);
}

}  // namespace Corvanta::Engine
