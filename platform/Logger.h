// The product's log, sibling library Corvanta.Logger. May be called on any thread, before anything else is
// started and after everything has stopped; never blocks on a device and never throws.
#pragma once

#include "platform/Api.h"

enum LogLevel : int {
    kLogDebug = 1,
    kLogInformation = 2,
    kLogWarning = 3,
    kLogError = 4,
};

#if defined(__MINGW32__)
#define CORVANTA_PRINTF_LIKE(formatIndex, firstArgument) \
    __attribute__((format(gnu_printf, formatIndex, firstArgument)))
#elif defined(__GNUC__)
#define CORVANTA_PRINTF_LIKE(formatIndex, firstArgument) \
    __attribute__((format(printf, formatIndex, firstArgument)))
#else
#define CORVANTA_PRINTF_LIKE(formatIndex, firstArgument)
#endif

// Writes one line. `level` is a LogLevel (any other value counts as a warning); `format` and what follows are
// as for printf, and are read before the call returns. No line feed at the end.
extern "C" CORVANTA_PLATFORM_API void Logger_Log(int level, const char* format, ...)
    CORVANTA_PRINTF_LIKE(2, 3);

#define LOG(level, ...) ::Logger_Log((level), __VA_ARGS__)
