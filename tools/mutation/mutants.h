// SPDX-License-Identifier: MIT
#pragma once
#pragma GCC system_header

#include <climits>

/// Which mutant is active: the number in the environment's MUTANT, or none.
namespace mutants {

/// True for the active one. Notes that the place was reached.
bool active(unsigned number);

/// A switch's value without one of its labels, for as long as this mutant is active.
template <typename Value, typename Label>
Value without(unsigned number, Value value, Label label) {
  return active(number) && value == static_cast<Value>(label) ? static_cast<Value>(INT_MIN) : value;
}

}  // namespace mutants
