// The product's key-value store, sibling library Corvanta.Configuration. Every function may be called on any
// thread and answers from memory. Keys are dotted texts such as "DrawToolState.FontSize".
//
// Reconciled forms: sizes of texts are signed 32-bit and leave the final zero byte out; a listener is
// registered as a plain pointer, since its owner ends the registration itself.
#pragma once

#include <cstdint>
#include <string>

#include "platform/Api.h"

namespace Corvanta {

// Told of each change of a value. Called on the thread that made the change, which may be any; the store
// holds no lock of its own during the call. An object stays registered until it is unsubscribed.
class ConfigurationListener {
public:
    // `key` and `value` are valid for the call. Numbers and booleans come as their text ("true", "false").
    virtual void OnConfigurationChanged(const std::string& key, const std::string& value) = 0;

protected:
    ~ConfigurationListener() = default;
};

}  // namespace Corvanta

extern "C" {

// Readers. Each returns whether the key has a value that reads as the type asked for; if not, `value` is left
// as it was, so that a caller may preset the default.
CORVANTA_PLATFORM_API bool Configuration_GetPropertyBoolean(const char* key, bool* value);
CORVANTA_PLATFORM_API bool Configuration_GetPropertyInt(const char* key, int32_t* value);
CORVANTA_PLATFORM_API bool Configuration_GetPropertyUint32(const char* key, uint32_t* value);
CORVANTA_PLATFORM_API bool Configuration_GetPropertyDouble(const char* key, double* value);
// Length of the text in bytes, without a final zero byte.
CORVANTA_PLATFORM_API bool Configuration_GetStringPropertySize(const char* key, int32_t* size);
// Copies the text into `buffer`, which has room for `size` bytes: at most size - 1 bytes of text and a zero
// byte. A size below 1 writes nothing and returns false.
CORVANTA_PLATFORM_API bool Configuration_GetPropertyString(const char* key, char* buffer, int32_t size);

// Writers. Each returns whether the value was stored. A value that equals the stored one tells no listener.
CORVANTA_PLATFORM_API bool Configuration_SetPropertyBoolean(const char* key, bool value);
CORVANTA_PLATFORM_API bool Configuration_SetPropertyInt(const char* key, int32_t value);
CORVANTA_PLATFORM_API bool Configuration_SetPropertyUint32(const char* key, uint32_t value);
CORVANTA_PLATFORM_API bool Configuration_SetPropertyDouble(const char* key, double value);
// `value` is zero-terminated UTF-8 and is copied.
CORVANTA_PLATFORM_API bool Configuration_SetPropertyString(const char* key, const char* value);

// The folder in which the store and the product's other files of this user lie, without a slash at the end.
CORVANTA_PLATFORM_API std::string Configuration_GetLocation();

// The listener is borrowed until it is unsubscribed. Unsubscribing waits for a call in progress on another
// thread; unknown listeners are ignored.
CORVANTA_PLATFORM_API void Configuration_Subscribe(Corvanta::ConfigurationListener* listener);
CORVANTA_PLATFORM_API void Configuration_Unsubscribe(Corvanta::ConfigurationListener* listener);
}
