#pragma once

#include <json/json.h>

#include <string>
#include <string_view>

#include "set/Snapshot.h"

// A snapshot as a JSON document. Numbers beyond 53 bits and ids of services are texts of digits, lists are the texts of
// `ListText.h`. A text that JSON can't hold, for a lone surrogate or bytes that are no UTF-8, is an object with its
// `units` or `bytes`.

namespace virtualtv {

/// The version of the documents that are written and read here.
inline constexpr int snapshotVersion = 1;

Json::Value documentOf(const Snapshot& snapshot);

/// Reads a document, which may come from anywhere. @throws std::invalid_argument with one line that says what is wrong
/// and where, as `JsonPart` does, when it is no snapshot, of another version, or holds what no set can.
Snapshot snapshotIn(const Json::Value& document);

/// The document as text, in UTF-8, with a line for each service, setting and value. Equal snapshots have equal texts.
std::string writeSnapshot(const Snapshot& snapshot);
/// Reads it again, or any other text of the document. @throws as `snapshotIn`.
Snapshot readSnapshot(std::string_view text);

}  // namespace virtualtv
