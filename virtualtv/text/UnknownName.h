#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace virtualtv::text {

/// Nothing has the name that was given. The message says that alone: where the names are listed depends on how one
/// reaches the set.
class UnknownName : public std::invalid_argument {
 public:
  /// @param kind  what is listed, in the plural: "operations".
  UnknownName(const std::string& message, std::string kind) : std::invalid_argument(message), kind_(std::move(kind)) {}

  const std::string& kind() const { return kind_; }

 private:
  std::string kind_;
};

}  // namespace virtualtv::text
