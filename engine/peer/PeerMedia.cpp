#include "engine/peer/PeerMedia.h"

#include <gst/video/video.h>

#include <string_view>
#include <utility>

#include "engine/peer/EncoderSettings.h"
#include "engine/peer/Vp8Frame.h"
#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

// VP8 cannot name its colour, and the decoder guesses one by size; the senders all use the same.
GstPadProbeReturn NameColor(GstPad*, GstPadProbeInfo* probe, gpointer) {
    GstEvent* event = GST_PAD_PROBE_INFO_EVENT(probe);
    if (GST_EVENT_TYPE(event) != GST_EVENT_CAPS) return GST_PAD_PROBE_OK;
    GstCaps* caps = nullptr;
    gst_event_parse_caps(event, &caps);
    const GstOwned<GstCaps> named(gst_caps_copy(caps));
    gst_caps_set_simple(named.get(), "colorimetry", G_TYPE_STRING, kSentColorimetry, nullptr);
    GstEvent* replacement = gst_event_new_caps(named.get());
    gst_event_set_seqnum(replacement, gst_event_get_seqnum(event));
    GST_PAD_PROBE_INFO_DATA(probe) = replacement;
    gst_event_unref(event);
    return GST_PAD_PROBE_OK;
}

// Packets pass only while the switch is on.
GstPadProbeReturn PassWhileOn(GstPad*, GstPadProbeInfo*, gpointer data) {
    return *static_cast<std::atomic<bool>*>(data) ? GST_PAD_PROBE_OK : GST_PAD_PROBE_DROP;
}

void AddSwitch(GstPad* pad, std::atomic<bool>& isOn) {
    gst_pad_add_probe(
        pad, static_cast<GstPadProbeType>(GST_PAD_PROBE_TYPE_BUFFER | GST_PAD_PROBE_TYPE_BUFFER_LIST),
        PassWhileOn, &isOn, nullptr);
}

GstElement* ParseBin(const char* description, const std::string& name) {
    GError* error = nullptr;
    GstElement* bin =
        gst_parse_bin_from_description_full(description, TRUE, nullptr, GST_PARSE_FLAG_FATAL_ERRORS, &error);
    const GstOwned<GError> owned(error);
    if (bin == nullptr) {
        LOG(kLogError, "What \"%s\" sends cannot be decoded: %s", name.c_str(),
            owned ? owned->message : "an element is missing");
    }
    return bin;
}

// Appends `end` to the last element of `bin`, whose source pad is its ghost pad "src".
GstElement* Join(GstElement* bin, GstElement* end) {
    if (bin == nullptr || end == nullptr) {
        if (bin != nullptr) gst_object_unref(gst_object_ref_sink(bin));
        if (end != nullptr) gst_object_unref(gst_object_ref_sink(end));
        return nullptr;
    }
    GstElement* whole = gst_bin_new(nullptr);
    gst_bin_add_many(GST_BIN(whole), bin, end, nullptr);
    gst_element_link(bin, end);
    const GstOwned<GstPad> sink(gst_element_get_static_pad(bin, "sink"));
    gst_element_add_pad(whole, gst_ghost_pad_new("sink", sink.get()));
    return whole;
}

}  // namespace

PeerMedia::PeerMedia(std::string peerName, std::shared_ptr<SoundMixer> mixer,
                     VideoSink::PictureCallback picture)
    : name(std::move(peerName)),
      videoSink(name, std::make_shared<ContainerColor>(),
                [this, callback = std::move(picture)](const std::shared_ptr<const MappedPicture>& shown) {
                    ++pictures;
                    width = shown->Width();
                    height = shown->Height();
                    if (videoDecoded && callback) callback(shown);
                }),
      audioSink(std::move(mixer)) {}

