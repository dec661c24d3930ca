// Runs the benchmarks of the server, which ends before the program's own objects do.
#include <benchmark/benchmark.h>

#include <exception>
#include <iostream>

#include "Served.h"

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  int status = 0;
  try {
    benchmark::RunSpecifiedBenchmarks();
  } catch (const std::exception& exception) {
    std::cerr << "bench_served: " << exception.what() << '\n';
    status = 1;
  }
  benchmark::Shutdown();
  bench::Served::drop();
  return status;
}
