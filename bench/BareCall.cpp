#include "bench/BareCall.h"

#include <gst/webrtc/webrtc.h>

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <string>
#include <string_view>
#include <thread>
#include <utility>

#include "bench/PictureStamp.h"

namespace Corvanta::Bench {

using Engine::GstOwned;

namespace {

constexpr std::chrono::seconds kPatience{20};
constexpr std::chrono::milliseconds kLook{1};
// As the engine's own.
constexpr guint kJitterMs = 40;
constexpr int kBitrate = 1'500'000;
constexpr const char* kSending =
    "appsrc name=pictures is-live=true format=time ! videoconvertscale ! "
    "vp8enc name=encoder deadline=1 cpu-used=8 threads=1 error-resilient=1 keyframe-max-dist=60 "
    "end-usage=cbr "
    "lag-in-frames=0 buffer-size=600 buffer-initial-size=300 buffer-optimal-size=400 undershoot=95 ! "
    "rtpvp8pay picture-id-mode=2 pt=96 mtu=1200 ! "
    "application/x-rtp,media=video,encoding-name=VP8,payload=96,clock-rate=90000 ! "
    "webrtcbin name=call bundle-policy=max-bundle";
constexpr const char* kReceiving = "webrtcbin name=call bundle-policy=max-bundle";
constexpr const char* kDecoding = "queue ! rtpvp8depay ! vp8dec threads=1 ! appsink name=end";

bool Until(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + kPatience;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) return false;
        std::this_thread::sleep_for(kLook);
    }
    return true;
}

std::int64_t NowNs() {
    return std::chrono::nanoseconds(std::chrono::steady_clock::now().time_since_epoch()).count();
}

// Over the loopback alone, and without a word to the network's routers.
void StayHere(GstElement* webrtc) {
    GObject* ice = nullptr;
    g_object_get(webrtc, "ice-agent", &ice, nullptr);
    if (ice == nullptr) return;
    g_object_set(ice, "ice-tcp", FALSE, nullptr);
    GObject* agent = nullptr;
    g_object_get(ice, "agent", &agent, nullptr);
    if (agent != nullptr) {
        g_object_set(agent, "upnp", FALSE, nullptr);
        g_object_unref(agent);
    }
    gboolean isAdded = FALSE;
    g_signal_emit_by_name(ice, "add-local-ip-address", "127.0.0.1", &isAdded);
    g_object_unref(ice);
}

}  // namespace

struct BareCall::Side {
    bool offers = false;
    GstOwned<GstElement> pipeline = {};
    GstOwned<GstElement> webrtc = {};
    Side* other = nullptr;
    BareCall* call = nullptr;
};

BareCall::BareCall(Showing wantedShowing) : showing(wantedShowing) {}

BareCall::~BareCall() {
    for (const auto& side : {sender.get(), receiver.get()}) {
        if (side != nullptr && side->pipeline) gst_element_set_state(side->pipeline.get(), GST_STATE_NULL);
    }
    for (GstWebRTCDataChannel* channel : {ownChannel, otherChannel}) {
        if (channel != nullptr) g_object_unref(channel);
    }
}

bool BareCall::Start() {
    if (!Engine::EnsureGStreamer() || !Build()) {
        std::fprintf(stderr, "bench_rooms: an element for the bare call is missing\n");
        return false;
    }
    startedAt = Clock::now();
    for (Side* side : {receiver.get(), sender.get()}) {
        gst_element_set_state(side->pipeline.get(), GST_STATE_READY);
    }
    g_signal_emit_by_name(sender->webrtc.get(), "create-data-channel", "texts", nullptr, &ownChannel);
    for (Side* side : {receiver.get(), sender.get()}) {
        gst_element_set_state(side->pipeline.get(), GST_STATE_PLAYING);
    }
    const std::lock_guard lock(mutex);
    isStarted = true;
    return true;
}

