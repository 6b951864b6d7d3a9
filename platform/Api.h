// How the functions of the sibling libraries are declared: undecorated, and visible from the shared library
// that defines them. CORVANTA_PLATFORM_IMPLEMENTATION is set only while such a library itself is compiled.
#pragma once

#if defined(_WIN32)
#if defined(CORVANTA_PLATFORM_IMPLEMENTATION)
#define CORVANTA_PLATFORM_API __declspec(dllexport)
#else
#define CORVANTA_PLATFORM_API
#endif
#else
#define CORVANTA_PLATFORM_API __attribute__((visibility("default")))
#endif

// Both sides of these calls are built by one C++ compiler, so standard-library types may cross under C
// linkage.
#if defined(__clang__)
#pragma clang diagnostic ignored "-Wreturn-type-c-linkage"
#endif
