// SPDX-License-Identifier: MIT
// A message that is filtered, compared with one that is formatted. Both consist of the two calls that every message
// makes.
#include "Window/Src/Log.h"

#include <benchmark/benchmark.h>

#include "framework/Log.h"

namespace {

void message(benchmark::State& state, int level) {
  using virtualtv::framework::LogLine;
  const auto listening = virtualtv::framework::listenToLog(
      level, [](const LogLine& line) { benchmark::DoNotOptimize(line.message.text()); });
  int index = 0;
  for (auto _ : state) {
    KEL_LOG(kel::kInformation, "[CEmpTaskWindow::%s][Idx:%d] call end. Success.", __func__, index++);
  }
}

BENCHMARK_CAPTURE(message, filtered, -1);
BENCHMARK_CAPTURE(message, formatted, kel::kInformation);

}  // namespace
