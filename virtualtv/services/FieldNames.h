// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace virtualtv {

struct FieldName {
  std::string_view name;
  int fieldId;
};

/// All fields with a name.
std::span<const FieldName> fieldNames();

/// The id of the service field with this name ("ptc", "service_mode") or this non-negative number. Returns nothing for
/// any other text.
std::optional<int> fieldNamed(std::string_view name);

/// The text that `fieldNamed` reads: the field's name, or its number when it has no name.
std::string nameOfField(int fieldId);

}  // namespace virtualtv
