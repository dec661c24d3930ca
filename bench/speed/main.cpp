// SPDX-License-Identifier: MIT
// Runs the benchmarks of commands and of the set.
#include "support/Benchmarks.h"
#include "support/Television.h"

int main(int argc, char** argv) {
  return bench::runBenchmarks(argc, argv, "bench_speed", bench::Television::drop);
}
