// SPDX-License-Identifier: MIT
#pragma once

#include <json/value.h>

#include <map>
#include <string>
#include <vector>

/// The JSON texts that the plug-in writes and reads, as implemented by the model.
namespace model {

/// An object's members by name, each with the text of its value. They are written sorted by name.
using Members = std::map<std::string, std::string>;

/// A document with one object: one member per line, indented by three blanks per level.
std::string document(const Members& members);
/// The value of a member: an array of objects, possibly empty.
std::string arrayOf(const std::vector<Members>& objects);
/// A text as a JSON value, with characters beyond ASCII escaped.
std::string quoted(const std::string& utf8);

/// Parses a text. @return true if it is JSON. @throws Json::Exception if it is nested too deep.
bool parseJson(const std::string& text, Json::Value& value);
/// Any document as the JSON library writes it.
std::string document(const Json::Value& value);

}  // namespace model
