#include "tests/engine/PluggedCameras.h"

#include "engine/webrtc/DeviceList.h"
#include "engine/webrtc/GstSupport.h"

namespace Corvanta::Engine {

namespace {

constexpr const char* kColor = "corvanta-test-color";
constexpr const char* kProvider = "corvantatestcameras";

std::vector<PluggedCameras::Camera>& AtStart() {
    static std::vector<PluggedCameras::Camera> cameras;
    return cameras;
}

GstElement* MakeCamera(GstDevice* device, const gchar*) {
    const unsigned color = 0xFF000000U | GPOINTER_TO_UINT(g_object_get_data(G_OBJECT(device), kColor));
    // In the format of plain webcams.
    const std::string description =
        "videotestsrc is-live=true pattern=solid-color foreground-color=" + std::to_string(color) +
        " ! capsfilter caps=video/x-raw,format=YUY2";
    return gst_parse_bin_from_description(description.c_str(), TRUE, nullptr);
}

GType DeviceType() {
    static const GType type = g_type_register_static_simple(
        GST_TYPE_DEVICE, "CorvantaTestCamera", sizeof(GstDeviceClass),
        [](gpointer itsClass, gpointer) { GST_DEVICE_CLASS(itsClass)->create_element = MakeCamera; },
        sizeof(GstDevice), nullptr, G_TYPE_FLAG_NONE);
    return type;
}

GstDevice* MakeDevice(const PluggedCameras::Camera& camera) {
    const GstOwned<GstCaps> caps(gst_caps_from_string("video/x-raw"));
    auto* const device = GST_DEVICE(g_object_new(DeviceType(), "display-name", camera.name.c_str(), "caps",
                                                 caps.get(), "device-class", "Video/Source", nullptr));
    g_object_set_data(G_OBJECT(device), kColor, GUINT_TO_POINTER(camera.color));
    return device;
}

gboolean StartProvider(GstDeviceProvider* provider) {
    for (const auto& camera : AtStart()) gst_device_provider_device_add(provider, MakeDevice(camera));
    return TRUE;
}

void SetUpProviderClass(gpointer itsClass, gpointer) {
    auto* const provider = GST_DEVICE_PROVIDER_CLASS(itsClass);
    gst_device_provider_class_set_static_metadata(provider, "Cameras of a test", "Video/Source", "For tests",
                                                  "Corvanta");
    provider->start = StartProvider;
    provider->stop = [](GstDeviceProvider*) {};
}

void Register() {
    static const bool isRegistered = [] {
        const GType type = g_type_register_static_simple(
            GST_TYPE_DEVICE_PROVIDER, "CorvantaTestCameras", sizeof(GstDeviceProviderClass),
            SetUpProviderClass, sizeof(GstDeviceProvider), nullptr, G_TYPE_FLAG_NONE);
        return gst_device_provider_register(nullptr, kProvider, GST_RANK_PRIMARY, type) != FALSE;
    }();
    static_cast<void>(isRegistered);
}

GstDeviceProvider* Provider() {
    return gst_device_provider_factory_get_by_name(kProvider);
}

}  // namespace

PluggedCameras::PluggedCameras(const std::vector<Camera>& cameras) {
    static_cast<void>(EnsureGStreamer());
    DeviceList::Get().Stop();
    Register();
    AtStart() = cameras;
}

PluggedCameras::~PluggedCameras() {
    DeviceList::Get().Stop();
    AtStart().clear();
    for (const auto& [name, device] : plugged) gst_object_unref(device);
}

void PluggedCameras::Plug(const Camera& camera) {
    GstDeviceProvider* const provider = Provider();
    GstDevice* const device = MakeDevice(camera);
    plugged[camera.name] = GST_DEVICE(gst_object_ref_sink(device));
    gst_device_provider_device_add(provider, device);
    gst_object_unref(provider);
}

void PluggedCameras::Pull(const std::string& name) {
    const auto found = plugged.find(name);
    if (found == plugged.end()) return;
    GstDeviceProvider* const provider = Provider();
    gst_device_provider_device_remove(provider, found->second);
    gst_object_unref(provider);
    gst_object_unref(found->second);
    plugged.erase(found);
}

}  // namespace Corvanta::Engine
