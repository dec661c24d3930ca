// Runs the benchmarks. The set is switched off before the program's own objects end, which it stands on.
#include <benchmark/benchmark.h>

#include "support/Television.h"

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  bench::Television::drop();
  return 0;
}
