// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

namespace bench {

/// Runs a step several times under valgrind's callgrind, which counts the instructions of all runs together. Prints the
/// label and the number of runs. Outside of valgrind nothing is counted. @param warming  number of uncounted runs
/// before, to exclude one-time costs.
void count(const char* label, int warming, int times, const std::function<void()>& step);

}  // namespace bench
