// SPDX-License-Identifier: MIT
// Random sequences of commands and of changes from outside do what the model says, also when calls fail.
//
// MODEL_SEED=N starts with another seed. MODEL_RUNS=N runs as many scripts, each with the next seed. MODEL_LINES=N sets
// their length. A failure prints the seed and the shrunk script, which has no line that could be dropped.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "support/comparison/Comparison.h"
#include "support/comparison/Scripts.h"

namespace comparison {
namespace {

std::uint64_t chosen(const char* variable, std::uint64_t otherwise) {
  const char* const text = std::getenv(variable);
  return text == nullptr ? otherwise : std::stoull(text);
}

bool differs(const Script& script) {
  return compare(script).has_value();
}

/// Runs scripts and fails on the first that differs.
void runScripts(Faults faults) {
  const std::uint64_t firstSeed = chosen("MODEL_SEED", 1);
  const std::uint64_t runs = chosen("MODEL_RUNS", 60);
  const std::uint64_t lines = chosen("MODEL_LINES", 160);
  const model::Set set = startingSet();
  for (std::uint64_t seed = firstSeed; seed < firstSeed + runs; ++seed) {
    Script script = randomScript(seed, lines, set, faults);
    if (!differs(script)) continue;
    script = shrunk(std::move(script), differs);
    const Difference difference = compare(script).value();
    FAIL() << "seed " << seed << ": by the model this holds:\n" << difference.expectation << difference.details;
  }
}

TEST(RandomScripts, PlugInAndSetDoWhatTheModelDoes) {
  runScripts(Faults::none);
}

TEST(RandomScripts, PlugInAndSetDoWhatTheModelDoesWhereCallsFail) {
  runScripts(Faults::some);
}

}  // namespace
}  // namespace comparison
