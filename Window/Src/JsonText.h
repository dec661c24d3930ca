#pragma once

#include <json/forwards.h>

#include <string>

// Documents as text, in the layout and with the leniency that applications rely on.

namespace kel {

/// The document as indented text, its members sorted by name. @throws what the JSON library throws.
std::string WriteJson(const Json::Value& document);

/// Reads a text. @return false when it is no JSON. @throws what the JSON library throws, for one at deep nesting.
bool ReadJson(const std::string& text, Json::Value& document);

}  // namespace kel
