// SPDX-License-Identifier: MIT
#pragma once

#include <json/json.h>

#include <string>

#include "Examples.h"

namespace catalogue {

/// The catalogue as a JSON file.
std::string document(const Json::Value& catalogue);

/// The catalogue as a page to read, in Markdown: an index, a section for each command, and the numbers and documents
/// that commands share. @param examples  must have one for each command.
std::string page(const Json::Value& catalogue, const Examples& examples);

}  // namespace catalogue
