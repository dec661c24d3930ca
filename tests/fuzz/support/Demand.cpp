// SPDX-License-Identifier: MIT
#include "fuzz/support/Demand.h"

#include <cstdlib>
#include <iostream>

namespace fuzz {

void demand(bool holds, const std::string& what) {
  if (holds) return;
  std::cerr << "does not hold: " << what << std::endl;
  std::abort();
}

void demandNothing(const std::string& against) {
  demand(against.empty(), against);
}

}  // namespace fuzz
