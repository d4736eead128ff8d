// SPDX-License-Identifier: Apache-2.0
// The factory's records of the virtual set.
#include "factory_data.h"

#include <cstdint>
#include <cstring>

#include "host/description/Description.h"

extern "C" int GetData(int id, void* buffer) {
    if (buffer == nullptr || id != FACTORY_DATA_SERVER_TYPE) {
        return -1;
    }
    const bool operating = host::Description::text(host::Field::SERVER_TYPE) == "operating";
    const std::int32_t type = operating ? 0 : 1;
    std::memset(buffer, 0, FACTORY_DATA_RECORD_SIZE);
    std::memcpy(buffer, &type, sizeof type);
    return FACTORY_DATA_TYPE_SERVER_RECORD;
}
