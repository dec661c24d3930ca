// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "support/model/Plugin.h"
#include "support/model/Set.h"

namespace model {

using Words = std::vector<std::string>;

/// A set with several engines, controlled in the language of transcripts: `NAME p1 p2 p3 p4` is a command for the
/// engine in use, `+ NAME p1 ... p9` one with a parameter list, `.NAME ...` changes the set from outside or takes
/// another engine into use.
struct World {
  Set set;
  Calls calls;                            ///< calls of the last line, and the faults
  std::string engine = "main";            ///< the engine in use
  std::map<std::string, Engine> engines;  ///< open engines
  /// Ids of the application and the widget that call an engine, even if it is not open.
  std::map<std::string, std::pair<std::string, std::string>> applications;
};

/// Runs a line, given as its words. Supports `.app`, `.engine`, `.reopen`, `.fault`, `.vconf set`, and `.set` for
/// sources, services, pictures, tracks and favourites. Services are named by their keys, as in `service.#3.lock`.
/// @return the answer of a command; null for other lines. @throws std::invalid_argument for a line that the model does
/// not support.
std::optional<Reply> run(World& world, const Words& words);

}  // namespace model
