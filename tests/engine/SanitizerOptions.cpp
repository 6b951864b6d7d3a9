// Settings of the sanitizers for these tests.
#if defined(__SANITIZE_ADDRESS__)

// GLib and fontconfig are built without frame pointers, and a leak can only be told from theirs by its whole
// stack. The search for leaks fails at the thread-local storage of the libraries that TLS loads at run time.
extern "C" __attribute__((visibility("default"))) const char* __asan_default_options() {
    return "fast_unwind_on_malloc=0:intercept_tls_get_addr=0";
}

// A program that is watched for what it says has nothing to add.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_options() {
    return "print_suppressions=0";
}

// GLib's table of names is made when the library is loaded, and the old one is left behind when it grows,
// since it is read without a lock. Fontconfig keeps some of what it reads from its files. GStreamer's list of
// the sound server's devices forgets its connection where no server runs. OpenSSL keeps the last error and a
// generator of random numbers for each thread, and those of threads that still wait for work at the end of
// the process stay behind.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions() {
    return "leak:call_init\n"
           "leak:g_intern_string\n"
           "leak:libfontconfig.so\n"
           "leak:libgstpulseaudio.so\n"
           "leak:ERR_\n"
           "leak:RAND_get0_p\n";
}

#endif

#if defined(__SANITIZE_THREAD__)

// The log's library is not instrumented: how it counts the owners of its objects stays unseen.
extern "C" __attribute__((visibility("default"))) const char* __tsan_default_suppressions() {
    return "race:spdlog\n";
}

#endif
