// Corvanta.Configuration as recorders over FakeResults::configuration.

#include <algorithm>
#include <cstring>
#include <limits>
#include <optional>

#include "platform/Configuration.h"
#include "tests/fake_platform/FakePlatform.h"

using Corvanta::Testing::Calls;
using Corvanta::Testing::ConfigurationValue;
using Corvanta::Testing::Fake;
using Corvanta::Testing::FakeResults;
using Corvanta::Testing::UncountedScope;

namespace {

std::optional<ConfigurationValue> Find(const char* key) {
    return Fake().Get([&](const FakeResults& results) -> std::optional<ConfigurationValue> {
        const auto found = results.configuration.find(key);
        return found == results.configuration.end() ? std::nullopt : std::optional(found->second);
    });
}

bool Store(const char* key, ConfigurationValue value) {
    bool stored = false;
    Fake().Set([&](FakeResults& results) {
        stored = results.configurationWritable;
        if (stored) {
            results.configuration[key] = std::move(value);
        }
    });
    return stored;
}

// A number of either integer type, if it fits into T.
template <typename T>
std::optional<T> AsInteger(const ConfigurationValue& value) {
    int64_t number = 0;
    if (const auto* const asSigned = std::get_if<int32_t>(&value)) {
        number = *asSigned;
    } else if (const auto* const asUnsigned = std::get_if<uint32_t>(&value)) {
        number = *asUnsigned;
    } else {
        return std::nullopt;
    }
    if (number < std::numeric_limits<T>::min() || number > std::numeric_limits<T>::max()) {
        return std::nullopt;
    }
    return static_cast<T>(number);
}

template <typename T>
bool ReadInteger(const char* key, T* out) {
    const auto value = Find(key);
    const auto number = value ? AsInteger<T>(*value) : std::nullopt;
    if (number) {
        *out = *number;
    }
    return number.has_value();
}

std::optional<std::string> FindText(const char* key) {
    const auto value = Find(key);
    const auto* const text = value ? std::get_if<std::string>(&*value) : nullptr;
    return text != nullptr ? std::optional(*text) : std::nullopt;
}

}  // namespace

extern "C" {

bool Configuration_GetPropertyBoolean(const char* key, bool* value) {
    const UncountedScope uncounted;
    Calls().Record("Configuration_GetPropertyBoolean", key);
    const auto found = Find(key);
    const auto* const boolean = found ? std::get_if<bool>(&*found) : nullptr;
    if (boolean != nullptr) {
        *value = *boolean;
    }
    return boolean != nullptr;
}

bool Configuration_GetPropertyInt(const char* key, int32_t* value) {
    const UncountedScope uncounted;
    Calls().Record("Configuration_GetPropertyInt", key);
    return ReadInteger(key, value);
}

bool Configuration_GetPropertyUint32(const char* key, uint32_t* value) {
    const UncountedScope uncounted;
    Calls().Record("Configuration_GetPropertyUint32", key);
    return ReadInteger(key, value);
}

bool Configuration_GetPropertyDouble(const char* key, double* value) {
    const UncountedScope uncounted;
    Calls().Record("Configuration_GetPropertyDouble", key);
    const auto found = Find(key);
    if (!found) {
        return false;
    }
    if (const auto* const number = std::get_if<double>(&*found)) {
        *value = *number;
        return true;
    }
    const auto integer = AsInteger<int64_t>(*found);
    if (integer) {
        *value = static_cast<double>(*integer);
    }
    return integer.has_value();
}

bool Configuration_GetStringPropertySize(const char* key, int32_t* size) {
    const UncountedScope uncounted;
    Calls().Record("Configuration_GetStringPropertySize", key);
    const auto text = FindText(key);
    if (text) {
        *size = static_cast<int32_t>(text->size());
    }
    return text.has_value();
}

bool Configuration_GetPropertyString(const char* key, char* buffer, int32_t size) {
    const UncountedScope uncounted;
    Calls().Record("Configuration_GetPropertyString", key, size);
    const auto text = FindText(key);
    if (!text || size < 1) {
        return false;
    }
    const size_t length = std::min(text->size(), static_cast<size_t>(size) - 1);
    std::memcpy(buffer, text->data(), length);
    buffer[length] = '\0';
    return true;
}

bool Configuration_SetPropertyBoolean(const char* key, bool value) {
    const UncountedScope uncounted;
    Calls().Record("Configuration_SetPropertyBoolean", key, value);
    return Store(key, value);
}

bool Configuration_SetPropertyInt(const char* key, int32_t value) {
    const UncountedScope uncounted;
    Calls().Record("Configuration_SetPropertyInt", key, value);
    return Store(key, value);
}

bool Configuration_SetPropertyUint32(const char* key, uint32_t value) {
    const UncountedScope uncounted;
    Calls().Record("Configuration_SetPropertyUint32", key, value);
    return Store(key, value);
}

bool Configuration_SetPropertyDouble(const char* key, double value) {
    const UncountedScope uncounted;
    Calls().Record("Configuration_SetPropertyDouble", key, value);
    return Store(key, value);
}

bool Configuration_SetPropertyString(const char* key, const char* value) {
    const UncountedScope uncounted;
    Calls().Record("Configuration_SetPropertyString", key, value);
    return Store(key, std::string(value));
}

std::string Configuration_GetLocation() {
    const UncountedScope uncounted;
    Calls().Record("Configuration_GetLocation");
    return Fake().Get([](const FakeResults& results) { return results.configurationLocation; });
}

void Configuration_Subscribe(Corvanta::ConfigurationListener* listener) {
    const UncountedScope uncounted;
    Calls().Record("Configuration_Subscribe", listener);
    Fake().AddListener(listener);
}

void Configuration_Unsubscribe(Corvanta::ConfigurationListener* listener) {
    Calls().Record("Configuration_Unsubscribe", listener);
    Fake().RemoveListener(listener);
}
}
