// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace fuzz {

/// Ends the process, which is a finding, unless `holds`. @param what  is said of it on standard error.
void demand(bool holds, const std::string& what);

/// The same where nothing is to be said against something. @param against  empty when all is well.
void demandNothing(const std::string& against);

}  // namespace fuzz
