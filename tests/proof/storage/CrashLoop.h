// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>

#include "Findings.h"

namespace virtualtv::proof {

/// Cuts the power at every change that a set's first start makes to the disk, and at random moments of its day, each
/// before a write, a sync or another change. Unsynced data is then lost, or partly there, with torn writes. The set
/// that starts on that disk must have everything that was acknowledged. A write in progress must be either complete or
/// absent.
void loopOverCrashes(const std::filesystem::path& directory, std::uint64_t crashes, std::uint32_t seed,
                     Findings& findings);

}  // namespace virtualtv::proof
