#pragma once

#include <json/json.h>

#include <string>

#include "json/JsonPart.h"

// Texts in documents that must be read again as they were. A text that JSON can't hold, for a lone surrogate or bytes
// that are no UTF-8, is an object with its `units` or `bytes`. Reading throws what `JsonPart` throws.

namespace virtualtv::json {

Json::Value ofBytes(const std::string& bytes);
Json::Value ofUnits(const std::u16string& units);

std::string bytesIn(const JsonPart& part);
std::u16string unitsIn(const JsonPart& part);

}  // namespace virtualtv::json
