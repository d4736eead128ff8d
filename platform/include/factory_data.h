// SPDX-License-Identifier: Apache-2.0
// Records that the factory wrote into the set.
#pragma once

#ifdef __cplusplus
extern "C" {
#endif

enum {
    FACTORY_DATA_SERVER_TYPE = 517,      // ID of the record with the type of the set's server
    FACTORY_DATA_RECORD_SIZE = 1008,     // bytes that a record's buffer must have
    FACTORY_DATA_TYPE_SERVER_RECORD = 2  // type of that record; its first 32-bit integer is 0 for
                                         // the operating server
};

// Reads the record ID into BUFFER of FACTORY_DATA_RECORD_SIZE bytes. Returns the record's type, or
// a negative value.
int GetData(int id, void* buffer);

#ifdef __cplusplus
}
#endif
