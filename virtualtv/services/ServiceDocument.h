#pragma once

#include <json/json.h>

#include "json/JsonPart.h"
#include "services/Service.h"

// A service as a JSON document. Numbers beyond 53 bits and ids of services are texts of digits, lists are the texts of
// `ListText.h`, other texts are those of `json/Texts.h`. What is written is read again as it was.

namespace virtualtv {

Json::Value serviceDocument(const Service& service);

/// Reads a document, which may come from anywhere; a member `key` is passed over, and no recording is trusted. @throws
/// std::invalid_argument with one line that says what is wrong and where, as `JsonPart` does, when it holds what no
/// service can.
Service serviceIn(const JsonPart& part);

}  // namespace virtualtv
