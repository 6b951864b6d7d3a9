#include "engine/webrtc/DeviceList.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>

#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

constexpr std::array kReservedNames{kTestPicture, kTestTone, kNoDevice};

std::optional<DeviceKind> KindOf(GstDevice* device) {
    if (gst_device_has_classes(device, "Video/Source") != FALSE) return DeviceKind::Camera;
    if (gst_device_has_classes(device, "Audio/Sink") != FALSE) return DeviceKind::Speaker;
    if (gst_device_has_classes(device, "Audio/Source") == FALSE) return std::nullopt;
    // Sound servers list what every speaker plays as a microphone.
    GstStructure* properties = gst_device_get_properties(device);
    if (properties == nullptr) return DeviceKind::Microphone;
    const char* role = gst_structure_get_string(properties, "device.class");
    const bool isMonitor = role != nullptr && std::string_view(role) == "monitor";
    gst_structure_free(properties);
    return isMonitor ? std::nullopt : std::optional(DeviceKind::Microphone);
}

}  // namespace

DeviceList& DeviceList::Get() {
    static DeviceList list;
    return list;
}

DeviceList::~DeviceList() {
    Stop();
}

void DeviceList::EnsureStarted() {
    if (isStarted) return;
    const std::lock_guard life(lifeMutex);
    if (isStarted || !EnsureGStreamer()) return;
    monitor.reset(gst_device_monitor_new());
    for (const char* kind : {"Video/Source", "Audio/Source", "Audio/Sink"}) {
        gst_device_monitor_add_filter(monitor.get(), kind, nullptr);
    }
    if (gst_device_monitor_start(monitor.get()) == FALSE) {
        LOG(kLogInformation, "Nothing that is installed tells of this machine's cameras and sound devices");
        isStarted = true;
        return;
    }
    Refresh();
    loop = std::make_unique<EngineLoop>();
    const GstOwned<GstBus> bus(gst_device_monitor_get_bus(monitor.get()));
    watch.reset(gst_bus_create_watch(bus.get()));
    const GstBusFunc onMessage = [](GstBus*, GstMessage* message, gpointer self) -> gboolean {
        constexpr int kNews =
            GST_MESSAGE_DEVICE_ADDED | GST_MESSAGE_DEVICE_REMOVED | GST_MESSAGE_DEVICE_CHANGED;
        auto& list = *static_cast<DeviceList*>(self);
        if ((GST_MESSAGE_TYPE(message) & kNews) != 0 && list.Refresh()) list.changed.Call();
        return TRUE;
    };
    g_source_set_callback(watch.get(), G_SOURCE_FUNC(onMessage), this, nullptr);
    g_source_attach(watch.get(), loop->Context());
    loop->Start([running = loop.get()] { running->Run(); });
    isStarted = true;
}

void DeviceList::Stop() {
    const std::lock_guard life(lifeMutex);
    if (loop) {
        loop->Quit();
        loop->Join();
        g_source_destroy(watch.get());
        watch.reset();
        loop.reset();
        gst_device_monitor_stop(monitor.get());
    }
    monitor.reset();
    {
        const std::lock_guard lock(entriesMutex);
        entries.clear();
    }
    isStarted = false;
}

std::string DeviceList::UniqueNameLocked(DeviceKind kind, const std::string& name) const {
    const auto isTaken = [&](const std::string& candidate) {
        return std::find(kReservedNames.begin(), kReservedNames.end(), candidate) != kReservedNames.end() ||
               std::any_of(entries.begin(), entries.end(),
                           [&](const Entry& entry) { return entry.kind == kind && entry.name == candidate; });
    };
    const std::string stem = name.empty() ? "Device" : name;
    std::string candidate = stem;
    for (int number = 2; isTaken(candidate); ++number) {
        candidate = stem;
        candidate += " (" + std::to_string(number) + ")";
    }
    return candidate;
}

bool DeviceList::Refresh() {
    GList* const found = gst_device_monitor_get_devices(monitor.get());
    const std::lock_guard lock(entriesMutex);
    const std::size_t gone = std::erase_if(
        entries, [&](const Entry& entry) { return g_list_find(found, entry.device.get()) == nullptr; });
    bool hasNew = false;
    for (GList* item = found; item != nullptr; item = item->next) {
        auto* const device = static_cast<GstDevice*>(item->data);
        const bool isKnown = std::any_of(entries.begin(), entries.end(),
                                         [&](const Entry& entry) { return entry.device.get() == device; });
        const auto kind = isKnown ? std::nullopt : KindOf(device);
        if (!kind) continue;
        std::string name = UniqueNameLocked(*kind, TakeText(gst_device_get_display_name(device)));
        entries.push_back({*kind, std::move(name), nullptr});
        entries.back().device.reset(GST_DEVICE(gst_object_ref(device)));
        hasNew = true;
    }
    g_list_free_full(found, gst_object_unref);
    return hasNew || gone > 0;
}

std::vector<std::string> DeviceList::Names(DeviceKind kind) {
    EnsureStarted();
    const std::lock_guard lock(entriesMutex);
    std::vector<std::string> names;
    for (const Entry& entry : entries) {
        if (entry.kind == kind) names.push_back(entry.name);
    }
    return names;
}

GstOwned<GstElement> DeviceList::MakeElement(DeviceKind kind, const std::string& name) {
    EnsureStarted();
    const std::lock_guard lock(entriesMutex);
    for (const Entry& entry : entries) {
        if (entry.kind != kind || entry.name != name) continue;
        GstElement* const element = gst_device_create_element(entry.device.get(), nullptr);
        return GstOwned<GstElement>(element == nullptr ? nullptr : GST_ELEMENT(gst_object_ref_sink(element)));
    }
    return nullptr;
}

}  // namespace Corvanta::Engine
