// SPDX-License-Identifier: MIT
#include "virtualtv/rpc/JsonSchema.h"

#include <algorithm>
#include <set>
#include <string_view>

#include "json/Write.h"

namespace virtualtv::rpc {

namespace {

constexpr std::string_view front = "#/components/schemas/";

bool isOfType(const std::string& type, const Json::Value& value) {
  if (type == "object") return value.isObject() && !value.isNull();
  if (type == "array") return value.isArray() && !value.isNull();
  if (type == "string") return value.isString();
  if (type == "boolean") return value.isBool();
  if (type == "integer") return value.isInt64() || value.isUInt64();
  if (type == "number") return value.isNumeric();
  return type == "null" && value.isNull();
}

/// True when the value has one of the types that a member names: a text, or a list of texts.
bool hasType(const Json::Value& types, const Json::Value& value) {
  if (types.isString()) return isOfType(types.asString(), value);
  return std::any_of(types.begin(), types.end(),
                     [&](const Json::Value& type) { return isOfType(type.asString(), value); });
}

}  // namespace

std::vector<std::string> JsonSchema::findings(const Json::Value& schema, const Json::Value& value) const {
  Findings found;
  check(schema, value, "", found);
  return found;
}

void JsonSchema::check(const Json::Value& schema, const Json::Value& value, const std::string& path,
                       Findings& found) const {
  static const std::set<std::string> known{"$ref",
                                           "additionalProperties",
                                           "anyOf",
                                           "const",
                                           "contentEncoding",
                                           "description",
                                           "enum",
                                           "items",
                                           "maximum",
                                           "minimum",
                                           "properties",
                                           "required",
                                           "type"};
  for (const std::string& word : schema.getMemberNames()) {
    const bool isExtension = word.starts_with("x-");
    if (!known.contains(word) && !isExtension) found.push_back(path + ": the schema has '" + word + "'");
  }
  if (schema.isMember("$ref")) {
    const std::string name = schema["$ref"].asString();
    if (!name.starts_with(front) || !named_.isMember(name.substr(front.size()))) {
      found.push_back(path + ": there is no schema " + name);
    } else {
      check(named_[name.substr(front.size())], value, path, found);
    }
  }
  const auto fits = [&](const Json::Value& choice) { return findings(choice, value).empty(); };
  const std::string shown = json::write(value);
  const auto refuse = [&](const std::string& why) { found.push_back(path + ": " + why + ": " + shown); };
  const Json::Value& choices = schema["anyOf"];
  if (!choices.isNull() && std::none_of(choices.begin(), choices.end(), fits)) refuse("none of anyOf fits");
  if (schema.isMember("type") && !hasType(schema["type"], value)) refuse("is of another type");
  const Json::Value& values = schema["enum"];
  if (!values.isNull() && std::find(values.begin(), values.end(), value) == values.end()) refuse("is not in the enum");
  if (schema.isMember("const") && schema["const"] != value) refuse("is another constant");
  if (value.isNumeric()) checkNumber(schema, value, path, found);
  if (value.isObject()) checkObject(schema, value, path, found);
  if (!value.isArray() || !schema.isMember("items")) return;
  for (Json::ArrayIndex at = 0; at < value.size(); ++at) {
    check(schema["items"], value[at], path + "[" + std::to_string(at) + "]", found);
  }
}

void JsonSchema::checkNumber(const Json::Value& schema, const Json::Value& value, const std::string& path,
                             Findings& found) const {
  if (schema.isMember("minimum") && value < schema["minimum"]) found.push_back(path + ": is too small");
  if (schema.isMember("maximum") && value > schema["maximum"]) found.push_back(path + ": is too great");
}

void JsonSchema::checkObject(const Json::Value& schema, const Json::Value& value, const std::string& path,
                             Findings& found) const {
  for (const Json::Value& name : schema["required"]) {
    if (!value.isMember(name.asString())) found.push_back(path + ": has no '" + name.asString() + "'");
  }
  const Json::Value& properties = schema["properties"];
  const bool isOpen = schema.get("additionalProperties", true).asBool();
  for (const std::string& name : value.getMemberNames()) {
    if (properties.isMember(name)) {
      check(properties[name], value[name], path.empty() ? name : path + "." + name, found);
    } else if (!isOpen) {
      found.push_back(path + ": has '" + name + "'");
    }
  }
}

}  // namespace virtualtv::rpc
