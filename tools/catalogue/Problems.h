// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace catalogue {

/// The errors found, each a line for a person: "FILE:LINE: what".
using Problems = std::vector<std::string>;

}  // namespace catalogue
