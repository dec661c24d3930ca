// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

#include "Findings.h"
#include "Ways.h"

namespace virtualtv::proof {

/// Makes disk accesses fail as `loopOverFaults` does, with two databases open side by side: a failure of one must not
/// affect the other.
void loopOverTwoDatabases(const std::filesystem::path& directory, Choice& choice, Findings& findings);

}  // namespace virtualtv::proof
