// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "Simulation.h"

namespace simulation {

/// The report of a failure.
struct Report {
  std::string text;
  std::string transcript;  ///< a short script with the results of the model; empty when the difference could not be
                           ///< reproduced
  std::string inputs;      ///< a short script that ends in an exception; empty when none does
};

/// Writes the script that is about to run, with its seed, in case the program crashes.
void leaveBehind(std::uint64_t seed, const comparison::Script& script, const std::filesystem::path& file);

/// Writes a script to a directory, as SEED.txt, in the form in which its lines are typed, so that it can run on other
/// sets.
void keepScript(std::uint64_t seed, const comparison::Script& script, const std::filesystem::path& directory);

/// Shortens the script of a failure. If it does not fail again, the text has the whole script.
Report reportOf(Simulation& simulation, const Failure& failure);

/// Writes the short script of a report, and checks its transcript. There must be no other set. @return the outcome, for
/// a person.
std::string keep(const Report& report, const std::filesystem::path& file);

/// Writes a transcript and checks it on a fresh set, as `emp-window check` does. There must be no other set. @return
/// the outcome, for a person.
std::string tryOut(const std::string& transcript, const std::filesystem::path& file);

}  // namespace simulation
