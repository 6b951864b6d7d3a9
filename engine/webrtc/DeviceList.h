// The machine's cameras, microphones and speakers, as GStreamer's device monitor tells them. It is started at
// the first question and watched on a thread of the list's own. Any thread; everything but that first
// question is answered from memory, and no lock is held while the listener is called.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "engine/Engine.h"
#include "engine/common/EngineLoop.h"
#include "engine/common/GuardedCallback.h"
#include "engine/webrtc/GstSupport.h"

namespace Corvanta::Engine {

// The choice of no device, as the settings name it.
inline constexpr const char* kNoDevice = "None";

class DeviceList final {
public:
    // The one list of the process.
    [[nodiscard]] static DeviceList& Get();

    ~DeviceList();
    DeviceList(const DeviceList&) = delete;
    DeviceList& operator=(const DeviceList&) = delete;

    // The machine's own devices, those that were there first in front. No two of a kind have the same name,
    // and none is called like a generated device or like the choice of none.
    [[nodiscard]] std::vector<std::string> Names(DeviceKind kind);

    // A new element that captures from the device, or plays on it; null when there is none of that name.
    [[nodiscard]] GstOwned<GstElement> MakeElement(DeviceKind kind, const std::string& name);

    // Called on the list's thread after a change. Replacing it waits for a call in progress elsewhere.
    void SetListener(std::function<void()> listener) { changed.Set(std::move(listener)); }

    // Ends the watching, until the next question. The listener stays.
    void Stop();

private:
    struct DeviceReleaser {
        void operator()(GstDevice* object) const { gst_object_unref(object); }
        void operator()(GstDeviceMonitor* object) const { gst_object_unref(object); }
    };
    struct Entry {
        DeviceKind kind;
        std::string name;
        std::unique_ptr<GstDevice, DeviceReleaser> device;
    };

    DeviceList() = default;
    void EnsureStarted();
    // Takes over what the monitor knows. False when nothing has changed.
    bool Refresh();
    // The name for a new device of that kind. With entriesMutex held.
    [[nodiscard]] std::string UniqueNameLocked(DeviceKind kind, const std::string& name) const;

    // Set for as long as the three below are there to be used; so the list's own thread, which Stop waits
    // for, never waits for lifeMutex.
    std::atomic<bool> isStarted = false;
    std::mutex lifeMutex;  // guards: the three below
    std::unique_ptr<EngineLoop> loop;
    std::unique_ptr<GstDeviceMonitor, DeviceReleaser> monitor;
    GstOwned<GSource> watch;

    std::mutex entriesMutex;  // guards: entries; taken after lifeMutex
    std::vector<Entry> entries;

    GuardedCallback<void()> changed;
};

}  // namespace Corvanta::Engine
