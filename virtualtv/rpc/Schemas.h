// SPDX-License-Identifier: MIT
#pragma once

#include <json/json.h>

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "text/Numbers.h"

// JSON Schemas shared by methods, as JSON, and ranges of their numbers.

namespace virtualtv::rpc {

inline constexpr std::string_view textSchema = R"({"type": "string"})";
inline constexpr std::string_view textOrNumber = R"({"type": ["string", "integer"]})";
inline constexpr std::string_view anObject = R"({"type": "object"})";
/// The schema of `Core::revision`.
inline constexpr std::string_view revisionResult =
    R"({"type": "object", "required": ["revision"], "properties": {"revision": {"type": "integer"}}})";

/// The schemas that results and events refer to, by name: `#/components/schemas/NAME` in the OpenRPC document. They
/// come from schemas.json, those of events from events.json. They live as long as the program.
const Json::Value& namedSchemas();
inline constexpr std::string_view stateSchema = R"({"$ref": "#/components/schemas/State"})";

/// A topic that clients can subscribe to, as in events.json.
struct Topic {
  std::string name;
  std::string help;
  std::vector<std::string> kinds;  ///< names of the schemas of its kinds of events
};
const std::vector<Topic>& topics();

/// The non-negative integers that JSON readers accept.
inline constexpr text::Range notNegative{0, static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())};

}  // namespace virtualtv::rpc
