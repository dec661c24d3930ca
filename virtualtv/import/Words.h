#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace virtualtv::import {

/// A piece of a list that can't be read, and why. Thrown and caught within this room: a reader makes it a `Problem`.
struct Unreadable {
  std::string reason;
};

/// `text` without blanks, tabs and carriage returns at its ends; of `trimmedEnd` only at its end.
std::string_view trimmed(std::string_view text);
std::string_view trimmedEnd(std::string_view text);

/// The part of `rest` before the first `separator`, which it takes off together with the separator; all of `rest`
/// when there is none.
std::string_view cut(std::string_view& rest, char separator);

/// A piece of a list as a reason shows it: between double quotes, at most 40 bytes of it, what is not printable as
/// `\xNN`.
std::string quoted(std::string_view piece);

bool isDigit(char character);

/// True when both are the same but for the case of ASCII letters.
bool sameWord(std::string_view left, std::string_view right);

/// Requires a decimal number without a sign. @throw Unreadable  when it is missing or no such number.
/// @param what  names the number in the reason, as in "service id".
void requireDigits(std::string_view digits, std::string_view what);

/// Reads a decimal number without a sign.
/// @param what  as above.
/// @throw Unreadable  when it is missing, no such number or greater than `most`.
std::uint64_t number(std::string_view digits, std::string_view what, std::uint64_t most);

}  // namespace virtualtv::import
