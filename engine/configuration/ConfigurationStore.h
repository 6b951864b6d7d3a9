// The key-value store in memory, its listeners, and the thread that writes it to the disk some moments after
// a change. Any thread; no lock is held while a listener is called or the disk is touched.
#pragma once

#include <condition_variable>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

#include "engine/common/CallTracker.h"
#include "engine/configuration/ConfigurationFile.h"
#include "platform/Configuration.h"

namespace Corvanta::Engine {

class ConfigurationStore final {
public:
    // The one store of the process. It reads the user's folder at the first use unless Open came before.
    static ConfigurationStore& Get();

    ConfigurationStore() = default;
    // Writes what is not yet written.
    ~ConfigurationStore();
    ConfigurationStore(const ConfigurationStore&) = delete;
    ConfigurationStore& operator=(const ConfigurationStore&) = delete;

    // Writes what is not yet written, then takes the values of another folder; empty for the user's.
    // Listeners stay and are not told.
    void Open(std::filesystem::path folder);
    [[nodiscard]] std::filesystem::path Folder();

    [[nodiscard]] std::optional<ConfigurationValue> Find(const std::string& key);
    // False when the value cannot be stored: no key, or a text that is no UTF-8, or a number that is not
    // finite.
    bool Store(const std::string& key, ConfigurationValue value);

    void Subscribe(ConfigurationListener* listener);
    // Waits for a call in progress on another thread.
    void Unsubscribe(ConfigurationListener* listener);

    // Writes what is not yet written before it returns, and ends the writing thread until the next change.
    void Flush();

private:
    struct Subscription {
        explicit Subscription(ConfigurationListener* target) : listener(target) {}
        ConfigurationListener* listener;
        CallTracker tracker;
    };

    void OpenLocked(std::filesystem::path folder);
    void EnsureOpenLocked();
    void WriteLaterLocked();
    void RunWriter(const std::stop_token& stop);
    void Write();
    void Tell(const std::string& key, const std::string& value);

    std::mutex storeMutex;  // guards: everything down to listenersMutex
    std::condition_variable_any changed;
    bool isOpen = false;
    bool isDirty = false;
    bool failureWasLogged = false;
    std::filesystem::path location;
    ConfigurationValues values;
    std::jthread writer;

    std::mutex diskMutex;  // guards: the file, taken before storeMutex

    std::mutex listenersMutex;  // guards: subscriptions
    std::vector<std::shared_ptr<Subscription>> subscriptions;
};

// Text of a value, as listeners get it.
[[nodiscard]] std::string ToText(const ConfigurationValue& value);

}  // namespace Corvanta::Engine
