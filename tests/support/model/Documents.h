#pragma once

#include <map>
#include <string>
#include <vector>

/// The JSON texts that the plug-in answers, as the model writes them.
namespace model {

/// An object's members by name, each with the text of its value. They are written in the order of their names.
using Members = std::map<std::string, std::string>;

/// A document of one object: a member a line, three blanks a level.
std::string document(const Members& members);
/// The value of a member of the document: objects in an array, or an empty array.
std::string arrayOf(const std::vector<Members>& objects);

}  // namespace model
