// SPDX-License-Identifier: MIT
// Finding the row of a command's name, compared with the C++ library's hash table.
#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "Window/Src/Commands.h"

namespace {

using Names = std::vector<std::string>;

/// Names of all commands.
Names known() {
  std::size_t count = 0;
  const kel::Command* const rows = kel::CommandTable(count);
  Names names;
  for (std::size_t at = 0; at < count; ++at) names.emplace_back(rows[at].name);
  return names;
}

/// Unknown names, derived from known ones: misspelt, truncated, lengthened, in another case.
Names unknown() {
  std::mt19937_64 random(2);
  Names names;
  for (const std::string& name : known()) {
    const std::size_t at = random() % name.size();
    std::string misspelt = name;
    misspelt[at] = misspelt[at] == 'x' ? 'y' : 'x';
    std::string inLowerCase = name;
    inLowerCase[0] = static_cast<char>(inLowerCase[0] - 'A' + 'a');
    for (const std::string& made : {misspelt, name.substr(0, at), name + "Ex2", inLowerCase}) {
      if (kel::FindCommand(made) == nullptr) names.push_back(made);
    }
  }
  return names;
}

/// The sequence of names to look up, too long for a branch predictor to learn.
std::vector<std::uint16_t> questions(const Names& names) {
  constexpr std::size_t asked = 1 << 14;
  std::mt19937_64 random(1);
  std::vector<std::uint16_t> questions;
  for (std::size_t at = 0; at < asked; ++at) questions.push_back(static_cast<std::uint16_t>(random() % names.size()));
  return questions;
}

void row(benchmark::State& state, const Names& names) {
  const std::vector<std::uint16_t> asked = questions(names);
  for (auto _ : state) {
    for (const std::uint16_t at : asked) benchmark::DoNotOptimize(kel::FindCommand(names[at]));
  }
}

void map(benchmark::State& state, const Names& names) {
  std::size_t count = 0;
  const kel::Command* const rows = kel::CommandTable(count);
  std::unordered_map<std::string, const kel::Command*> map;
  for (std::size_t at = 0; at < count; ++at) map.emplace(rows[at].name, rows + at);
  const std::vector<std::uint16_t> asked = questions(names);
  for (auto _ : state) {
    for (const std::uint16_t at : asked) {
      const auto found = map.find(names[at]);
      benchmark::DoNotOptimize(found == map.end() ? nullptr : found->second);
    }
  }
}

BENCHMARK_CAPTURE(row, known, known());
BENCHMARK_CAPTURE(map, known, known());
BENCHMARK_CAPTURE(row, unknown, unknown());
BENCHMARK_CAPTURE(map, unknown, unknown());

}  // namespace
