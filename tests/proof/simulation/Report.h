#pragma once

#include <filesystem>
#include <string>

#include "Simulation.h"

namespace simulation {

/// What is said of a failure.
struct Report {
  std::string text;
  std::string transcript;  ///< a short script with what the model has; empty when the failure was not seen again
};

/// Makes the script of a failure short. Where it does not fail again, the text has all of it.
Report reportOf(Simulation& simulation, const Failure& failure);

/// Writes a transcript and has it checked on a fresh set, as `emp-window check` does. There may be no other set.
/// @return what came of it, for a person.
std::string tryOut(const std::string& transcript, const std::filesystem::path& file);

}  // namespace simulation
