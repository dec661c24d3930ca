#pragma once

#include <json/json.h>

#include <cstddef>
#include <limits>
#include <stdexcept>
#include <string_view>

/// JSON texts that somebody else wrote.
namespace virtualtv::json {

/// A text is not JSON, or has too much in it. Says where and what, in one line: `line 2, column 7: ...`, both counted
/// from 1, columns in bytes.
struct NotJson : std::invalid_argument {
  using std::invalid_argument::invalid_argument;
};

/// The most that is read of a text. A value that jsoncpp holds takes far more memory than its text.
struct Limits {
  std::size_t depth = 100;  ///< of arrays and objects within each other
  std::size_t values = std::numeric_limits<std::size_t>::max();
  bool loneSurrogates = false;  ///< are let pass; what has one can't be read as a value
};

/// Requires that a text is one JSON value as RFC 8259 has it, in UTF-8: jsoncpp, told to be strict, still takes
/// comments, control characters, zero bytes and lone surrogates. Takes no memory. @throws NotJson, also for numbers
/// beyond those that a double has.
void check(std::string_view text, const Limits& limits = {});

enum class SameNames { lastCounts, refused };

/// Checks a text and reads it. @param sameNames  what becomes of an object with two members of one name.
/// @throws NotJson, also for numbers beyond those that a double has.
Json::Value read(std::string_view text, const Limits& limits = {}, SameNames sameNames = SameNames::lastCounts);

/// Reads a text that `check` has found to be right, or a value in one. @throws NotJson for a lone surrogate.
Json::Value readChecked(std::string_view text);

}  // namespace virtualtv::json
