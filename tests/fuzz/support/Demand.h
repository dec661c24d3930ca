// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace fuzz {

/// Ends the process, which counts as a finding, unless `holds`. @param what  the message on standard error.
void demand(bool holds, const std::string& what);

/// The same for a check that returns its complaint. @param against  the complaint; empty on success.
void demandNothing(const std::string& against);

}  // namespace fuzz