bool BareCall::Build() {
    sender = std::make_unique<Side>(Side{.offers = true, .call = this});
    receiver = std::make_unique<Side>(Side{.offers = false, .call = this});
    sender->other = receiver.get();
    receiver->other = sender.get();
    for (Side* side : {sender.get(), receiver.get()}) {
        GError* error = nullptr;
        GstElement* parsed = gst_parse_launch_full(side->offers ? kSending : kReceiving, nullptr,
                                                   GST_PARSE_FLAG_FATAL_ERRORS, &error);
        const GstOwned<GError> owned(error);
        if (parsed == nullptr) return false;
        // One element alone comes without a pipeline around it.
        if (GST_IS_PIPELINE(parsed)) {
            side->pipeline.reset(GST_ELEMENT(gst_object_ref_sink(parsed)));
            side->webrtc.reset(gst_bin_get_by_name(GST_BIN(parsed), "call"));
        } else {
            side->pipeline.reset(GST_ELEMENT(gst_object_ref_sink(gst_pipeline_new(nullptr))));
            gst_bin_add(GST_BIN(side->pipeline.get()), parsed);
            side->webrtc.reset(GST_ELEMENT(gst_object_ref(parsed)));
        }
        const GstOwned<GstClock> clock(gst_system_clock_obtain());
        gst_pipeline_use_clock(GST_PIPELINE(side->pipeline.get()), clock.get());
        gst_element_set_start_time(side->pipeline.get(), GST_CLOCK_TIME_NONE);
        gst_element_set_base_time(side->pipeline.get(), 0);
        g_object_set(side->webrtc.get(), "latency", kJitterMs, nullptr);
        StayHere(side->webrtc.get());
        Connect(*side);
    }
    const GstOwned<GstElement> encoder(gst_bin_get_by_name(GST_BIN(sender->pipeline.get()), "encoder"));
    g_object_set(encoder.get(), "target-bitrate", kBitrate, nullptr);
    source.reset(gst_bin_get_by_name(GST_BIN(sender->pipeline.get()), "pictures"));
    return true;
}

void BareCall::Connect(Side& side) {
    GstElement* webrtc = side.webrtc.get();
    const auto onCandidate = +[](GstElement*, guint line, const gchar* text, gpointer data) {
        g_signal_emit_by_name(static_cast<Side*>(data)->other->webrtc.get(), "add-ice-candidate", line, text);
    };
    g_signal_connect(webrtc, "on-ice-candidate", G_CALLBACK(onCandidate), &side);
    if (side.offers) {
        const auto onNeeded = +[](GstElement*, gpointer data) {
            auto* self = static_cast<Side*>(data);
            self->call->Describe(*self, "create-offer");
        };
        g_signal_connect(webrtc, "on-negotiation-needed", G_CALLBACK(onNeeded), &side);
        return;
    }
    const auto onPad = +[](GstElement*, GstPad* pad, gpointer data) {
        if (GST_PAD_IS_SRC(pad)) static_cast<Side*>(data)->call->OnPad(pad);
    };
    g_signal_connect(webrtc, "pad-added", G_CALLBACK(onPad), &side);
    const auto onChannel = +[](GstElement*, GstWebRTCDataChannel* channel, gpointer data) {
        static_cast<Side*>(data)->call->OnChannel(channel);
    };
    g_signal_connect(webrtc, "on-data-channel", G_CALLBACK(onChannel), &side);
}

void BareCall::Describe(Side& side, const char* signal) {
    const auto onReply = +[](GstPromise* promise, gpointer data) {
        auto* self = static_cast<Side*>(data);
        GstWebRTCSessionDescription* description = nullptr;
        if (gst_promise_wait(promise) == GST_PROMISE_RESULT_REPLIED) {
            gst_structure_get(gst_promise_get_reply(promise), self->offers ? "offer" : "answer",
                              GST_TYPE_WEBRTC_SESSION_DESCRIPTION, &description, nullptr);
        }
        gst_promise_unref(promise);
        if (description == nullptr) return;
        self->call->OnDescription(*self, description);
        gst_webrtc_session_description_free(description);
    };
    g_signal_emit_by_name(side.webrtc.get(), signal, nullptr,
                          gst_promise_new_with_change_func(onReply, &side, nullptr));
}

void BareCall::OnDescription(Side& side, GstWebRTCSessionDescription* description) {
    g_signal_emit_by_name(side.webrtc.get(), "set-local-description", description, nullptr);
    GstPromise* taken = nullptr;
    if (side.offers) {
        const auto onTaken = +[](GstPromise* promise, gpointer data) {
            gst_promise_unref(promise);
            auto* answering = static_cast<Side*>(data);
            answering->call->Describe(*answering, "create-answer");
        };
        taken = gst_promise_new_with_change_func(onTaken, side.other, nullptr);
    }
    g_signal_emit_by_name(side.other->webrtc.get(), "set-remote-description", description, taken);
}

