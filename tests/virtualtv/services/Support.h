// SPDX-License-Identifier: MIT
#pragma once

#include <list>
#include <string>
#include <vector>

#include "services/ServiceStore.h"
#include "store/Database.h"
#include "virtualtv/support/Support.h"

namespace virtualtv::test {

inline const char* const serviceSchema[] = {serviceTables, listEntries, footageTables};
inline const TSTvMode anyMode(ANTENNA_NONE, SERVICE_MODE_NONE);

inline TSTvMode modeOf(int antenna, int service) {
  return {static_cast<EAntennaMode>(antenna), static_cast<EServiceMode>(service)};
}

/// A service store on a database in memory.
struct MemoryStore {
  MemoryStore() = default;
  MemoryStore(const MemoryStore&) = delete;
  MemoryStore& operator=(const MemoryStore&) = delete;

  Database database{Database::inMemory, serviceSchema};
  ServiceStore store{database};
};

/// A service with an id, on antenna 0, with a name made of its id.
Service serviceOf(std::uint64_t id, int major, int minor = 0);

/// The fields of a record in order, as in `12=7 16="News"`. Units other than printable ASCII are written \uNNNN.
std::string describe(const TCServiceData& record);

/// Criteria that can be built in one expression.
struct Criteria : TCCriteriaHelper {
  Criteria& fetch(std::initializer_list<int> fields);
  Criteria& where(int field, int value);
  Criteria& where(int field, unsigned long long value);
  Criteria& orderBy(int field, int order = SORT_ASCENDING);
};

/// The result of a list query, with each record described.
std::vector<std::string> listOf(ServiceStore& store, const TCCriteriaHelper& criteria, const TSTvMode& mode = anyMode);
/// The results of other queries; "none" when they find nothing.
std::string firstOf(ServiceStore& store, const TCCriteriaHelper& criteria, const TSTvMode& mode = anyMode);
std::string nextOf(ServiceStore& store, const TCCriteriaHelper& criteria, std::uint64_t id, bool skipLocked = false,
                   const TSTvMode& mode = anyMode);
std::string previousOf(ServiceStore& store, const TCCriteriaHelper& criteria, std::uint64_t id, bool skipLocked = false,
                       const TSTvMode& mode = anyMode);

}  // namespace virtualtv::test
