// Owners for GStreamer's reference-counted objects, and its start. The owners are plain values;
// EnsureGStreamer may be called on any thread.
#pragma once

#include <gst/gst.h>

#include <memory>
#include <string>

namespace Corvanta::Engine {

struct GstReleaser {
    void operator()(GstElement* element) const { gst_object_unref(element); }
    void operator()(GstPad* pad) const { gst_object_unref(pad); }
    void operator()(GstBus* bus) const { gst_object_unref(bus); }
    void operator()(GstBufferPool* pool) const { gst_object_unref(pool); }
    void operator()(GstElementFactory* factory) const { gst_object_unref(factory); }
    void operator()(GstClock* clock) const { gst_object_unref(clock); }
    void operator()(GstCaps* caps) const { gst_caps_unref(caps); }
    void operator()(GstBuffer* buffer) const { gst_buffer_unref(buffer); }
    void operator()(GstSample* sample) const { gst_sample_unref(sample); }
    void operator()(GstQuery* query) const { gst_query_unref(query); }
    void operator()(GstEvent* event) const { gst_event_unref(event); }
    void operator()(GSource* source) const { g_source_unref(source); }
    void operator()(GError* error) const { g_error_free(error); }
    void operator()(gchar* text) const { g_free(text); }
};

template <class Object>
using GstOwned = std::unique_ptr<Object, GstReleaser>;

// Starts GStreamer once in the process. False, and one log line, when it cannot start.
[[nodiscard]] bool EnsureGStreamer();

// A new element with a reference of the caller's own, or null and one log line that names the missing
// element.
[[nodiscard]] GstOwned<GstElement> MakeElement(const char* factory);

// A text that GStreamer hands over, copied and released.
[[nodiscard]] std::string TakeText(gchar* text);

}  // namespace Corvanta::Engine
