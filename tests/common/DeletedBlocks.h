// SPDX-License-Identifier: Apache-2.0
// Tells a test which objects were deleted.
#pragma once

#include <cstddef>
#include <unordered_set>

namespace support {

// While it lives, remembers every block that this thread gives to operator delete. Only calls from
// the program's and the tests' own code count, not those from inside a shared library. One at a
// time on a thread. An address may be given out again and then counts as deleted, so ask before
// anything else is allocated.
class DeletedBlocks {
  public:
    DeletedBlocks();
    ~DeletedBlocks();
    DeletedBlocks(const DeletedBlocks&) = delete;
    DeletedBlocks& operator=(const DeletedBlocks&) = delete;

    bool has(const void* block) const { return m_blocks.count(block) > 0; }
    size_t bytes() const { return m_bytes; }

    // Called by the replaced operator delete.
    void add(const void* block, size_t bytes);

  private:
    std::unordered_set<const void*> m_blocks;
    size_t m_bytes = 0;  // of all blocks together
};

}  // namespace support
