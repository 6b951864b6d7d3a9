#include "engine/peer/PeerSession.h"

#include <gst/app/gstappsrc.h>
#include <gst/video/video.h>

#include <atomic>
#include <chrono>
#include <mutex>
#include <string_view>
#include <utility>
#include <vector>

#include "engine/peer/PeerCertificate.h"
#include "engine/peer/SdpMessage.h"
#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr guint kJitterMs = 40;
// Packets for one peer that wait in its pipeline.
constexpr GstClockTime kQueuedPackets = GST_SECOND;
// Whoever sends or receives pictures sends reports at least this often, and who has a channel answers what
// comes over it, so that silence means that the peer is gone.
constexpr guint64 kReportInterval = 500 * GST_MSECOND;
// Sources of packets of one peer: those of a picture and a sound, and of what is sent again.
constexpr guint kMostStreams = 8;
constexpr milliseconds kWatchInterval{500};
constexpr milliseconds kLongestSilence{4000};
// What a connection may take to come about.
constexpr milliseconds kConnectPatience{15000};

std::int64_t NowMs() {
    return std::chrono::duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

GstOwned<GstCaps> PacketCaps(bool isVideo) {
    return GstOwned<GstCaps>(gst_caps_from_string(
        isVideo ? "application/x-rtp,media=video,encoding-name=VP8,clock-rate=90000,payload=96"
                : "application/x-rtp,media=audio,encoding-name=OPUS,clock-rate=48000,payload=111,"
                  "encoding-params=(string)2"));
}

bool IsMadeBy(GstElement* element, std::string_view factoryName) {
    const GstElementFactory* factory = gst_element_get_factory(element);
    return factory != nullptr && factoryName == GST_OBJECT_NAME(factory);
}

}  // namespace

struct PeerSession::Heard {
    std::atomic<std::int64_t> lastMs = NowMs();
    // Of the certificate that the peer has shown: whether it is the one that its description names.
    std::atomic<bool> isGenuine = false, isForged = false;

    std::mutex fingerprintsMutex;  // guards: fingerprints
    std::vector<std::string> fingerprints;
};

struct PeerSession::Link {
    EngineLoop& loop;
    std::weak_ptr<PeerSession> session;
    std::shared_ptr<Heard> heard;
};

PeerSession::Link* PeerSession::MakeLink() {
    return new Link{loop, weak_from_this(), heard};
}

void PeerSession::DeleteLink(gpointer data) {
    delete static_cast<Link*>(data);
}

void PeerSession::Post(const Link& link, std::function<void(PeerSession&)> task) {
    link.loop.Post([weak = link.session, task = std::move(task)] {
        const auto self = weak.lock();
        if (self && self->pipeline && !self->hasEnded) task(*self);
    });
}

PeerSession::PeerSession(EngineLoop& engineLoop, PeerSessionOptions sessionOptions,
                         PeerSessionEvents handlers, std::shared_ptr<SoundMixer> mixer,
                         VideoSink::PictureCallback picture)
    : loop(engineLoop),
      options(std::move(sessionOptions)),
      events(std::move(handlers)),
      media(options.name, std::move(mixer), std::move(picture)),
      heard(std::make_shared<Heard>()),
      texts(std::make_shared<TextChannel>(
          loop, TextChannel::Events{.open = [this] { events.channelOpen(); },
                                    .ended = [this](const std::string& reason) { End(reason); },
                                    .text = [this](const std::string& text) { events.text(text); },
                                    .drained = [this] { events.textsDrained(); }})) {}

PeerSession::~PeerSession() {
    Close();
}

