// SPDX-License-Identifier: Apache-2.0
// What the toolkit itself does not release at its end, so that the leak sanitizer tells of ours
// alone.

extern "C" const char* __lsan_default_suppressions();

extern "C" const char* __lsan_default_suppressions() {
    return "leak:libdbus-1.so\n"
           "leak:_dbus_strdup\n"
           "leak:eina_module_new\n"
           "leak:libecore.so\n"
           "leak:libevas.so\n";
}
