// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

#include "Findings.h"
#include "Ways.h"

namespace virtualtv::proof {

/// Makes the disk accesses of a set fail, in all scenarios: each kind of access, accesses of any kind, and writes to a
/// full disk. Each access fails once and, in another run, from then on. After a run everything acknowledged must be
/// persisted, anything else completely or not at all, the failure reported, and the set must work. Without faults each
/// scenario must make its expected number of writes; an import makes one. @param directory  for state directories and
/// lists.
void loopOverFaults(const std::filesystem::path& directory, Choice& choice, Findings& findings);

}  // namespace virtualtv::proof
