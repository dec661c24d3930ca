// SPDX-License-Identifier: MIT
#pragma once

#include <json/json.h>

#include <cstddef>
#include <limits>
#include <string>
#include <string_view>

namespace virtualtv::rpc {

/// The result of a command: `accepted`, and the `kind` and `value` of its reply. In a text that JSON can't hold, U+FFFD
/// replaces the invalid parts; `bytes` (base64) or `units` then has the original. @param encoded  the return string;
/// empty when it was not written. @param longest  longer texts are truncated to about this number of bytes, and
/// `length` gives the original length.
Json::Value resultOf(bool accepted, std::string_view encoded,
                     std::size_t longest = std::numeric_limits<std::size_t>::max());
/// Appends the whole result to a JSON text.
void appendResult(std::string& text, bool accepted, std::string_view encoded);

/// Adds bytes to an object under a name. If they are not UTF-8, also adds the original as `bytes`.
void putBytes(Json::Value& object, const char* name, std::string_view bytes);

}  // namespace virtualtv::rpc
