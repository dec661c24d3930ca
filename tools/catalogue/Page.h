#pragma once

#include <json/json.h>

#include <string>

namespace catalogue {

/// The catalogue as a JSON file.
std::string document(const Json::Value& catalogue);

/// The catalogue as a page to read, in Markdown: an index, a section for each command, and the numbers and documents
/// that commands share.
std::string page(const Json::Value& catalogue);

}  // namespace catalogue