void BareCall::OnPad(GstPad* pad) {
    GstElement* decoding =
        gst_parse_bin_from_description_full(kDecoding, TRUE, nullptr, GST_PARSE_FLAG_FATAL_ERRORS, nullptr);
    if (decoding == nullptr) return;
    const GstOwned<GstElement> end(gst_bin_get_by_name(GST_BIN(decoding), "end"));
    g_object_set(end.get(), "sync", showing == Showing::InTime ? TRUE : FALSE, nullptr);
    GstAppSinkCallbacks callbacks{};
    callbacks.new_sample = [](GstAppSink* sink, gpointer self) {
        return static_cast<BareCall*>(self)->OnPicture(sink);
    };
    gst_app_sink_set_callbacks(GST_APP_SINK(end.get()), &callbacks, this, nullptr);
    gst_bin_add(GST_BIN(receiver->pipeline.get()), decoding);
    const GstOwned<GstPad> sink(gst_element_get_static_pad(decoding, "sink"));
    gst_pad_link(pad, sink.get());
    gst_element_sync_state_with_parent(decoding);
}

void BareCall::OnChannel(GstWebRTCDataChannel* channel) {
    otherChannel = GST_WEBRTC_DATA_CHANNEL(g_object_ref(channel));
    const auto onText = +[](GstWebRTCDataChannel*, const gchar* text, gpointer self) {
        static_cast<BareCall*>(self)->OnText(text);
    };
    g_signal_connect(channel, "on-message-string", G_CALLBACK(onText), this);
}

void BareCall::Push(GstBuffer* picture, const GstVideoInfo& info) {
    {
        const std::lock_guard lock(mutex);
        if (!isStarted) return;
    }
    const GstOwned<GstCaps> caps(gst_video_info_to_caps(&info));
    gst_caps_set_simple(caps.get(), "framerate", GST_TYPE_FRACTION, StampedClip::kRate, 1, nullptr);
    const GstOwned<GstClock> clock(gst_system_clock_obtain());
    GstBuffer* pushed = gst_buffer_copy(picture);
    GST_BUFFER_PTS(pushed) = gst_clock_get_time(clock.get());
    gst_app_src_set_caps(GST_APP_SRC(source.get()), caps.get());
    gst_app_src_push_buffer(GST_APP_SRC(source.get()), pushed);
}

GstFlowReturn BareCall::OnPicture(GstAppSink* sink) {
    const GstOwned<GstSample> sample(gst_app_sink_pull_sample(sink));
    if (!sample) return GST_FLOW_EOS;
    GstVideoInfo info;
    GstVideoFrame frame;
    if (gst_video_info_from_caps(&info, gst_sample_get_caps(sample.get())) == FALSE ||
        gst_video_frame_map(&frame, &info, gst_sample_get_buffer(sample.get()), GST_MAP_READ) == FALSE) {
        return GST_FLOW_OK;
    }
    const auto stamp = ReadStamp(static_cast<const std::uint8_t*>(frame.data[0]), frame.info.stride[0],
                                 info.width, info.height);
    gst_video_frame_unmap(&frame);
    const std::lock_guard lock(mutex);
    if (stamp) pictureAges.push_back(StampAgeMs(*stamp));
    if (!firstMs) firstMs = std::chrono::duration<double, std::milli>(Clock::now() - startedAt).count();
    return GST_FLOW_OK;
}

void BareCall::OnText(const char* text) {
    const std::int64_t now = NowNs();
    const std::string_view said = text;
    std::int64_t sent = 0;
    std::from_chars(said.data(), said.data() + said.size(), sent);
    const std::lock_guard lock(mutex);
    textAges.push_back(1e-6 * static_cast<double>(now - sent));
}

std::optional<double> BareCall::FirstPictureMs() const {
    std::optional<double> first;
    static_cast<void>(Until([&] {
        const std::lock_guard lock(mutex);
        first = firstMs;
        return first.has_value();
    }));
    return first;
}

bool BareCall::CanSay() const {
    return Until([this] {
        GstWebRTCDataChannelState state{};
        if (ownChannel != nullptr) g_object_get(ownChannel, "ready-state", &state, nullptr);
        return state == GST_WEBRTC_DATA_CHANNEL_STATE_OPEN;
    });
}

void BareCall::Say() {
    g_signal_emit_by_name(ownChannel, "send-string", std::to_string(NowNs()).c_str());
}

std::vector<double> BareCall::TakePictureAges() {
    const std::lock_guard lock(mutex);
    return std::exchange(pictureAges, {});
}

std::vector<double> BareCall::TakeTextAges() {
    const std::lock_guard lock(mutex);
    return std::exchange(textAges, {});
}

}  // namespace Corvanta::Bench
