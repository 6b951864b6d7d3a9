// The functions of platform/Configuration.h over the store.
#include "platform/Configuration.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <optional>
#include <string>

#include "engine/configuration/ConfigurationStore.h"

namespace {

using Corvanta::Engine::ConfigurationStore;
using Corvanta::Engine::ConfigurationValue;

std::optional<ConfigurationValue> Find(const char* key) {
    return key != nullptr ? ConfigurationStore::Get().Find(key) : std::nullopt;
}

bool Store(const char* key, ConfigurationValue value) {
    return key != nullptr && ConfigurationStore::Get().Store(key, std::move(value));
}

template <class Integer>
bool ReadInteger(const char* key, Integer* value) {
    const auto stored = Find(key);
    const auto* number = stored ? std::get_if<int64_t>(&*stored) : nullptr;
    if (number == nullptr || value == nullptr || *number < std::numeric_limits<Integer>::min() ||
        *number > std::numeric_limits<Integer>::max()) {
        return false;
    }
    *value = static_cast<Integer>(*number);
    return true;
}

}  // namespace

bool Configuration_GetPropertyBoolean(const char* key, bool* value) {
    const auto stored = Find(key);
    const auto* flag = stored ? std::get_if<bool>(&*stored) : nullptr;
    if (flag == nullptr || value == nullptr) return false;
    *value = *flag;
    return true;
}

bool Configuration_GetPropertyInt(const char* key, int32_t* value) {
    return ReadInteger(key, value);
}

bool Configuration_GetPropertyUint32(const char* key, uint32_t* value) {
    return ReadInteger(key, value);
}

bool Configuration_GetPropertyDouble(const char* key, double* value) {
    const auto stored = Find(key);
    if (!stored || value == nullptr) return false;
    if (const auto* number = std::get_if<double>(&*stored)) {
        *value = *number;
        return true;
    }
    if (const auto* number = std::get_if<int64_t>(&*stored)) {
        *value = static_cast<double>(*number);
        return true;
    }
    return false;
}

bool Configuration_GetStringPropertySize(const char* key, int32_t* size) {
    const auto stored = Find(key);
    if (!stored || size == nullptr) return false;
    const std::size_t length = Corvanta::Engine::ToText(*stored).size();
    *size = static_cast<int32_t>(std::min<std::size_t>(length, std::numeric_limits<int32_t>::max()));
    return true;
}

bool Configuration_GetPropertyString(const char* key, char* buffer, int32_t size) {
    if (buffer == nullptr || size < 1) return false;
    const auto stored = Find(key);
    if (!stored) return false;
    const std::string text = Corvanta::Engine::ToText(*stored);
    const std::size_t length = std::min(text.size(), static_cast<std::size_t>(size) - 1);
    std::memcpy(buffer, text.data(), length);
    buffer[length] = '\0';
    return true;
}

bool Configuration_SetPropertyBoolean(const char* key, bool value) {
    return Store(key, value);
}

bool Configuration_SetPropertyInt(const char* key, int32_t value) {
    return Store(key, int64_t{value});
}

bool Configuration_SetPropertyUint32(const char* key, uint32_t value) {
    return Store(key, int64_t{value});
}

bool Configuration_SetPropertyDouble(const char* key, double value) {
    return Store(key, value);
}

bool Configuration_SetPropertyString(const char* key, const char* value) {
    return value != nullptr && Store(key, std::string(value));
}

std::string Configuration_GetLocation() {
    std::string location = ConfigurationStore::Get().Folder().string();
    while (location.size() > 1 && location.back() == '/') location.pop_back();
    return location;
}

void Configuration_Subscribe(Corvanta::ConfigurationListener* listener) {
    ConfigurationStore::Get().Subscribe(listener);
}

void Configuration_Unsubscribe(Corvanta::ConfigurationListener* listener) {
    ConfigurationStore::Get().Unsubscribe(listener);
}
