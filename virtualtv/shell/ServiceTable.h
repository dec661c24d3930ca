#pragma once

#include <string>

#include "set/Tv.h"
#include "shell/Lines.h"

namespace virtualtv::shell {

/// The services of a set as a table, and their number.
/// @param filter  a number for the first few, other text for those with it in the name whatever its case, empty for
/// all.
Lines serviceTable(Tv& tv, const std::string& filter);

}  // namespace virtualtv::shell
