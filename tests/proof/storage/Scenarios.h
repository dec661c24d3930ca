// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "Disk.h"
#include "Television.h"

namespace virtualtv::proof {

/// Something that a set does with what it keeps, on a disk as some other run has left it.
struct Scenario {
  std::string name;
  Image disk;
  bool startFails;     ///< the disk may fail from the start on, not only once the set is on
  std::string line;    ///< what the set is then told; empty for nothing
  std::size_t writes;  ///< that it makes in health: what is kept changes so often, each time all at once
};

/// All of them. Their files lie in a directory, which gets the lists that they import.
std::vector<Scenario> makeScenarios(const std::filesystem::path& directory);

/// A day in the life of a set, a session after the other, for power to be lost in. Reaches everything that a set keeps,
/// and goes on for long enough that SQLite brings its log into the database on the way.
std::vector<Lines> sessionsOfADay(const std::filesystem::path& directory);

}  // namespace virtualtv::proof
