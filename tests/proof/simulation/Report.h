// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "Simulation.h"

namespace simulation {

/// What is said of a failure.
struct Report {
  std::string text;
  std::string transcript;  ///< a short script with what the model has; empty when no difference was seen again
  std::string inputs;      ///< a short script that ends in an exception; empty when none does
};

/// Writes the script that is about to run, with its seed, for whoever looks when the program does not come to its end.
void leaveBehind(std::uint64_t seed, const comparison::Script& script, const std::filesystem::path& file);

/// Writes a script into a directory, as SEED.txt: its lines as they are typed, for other sets to run.
void keepScript(std::uint64_t seed, const comparison::Script& script, const std::filesystem::path& directory);

/// Makes the script of a failure short. Where it does not fail again, the text has all of it.
Report reportOf(Simulation& simulation, const Failure& failure);

/// Writes the short script of a report, and has a transcript tried out. There may be no other set.
/// @return what came of it, for a person.
std::string keep(const Report& report, const std::filesystem::path& file);

/// Writes a transcript and has it checked on a fresh set, as `emp-window check` does. There may be no other set.
/// @return what came of it, for a person.
std::string tryOut(const std::string& transcript, const std::filesystem::path& file);

}  // namespace simulation
