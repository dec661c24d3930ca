// SPDX-License-Identifier: MIT
#pragma once

#include <json/json.h>

#include <cstddef>
#include <limits>
#include <stdexcept>
#include <string_view>

/// Reads untrusted JSON texts.
namespace virtualtv::json {

/// A text is not JSON, or exceeds a limit. The message is one line with place and reason: `line 2, column 7: ...`. Both
/// are counted from 1, columns in bytes.
struct NotJson : std::invalid_argument {
  using std::invalid_argument::invalid_argument;
};

/// Limits for a text to read. A jsoncpp value takes far more memory than its text.
struct Limits {
  std::size_t depth = 100;  ///< nesting of arrays and objects
  std::size_t values = std::numeric_limits<std::size_t>::max();
  bool loneSurrogates = false;  ///< are accepted by `check`, but can't be read as a value
};

/// Requires that a text is one JSON value as defined by RFC 8259, in UTF-8. Even in strict mode jsoncpp accepts
/// comments, control characters, zero bytes and lone surrogates. Allocates no memory. @throws NotJson, also for numbers
/// out of the range of a double.
void check(std::string_view text, const Limits& limits = {});

enum class SameNames { lastCounts, refused };

/// Checks a text and reads it. @param sameNames  how to treat an object with duplicate member names. @throws NotJson,
/// also for numbers out of the range of a double.
Json::Value read(std::string_view text, const Limits& limits = {}, SameNames sameNames = SameNames::lastCounts);

/// Reads a text that `check` has accepted, or a value in one. @throws NotJson for a lone surrogate.
Json::Value readChecked(std::string_view text);

}  // namespace virtualtv::json
