// SPDX-License-Identifier: MIT
#pragma once

#include <json/json.h>

#include <string>

#include "json/JsonPart.h"

// Lossless texts in JSON documents. A text that JSON can't hold (lone surrogates, or bytes that are not UTF-8) is an
// object with its `units` or `bytes`. Reading throws what `JsonPart` throws.

namespace virtualtv::json {

Json::Value ofBytes(const std::string& bytes);
Json::Value ofUnits(const std::u16string& units);

std::string bytesIn(const JsonPart& part);
std::u16string unitsIn(const JsonPart& part);

}  // namespace virtualtv::json
