#pragma once

#include <string_view>
#include <vector>

#include "services/Service.h"
#include "set/State.h"

namespace virtualtv {

/// A set as a document describes it, without its services. Those of the windows are told by their ids, since services
/// have no keys yet.
struct SetDescription {
  TvState state;
  std::uint64_t currentId = 0;   ///< on the main window's screen
  std::uint64_t previousId = 0;  ///< there before
};

/// Reads a description. @throws std::invalid_argument when the document is none.
SetDescription readSet(std::string_view document);

/// Reads the services of a set, in list order. @throws std::invalid_argument when the document tells none.
std::vector<Service> readServices(std::string_view document);

/// The set that is built in.
const SetDescription& embeddedSet();

/// Its services. A set reads them only where it has none of its own, since they are most of what there is to read.
std::vector<Service> embeddedServices();

}  // namespace virtualtv
