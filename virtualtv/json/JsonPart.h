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

/// A value of a JSON document that somebody else wrote, and the path to it. What reads one throws std::invalid_argument
/// with one line that names the path and says what is wanted there: `services[3].key: a number from 1 to 9 is wanted,
/// not "x"`.
class JsonPart {
 public:
  /// @param document  outlives the part, and a part those that are read from it.
  explicit JsonPart(const Json::Value& document) : value_(document) {}

  bool isText() const { return value_.isString(); }
  bool isObject() const { return value_.isObject(); }

  /// A whole number of a range.
  std::int64_t number(const text::Range& range) const;
  /// The same, nothing for what is none.
  std::optional<std::int64_t> numberIn(const text::Range& range) const;
  bool truth() const;
  /// A text in UTF-8.
  std::string text() const;

  /// The member of an object, which must have it. @param name  outlives the part.
  JsonPart at(std::string_view name) const;
  /// The same where it may be missing.
  std::optional<JsonPart> find(std::string_view name) const;
  /// Requires an object without members other than these.
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

  /// Runs what throws std::invalid_argument with a reason, and puts the path before it.
  template <typename Body>
  auto check(Body body) const {
    try {
      return body();
    } catch (const std::invalid_argument& error) {
      refuse(error.what());
    }
  }

  /// The value as errors show it.
  std::string shown() const;
  /// Throws the reason, made one line of a limited length, with the path before it.
  [[noreturn]] void refuse(const std::string& reason) const;
  /// The same, saying what is wanted and what stands there.
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
