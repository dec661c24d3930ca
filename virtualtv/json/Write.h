// SPDX-License-Identifier: MIT
#pragma once

#include <json/json.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

namespace virtualtv::json {

/// Writes a value in one line, in UTF-8. The texts in the value must be UTF-8.
std::string write(const Json::Value& value);
/// Appends a value.
void append(std::string& text, const Json::Value& value);
void append(std::string& text, bool value);
void append(std::string& text, std::int64_t value);
/// @param value  in UTF-8.
void append(std::string& text, std::string_view value);

/// Appends an object to a text, member by member.
class Object {
 public:
  explicit Object(std::string& text) : text_(text) {}
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;
  /// Ends the object.
  void end() { text_ += before_ == '{' ? "{}" : "}"; }

  /// @param name  needs no escapes.
  template <typename Value>
  void put(std::string_view name, const Value& value) {
    ((text_ += before_) += '"').append(name) += "\":";
    if constexpr (std::is_convertible_v<const Value&, std::string_view>) {
      append(text_, std::string_view(value));  // a const char* would convert to bool
    } else {
      append(text_, value);
    }
    before_ = ',';
  }

 private:
  std::string& text_;
  char before_ = '{';
};

}  // namespace virtualtv::json
