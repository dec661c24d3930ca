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

/// The fields that have a name.
std::span<const FieldName> fieldNames();

/// The id of a service field by its name, as in "ptc" or "service_mode", or by its number, which is
/// not negative. Nothing for any other text.
std::optional<int> fieldNamed(std::string_view name);

/// What `fieldNamed` reads: the name, the number where the field has none.
std::string nameOfField(int fieldId);

}  // namespace virtualtv
