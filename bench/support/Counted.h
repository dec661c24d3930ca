// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

namespace bench {

/// Runs a step so often for valgrind's callgrind, which counts the instructions of all runs together, and prints the
/// label and how often. Outside of valgrind nothing is counted.
/// @param warming  how often it runs before, so that what only a first run takes does not count.
void count(const char* label, int warming, int times, const std::function<void()>& step);

}  // namespace bench
