// SPDX-License-Identifier: MIT
#pragma once

/// @file
/// The framework's parser of numbers.

#include <string>

namespace kel {

/// Parses a whole text as a decimal number with an optional sign, within the range of `int`.
///
/// @param text    the text; blanks, other bases and trailing characters are not accepted.
/// @param number  receives the value; unchanged when the text does not parse.
/// @return true when the text parsed.
bool StringToNumber(const std::string& text, int& number);

}  // namespace kel