bool PeerSession::Open() {
    if (!EnsureGStreamer()) return false;
    webrtc = MakeElement("webrtcbin");
    if (!webrtc) return false;
    pipeline.reset(GST_ELEMENT(gst_object_ref_sink(gst_pipeline_new(nullptr))));
    // As in the feeds' pipelines, whose packets bear their times.
    const GstOwned<GstClock> clock(gst_system_clock_obtain());
    gst_pipeline_use_clock(GST_PIPELINE(pipeline.get()), clock.get());
    gst_element_set_start_time(pipeline.get(), GST_CLOCK_TIME_NONE);
    gst_element_set_base_time(pipeline.get(), 0);
    const GstOwned<GstBus> bus(gst_element_get_bus(pipeline.get()));
    watch.reset(gst_bus_create_watch(bus.get()));
    const GstBusFunc onMessage = [](GstBus*, GstMessage* message, gpointer self) -> gboolean {
        return static_cast<PeerSession*>(self)->OnMessage(message) ? TRUE : FALSE;
    };
    g_source_set_callback(watch.get(), G_SOURCE_FUNC(onMessage), this, nullptr);
    g_source_attach(watch.get(), loop.Context());

    g_object_set(webrtc.get(), "bundle-policy", GST_WEBRTC_BUNDLE_POLICY_MAX_BUNDLE, "latency", kJitterMs,
                 nullptr);
    ConnectSignals();
    texts->Attach(webrtc.get());
    gst_bin_add(GST_BIN(pipeline.get()), webrtc.get());
    SetUpAgent();
    // The channel has to be there before the offer, and it cannot be made any earlier.
    if (gst_element_set_state(pipeline.get(), GST_STATE_READY) == GST_STATE_CHANGE_FAILURE) {
        LOG(kLogError, "A connection with \"%s\" cannot be made: a part of GStreamer is missing",
            options.name.c_str());
        Close();
        return false;
    }
    if (!options.channelLabel.empty()) texts->Create(options.channelLabel);
    AddMedia();
    gst_element_set_state(pipeline.get(), GST_STATE_PLAYING);
    loop.PostAfter(kConnectPatience, [weak = weak_from_this()] {
        const auto self = weak.lock();
        if (self && self->pipeline && !self->isConnected) self->End("no connection came about");
    });
    if (options.offers) CreateDescription("create-offer");
    return true;
}

void PeerSession::Close() {
    hasEnded = true;
    SetFeed(nullptr);
    if (videoOutlet) videoOutlet->Close();
    if (audioOutlet) audioOutlet->Close();
    if (watch) {
        g_source_destroy(watch.get());
        watch.reset();
    }
    texts->Close();
    if (pipeline) gst_element_set_state(pipeline.get(), GST_STATE_NULL);
    webrtc.reset();
    pipeline.reset();
}

void PeerSession::ConnectSignals() {
    const auto connect = [this](const char* signal, GCallback handler) {
        g_signal_connect_data(
            webrtc.get(), signal, handler, MakeLink(), [](gpointer data, GClosure*) { DeleteLink(data); },
            GConnectFlags{});
    };
    connect("on-ice-candidate", G_CALLBACK(+[](GstElement*, guint line, gchar* text, Link* link) {
                Post(*link, [line, candidate = std::string(text)](PeerSession& self) {
                    self.events.candidate(line, candidate);
                });
            }));
    connect("notify::connection-state", G_CALLBACK(+[](GstElement*, GParamSpec*, Link* link) {
                Post(*link, [](PeerSession& self) { self.OnConnectionState(); });
            }));
    // Those two run while the pipeline does, which Close ends.
    g_signal_connect(webrtc.get(), "on-new-transceiver",
                     G_CALLBACK(+[](GstElement*, GstWebRTCRTPTransceiver* transceiver, gpointer) {
                         g_object_set(transceiver, "do-nack", TRUE, nullptr);
                     }),
                     nullptr);
    g_signal_connect(webrtc.get(), "pad-added", G_CALLBACK(+[](GstElement*, GstPad* pad, PeerSession* self) {
                         if (GST_PAD_DIRECTION(pad) == GST_PAD_SRC) {
                             self->media.Connect(GST_BIN(self->pipeline.get()), pad);
                         }
                     }),
                     this);
    g_signal_connect_data(
        webrtc.get(), "deep-element-added",
        G_CALLBACK(+[](GstBin*, GstBin*, GstElement* element, Link* link) {
            if (IsMadeBy(element, "rtpsession")) {
                // Only the peer has the keys, so its first packet is taken as it is, and a picture that
                // fits in one is shown without waiting for another.
                g_object_set(element, "rtcp-min-interval", kReportInterval, "probation", 0U, nullptr);
            }
            // A peer has one picture and one sound; each further source would be a thread.
            if (IsMadeBy(element, "rtpbin")) g_object_set(element, "max-streams", kMostStreams, nullptr);
            if (IsMadeBy(element, "dtlsdec")) {
                g_signal_connect_data(
                    element, "notify::peer-pem", G_CALLBACK(OnCertificate), new Link(*link),
                    [](gpointer data, GClosure*) { DeleteLink(data); }, GConnectFlags{});
            }
            if (!IsMadeBy(element, "nicesrc")) return;
            const GstOwned<GstPad> pad(gst_element_get_static_pad(element, "src"));
            gst_pad_add_probe(
                pad.get(),
                static_cast<GstPadProbeType>(GST_PAD_PROBE_TYPE_BUFFER | GST_PAD_PROBE_TYPE_BUFFER_LIST),
                [](GstPad*, GstPadProbeInfo*, gpointer data) -> GstPadProbeReturn {
                    Heard& known = **static_cast<std::shared_ptr<Heard>*>(data);
                    if (known.isForged) return GST_PAD_PROBE_DROP;
                    known.lastMs = NowMs();
                    return GST_PAD_PROBE_OK;
                },
                new std::shared_ptr<Heard>(link->heard),
                [](gpointer data) { delete static_cast<std::shared_ptr<Heard>*>(data); });
        }),
        MakeLink(), [](gpointer data, GClosure*) { DeleteLink(data); }, GConnectFlags{});
}

