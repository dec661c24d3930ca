// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "services/Service.h"

/// What the sweep goes through: a set, where an engine stands on it, and the commands.
namespace sweep {

/// The services of the set: three on the antenna, with tracks, favourites and attached texts, and one of a satellite.
std::vector<virtualtv::Service> services();

/// Where an engine stands when the command comes, and what brought it there.
struct Context {
  std::string name;
  std::vector<std::string> lines;        ///< that bring a set and its engine there, from the first day on
  std::vector<std::string> engineLines;  ///< that bring a new engine there, on the set as it is then
};
std::vector<Context> contexts();

/// The commands as lines, each in several forms; all of them make calls somewhere.
std::vector<std::string> commands();

}  // namespace sweep
