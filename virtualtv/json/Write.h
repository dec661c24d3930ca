#pragma once

#include <json/json.h>

#include <string>

namespace virtualtv::json {

/// A value as text in one line, in UTF-8; its own texts must be that.
std::string write(const Json::Value& value);
/// Appends it.
void append(std::string& text, const Json::Value& value);

}  // namespace virtualtv::json