void PeerSession::OnCertificate(GstElement* element, GParamSpec*, Link* link) {
    gchar* pem = nullptr;
    g_object_get(element, "peer-pem", &pem, nullptr);
    if (pem == nullptr) return;
    bool fits = false;
    {
        const std::lock_guard lock(link->heard->fingerprintsMutex);
        fits = FitsCertificate(link->heard->fingerprints, pem);
    }
    g_free(pem);
    if (fits) {
        link->heard->isGenuine = true;
        return;
    }
    link->heard->isForged = true;
    Post(*link, [](PeerSession& self) { self.End("somebody else answers in its place"); });
}

void PeerSession::SetUpAgent() {
    GObject* ice = nullptr;
    g_object_get(webrtc.get(), "ice-agent", &ice, nullptr);
    if (ice == nullptr) return;
    g_object_set(ice, "ice-tcp", FALSE, nullptr);
    GObject* agent = nullptr;
    g_object_get(ice, "agent", &agent, nullptr);
    if (agent != nullptr) {
        // It would ask the network's routers by multicast.
        g_object_set(agent, "upnp", FALSE, nullptr);
        g_object_unref(agent);
    }
    // It leaves the loopback out where it is not told, and all others where it is.
    gboolean isAdded = FALSE;
    if (options.loopbackOnly) g_signal_emit_by_name(ice, "add-local-ip-address", "127.0.0.1", &isAdded);
    g_object_unref(ice);
}

std::shared_ptr<PacketOutlet> PeerSession::AddSender(bool isVideo) {
    auto source = MakeElement("appsrc");
    const GstOwned<GstPad> pad(gst_element_request_pad_simple(webrtc.get(), "sink_%u"));
    if (!source || !pad) return nullptr;
    const guint32 ssrc = g_random_int();
    // The offer says from which source each kind of packets comes, and some servers need that; the element
    // learns it from the first packets otherwise, which may be after the offer.
    const auto caps = PacketCaps(isVideo);
    gst_caps_set_simple(caps.get(), "ssrc", G_TYPE_UINT, ssrc, nullptr);
    GstWebRTCRTPTransceiver* transceiver = nullptr;
    g_object_get(pad.get(), "transceiver", &transceiver, nullptr);
    if (transceiver != nullptr) {
        g_object_set(transceiver, "codec-preferences", caps.get(), "do-nack", TRUE, "direction",
                     options.receives ? GST_WEBRTC_RTP_TRANSCEIVER_DIRECTION_SENDRECV
                                      : GST_WEBRTC_RTP_TRANSCEIVER_DIRECTION_SENDONLY,
                     nullptr);
        // Kept, it would keep the whole connection's sockets and threads.
        gst_object_unref(transceiver);
    }
    g_object_set(source.get(), "caps", caps.get(), "is-live", TRUE, "format", GST_FORMAT_TIME, "leaky-type",
                 GST_APP_LEAKY_TYPE_DOWNSTREAM, "max-time", kQueuedPackets, "max-bytes",
                 guint64{4} * 1024 * 1024, "max-buffers", guint64{4096}, nullptr);
    gst_bin_add(GST_BIN(pipeline.get()), source.get());
    const GstOwned<GstPad> out(gst_element_get_static_pad(source.get(), "src"));
    auto outlet = std::make_shared<PacketOutlet>(std::move(source), ssrc);
    gst_pad_add_probe(
        out.get(), GST_PAD_PROBE_TYPE_EVENT_UPSTREAM,
        [](GstPad*, GstPadProbeInfo* info, gpointer data) -> GstPadProbeReturn {
            if (gst_video_event_is_force_key_unit(GST_PAD_PROBE_INFO_EVENT(info)) != FALSE) {
                (*static_cast<std::shared_ptr<PacketOutlet>*>(data))->RequestKeyFrame();
            }
            return GST_PAD_PROBE_OK;
        },
        new std::shared_ptr<PacketOutlet>(outlet),
        [](gpointer data) { delete static_cast<std::shared_ptr<PacketOutlet>*>(data); });
    gst_pad_link(out.get(), pad.get());
    return outlet;
}

