// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace virtualtv::import {

/// A part of a list that can't be read, with the reason. Thrown and caught within this room: a reader converts it to a
/// `Problem`.
struct Unreadable {
  std::string reason;
};

/// Removes blanks, tabs and carriage returns at both ends of `text`; `trimmedEnd` only at its end.
std::string_view trimmed(std::string_view text);
std::string_view trimmedEnd(std::string_view text);

/// Removes and returns the part of `rest` before the first `separator`, and removes the separator. Without a separator,
/// takes all of `rest`.
std::string_view cut(std::string_view& rest, char separator);

/// Quotes a part of a list for a reason: at most 40 bytes between double quotes, unprintable ones as `\xNN`.
std::string quoted(std::string_view piece);

bool isDigit(char character);

/// Compares two words, ignoring the case of ASCII letters.
bool sameWord(std::string_view left, std::string_view right);

/// Requires an unsigned decimal number. @throws Unreadable when it is missing or not such a number. @param what  the
/// name of the number in the reason, as in "service id".
void requireDigits(std::string_view digits, std::string_view what);

/// Reads an unsigned decimal number.
/// @param what  as above.
/// @throws Unreadable when it is missing, not such a number or greater than `most`.
std::uint64_t number(std::string_view digits, std::string_view what, std::uint64_t most);

}  // namespace virtualtv::import
