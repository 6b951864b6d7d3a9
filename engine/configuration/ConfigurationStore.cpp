#include "engine/configuration/ConfigurationStore.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <utility>

#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

// A slider that is dragged stores many values; one writing covers them.
constexpr std::chrono::milliseconds kWriteDelay{200};

bool IsStorableValue(const ConfigurationValue& value) {
    if (const auto* text = std::get_if<std::string>(&value)) return IsStorable(*text);
    if (const auto* number = std::get_if<double>(&value)) return std::isfinite(*number);
    return true;
}

}  // namespace

std::string ToText(const ConfigurationValue& value) {
    if (const auto* text = std::get_if<std::string>(&value)) return *text;
    if (const auto* flag = std::get_if<bool>(&value)) return *flag ? "true" : "false";
    if (const auto* number = std::get_if<int64_t>(&value)) return std::to_string(*number);
    std::array<char, 64> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), std::get<double>(value)).ptr;
    return {digits.data(), end};
}

ConfigurationStore& ConfigurationStore::Get() {
    static ConfigurationStore store;
    return store;
}

ConfigurationStore::~ConfigurationStore() {
    Flush();
}

void ConfigurationStore::Open(std::filesystem::path folder) {
    Flush();
    const std::lock_guard disk(diskMutex);
    const std::lock_guard lock(storeMutex);
    OpenLocked(std::move(folder));
}

std::filesystem::path ConfigurationStore::Folder() {
    const std::lock_guard lock(storeMutex);
    EnsureOpenLocked();
    return location;
}

void ConfigurationStore::OpenLocked(std::filesystem::path folder) {
    location = folder.empty() ? UserConfigurationFolder() : std::move(folder);
    values = ReadConfiguration(location);
    isOpen = true;
    isDirty = false;
    failureWasLogged = false;
}

void ConfigurationStore::EnsureOpenLocked() {
    if (!isOpen) OpenLocked({});
}

std::optional<ConfigurationValue> ConfigurationStore::Find(const std::string& key) {
    const std::lock_guard lock(storeMutex);
    EnsureOpenLocked();
    const auto found = values.find(key);
    if (found == values.end()) return std::nullopt;
    return found->second;
}

bool ConfigurationStore::Store(const std::string& key, ConfigurationValue value) {
    if (key.empty() || !IsStorable(key) || !IsStorableValue(value)) return false;
    const std::string text = ToText(value);
    {
        const std::lock_guard lock(storeMutex);
        EnsureOpenLocked();
        const auto found = values.find(key);
        if (found != values.end() && found->second == value) return true;
        values.insert_or_assign(key, std::move(value));
        WriteLaterLocked();
    }
    Tell(key, text);
    return true;
}

void ConfigurationStore::WriteLaterLocked() {
    isDirty = true;
    changed.notify_all();
    if (!writer.joinable()) writer = std::jthread([this](const std::stop_token& stop) { RunWriter(stop); });
}

void ConfigurationStore::RunWriter(const std::stop_token& stop) {
    std::unique_lock lock(storeMutex);
    while (changed.wait(lock, stop, [this] { return isDirty; })) {
        changed.wait_for(lock, stop, kWriteDelay, [] { return false; });
        lock.unlock();
        Write();
        lock.lock();
        if (stop.stop_requested()) return;
    }
}

void ConfigurationStore::Write() {
    const std::lock_guard disk(diskMutex);
    ConfigurationValues snapshot;
    std::filesystem::path folder;
    {
        const std::lock_guard lock(storeMutex);
        if (!std::exchange(isDirty, false)) return;
        snapshot = values;
        folder = location;
    }
    const auto failure = WriteConfiguration(folder, snapshot);
    bool isNews = false;
    {
        const std::lock_guard lock(storeMutex);
        isNews = failure.has_value() && !failureWasLogged;
        failureWasLogged = failure.has_value();
    }
    if (isNews) {
        LOG(kLogWarning,
            "The configuration cannot be written to %s (%s): changes last until the program ends",
            folder.c_str(), failure->c_str());
    }
}

void ConfigurationStore::Flush() {
    std::jthread ending;
    {
        const std::lock_guard lock(storeMutex);
        ending = std::move(writer);
    }
    if (ending.joinable()) {
        ending.request_stop();
        ending.join();
    }
    Write();
}

void ConfigurationStore::Tell(const std::string& key, const std::string& value) {
    std::vector<std::shared_ptr<Subscription>> current;
    {
        const std::lock_guard lock(listenersMutex);
        current = subscriptions;
    }
    for (const auto& subscription : current) {
        const CallTracker::Call call(subscription->tracker);
        if (call) subscription->listener->OnConfigurationChanged(key, value);
    }
}

void ConfigurationStore::Subscribe(ConfigurationListener* listener) {
    if (listener == nullptr) return;
    const std::lock_guard lock(listenersMutex);
    for (const auto& subscription : subscriptions) {
        if (subscription->listener == listener) return;
    }
    subscriptions.push_back(std::make_shared<Subscription>(listener));
}

void ConfigurationStore::Unsubscribe(ConfigurationListener* listener) {
    std::shared_ptr<Subscription> gone;
    {
        const std::lock_guard lock(listenersMutex);
        const auto found =
            std::find_if(subscriptions.begin(), subscriptions.end(),
                         [&](const auto& subscription) { return subscription->listener == listener; });
        if (found == subscriptions.end()) return;
        gone = std::move(*found);
        subscriptions.erase(found);
    }
    gone->tracker.Close();
}

}  // namespace Corvanta::Engine