void PeerSession::AddReceiver(bool isVideo) {
    const auto caps = PacketCaps(isVideo);
    GstWebRTCRTPTransceiver* transceiver = nullptr;
    g_signal_emit_by_name(webrtc.get(), "add-transceiver", GST_WEBRTC_RTP_TRANSCEIVER_DIRECTION_RECVONLY,
                          caps.get(), &transceiver);
    if (transceiver == nullptr) return;
    g_object_set(transceiver, "do-nack", TRUE, nullptr);
    gst_object_unref(transceiver);
}

void PeerSession::AddMedia() {
    if (options.sends) {
        videoOutlet = AddSender(true);
        audioOutlet = AddSender(false);
    } else if (options.receives && options.offers) {
        AddReceiver(true);
        AddReceiver(false);
    }
}

GstPromise* PeerSession::MakePromise(std::function<void(PeerSession&, const GstStructure*)> handler) {
    struct Reply {
        std::unique_ptr<Link> link;
        std::function<void(PeerSession&, const GstStructure*)> handler;
    };
    return gst_promise_new_with_change_func(
        [](GstPromise* promise, gpointer data) {
            const auto* reply = static_cast<Reply*>(data);
            if (gst_promise_wait(promise) == GST_PROMISE_RESULT_REPLIED) {
                const GstStructure* structure = gst_promise_get_reply(promise);
                const std::shared_ptr<GstStructure> copy(
                    structure != nullptr ? gst_structure_copy(structure) : nullptr, [](GstStructure* owned) {
                        if (owned != nullptr) gst_structure_free(owned);
                    });
                Post(*reply->link,
                     [copy, handler = reply->handler](PeerSession& self) { handler(self, copy.get()); });
            }
            gst_promise_unref(promise);
        },
        new Reply{std::unique_ptr<Link>(MakeLink()), std::move(handler)},
        [](gpointer data) { delete static_cast<Reply*>(data); });
}

void PeerSession::CreateDescription(const char* signal) {
    const std::string kind = std::string_view(signal) == "create-offer" ? "offer" : "answer";
    GstPromise* promise = MakePromise([kind](PeerSession& self, const GstStructure* reply) {
        GstWebRTCSessionDescription* description = nullptr;
        if (reply != nullptr) {
            gst_structure_get(reply, kind.c_str(), GST_TYPE_WEBRTC_SESSION_DESCRIPTION, &description,
                              nullptr);
        }
        if (description == nullptr) {
            self.End("no " + kind + " can be made");
            return;
        }
        self.OnDescription(description);
        gst_webrtc_session_description_free(description);
    });
    g_signal_emit_by_name(webrtc.get(), signal, nullptr, promise);
}

void PeerSession::OnDescription(GstWebRTCSessionDescription* description) {
    GstPromise* promise = MakePromise([](PeerSession&, const GstStructure*) {});
    g_signal_emit_by_name(webrtc.get(), "set-local-description", description, promise);
    // Candidates follow, since they come through the loop too.
    events.description(TakeText(gst_sdp_message_as_text(description->sdp)));
}

void PeerSession::TakeOffer(const std::string& sdp) {
    SetRemote(sdp, true);
}

void PeerSession::TakeAnswer(const std::string& sdp) {
    SetRemote(sdp, false);
}

void PeerSession::SetRemote(const std::string& sdp, bool isOffer) {
    SdpMessage message = ReadSdp(sdp);
    if (!pipeline || !message) return;
    GstWebRTCSessionDescription* description = gst_webrtc_session_description_new(
        isOffer ? GST_WEBRTC_SDP_TYPE_OFFER : GST_WEBRTC_SDP_TYPE_ANSWER, message.release());
    {
        const std::lock_guard lock(heard->fingerprintsMutex);
        heard->fingerprints = FingerprintsOf(sdp);
    }
    GstPromise* promise = MakePromise([isOffer](PeerSession& self, const GstStructure* reply) {
        GError* error = nullptr;
        if (reply != nullptr && gst_structure_has_field(reply, "error") != FALSE) {
            gst_structure_get(reply, "error", G_TYPE_ERROR, &error, nullptr);
            const GstOwned<GError> owned(error);
            self.End(std::string("its description is refused: ") + (owned ? owned->message : "no reason"));
        } else if (isOffer) {
            self.CreateDescription("create-answer");
        }
    });
    g_signal_emit_by_name(webrtc.get(), "set-remote-description", description, promise);
    gst_webrtc_session_description_free(description);
}

