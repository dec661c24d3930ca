// Runs the benchmarks. The set is switched off before the program's own objects end, which it stands on.
#include <benchmark/benchmark.h>

#include <exception>
#include <iostream>

#include "support/Television.h"

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  int status = 0;
  try {
    benchmark::RunSpecifiedBenchmarks();
  } catch (const std::exception& exception) {
    std::cerr << "bench_speed: " << exception.what() << '\n';
    status = 1;
  }
  benchmark::Shutdown();
  bench::Television::drop();
  return status;
}
