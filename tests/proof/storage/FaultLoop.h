#pragma once

#include <cstdint>
#include <filesystem>

#include "Findings.h"

namespace virtualtv::proof {

/// Lets every access fail that a set makes to its disk, in all scenarios: reads, writes, syncs, locks and the rest, a
/// disk that is full, and all of it, once and from then on, a run each. A run must end with all that was acknowledged
/// kept, what was not kept in whole or not at all, the failure reported, and a set that works.
/// @param directory  where state directories and lists may lie.
/// @param every  only each so manieth access is made to fail; 1 for all.
void loopOverFaults(const std::filesystem::path& directory, std::uint64_t every, Findings& findings);

/// The same for two databases that are open side by side: what happens to one is nothing to the other.
void loopOverTwoDatabases(const std::filesystem::path& directory, std::uint64_t every, Findings& findings);

}  // namespace virtualtv::proof