void PeerSession::AddCandidate(std::uint32_t mediaLine, const std::string& text) {
    if (webrtc) g_signal_emit_by_name(webrtc.get(), "add-ice-candidate", mediaLine, text.c_str());
}

void PeerSession::SetFeed(std::shared_ptr<OutboundFeed> sentFeed) {
    if (feed == sentFeed) return;
    if (feed) {
        if (videoOutlet) feed->RemoveOutlet(videoOutlet);
        if (audioOutlet) feed->RemoveOutlet(audioOutlet);
    }
    feed = std::move(sentFeed);
    AttachVideo();
    AttachAudio();
}

void PeerSession::SetSent(bool video, bool audio) {
    if (std::exchange(sendsVideo, video) != video && videoOutlet) {
        if (feed) feed->RemoveOutlet(videoOutlet);
        AttachVideo();
    }
    if (std::exchange(sendsAudio, audio) != audio && audioOutlet) {
        if (feed) feed->RemoveOutlet(audioOutlet);
        AttachAudio();
    }
}

void PeerSession::AttachVideo() {
    if (!feed || !isConnected || !videoOutlet || !sendsVideo) return;
    feed->AddVideoOutlet(videoOutlet);
    feed->RequestKeyFrame();
}

void PeerSession::AttachAudio() {
    if (feed && isConnected && audioOutlet && sendsAudio) feed->AddAudioOutlet(audioOutlet);
}

void PeerSession::OnConnectionState() {
    GstWebRTCPeerConnectionState state{};
    g_object_get(webrtc.get(), "connection-state", &state, nullptr);
    if (state == GST_WEBRTC_PEER_CONNECTION_STATE_FAILED) {
        End("the network does not reach it");
    } else if (state == GST_WEBRTC_PEER_CONNECTION_STATE_CLOSED) {
        End("it has closed the connection");
    } else if (state == GST_WEBRTC_PEER_CONNECTION_STATE_CONNECTED && !heard->isGenuine) {
        End("it has shown no certificate");
    } else if (state == GST_WEBRTC_PEER_CONNECTION_STATE_CONNECTED && !std::exchange(isConnected, true)) {
        if (videoOutlet) videoOutlet->Open();
        if (audioOutlet) audioOutlet->Open();
        // Puts the outlets to the feed, and asks it for a key frame.
        SetFeed(std::exchange(feed, nullptr));
        heard->lastMs = NowMs();
        Watch();
        events.connected();
    }
}

void PeerSession::Watch() {
    loop.PostAfter(kWatchInterval, [weak = weak_from_this()] {
        const auto self = weak.lock();
        if (!self || !self->pipeline || self->hasEnded) return;
        self->texts->Ping();
        // Who has neither a channel nor pictures need not say anything.
        const bool isAnswered = self->options.hasChannel || self->feed || self->media.Count().pictures > 0;
        if (isAnswered && NowMs() - self->heard->lastMs > kLongestSilence.count()) {
            self->End("nothing is heard of it");
        } else {
            self->Watch();
        }
    });
}

void PeerSession::RequestReport(std::function<void(const PeerReport&)> handler) {
    if (!pipeline || hasEnded) return;
    GstPromise* promise =
        MakePromise([handler = std::move(handler)](PeerSession& self, const GstStructure* reply) {
            PeerReport report = ReadReport(reply);
            const auto counters = self.media.Count();
            report.pictures = counters.pictures;
            report.width = counters.width;
            report.height = counters.height;
            handler(report);
        });
    g_signal_emit_by_name(webrtc.get(), "get-stats", nullptr, promise);
}

bool PeerSession::OnMessage(GstMessage* message) {
    switch (GST_MESSAGE_TYPE(message)) {
        case GST_MESSAGE_ERROR: {
            GError* error = nullptr;
            gst_message_parse_error(message, &error, nullptr);
            const GstOwned<GError> owned(error);
            End(error->message);
            return false;
        }
        case GST_MESSAGE_LATENCY: gst_bin_recalculate_latency(GST_BIN(pipeline.get())); break;
        case GST_MESSAGE_ELEMENT:
            if (const auto loudness = AudioSink::ReadLoudness(message)) events.loudness(*loudness);
            break;
        default: break;
    }
    return true;
}

void PeerSession::End(const std::string& reason) {
    if (std::exchange(hasEnded, true)) return;
    events.ended(reason);
}

}  // namespace Corvanta::Engine
