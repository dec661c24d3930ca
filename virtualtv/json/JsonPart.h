// SPDX-License-Identifier: MIT
#pragma once

#include <json/json.h>

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "text/Numbers.h"

namespace virtualtv {

/// A value of an untrusted JSON document, and the path to it. Functions that read a value throw std::invalid_argument
/// with one line that names the path and the expected value: `services[3].key: a number from 1 to 9 is wanted, not
/// "x"`.
class JsonPart {
 public:
  /// @param document  outlives the part. A part outlives the parts read from it.
  explicit JsonPart(const Json::Value& document) : value_(document) {}

  bool isText() const { return value_.isString(); }
  bool isObject() const { return value_.isObject(); }

  /// A whole number within a range.
  std::int64_t number(const text::Range& range) const;
  /// The same; nothing for any other value.
  std::optional<std::int64_t> numberIn(const text::Range& range) const;
  bool truth() const;
  /// A text in UTF-8.
  std::string text() const;

  /// A required member of an object. @param name  outlives the part.
  JsonPart at(std::string_view name) const;
  /// An optional member of an object.
  std::optional<JsonPart> find(std::string_view name) const;
  /// Requires an object with no members other than these.
  void requireOnly(std::initializer_list<std::string_view> names) const;

  /// Calls `take` with the name of each member of an object, and the member.
  template <typename Take>
  void eachMember(Take take) const {
    requireObject();
    for (auto member = value_.begin(); member != value_.end(); ++member) {
      const char* end = nullptr;
      const char* const start = member.memberName(&end);
      const std::string_view name(start, static_cast<std::size_t>(end - start));
      take(name, JsonPart(*member, this, name, 0));
    }
  }
  /// Calls `take` with each item of an array.
  template <typename Take>
  void eachItem(Take take) const {
    requireArray();
    for (Json::ArrayIndex index = 0; index < value_.size(); ++index) take(JsonPart(value_[index], this, {}, index));
  }

  /// Runs `body` and prefixes the message of a std::invalid_argument with the path.
  template <typename Body>
  auto check(Body body) const {
    try {
      return body();
    } catch (const std::invalid_argument& error) {
      refuse(error.what());
    }
  }

  /// The value as error messages show it.
  std::string shown() const;
  /// Throws with the path and the reason, as one line of limited length.
  [[noreturn]] void refuse(const std::string& reason) const;
  /// The same, naming the expected and the actual value.
  [[noreturn]] void want(const std::string& what) const;

 private:
  JsonPart(const Json::Value& value, const JsonPart* above, std::string_view name, Json::ArrayIndex index)
      : value_(value), above_(above), name_(name), index_(index) {}

  void requireObject() const;
  void requireArray() const;
  std::string path() const;

  const Json::Value& value_;
  const JsonPart* above_ = nullptr;  ///< null for the document
  std::string_view name_;            ///< of a member
  Json::ArrayIndex index_ = 0;       ///< of an item
};

}  // namespace virtualtv
