// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

#include "Findings.h"
#include "Ways.h"

namespace virtualtv::proof {

/// Lets every access fail that a set makes to its disk, in all scenarios: reads, writes, syncs, locks and the rest, a
/// disk that is full, and all of it, once and from then on, a run each. A run must end with all that was acknowledged
/// kept, what was not kept in whole or not at all, the failure reported, and a set that works.
/// @param directory  where state directories and lists may lie.
/// In health each makes as many writes as it should, an import one.
void loopOverFaults(const std::filesystem::path& directory, Choice& choice, Findings& findings);

/// The same for two databases that are open side by side: what happens to one is nothing to the other.
void loopOverTwoDatabases(const std::filesystem::path& directory, Choice& choice, Findings& findings);

}  // namespace virtualtv::proof
