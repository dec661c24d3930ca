// SPDX-License-Identifier: MIT
// Runs the benchmarks of the server.
#include "Served.h"
#include "support/Benchmarks.h"

int main(int argc, char** argv) {
  return bench::runBenchmarks(argc, argv, "bench_served", bench::Served::drop);
}
