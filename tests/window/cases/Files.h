// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <vector>

#include "window/cases/Cases.h"

/// The files of this folder, read once.
namespace cases {

const std::vector<Case>& all();
const std::map<std::string, Results>& results();

}  // namespace cases
