// SPDX-License-Identifier: MIT
#include "support/Counted.h"

#include <valgrind/callgrind.h>

#include <iostream>

namespace bench {

void count(const char* label, int warming, int times, const std::function<void()>& step) {
  for (int time = 0; time < warming; ++time) step();
  CALLGRIND_START_INSTRUMENTATION;
  CALLGRIND_ZERO_STATS;
  for (int time = 0; time < times; ++time) step();
  CALLGRIND_DUMP_STATS_AT(label);
  CALLGRIND_STOP_INSTRUMENTATION;
  std::cout << label << '\t' << times << '\n';
}

}  // namespace bench
