// SPDX-License-Identifier: MIT
#include "JsonText.h"

#include <json/json.h>

// Reader and writer are deprecated, but their replacements accept other texts and write another layout.
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

namespace kel {

std::string WriteJson(const Json::Value& document) {
  return Json::StyledWriter().write(document);
}

bool ReadJson(const std::string& text, Json::Value& document) {
  Json::Reader reader;
  return reader.parse(text, document, true);
}

}  // namespace kel
