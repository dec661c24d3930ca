// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "services/Service.h"

/// The input of the sweep: a set, contexts for an engine on it, and commands.
namespace sweep {

/// The services of the set: three on the antenna, with tracks, favourites and attached texts, and one of a satellite.
std::vector<virtualtv::Service> services();

/// The context of a command: the state of the engine, and the lines that lead there.
struct Context {
  std::string name;
  std::vector<std::string> lines;        ///< lines that bring the initial set and its engine there
  std::vector<std::string> engineLines;  ///< lines that bring a new engine there, on the set as it is then
};
std::vector<Context> contexts();

/// The commands as lines, each in several forms; all of them make calls somewhere.
std::vector<std::string> commands();

}  // namespace sweep
