// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>

#include "Findings.h"

namespace virtualtv::proof {

/// Cuts the power at every change of the disk that a set's first start makes, and at moments of its day that are chosen
/// at random, each before a write, a sync or another change. What was not synced is gone then, or there in part, with
/// writes torn. The set that starts on that disk must have all that was acknowledged, and of what was under way all or
/// nothing.
void loopOverCrashes(const std::filesystem::path& directory, std::uint64_t crashes, std::uint32_t seed,
                     Findings& findings);

}  // namespace virtualtv::proof
