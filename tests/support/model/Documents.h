// SPDX-License-Identifier: MIT
#pragma once

#include <json/value.h>

#include <map>
#include <string>
#include <vector>

/// The JSON texts that the plug-in answers, as the model writes them, and those that it reads.
namespace model {

/// An object's members by name, each with the text of its value. They are written in the order of their names.
using Members = std::map<std::string, std::string>;

/// A document of one object: a member a line, three blanks a level.
std::string document(const Members& members);
/// The value of a member of the document: objects in an array, or an empty array.
std::string arrayOf(const std::vector<Members>& objects);
/// A text as a value: what is beyond ASCII is escaped.
std::string quoted(const std::string& utf8);

/// Reads a text. @return whether it is JSON. @throws Json::Exception for one that is too deep.
bool parseJson(const std::string& text, Json::Value& value);
/// Any document as the JSON library writes it.
std::string document(const Json::Value& value);

}  // namespace model
