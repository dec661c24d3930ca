// SPDX-License-Identifier: MIT
#include "support/model/Documents.h"

#include <json/reader.h>
#include <json/writer.h>

namespace model {

namespace {

/// @param margin  written before the closing brace.
std::string objectOf(const Members& members, const std::string& margin) {
  std::string text;
  for (const auto& [name, value] : members) {
    text += (text.empty() ? "\n" : ",\n") + margin + "   \"" + name + "\" : " + value;
  }
  return text.empty() ? "{}" : "{" + text + "\n" + margin + "}";
}

}  // namespace

std::string document(const Members& members) {
  return objectOf(members, "") + "\n";
}

std::string arrayOf(const std::vector<Members>& objects) {
  const std::string margin(6, ' ');
  std::string text;
  for (const Members& object : objects) text += (text.empty() ? "\n" : ",\n") + margin + objectOf(object, margin);
  return text.empty() ? "[]" : "[" + text + "\n   ]";
}

std::string quoted(const std::string& utf8) {
  return Json::valueToQuotedString(utf8.c_str());
}

bool parseJson(const std::string& text, Json::Value& value) {
  return Json::Reader().parse(text, value, true);
}

std::string document(const Json::Value& value) {
  return Json::StyledWriter().write(value);
}

}  // namespace model
