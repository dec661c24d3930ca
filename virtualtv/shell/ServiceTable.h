#pragma once

#include <string>

#include "services/ServiceStore.h"
#include "shell/Lines.h"

namespace virtualtv::shell {

/// Services as a table, and how many of all these are.
/// @param filter  a number for the first few, other text for those with it in the name whatever its case, empty for
/// all.
Lines serviceTable(const ServiceStore& services, const std::string& filter);

}  // namespace virtualtv::shell
