// SPDX-License-Identifier: MIT
#include "Help.h"

#include <algorithm>
#include <memory>

namespace catalogue {

namespace {

std::string nameOf(Json::ValueType type) {
  switch (type) {
    case Json::stringValue:
      return "a text of one line";
    case Json::intValue:
      return "a whole number";
    case Json::arrayValue:
      return "an array";
    case Json::objectValue:
      return "an object";
    default:
      return "of a type that no help text has";
  }
}

bool matches(const Json::Value& value, Json::ValueType type) {
  if (type == Json::intValue) return value.isInt();
  if (value.type() != type) return false;
  if (type != Json::stringValue) return true;
  const std::string text = value.asString();
  return !text.empty() && text.find('\n') == std::string::npos;
}

bool names(std::initializer_list<Member> members, const std::string& name) {
  return std::any_of(members.begin(), members.end(), [&](const Member& member) { return name == member.name; });
}

}  // namespace

Help::Help(std::string file, std::string text, Problems& problems)
    : file_(std::move(file)), text_(std::move(text)), problems_(problems) {
  Json::CharReaderBuilder builder;
  Json::CharReaderBuilder::strictMode(&builder.settings_);
  const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
  Json::Value read;
  std::string errors;
  if (reader->parse(text_.data(), text_.data() + text_.size(), &read, &errors) && read.isObject()) {
    root_ = std::move(read);
    return;
  }
  std::replace(errors.begin(), errors.end(), '\n', ' ');
  problems_.push_back(file_ + ": is no JSON object: " + errors);
}

void Help::report(const Json::Value& at, const std::string& what) const {
  const auto end = text_.begin() + std::clamp<std::ptrdiff_t>(at.getOffsetStart(), 0, std::ssize(text_));
  const auto line = 1 + std::count(text_.begin(), end, '\n');
  problems_.push_back(file_ + ":" + std::to_string(line) + ": " + what);
}

bool Help::isOfType(const Json::Value& value, const std::string& what, Json::ValueType type) const {
  if (matches(value, type)) return true;
  report(value, what + " is not " + nameOf(type));
  return false;
}

bool Help::check(const Json::Value& object, const std::string& what, std::initializer_list<Member> members) const {
  if (!isOfType(object, what, Json::objectValue)) return false;
  bool good = true;
  for (const Member& member : members) {
    if (object.isMember(member.name)) {
      good = isOfType(object[member.name], what + ": '" + member.name + "'", member.type) && good;
    } else if (member.required) {
      report(object, what + " lacks '" + member.name + "'");
      good = false;
    }
  }
  for (const std::string& name : object.getMemberNames()) {
    if (names(members, name)) continue;
    report(object[name], what + " has '" + name + "', which means nothing here");
    good = false;
  }
  return good;
}

bool Help::checkAll(const Json::Value& collection, const std::string& what, Json::ValueType type) const {
  bool good = true;
  for (auto element = collection.begin(); element != collection.end(); ++element) {
    const std::string key = collection.isObject() ? element.name() : std::to_string(element.index() + 1);
    good = isOfType(*element, what + " '" + key + "'", type) && good;
  }
  return good;
}

}  // namespace catalogue
