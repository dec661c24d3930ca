// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "seam/Operations.h"

namespace comparison {

/// The words that make a call of an operation fail, each way that it can: numbers that are no success or an unexpected
/// one, a null pointer, nothing written, an exception, and outputs of every kind, too long and broken ones included.
const std::vector<std::string>& waysOf(const virtualtv::seam::Operation& operation);

/// A few of them, for faults that come together.
const std::vector<std::string>& someWaysOf(const virtualtv::seam::Operation& operation);

/// The operations that many commands call.
const std::vector<const virtualtv::seam::Operation*>& commonOperations();

/// The line that sets a fault. @param nth  the first call that it hits. @param lasting  as in "always" or "times=2".
std::string faultLine(const virtualtv::seam::Operation& operation, std::uint64_t nth, const std::string& lasting,
                      const std::string& words);

}  // namespace comparison
