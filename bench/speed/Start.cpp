// SPDX-License-Identifier: MIT
// A process that answers once on a state directory, from its start to its end, compared with SQLite's own shell on a
// file.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/Process.h"

namespace {

void run(const std::vector<std::string>& words) {
  bench::Process(words).awaitEnd();
}

std::string scratch(const char* name) {
  return (std::filesystem::path(BENCH_SCRATCH) / name).string();
}

void exec(benchmark::State& state) {
  const std::vector<std::string> words{EMP_WINDOW, "--state", scratch("state"), "exec", "GetChannel_Size"};
  run(words);  // creates the files
  for (auto _ : state) run(words);
}

void sqlite(benchmark::State& state) {
  const std::string file = scratch("file.db");
  run({"sqlite3", file, "CREATE TABLE IF NOT EXISTS number(value)"});
  for (auto _ : state) run({"sqlite3", file, "select 1"});
}

BENCHMARK(exec)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(sqlite)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