GstPadProbeReturn PeerMedia::DropHugePictures(GstPad*, GstPadProbeInfo* probe, gpointer data) {
    auto* const self = static_cast<PeerMedia*>(data);
    GstMapInfo frame;
    GstBuffer* buffer = GST_PAD_PROBE_INFO_BUFFER(probe);
    if (buffer == nullptr || gst_buffer_map(buffer, &frame, GST_MAP_READ) == FALSE) return GST_PAD_PROBE_OK;
    const auto size = ReadKeyFrameSize({frame.data, frame.size});
    gst_buffer_unmap(buffer, &frame);
    // Those that build on a key frame share its lot.
    if (size) {
        self->isHuge = std::int64_t{size->width} * size->height > kMostDecodedPixels;
        if (self->isHuge && !std::exchange(self->hugeWasLogged, true)) {
            LOG(kLogWarning, "\"%s\" sends pictures of %d x %d, which are not shown", self->name.c_str(),
                size->width, size->height);
        }
    }
    return self->isHuge ? GST_PAD_PROBE_DROP : GST_PAD_PROBE_OK;
}

GstElement* PeerMedia::MakeVideoBin() {
    GstElement* decoder = ParseBin(
        "queue ! rtpvp8depay request-keyframe=true wait-for-keyframe=true ! vp8dec name=decoder threads=1",
        name);
    if (decoder == nullptr) return nullptr;
    const GstOwned<GstElement> decoding(gst_bin_get_by_name(GST_BIN(decoder), "decoder"));
    const GstOwned<GstPad> decoded(gst_element_get_static_pad(decoding.get(), "src"));
    gst_pad_add_probe(decoded.get(), GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM, NameColor, nullptr, nullptr);
    // A few bytes can announce a picture of gigabytes: the frame's header is looked at ahead of the decoder.
    const GstOwned<GstPad> undecoded(gst_element_get_static_pad(decoding.get(), "sink"));
    gst_pad_add_probe(undecoded.get(), GST_PAD_PROBE_TYPE_BUFFER, DropHugePictures, this, nullptr);
    const GstOwned<GstCaps> caps(gst_caps_from_string("video/x-raw,format=I420"));
    return Join(decoder, videoSink.MakeBin(caps.get(), false));
}

GstElement* PeerMedia::MakeAudioBin() {
    return Join(ParseBin("queue ! rtpopusdepay ! opusdec plc=true", name), audioSink.MakeBin(gain));
}

void PeerMedia::Connect(GstBin* pipeline, GstPad* pad) {
    GstCaps* current = gst_pad_get_current_caps(pad);
    const GstOwned<GstCaps> caps(current != nullptr ? current : gst_pad_query_caps(pad, nullptr));
    std::string_view encoding;
    if (caps && gst_caps_get_size(caps.get()) > 0) {
        const char* text = gst_structure_get_string(gst_caps_get_structure(caps.get(), 0), "encoding-name");
        if (text != nullptr) encoding = text;
    }
    GstElement* bin = nullptr;
    const bool isVideo = encoding == "VP8" && !hasVideo.exchange(true);
    if (isVideo) bin = MakeVideoBin();
    const bool isAudio = encoding == "OPUS" && !hasAudio.exchange(true);
    if (isAudio) bin = MakeAudioBin();
    if (bin == nullptr) {
        bin = gst_element_factory_make("fakesink", nullptr);
        if (bin == nullptr) return;
        g_object_set(bin, "sync", FALSE, "async", FALSE, nullptr);
    }
    gst_bin_add(pipeline, bin);
    const GstOwned<GstPad> sink(gst_element_get_static_pad(bin, "sink"));
    if (isVideo) {
        AddSwitch(sink.get(), videoDecoded);
        const std::lock_guard lock(padMutex);
        videoPad.reset(GST_PAD(gst_object_ref(sink.get())));
    }
    if (isAudio) AddSwitch(sink.get(), audioDecoded);
    gst_pad_link(pad, sink.get());
    gst_element_sync_state_with_parent(bin);
}

void PeerMedia::SetVideoDecoded(bool decoded) {
    if (videoDecoded.exchange(decoded) == decoded || !decoded) return;
    RequestKeyFrame();
}

void PeerMedia::SetGain(double linear) {
    gain = linear;
    audioSink.SetGain(linear);
}

void PeerMedia::RequestKeyFrame() {
    GstOwned<GstPad> pad;
    {
        const std::lock_guard lock(padMutex);
        if (!videoPad) return;
        pad.reset(GST_PAD(gst_object_ref(videoPad.get())));
    }
    gst_pad_push_event(pad.get(), gst_video_event_new_upstream_force_key_unit(GST_CLOCK_TIME_NONE, TRUE, 0));
}

}  // namespace Corvanta::Engine
