// SPDX-License-Identifier: MIT
#pragma once

#include <json/json.h>

#include "json/JsonPart.h"
#include "services/Service.h"

// A service as a JSON document. Numbers beyond 53 bits and service ids are strings of digits. Lists have the form of
// `ListText.h`, other texts that of `json/Texts.h`. Reading a written document gives the same service.

namespace virtualtv {

Json::Value serviceDocument(const Service& service);

/// Reads an untrusted document. Ignores a member `key`, and marks no recording as trusted. @throws
/// std::invalid_argument when the document holds something that no service can have, with one line that says what is
/// wrong and where, as `JsonPart` does.
Service serviceIn(const JsonPart& part);

}  // namespace virtualtv
