// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "support/comparison/Comparison.h"

namespace comparison {

/// Writes the last line of a pair as a transcript with the results of the model: the reply, then the parts named by
/// `parts`. A set that behaves like the model passes the transcript; any other set fails it. Queries only those knobs
/// and keys that differ, or all of them with `asksAll`. Afterwards the set of the pair is in the state of the model.
std::string expectationOf(Pair& pair, const std::string& line, const Parts& parts, bool asksAll = false);

}  // namespace comparison
