#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "support/model/World.h"

/// The plug-in on the set in software, held against the model: the same lines to both, and after each line all that can
/// be seen of the two.
namespace comparison {

using Script = std::vector<std::string>;

/// Where the two differ.
struct Difference {
  std::size_t line;         ///< of the script, counted from 0
  std::string expectation;  ///< the script so far as a transcript, with what the model answers
  std::string details;      ///< what differs, a line each
};

/// The set that scripts start with, as the model's.
model::Set startingSet();

/// What commands answered, by their names, over many scripts.
using Replies = std::map<std::string, std::set<std::string>>;

/// Runs a script on both, from the built-in set on. After each line these agree: the reply, the settings keys and the
/// order in which the plug-in wrote them, the state of the set with the tracks in use. Tracks and favourites of
/// services agree after each line that is about them, and at the end.
/// @param spoil  changes the model before the script, for tests of the comparison.
/// @return the first difference, nothing when there is none.
std::optional<Difference> compare(const Script& script, Replies* replies = nullptr,
                                  const std::function<void(model::World&)>& spoil = {});

/// Drops lines from a script for as long as `fails` holds for what is left. @return a script from which no single line
/// can be dropped.
Script shrunk(Script script, const std::function<bool(const Script&)>& fails);

}  // namespace comparison
