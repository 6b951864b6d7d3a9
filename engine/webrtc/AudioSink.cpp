#include "engine/webrtc/AudioSink.h"

#include <cmath>
#include <string>

#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

constexpr guint64 kLevelInterval = 100 * GST_MSECOND;

}  // namespace

GstElement* AudioSink::MakeBin(SoundOutput output, double gain) {
    const bool isAudible = output == SoundOutput::Device && HasSoundDevice();
    // Loudness is measured before the volume: who speaks does not depend on whom this listener has turned
    // down.
    const std::string description =
        "audioconvert ! audioresample ! level name=loudness ! volume name=gain ! audioconvert ! " +
        std::string(isAudible ? "autoaudiosink name=device" : "fakesink name=device sync=true");
    GError* error = nullptr;
    GstElement* bin = gst_parse_bin_from_description_full(description.c_str(), TRUE, nullptr,
                                                          GST_PARSE_FLAG_FATAL_ERRORS, &error);
    const GstOwned<GError> owned(error);
    if (bin == nullptr) {
        LOG(kLogError, "Sound cannot be played: %s", owned ? owned->message : "an element is missing");
        return nullptr;
    }
    const GstOwned<GstElement> level(gst_bin_get_by_name(GST_BIN(bin), "loudness"));
    g_object_set(level.get(), "interval", kLevelInterval, "post-messages", TRUE, nullptr);
    {
        const std::lock_guard lock(elementsMutex);
        volume.reset(gst_bin_get_by_name(GST_BIN(bin), "gain"));
        device.reset(gst_bin_get_by_name(GST_BIN(bin), "device"));
    }
    SetGain(gain);
    return bin;
}

void AudioSink::SetGain(double gain) {
    const std::lock_guard lock(elementsMutex);
    if (volume) g_object_set(volume.get(), "volume", gain, nullptr);
}

std::optional<double> AudioSink::ReadLoudness(GstMessage* message) {
    const GstStructure* structure = gst_message_get_structure(message);
    if (structure == nullptr || gst_structure_has_name(structure, "level") == FALSE) return std::nullopt;
    const GValue* levels = gst_structure_get_value(structure, "rms");
    if (levels == nullptr) return std::nullopt;
    // The element still speaks in GLib's deprecated array type.
    const auto* channels = static_cast<const GValueArray*>(g_value_get_boxed(levels));
    if (channels == nullptr || channels->n_values == 0) return std::nullopt;
    double sum = 0;
    for (guint channel = 0; channel < channels->n_values; ++channel) {
        sum += std::pow(10.0, g_value_get_double(&channels->values[channel]) / 10.0);
    }
    return sum / channels->n_values;
}

bool AudioSink::IsDevice(GstObject* sender) {
    const std::lock_guard lock(elementsMutex);
    return device && sender != nullptr &&
           (sender == GST_OBJECT(device.get()) ||
            gst_object_has_as_ancestor(sender, GST_OBJECT(device.get())) != FALSE);
}

void AudioSink::Forget() {
    const std::lock_guard lock(elementsMutex);
    volume.reset();
    device.reset();
}

bool HasSoundDevice() {
    static const bool hasDevice = [] {
        // Asking the monitor is quiet, where opening devices to see whether they work makes their drivers
        // talk.
        GstDeviceMonitor* monitor = gst_device_monitor_new();
        gst_device_monitor_add_filter(monitor, "Audio/Sink", nullptr);
        GList* devices =
            gst_device_monitor_start(monitor) != FALSE ? gst_device_monitor_get_devices(monitor) : nullptr;
        const bool found = devices != nullptr;
        g_list_free_full(devices, gst_object_unref);
        gst_device_monitor_stop(monitor);
        gst_object_unref(monitor);
        if (!found) LOG(kLogInformation, "This machine has no sound device: the room is silent");
        return found;
    }();
    return hasDevice;
}

}  // namespace Corvanta::Engine
