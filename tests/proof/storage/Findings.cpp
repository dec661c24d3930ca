// SPDX-License-Identifier: MIT
#include "Findings.h"

#include <iostream>

namespace virtualtv::proof {

void Findings::note(std::uint64_t& kind, const std::string& where, const std::string& what) {
  constexpr std::uint64_t most = 20;
  ++kind;
  if (++printed_ <= most) std::cout << where << ": " << what << "\n";
}

void Findings::noteFault(std::uint64_t hits, const std::string& where) {
  if (hits > 0) {
    ++faults;
  } else {
    note(idle, where, "the fault is never hit");
  }
}

void Findings::print() const {
  std::cout << "figure: I/O faults injected = " << faults << "\n"
            << "figure: crash points = " << crashes << "\n"
            << "figure: states compared = " << states << "\n"
            << "figure: faults never hit = " << idle << "\n"
            << "figure: lost = " << lost << "\n"
            << "figure: corrupt = " << corrupt << "\n"
            << "figure: failures not reported = " << untold << "\n";
}

}  // namespace virtualtv::proof
