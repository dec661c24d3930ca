// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

#include "Findings.h"
#include "Ways.h"

namespace virtualtv::proof {

/// Makes every disk access of a set fail, in all scenarios: reads, writes, syncs, locks and the rest, a full disk, and
/// all of them. Each fails once and, in another run, from then on. After a run, everything acknowledged must be
/// persisted, everything else completely or not at all, the failure reported, and the set must work. Without faults
/// each scenario must make its expected number of writes, an import one. @param directory  for state directories and
/// lists.
void loopOverFaults(const std::filesystem::path& directory, Choice& choice, Findings& findings);

}  // namespace virtualtv::proof
