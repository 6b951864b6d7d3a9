#include "engine/webrtc/GstSupport.h"

#include <mutex>
#include <set>

#include "platform/Logger.h"

namespace Corvanta::Engine {

bool EnsureGStreamer() {
    static const bool isStarted = [] {
        GError* error = nullptr;
        if (gst_init_check(nullptr, nullptr, &error) != FALSE) return true;
        const GstOwned<GError> owned(error);
        LOG(kLogError, "GStreamer cannot start: %s", owned ? owned->message : "no reason given");
        return false;
    }();
    return isStarted;
}

GstOwned<GstElement> MakeElement(const char* factory) {
    GstElement* element = gst_element_factory_make(factory, nullptr);
    if (element != nullptr) return GstOwned<GstElement>(GST_ELEMENT(gst_object_ref_sink(element)));
    static std::mutex mutex;
    static std::set<std::string> missing;
    const std::lock_guard lock(mutex);
    if (missing.insert(factory).second)
        LOG(kLogError, "The GStreamer element \"%s\" is not installed", factory);
    return nullptr;
}

std::string TakeText(gchar* text) {
    const GstOwned<gchar> owned(text);
    return owned ? std::string(owned.get()) : std::string();
}

}  // namespace Corvanta::Engine
