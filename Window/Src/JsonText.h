// SPDX-License-Identifier: MIT
#pragma once

#include <json/forwards.h>

#include <string>

// Documents as text, in the layout and with the leniency that applications rely on.

namespace kel {

/// The document as indented text, its members sorted by name. @throws what the JSON library throws.
std::string WriteJson(const Json::Value& document);

/// Reads the value at the front of a text and ignores what follows it. Comments are stored with the value and written
/// again. @return false when there is no JSON value. @throws what the JSON library throws, for instance when values are
/// nested more than a thousand deep.
bool ReadJson(const std::string& text, Json::Value& document);

}  // namespace kel
