// SPDX-License-Identifier: MIT
// A tune from an input, which writes every key that a tune can write, compared with as many writes of the store alone.
// Both are on a disk, and each write is durable when it returns.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <cstddef>
#include <stdexcept>
#include <string>

#include "store/SettingsStore.h"
#include "support/Directory.h"
#include "support/Television.h"

namespace {

constexpr std::size_t services = 100;
constexpr const char* input = "15";
constexpr const char* channelMajor = "1";
constexpr int channelMinor = 7;

void showInput(bench::Television& television) {
  television.require(1, "SetSource", input);
}

void tuneTo(bench::Television& television) {
  television.require(1, "SetChannel", channelMajor, std::to_string(channelMinor));
}

/// The number of durable writes of a tune.
std::size_t writesOf(bench::Television& television) {
  std::size_t writes = 0;
  const auto count = [](void* context) {
    ++*static_cast<std::size_t*>(context);
    return 0;
  };
  tuneTo(television);
  showInput(television);
  sqlite3_commit_hook(television.database(), count, &writes);
  tuneTo(television);
  sqlite3_commit_hook(television.database(), nullptr, nullptr);
  television.require(channelMinor, "GetCurrentChannel_Minor");
  if (writes == 0) throw std::runtime_error("a tune writes nothing");
  return writes;
}

void tune(benchmark::State& state) {
  const bench::Directory directory(BENCH_SCRATCH);
  bench::Television::drop();
  bench::Television television(services, directory.path());
  state.counters["writes"] = static_cast<double>(writesOf(television));
  for (auto _ : state) {
    state.PauseTiming();
    showInput(television);
    state.ResumeTiming();
    tuneTo(television);
  }
}

void store(benchmark::State& state) {
  const bench::Directory directory(BENCH_SCRATCH);
  bench::Television::drop();
  bench::Television television(services, directory.path());
  int value = 0;
  const auto writeAll = [&, writes = writesOf(television)] {
    for (std::size_t write = 0; write < writes; ++write) television.tv().setSetting("db/bench", ++value);
  };
  for (auto _ : state) {
    state.PauseTiming();
    writeAll();  // switching back to the input also writes all
    state.ResumeTiming();
    writeAll();
  }
}

BENCHMARK(tune)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(store)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
