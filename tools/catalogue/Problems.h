// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace catalogue {

/// Everything that is found wrong, a line for a person each: "FILE:LINE: what".
using Problems = std::vector<std::string>;

}  // namespace catalogue
