// SPDX-License-Identifier: MIT
#include "json/JsonPart.h"

#include <algorithm>
#include <utility>

#include "text/Units.h"

namespace virtualtv {

namespace {

constexpr std::size_t longestReason = 200;
constexpr std::size_t longestShown = 40;

/// A text as one line of a limited length.
std::string shortened(const std::string& text, std::size_t longest) {
  return text::asLine(text::shortened(text, longest));
}

std::string quoted(const std::string& text) {
  return '"' + shortened(text, longestShown) + '"';
}

bool isPlain(std::string_view name) {
  return !name.empty() && name.size() <= longestShown && std::all_of(name.begin(), name.end(), [](char letter) {
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') || letter == '_' ||
           (letter >= '0' && letter <= '9');
  });
}

}  // namespace

std::int64_t JsonPart::number(const text::Range& range) const {
  const auto number = numberIn(range);
  if (!number) want(text::describe(range));
  return *number;
}

std::optional<std::int64_t> JsonPart::numberIn(const text::Range& range) const {
  // Compare types, since jsoncpp accepts 1.0 as an integer.
  const bool isWhole = value_.type() == Json::intValue || value_.type() == Json::uintValue;
  if (!isWhole || !value_.isInt64()) return std::nullopt;
  const std::int64_t number = value_.asInt64();
  return number >= range.least && std::cmp_less_equal(number, range.most) ? std::optional(number) : std::nullopt;
}

bool JsonPart::truth() const {
  if (!value_.isBool()) want("true or false");
  return value_.asBool();
}

std::string JsonPart::text() const {
  if (!value_.isString()) want("a text");
  std::string text = value_.asString();
  if (!text::isUtf8(text)) refuse("not a text in UTF-8");
  return text;
}

JsonPart JsonPart::at(std::string_view name) const {
  const auto member = find(name);
  if (!member) refuse("there is no " + quoted(std::string(name)));
  return *member;
}

std::optional<JsonPart> JsonPart::find(std::string_view name) const {
  requireObject();
  const Json::Value* const member = value_.find(name.data(), name.data() + name.size());
  return member == nullptr ? std::nullopt : std::optional(JsonPart(*member, this, name, 0));
}

void JsonPart::requireOnly(std::initializer_list<std::string_view> names) const {
  eachMember([&](std::string_view name, const JsonPart& member) {
    if (std::find(names.begin(), names.end(), name) == names.end()) member.refuse("nothing of that name is known");
  });
}

std::string JsonPart::shown() const {
  if (value_.isObject()) return "an object";
  if (value_.isArray()) return "an array";
  if (value_.isString()) return quoted(value_.asString());
  return value_.isNull() ? "null" : value_.asString();
}

void JsonPart::refuse(const std::string& reason) const {
  const std::string where = path();
  throw std::invalid_argument(where + (where.empty() ? "" : ": ") + shortened(reason, longestReason));
}

void JsonPart::want(const std::string& what) const {
  refuse(what + " is wanted, not " + shown());
}

void JsonPart::requireObject() const {
  if (!value_.isObject()) want("an object");
}
void JsonPart::requireArray() const {
  if (!value_.isArray()) want("an array");
}

std::string JsonPart::path() const {
  if (above_ == nullptr) return "";
  const std::string front = above_->path();
  if (name_.data() == nullptr) return front + "[" + std::to_string(index_) + "]";
  if (isPlain(name_)) return front + (front.empty() ? "" : ".") + std::string(name_);
  return front + "[" + quoted(std::string(name_)) + "]";
}

}  // namespace virtualtv
