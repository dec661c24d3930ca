// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "seam/Operations.h"

namespace comparison {

/// The words for each way to make a call of an operation fail: numbers that mean failure or an unexpected success, a
/// null pointer, nothing written, an exception, and outputs of every kind, including overlong and invalid ones.
const std::vector<std::string>& waysOf(const virtualtv::seam::Operation& operation);

/// A few of these ways, for combined faults.
const std::vector<std::string>& someWaysOf(const virtualtv::seam::Operation& operation);

/// The operations that many commands call.
const std::vector<const virtualtv::seam::Operation*>& commonOperations();

/// The line that sets a fault. @param nth  the first call that it hits. @param lasting  as in "always" or "times=2".
std::string faultLine(const virtualtv::seam::Operation& operation, std::uint64_t nth, const std::string& lasting,
                      const std::string& words);

}  // namespace comparison
