// SPDX-License-Identifier: Apache-2.0
// What the sanitizers have to say of the toolkit and GLib themselves, so that they tell of ours
// alone.

extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __tsan_default_suppressions();

// Not released at the toolkit's end.
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libdbus-1.so\n"
           "leak:_dbus_strdup\n"
           "leak:eina_module_new\n"
           "leak:libecore.so\n"
           "leak:libevas.so\n";
}

// GLib hands memory from thread to thread in a way that the sanitizer cannot see in a library that
// was not built for it. The toolkit's signal handlers change errno, and its image cache takes its
// locks in both orders on one thread.
extern "C" const char* __tsan_default_suppressions() {
    return "race:libglib-2.0.so\n"
           "signal:libecore.so\n"
           "deadlock:libevas.so\n";
}
