// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "set/Tv.h"

namespace virtualtv {

/// A kind of edit of a service in the list, as `.service` and the server's methods offer it.
struct ServiceEdit {
  std::string_view name;
  std::string_view value;  ///< its valid values, in words; empty when it takes no value
  /// Edits an existing service. Throws std::invalid_argument, with the reason in a line for a person, when the value is
  /// invalid or the edit is not possible.
  void (*run)(Tv& tv, ServiceKey service, const std::string& value);
};

/// All edits. Completion walks this table; a test compares the server's schema and the help with it.
std::span<const ServiceEdit> serviceEdits();

/// Edits a service. @param service  its id, or #KEY. @param edit  the name of the edit. @param value  empty for an edit
/// without a value.
/// @throws std::invalid_argument when there is no such service or edit, when the value is invalid, or when the edit is
/// not possible; StoreError when the set can't persist the change.
void editService(Tv& tv, const std::string& service, const std::string& edit, const std::string& value);

}  // namespace virtualtv
