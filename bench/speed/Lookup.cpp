// Finding the row of a command's name, against the hash table that the C++ library has.
#include <benchmark/benchmark.h>

#include <cstddef>
#include <random>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "Window/Src/Commands.h"

namespace {

constexpr std::size_t asked = 1 << 14;  // more than a branch predictor learns by heart

using Names = std::vector<std::string>;

/// Names of all commands, in random order.
Names known() {
  std::size_t count = 0;
  const kel::Command* const rows = kel::CommandTable(count);
  std::mt19937_64 random(1);
  Names names;
  for (std::size_t at = 0; at < asked; ++at) names.emplace_back(rows[random() % count].name);
  return names;
}

/// Names that no command has, made of those: misspelt, cut, lengthened, in another case.
Names unknown() {
  Names names = known();
  std::mt19937_64 random(2);
  for (std::string& name : names) {
    const std::size_t at = random() % name.size();
    switch (random() % 4) {
      case 0:
        name[at] = name[at] == 'x' ? 'y' : 'x';
        break;
      case 1:
        name.resize(at);
        break;
      case 2:
        name += "Ex2";
        break;
      default:
        name[0] = 'g';
        name += name[at];
        break;
    }
    if (kel::FindCommand(name) != nullptr) name = "SetNothing";
  }
  return names;
}

void row(benchmark::State& state, const Names& names) {
  for (auto _ : state) {
    for (const std::string& name : names) benchmark::DoNotOptimize(kel::FindCommand(name));
  }
}

void map(benchmark::State& state, const Names& names) {
  std::size_t count = 0;
  const kel::Command* const rows = kel::CommandTable(count);
  std::unordered_map<std::string, const kel::Command*> map;
  for (std::size_t at = 0; at < count; ++at) map.emplace(rows[at].name, rows + at);
  for (auto _ : state) {
    for (const std::string& name : names) {
      const auto found = map.find(name);
      benchmark::DoNotOptimize(found == map.end() ? nullptr : found->second);
    }
  }
}

BENCHMARK_CAPTURE(row, known, known());
BENCHMARK_CAPTURE(map, known, known());
BENCHMARK_CAPTURE(row, unknown, unknown());
BENCHMARK_CAPTURE(map, unknown, unknown());

}  // namespace
