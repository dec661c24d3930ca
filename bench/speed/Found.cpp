// SPDX-License-Identifier: MIT
// The found-channel list: the cost of reading an element at its end.
#include <benchmark/benchmark.h>

#include <cstddef>
#include <stdexcept>
#include <string>

#include "framework/Reply.h"
#include "support/Television.h"

namespace {

constexpr std::size_t most = 100'000;
constexpr const char* everyType = "0";
constexpr const char* ownMode = "1";

void find(bench::Television& television) {
  television.require(1, "FindChannel", everyType, ownMode);
}

/// True for an empty reply, which would be equally fast at any index.
bool isEmpty(const std::string& reply) {
  const auto decoded = virtualtv::framework::decode(reply);
  return !decoded || virtualtv::framework::bare(*decoded).empty();
}

void field(benchmark::State& state, const std::string& query) {
  bench::Television& television = bench::Television::with(most);
  find(television);
  const std::string index = std::to_string(state.range(0));
  const std::string reply = television.execute(query, index);
  if (isEmpty(reply) || reply == television.execute(query, "-1")) {
    throw std::runtime_error(query + " does not find " + index);
  }
  for (auto _ : state) benchmark::DoNotOptimize(television.execute(query, index));
}

#define FIELD(query) BENCHMARK_CAPTURE(field, query, "GetChannel_" #query)->Arg(0)->Arg(most - 1)

FIELD(Major);
FIELD(Minor);
FIELD(Name);
FIELD(OriginNetID);
FIELD(ProgramNumber);
FIELD(PTC);
FIELD(ServiceName);
FIELD(TransportStreamID);
FIELD(Type);
FIELD(ServiceId);
FIELD(OnTVJson);

}  // namespace
