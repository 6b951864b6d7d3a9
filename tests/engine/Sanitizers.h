// Whether a sanitizer watches, under which everything takes its time and freed memory is kept for a while.
#pragma once

namespace Corvanta::Engine {

#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool kIsSanitized = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
inline constexpr bool kIsSanitized = true;
#else
inline constexpr bool kIsSanitized = false;
#endif
#else
inline constexpr bool kIsSanitized = false;
#endif

// For tests that do the same again and again to see what stays behind.
inline constexpr int kManyTimes = kIsSanitized ? 10 : 50;

}  // namespace Corvanta::Engine
