#pragma once

#include <string_view>
#include <vector>

#include "services/Service.h"
#include "set/State.h"

namespace virtualtv {

/// A set as a document describes it: its state, and its services in list order. The services of the windows and the
/// start service are told by their ids, since services have no keys yet.
struct SetDescription {
  TvState state;
  std::vector<Service> services;
  std::uint64_t currentId = 0;   ///< on the main window's screen
  std::uint64_t previousId = 0;  ///< there before
};

/// Reads a description. @throws std::invalid_argument when the document is none.
SetDescription readSet(std::string_view document);

/// The set that is built in.
const SetDescription& embeddedSet();

}  // namespace virtualtv
