// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

#include "seam/Operations.h"
#include "shell/Lines.h"

namespace virtualtv::shell {

/// The help topics: "commands", "operations", "knobs", "faults", and the name of each command, with its full stop if it
/// has one.
Lines helpTopics();

/// The help on a topic; the overview for an empty name. @param columns  width in characters to wrap to; 0 for no
/// wrapping. @throws std::invalid_argument when there is no such topic.
Lines helpOn(const std::string& name, std::size_t columns = 0);

/// The values that `result=` of a fault can have for an operation, as in "N, throw".
std::string waysToFail(const seam::Operation& operation);

/// The values that `out.NAME=` of a fault can have, as in "NUMBER"; empty for an output that a fault can't set.
std::string takenBy(const seam::Output& output);

}  // namespace virtualtv::shell
