// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "support/comparison/Comparison.h"

namespace comparison {

/// The last line of a pair as a transcript, with what the model has: the reply, and behind it what `parts` names of the
/// calls, the set and its keys. A set that does as the model does passes it, and one that differs there does not.
/// Of the set and its keys it asks for what differs, or, with `asksAll`, for all.
/// Leaves the set as the model has it.
std::string expectationOf(Pair& pair, const std::string& line, const Parts& parts, bool asksAll = false);

}  // namespace comparison
