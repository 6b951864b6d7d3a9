#include "engine/webrtc/VideoSink.h"

#include <utility>

#include "engine/webrtc/FrameColor.h"
#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

// A picture that is later than this is dropped, so that an overloaded machine keeps to real time. Less would
// make pictures stand still whenever the machine is busy with something else for a moment.
constexpr gint64 kMaxLatenessNs = gint64{200} * 1000 * 1000;

// Decoders write padded rows straight into the buffers that they hand on only when the sink says that it
// reads the rows' true distance; otherwise they copy every picture once.
GstPadProbeReturn AnswerAllocation(GstPad*, GstPadProbeInfo* probe, gpointer) {
    GstQuery* query = GST_PAD_PROBE_INFO_QUERY(probe);
    if (GST_QUERY_TYPE(query) != GST_QUERY_ALLOCATION) return GST_PAD_PROBE_OK;
    gst_query_add_allocation_meta(query, GST_VIDEO_META_API_TYPE, nullptr);
    return GST_PAD_PROBE_HANDLED;
}

}  // namespace

void ContainerColor::Set(const GstVideoColorimetry& description) {
    const std::lock_guard lock(colorMutex);
    color = description;
}

GstVideoColorimetry ContainerColor::Get() const {
    const std::lock_guard lock(colorMutex);
    return color;
}

VideoSink::VideoSink(std::string sourceName, std::shared_ptr<const ContainerColor> containerColor,
                     PictureCallback pictureCallback)
    : name(std::move(sourceName)),
      container(std::move(containerColor)),
      callback(std::move(pictureCallback)) {}

GstElement* VideoSink::MakeBin(const GstCaps* streamCaps, bool isRotated,
                               const std::optional<PictureShape>& shape) {
    // Left to itself the converter would rather keep an alpha channel, which no frame object shows, than the
    // depth and the matrix.
    const char* format = gst_structure_get_string(gst_caps_get_structure(streamCaps, 0), "format");
    const GstVideoFormatInfo* formatInfo = gst_video_format_get_info(
        format != nullptr ? gst_video_format_from_string(format) : GST_VIDEO_FORMAT_I420);
    const char* formats = GST_VIDEO_FORMAT_INFO_IS_RGB(formatInfo) ? kPackedFormats : kPlanarFormats;
    // The converter passes pictures through that are in one of the formats; it squares oblong pixels. It
    // never changes the colour description, so no matrix is applied but between RGB and YUV formats.
    std::string description = isRotated ? "videoconvertscale ! videoflip video-direction=auto ! " : "";
    // First, so that no picture is converted that is not shown.
    if (shape) description += "videorate ! ";
    description += "videoconvertscale ! capsfilter caps=\"video/x-raw,format=(string)";
    description += formats;
    description += ",pixel-aspect-ratio=1/1";
    if (shape) {
        description += ",width=" + std::to_string(shape->width);
        description += ",height=" + std::to_string(shape->height);
        description += ",framerate=" + std::to_string(shape->frameRate) + "/1";
    }
    description += "\" ! appsink name=pictures";
    GError* error = nullptr;
    GstElement* bin = gst_parse_bin_from_description_full(description.c_str(), TRUE, nullptr,
                                                          GST_PARSE_FLAG_FATAL_ERRORS, &error);
    const GstOwned<GError> owned(error);
    if (bin == nullptr) {
        LOG(kLogError, "\"%s\" shows no picture: %s", name.c_str(), owned ? owned->message : "no converter");
        return nullptr;
    }
    GstOwned<GstElement> sink(gst_bin_get_by_name(GST_BIN(bin), "pictures"));
    g_object_set(sink.get(), "sync", TRUE, "qos", TRUE, "max-lateness", kMaxLatenessNs, "max-buffers", 2U,
                 "drop", TRUE, "enable-last-sample", FALSE, nullptr);
    GstAppSinkCallbacks callbacks{};
    callbacks.new_sample = [](GstAppSink* source, gpointer self) {
        static_cast<VideoSink*>(self)->OnSample(source);
        return GST_FLOW_OK;
    };
    gst_app_sink_set_callbacks(GST_APP_SINK(sink.get()), &callbacks, this, nullptr);
    const GstOwned<GstPad> pad(gst_element_get_static_pad(sink.get(), "sink"));
    gst_pad_add_probe(pad.get(), GST_PAD_PROBE_TYPE_QUERY_DOWNSTREAM, AnswerAllocation, nullptr, nullptr);
    const std::lock_guard lock(elementMutex);
    appSink = std::move(sink);
    return bin;
}

bool VideoSink::IsAtEnd() {
    const std::lock_guard lock(elementMutex);
    return appSink && gst_app_sink_is_eos(GST_APP_SINK(appSink.get())) != FALSE;
}

void VideoSink::Forget() {
    const std::lock_guard lock(elementMutex);
    appSink.reset();
    lastCaps.reset();
}

void VideoSink::OnSample(GstAppSink* sink) {
    const GstOwned<GstSample> sample(gst_app_sink_pull_sample(sink));
    if (!sample) return;
    GstBuffer* buffer = gst_sample_get_buffer(sample.get());
    GstCaps* caps = gst_sample_get_caps(sample.get());
    if (buffer == nullptr || caps == nullptr) return;
    if (!lastCaps || gst_caps_is_equal(lastCaps.get(), caps) == FALSE) {
        if (gst_video_info_from_caps(&info, caps) == FALSE) return;
        lastCaps.reset(gst_caps_ref(caps));
        color = DescribeColor(info, caps, container->Get());
    }
    const auto picture = MappedPicture::Make(buffer, info, color);
    if (!picture) {
        if (!std::exchange(failureWasLogged, true)) {
            LOG(kLogError, "The pictures of \"%s\" cannot be read: %s", name.c_str(),
                TakeText(gst_caps_to_string(caps)).c_str());
        }
        return;
    }
    callback(picture);
}

}  // namespace Corvanta::Engine
