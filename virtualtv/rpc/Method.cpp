// SPDX-License-Identifier: MIT
#include "rpc/Method.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "json/Read.h"

namespace virtualtv::rpc {

namespace {

[[noreturn]] void refuse(const std::string& reason) {
  throw Failure(Code::badParameters, reason);
}

std::string namesOf(std::span<const Parameter> known) {
  std::string names;
  for (const Parameter& parameter : known) names.append(names.empty() ? "" : ", ").append(parameter.name);
  return names.empty() ? "it takes none" : "it takes " + names;
}

std::unordered_map<std::string_view, const Method*> index() {
  std::unordered_map<std::string_view, const Method*> found;
  for (const Method* method : methods()) found.emplace(method->name, method);
  return found;
}

/// Throws unless there is a parameter with the name.
void requireKnown(std::span<const Parameter> known, const std::string& name) {
  const auto isIt = [&](const Parameter& parameter) { return parameter.name == name; };
  if (std::none_of(known.begin(), known.end(), isIt))
    refuse(nameShown(name) + ": there is no such parameter; " + namesOf(known));
}

/// Converts numbers such as 1.0 or 3e0 to integers.
void makeWhole(Json::Value& value) {
  if (value.type() == Json::realValue && value.isInt64()) value = Json::Int64{value.asInt64()};
}

}  // namespace

Params::Params(std::span<const Parameter> known, std::string_view given) {
  try {
    if (!given.empty()) put(known, json::readChecked(given));
  } catch (const json::NotJson&) {  // a lone surrogate; everything else was checked
    refuse("half of a surrogate pair alone is no character");
  }
  for (const Parameter& parameter : known) {
    if (parameter.required && !has(parameter.name)) refuse("there is no \"" + std::string(parameter.name) + "\"");
  }
}

void Params::put(std::span<const Parameter> known, Json::Value given) {
  if (given.isObject()) {
    values_ = std::move(given);
    for (const std::string& name : values_.getMemberNames()) requireKnown(known, name);
    for (Json::Value& value : values_) makeWhole(value);
    return;
  }
  if (given.size() > known.size()) refuse(std::to_string(given.size()) + " parameters; " + namesOf(known));
  for (Json::ArrayIndex at = 0; at < given.size(); ++at) {
    Json::Value& value = values_[std::string(known[at].name)] = std::move(given[at]);
    makeWhole(value);
  }
}

const Json::Value& Params::value(std::string_view name) const {
  const Json::Value* const found = values_.find(name.data(), name.data() + name.size());
  return found == nullptr ? Json::Value::nullSingleton() : *found;
}

std::string Params::text(std::string_view name) const {
  std::string text = content(name);
  if (text.find('\0') != text.npos) refuse(std::string(name) + ": a text without U+0000 is wanted");
  return text;
}

std::string Params::content(std::string_view name) const {
  return read(name, [](const JsonPart& part) { return part.text(); });
}

std::string Params::text(std::string_view name, const std::string& otherwise) const {
  return has(name) ? text(name) : otherwise;
}

bool Params::truth(std::string_view name, bool otherwise) const {
  return has(name) ? read(name, [](const JsonPart& part) { return part.truth(); }) : otherwise;
}

std::int64_t Params::number(std::string_view name, const text::Range& range) const {
  return read(name, [&](const JsonPart& part) { return part.number(range); });
}

std::int64_t Params::number(std::string_view name, const text::Range& range, std::int64_t otherwise) const {
  return has(name) ? number(name, range) : otherwise;
}

std::vector<const Method*> methods() {
  std::vector<const Method*> all;
  for (const auto& area :
       {commandMethods(), sessionMethods(), setMethods(), testMethods(), eventMethods(), historyMethods()}) {
    for (const Method& method : area) all.push_back(&method);
  }
  return all;
}

const Method* findMethod(std::string_view name) {
  static const std::unordered_map<std::string_view, const Method*> all = index();
  const auto found = all.find(name);
  return found == all.end() ? nullptr : found->second;
}

}  // namespace virtualtv::rpc
