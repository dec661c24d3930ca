// SPDX-License-Identifier: MIT
#pragma once

#include <benchmark/benchmark.h>

#include <exception>
#include <iostream>

namespace bench {

/// Runs the benchmarks of a program. @param name  name of the program, for messages. @param drop  releases the objects
/// shared by benchmarks, before the program's own objects that they depend on. @return the program's status.
inline int runBenchmarks(int argc, char** argv, const char* name, void (*drop)()) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  int status = 0;
  try {
    benchmark::RunSpecifiedBenchmarks();
  } catch (const std::exception& exception) {
    std::cerr << name << ": " << exception.what() << '\n';
    status = 1;
  }
  benchmark::Shutdown();
  drop();
  return status;
}

}  // namespace bench
