// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>
#include <vector>

#include "services/Service.h"
#include "set/State.h"

namespace virtualtv {

/// A set as a document describes it, without its services. The services on the windows are given by their ids, since
/// services have no keys yet.
struct SetDescription {
  TvState state;
  std::uint64_t currentId = 0;   ///< id of the service on the main window's screen
  std::uint64_t previousId = 0;  ///< id of the service shown there before
};

/// Reads the description of a set. @throws std::invalid_argument when the document is not such a description.
SetDescription readSet(std::string_view document);

/// Reads the services of a set, in list order. @throws std::invalid_argument when the document contains none.
std::vector<Service> readServices(std::string_view document);

/// The built-in set.
const SetDescription& embeddedSet();

/// The services of the built-in set. They make up most of the document, so a set reads them only when it has no
/// services of its own.
std::vector<Service> embeddedServices();

}  // namespace virtualtv
