// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "services/ServiceStore.h"
#include "shell/Lines.h"

namespace virtualtv::shell {

/// A table of services, and a line with their number and the total. @param filter  a number selects that many services
/// from the start; another text selects the services whose name contains it, ignoring case; an empty text selects all.
Lines serviceTable(const ServiceStore& services, const std::string& filter);

}  // namespace virtualtv::shell
