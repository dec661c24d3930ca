#pragma once

#include <cstddef>
#include <string>

#include "seam/Operations.h"
#include "shell/Lines.h"

namespace virtualtv::shell {

/// What there is help on: "commands", "operations", "knobs", "faults", and the name of each command, with its full stop
/// if it has one.
Lines helpTopics();

/// The help of a topic; the overview for the empty text.
/// @param columns  width in characters that it is fitted to; 0 for lines as long as they come.
/// @throws std::invalid_argument for what is no topic.
Lines helpOn(const std::string& name, std::size_t columns = 0);

/// All values that `result=` of a fault takes for an operation, as in "N, throw".
std::string waysToFail(const seam::Operation& operation);

/// What `out.NAME=` of a fault takes, as in "a number".
std::string takenBy(const seam::Output& output);

}  // namespace virtualtv::shell
