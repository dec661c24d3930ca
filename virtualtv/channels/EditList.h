// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "set/Tv.h"

namespace virtualtv {

/// A way to change a service of the list, as `.service` and the wire have it.
struct ServiceEdit {
  std::string_view name;
  std::string_view value;  ///< the kind of value that it takes; empty for none
  /// @throws std::invalid_argument with a line that says why it can't be done.
  void (*run)(Tv& tv, ServiceKey service, const std::string& value);
};

/// All of them. Completion walks this table; a test holds the server's schema and the help against it.
std::span<const ServiceEdit> serviceEdits();

/// Changes a service. @param service  its id, or #KEY. @param edit  the name of a way to.
/// @throws std::invalid_argument when there is no such service or way, or the value can't be; StoreError.
void editService(Tv& tv, const std::string& service, const std::string& edit, const std::string& value);

}  // namespace virtualtv
