// SPDX-License-Identifier: Apache-2.0
// The linker replaces each NAME here by __wrap_NAME; __real_NAME is the original.
#include "common/DeletedBlocks.h"

#include <malloc.h>

namespace {

thread_local support::DeletedBlocks* record = nullptr;

void note(void* block) {
    support::DeletedBlocks* const current = record;
    if (current == nullptr || block == nullptr) {
        return;
    }
    record = nullptr;  // what the record itself deletes does not count
    current->add(block, malloc_usable_size(block));
    record = current;
}

}  // namespace

extern "C" {

// _ZdlPv is operator delete(void*), _ZdlPvm operator delete(void*, std::size_t).
void __real__ZdlPv(void* block);
void __real__ZdlPvm(void* block, size_t size);

void __wrap__ZdlPv(void* block) {
    note(block);
    __real__ZdlPv(block);
}

void __wrap__ZdlPvm(void* block, size_t size) {
    note(block);
    __real__ZdlPvm(block, size);
}

}  // extern "C"

namespace support {

DeletedBlocks::DeletedBlocks() {
    record = this;
}

DeletedBlocks::~DeletedBlocks() {
    record = nullptr;
}

void DeletedBlocks::add(const void* block, size_t bytes) {
    m_blocks.insert(block);
    m_bytes += bytes;
}

}  // namespace support
