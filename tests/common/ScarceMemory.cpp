// SPDX-License-Identifier: Apache-2.0
// Lets an allocation of the program fail. The linker leads the calls of our own object files here
// (--wrap in CMakeLists.txt), so that a sanitizer keeps its own allocator.
#include "common/ScarceMemory.h"

#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <new>

namespace {

thread_local bool textsFail = false;
thread_local bool nextNewFails = false;

}  // namespace

namespace support {

ScarceTexts::ScarceTexts() {
    textsFail = true;
}

ScarceTexts::~ScarceTexts() {
    textsFail = false;
}

void failNextNew() {
    nextNewFails = true;
}

}  // namespace support

extern "C" {

int __wrap_asprintf(char** text, const char* format, ...) __attribute__((format(printf, 2, 3)));
// _Znwm is operator new(std::size_t) where std::size_t is an unsigned long.
void* __real__Znwm(std::size_t size);
void* __wrap__Znwm(std::size_t size);

int __wrap_asprintf(char** text, const char* format, ...) {
    if (textsFail) {
        return -1;
    }
    va_list arguments;
    va_start(arguments, format);
    const int length = vasprintf(text, format, arguments);
    va_end(arguments);
    return length;
}

void* __wrap__Znwm(std::size_t size) {
    if (nextNewFails) {
        nextNewFails = false;
        throw std::bad_alloc();
    }
    return __real__Znwm(size);
}

}  // extern "C"
