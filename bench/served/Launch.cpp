// SPDX-License-Identifier: MIT
// A virtual TV that a test launches: the time from the start of its Node process to the first reply, compared with a
// process that answers once plus a Node process that only connects.
#include <benchmark/benchmark.h>

#include <chrono>
#include <filesystem>
#include <string>

#include "Echo.h"
#include "support/Process.h"

namespace {

using bench::Process;
using Clock = std::chrono::steady_clock;

void addTime(benchmark::State& state, Clock::time_point start) {
  state.SetIterationTime(std::chrono::duration<double>(Clock::now() - start).count());
}

void launched(benchmark::State& state) {
  const std::string script = std::string("import {launch} from '") + CLIENT +
                             "/launch.js'; const tv = await launch({program: '" + EMP_WINDOW +
                             "'}); await tv.window.GetTVMode(); process.stdout.write('1'); await tv.close()";
  for (auto _ : state) {
    const Clock::time_point start = Clock::now();
    Process node({"node", "--input-type=module", "--eval", script});
    node.awaitOutput();
    addTime(state, start);
    node.awaitEnd();
  }
}

void connected(benchmark::State& state) {
  const bench::Echo echo;
  const std::string directory = (std::filesystem::path(BENCH_SCRATCH) / "served").string();
  const std::string script = "import {connect} from 'node:net'; const socket = connect(" + std::to_string(echo.port()) +
                             ", '127.0.0.1', () => { process.stdout.write('1'); socket.destroy() })";
  for (auto _ : state) {
    const Clock::time_point start = Clock::now();
    Process({EMP_WINDOW, "--state", directory, "exec", "GetTVMode"}).awaitEnd();
    Process node({"node", "--input-type=module", "--eval", script});
    node.awaitOutput();
    addTime(state, start);
    node.awaitEnd();
  }
}

BENCHMARK(launched)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(connected)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
