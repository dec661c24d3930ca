#pragma once

#include <json/json.h>

#include <cstddef>
#include <limits>
#include <string>
#include <string_view>

namespace virtualtv::rpc {

/// What an engine made of a command: `accepted`, the `kind` of its reply, its `value`. A text that JSON can't hold is
/// there with U+FFFD in place of what it can't, and whole in `bytes` (base64) or `units`.
/// @param encoded  the return string, empty when nobody wrote it.
/// @param longest  longer texts are cut to about as many bytes, and their whole `length` is told.
Json::Value resultOf(bool accepted, std::string_view encoded,
                     std::size_t longest = std::numeric_limits<std::size_t>::max());
/// Appends all of it to a JSON text.
void appendResult(std::string& text, bool accepted, std::string_view encoded);

/// Puts bytes into an object under a name, and beside them into `bytes` where they are not UTF-8.
void putBytes(Json::Value& object, const char* name, std::string_view bytes);

}  // namespace virtualtv::rpc
