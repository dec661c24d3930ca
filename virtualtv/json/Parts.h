// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace virtualtv::json {

// Lazy access to a JSON text that was checked: values stay text until they are requested.

/// Iterates over the items of an array or the members of an object.
class Parts {
 public:
  /// @param text  a value, which may have blanks around it; outlives the views taken from it. A value that is neither
  /// array nor object has no parts.
  explicit Parts(std::string_view text);

  bool isArray() const { return end_ == ']'; }
  bool isObject() const { return end_ == '}'; }

  /// Moves to the next part; the first call moves to the first part. @return false when there is none.
  bool next();
  /// Name of this member.
  std::string name() const;
  /// This part, without blanks around it.
  std::string_view value() const { return value_; }

 private:
  std::string_view take(std::size_t end);
  void skipBlanks();

  std::string_view rest_;
  char end_ = '\0';        ///< the closing bracket
  std::string_view name_;  ///< with its quotes
  std::string_view value_;
};

/// The text of a JSON string; nothing for any other value.
std::optional<std::string> textOf(std::string_view value);

}  // namespace virtualtv::json
