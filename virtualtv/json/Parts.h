#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace virtualtv::json {

// Parts of a JSON text that was checked, as it stands there: nothing is made of what is not asked for.

/// The items of an array or the members of an object, one after the other.
class Parts {
 public:
  /// @param text  blanks may stand around the value; outlives what is taken from it. What is neither array nor object
  /// has no parts.
  explicit Parts(std::string_view text);

  bool isArray() const { return end_ == ']'; }
  bool isObject() const { return end_ == '}'; }

  /// Goes to the next part, at first to the first one. @return false when there is none.
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

/// What a value says that is a text; nothing for any other.
std::optional<std::string> textOf(std::string_view value);

}  // namespace virtualtv::json
