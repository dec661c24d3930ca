// SPDX-License-Identifier: MIT
#include "StoreMemory.h"

#include <sqlite3.h>

#include <cstddef>
#include <stdexcept>

#include "support/allocation/Allocations.h"

namespace proof {

namespace {

sqlite3_mem_methods own;

bool fails(int size) {
  return support::failsNext(static_cast<std::size_t>(size));
}

void* allocate(int size) {
  return fails(size) ? nullptr : own.xMalloc(size);
}

void* resize(void* memory, int size) {
  return fails(size) ? nullptr : own.xRealloc(memory, size);
}

}  // namespace

void takeOverStoreMemory() {
  bool taken = sqlite3_config(SQLITE_CONFIG_GETMALLOC, &own) == SQLITE_OK;
  sqlite3_mem_methods failing = own;
  failing.xMalloc = allocate;
  failing.xRealloc = resize;
  taken = taken && sqlite3_config(SQLITE_CONFIG_MALLOC, &failing) == SQLITE_OK &&
          sqlite3_config(SQLITE_CONFIG_LOOKASIDE, 0, 0) == SQLITE_OK;
  if (!taken) throw std::runtime_error("SQLite does not take the memory");
}

}  // namespace proof
