// SPDX-License-Identifier: MIT
#pragma once
#pragma GCC system_header

#include <climits>

/// The active mutant is the one with the number in the environment variable MUTANT; without it, none is active.
namespace mutants {

/// True for the active mutant. Records that the mutant's place was reached.
bool active(unsigned number);

/// Removes a label from a switch while this mutant is active: returns `value`, or a value without a label if it equals
/// `label`.
template <typename Value, typename Label>
Value without(unsigned number, Value value, Label label) {
  return active(number) && value == static_cast<Value>(label) ? static_cast<Value>(INT_MIN) : value;
}

}  // namespace mutants
