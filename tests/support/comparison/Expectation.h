// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "support/comparison/Comparison.h"

namespace comparison {

/// Writes the last line of a pair as a transcript with the results of the model: the reply, followed by those of calls,
/// set and keys that `parts` names. A set that behaves like the model passes the transcript; a different one fails it.
/// Of the set and its keys it checks those that differ, or all with `asksAll`. Leaves the set in the state of the
/// model.
std::string expectationOf(Pair& pair, const std::string& line, const Parts& parts, bool asksAll = false);

}  // namespace comparison
