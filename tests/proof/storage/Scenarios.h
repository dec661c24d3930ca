// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "Disk.h"
#include "Television.h"

namespace virtualtv::proof {

/// Something that a set does with its storage, on a disk as left by another run.
struct Scenario {
  std::string name;
  Image disk;
  bool startFails;     ///< the disk may fail from the start, not only when the set is on
  std::string line;    ///< line to run on the set; empty for none
  std::size_t writes;  ///< number of writes without faults: each is one atomic change of the storage
};

/// All of them. Their files lie in a directory, which gets the lists that they import.
std::vector<Scenario> makeScenarios(const std::filesystem::path& directory);

/// A day in the life of a set, as a series of sessions, for power cuts. It covers everything that a set persists, and
/// is long enough for SQLite to merge its log into the database.
std::vector<Lines> sessionsOfADay(const std::filesystem::path& directory);

}  // namespace virtualtv::proof
