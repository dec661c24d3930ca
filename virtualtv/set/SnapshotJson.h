// SPDX-License-Identifier: MIT
#pragma once

#include <json/json.h>

#include <string>
#include <string_view>

#include "set/Snapshot.h"

// A snapshot as a JSON document. Numbers beyond 53 bits and service ids are strings of digits. Lists have the form of
// `ListText.h`. A text that JSON can't hold (lone surrogates, or bytes that are not UTF-8) is an object with its
// `units` or `bytes`.

namespace virtualtv {

/// The version of these documents.
inline constexpr int snapshotVersion = 1;

Json::Value documentOf(const Snapshot& snapshot);

/// Reads an untrusted document. @throws std::invalid_argument when it is not a snapshot, has another version, or holds
/// something that no set can have. The message is one line that says what is wrong and where, as that of `JsonPart`.
Snapshot snapshotIn(const Json::Value& document);

/// The document as text, in UTF-8, with a line for each service, setting and value. Equal snapshots have equal texts.
std::string writeSnapshot(const Snapshot& snapshot);
/// Reads the text of a document. @throws as `snapshotIn`.
Snapshot readSnapshot(std::string_view text);

}  // namespace virtualtv
