// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "Disk.h"
#include "Television.h"

namespace virtualtv::proof {

/// An action of a set on its storage. The disk has the state in which another run left it.
struct Scenario {
  std::string name;
  Image disk;
  bool startFails;     ///< the disk may fail from the start, not only when the set is on
  std::string line;    ///< line to run on the set; empty for none
  std::size_t writes;  ///< number of writes without faults: each is one atomic change of the storage
};

/// All scenarios. @param directory  for their files; the lists that they import are written there.
std::vector<Scenario> makeScenarios(const std::filesystem::path& directory);

/// A day in the life of a set, as a series of sessions, for power cuts. It covers everything that a set persists, and
/// is long enough for SQLite to merge its log into the database.
std::vector<Lines> sessionsOfADay(const std::filesystem::path& directory);

}  // namespace virtualtv::proof
