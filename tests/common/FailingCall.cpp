// SPDX-License-Identifier: Apache-2.0
// The linker replaces each NAME here by __wrap_NAME; __real_NAME is the original.
#include "common/FailingCall.h"

#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <new>

#include <openssl/bio.h>

namespace {

struct Order {
    support::LibraryCall call = support::LibraryCall::Malloc;
    int left = -1;  // the call that fails, counted from now; 0 after it, below 0 if none shall
};

thread_local Order order;

bool fails(support::LibraryCall call) {
    return order.left > 0 && order.call == call && --order.left == 0;
}

}  // namespace

extern "C" {

void* __real_malloc(size_t size);
char* __real_strdup(const char* text);
// _Znwm is operator new(std::size_t) where std::size_t is an unsigned long.
void* __real__Znwm(size_t size);
void* __real__ZnamRKSt9nothrow_t(size_t size, const std::nothrow_t& tag);
char* __real_setlocale(int category, const char* locale);
BIO* __real_BIO_new(const BIO_METHOD* method);

void* __wrap_malloc(size_t size) {
    return fails(support::LibraryCall::Malloc) ? nullptr : __real_malloc(size);
}

char* __wrap_strdup(const char* text) {
    return fails(support::LibraryCall::Strdup) ? nullptr : __real_strdup(text);
}

int __wrap_asprintf(char** text, const char* format, ...) __attribute__((format(printf, 2, 3)));

int __wrap_asprintf(char** text, const char* format, ...) {
    if (fails(support::LibraryCall::Asprintf)) {
        return -1;
    }
    va_list arguments;
    va_start(arguments, format);
    const int length = vasprintf(text, format, arguments);
    va_end(arguments);
    return length;
}

void* __wrap__Znwm(size_t size) {
    if (fails(support::LibraryCall::New)) {
        throw std::bad_alloc();
    }
    return __real__Znwm(size);
}

void* __wrap__ZnamRKSt9nothrow_t(size_t size, const std::nothrow_t& tag) {
    return fails(support::LibraryCall::NewArray) ? nullptr : __real__ZnamRKSt9nothrow_t(size, tag);
}

char* __wrap_setlocale(int category, const char* locale) {
    return fails(support::LibraryCall::SetLocale) ? nullptr : __real_setlocale(category, locale);
}

BIO* __wrap_BIO_new(const BIO_METHOD* method) {
    return fails(support::LibraryCall::NewBio) ? nullptr : __real_BIO_new(method);
}

}  // extern "C"

namespace support {

FailingCall::FailingCall(LibraryCall call, int spared) {
    order = {call, spared + 1};
}

FailingCall::~FailingCall() {
    order = {};
}

bool FailingCall::happened() const {
    return order.left == 0;
}

}  // namespace support
