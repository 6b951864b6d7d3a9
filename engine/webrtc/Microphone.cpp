#include "engine/webrtc/Microphone.h"

#include <utility>

#include "platform/Logger.h"

namespace Corvanta::Engine {

Microphone::Microphone(EngineLoop& engineLoop, AudioSink::Listener soundListener)
    : loop(engineLoop), soundSink(nullptr, std::move(soundListener)) {}

Microphone::~Microphone() {
    Close();
}

bool Microphone::Open(const GstOwned<GstElement>& source) {
    Close();
    if (!source) return false;
    pipeline.reset(GST_ELEMENT(gst_object_ref_sink(gst_pipeline_new(nullptr))));
    gst_bin_add(GST_BIN(pipeline.get()), GST_ELEMENT(gst_object_ref(source.get())));
    GstElement* const end = soundSink.MakeBin(0);
    if (end == nullptr) {
        Close();
        return false;
    }
    gst_bin_add(GST_BIN(pipeline.get()), end);
    const GstOwned<GstBus> bus(gst_element_get_bus(pipeline.get()));
    watch.reset(gst_bus_create_watch(bus.get()));
    const GstBusFunc onMessage = [](GstBus*, GstMessage* message, gpointer self) -> gboolean {
        return static_cast<Microphone*>(self)->OnMessage(message) ? TRUE : FALSE;
    };
    g_source_set_callback(watch.get(), G_SOURCE_FUNC(onMessage), this, nullptr);
    g_source_attach(watch.get(), loop.Context());
    isOpen = gst_element_link(source.get(), end) != FALSE &&
             gst_element_set_state(pipeline.get(), GST_STATE_PLAYING) != GST_STATE_CHANGE_FAILURE;
    if (isOpen) return true;
    LOG(kLogWarning, "The microphone cannot be opened");
    Close();
    return false;
}

void Microphone::Close() {
    if (watch) {
        g_source_destroy(watch.get());
        watch.reset();
    }
    if (pipeline) gst_element_set_state(pipeline.get(), GST_STATE_NULL);
    pipeline.reset();
    isOpen = false;
    loudness = 0;
}

bool Microphone::OnMessage(GstMessage* message) {
    if (const auto measured = AudioSink::ReadLoudness(message)) loudness = *measured;
    if (GST_MESSAGE_TYPE(message) != GST_MESSAGE_ERROR) return true;
    GError* error = nullptr;
    gst_message_parse_error(message, &error, nullptr);
    const GstOwned<GError> owned(error);
    LOG(kLogWarning, "The microphone has failed: %s", error->message);
    Close();
    return false;
}

}  // namespace Corvanta::Engine
