// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace virtualtv::text {

/// Converts UTF-8 to 16-bit units in host order. Each byte that is not UTF-8 becomes U+FFFD.
std::u16string toUnits(std::string_view utf8);

/// Converts 16-bit units to UTF-8. A lone surrogate becomes U+FFFD.
std::string toUtf8(std::u16string_view units);

/// The units between double quotes, for a person and for `parseQuoted`: UTF-8 with `\"`, `\\`, and `\uNNNN` for
/// control characters and lone surrogates.
std::string quoted(std::u16string_view units);

/// Reads a text written by `quoted` from the front of `text`, and removes it there. Returns nothing when `text` does
/// not start with one.
std::optional<std::u16string> parseQuoted(std::string_view& text);

/// Escapes every byte that is not printable UTF-8 as `\xNN`. A backslash before an `x` becomes `\x5C`, so that `\x` is
/// always an escape. All other text is unchanged.
std::string printable(std::string_view bytes);

/// Escapes a text for use between `$'` and `'`: with `\n`, `\r`, `\t`, `\'`, `\\`, and a backslash with three octal
/// digits for each byte that can't be shown.
std::string escaped(std::string_view text);

/// Quotes a text so that a shell reads it as one word. A text that is empty or has blanks, quotes or backslashes is put
/// between single quotes. A text with control characters or bytes that are not UTF-8 becomes `$'A\nB'`. There no
/// backslash precedes an `x`, so `printable` leaves the word unchanged.
std::string asWord(std::string_view text);

/// The mark that some programs write at the start of a text in UTF-8.
inline constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

/// The text without the byte order mark at its start, if there is one.
inline std::string_view withoutMark(std::string_view text) {
  return text.substr(text.starts_with(byteOrderMark) ? byteOrderMark.size() : 0);
}

/// The longest prefix of `bytes` that is valid UTF-8.
std::string_view utf8Front(std::string_view bytes);

/// True when `bytes` are valid UTF-8.
inline bool isUtf8(std::string_view bytes) {
  return utf8Front(bytes).size() == bytes.size();
}

/// The text of the bytes, with U+FFFD for each byte that is not UTF-8.
std::string wellFormed(std::string_view bytes);

/// True when `bytes` are valid UTF-8 without control characters.
bool isPrintable(std::string_view bytes);

/// Applies `printable` unless the text is printable already, so that a text is not escaped twice.
std::string asLine(std::string_view text);

/// Shortens a text in UTF-8 that is too long: its first whole characters, followed by `...`.
std::string shortened(std::string_view text, std::size_t longest);

}  // namespace virtualtv::text
