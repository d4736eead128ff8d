// SPDX-License-Identifier: Apache-2.0
// The linker puts a __wrap_NAME in the place of each NAME here, and __real_NAME is what stood
// there.
#include "common/FailingCall.h"

#include <cstddef>
#include <new>

#include <openssl/bio.h>

namespace {

struct Order {
    support::LibraryCall call = support::LibraryCall::Malloc;
    int left = -1;  // calls up to the one that fails, with it; 0 after it, below 0 without an order
};

thread_local Order order;

bool fails(support::LibraryCall call) {
    return order.left > 0 && order.call == call && --order.left == 0;
}

}  // namespace

extern "C" {

void* __real_malloc(size_t size);
char* __real_strdup(const char* text);
void* __real__ZnamRKSt9nothrow_t(size_t size, const std::nothrow_t& tag);
char* __real_setlocale(int category, const char* locale);
BIO* __real_BIO_new(const BIO_METHOD* method);

void* __wrap_malloc(size_t size) {
    return fails(support::LibraryCall::Malloc) ? nullptr : __real_malloc(size);
}

char* __wrap_strdup(const char* text) {
    return fails(support::LibraryCall::Strdup) ? nullptr : __real_strdup(text);
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
