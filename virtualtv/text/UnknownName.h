// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace virtualtv::text {

/// The given name does not exist. The message does not say where the names are listed, since that depends on the user's
/// interface.
class UnknownName : public std::invalid_argument {
 public:
  /// @param kind  what is listed, in the plural: "operations".
  UnknownName(const std::string& message, std::string kind) : std::invalid_argument(message), kind_(std::move(kind)) {}

  const std::string& kind() const { return kind_; }

 private:
  std::string kind_;
};

}  // namespace virtualtv::text
