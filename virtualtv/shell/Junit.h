// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "shell/Check.h"

namespace virtualtv::shell {

/// The machine-readable report, in the JUnit format: a suite for each file and a case for each of its inputs, with
/// totals and times in seconds.
std::string junitReport(const std::vector<CheckedFile>& files);

}  // namespace virtualtv::shell
