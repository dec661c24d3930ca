#pragma once

#include <json/json.h>

#include <cstdint>
#include <limits>
#include <string_view>

#include "text/Numbers.h"

// JSON Schemas that several methods have, as JSON, and what numbers of methods can be.

namespace virtualtv::rpc {

inline constexpr std::string_view textSchema = R"({"type": "string"})";
inline constexpr std::string_view textOrNumber = R"({"type": ["string", "integer"]})";
inline constexpr std::string_view anObject = R"({"type": "object"})";
/// As `Core::revision` answers.
inline constexpr std::string_view revisionResult =
    R"({"type": "object", "required": ["revision"], "properties": {"revision": {"type": "integer"}}})";

/// The schemas that results and events refer to, by their names: `#/components/schemas/NAME` in the OpenRPC document.
/// They stand in schemas.json, those of events in events.json, and live as long as the program.
const Json::Value& namedSchemas();
inline constexpr std::string_view stateSchema = R"({"$ref": "#/components/schemas/State"})";

/// What JSON readers take for a whole number, from 0 on.
inline constexpr text::Range notNegative{0, static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())};

}  // namespace virtualtv::rpc
