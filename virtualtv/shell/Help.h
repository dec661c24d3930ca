#pragma once

#include <string>

#include "seam/Operations.h"
#include "shell/Lines.h"

namespace virtualtv::shell {

/// The help of a topic: "commands", "operations", "knobs", "faults", or the name of a plug-in command; the overview for
/// the empty text.
/// @throws std::invalid_argument for any other.
Lines helpOn(const std::string& name);

/// All values that `result=` of a fault takes for an operation, as in "N, throw".
std::string waysToFail(const seam::Operation& operation);

/// What `out.NAME=` of a fault takes, as in "a number".
std::string takenBy(const seam::Output& output);

}  // namespace virtualtv::shell
