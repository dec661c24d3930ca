#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace virtualtv::text {

/// UTF-8 to 16-bit units in host order. Bytes that are no UTF-8 become U+FFFD each.
std::u16string toUnits(std::string_view utf8);

/// 16-bit units to UTF-8; a lone surrogate becomes U+FFFD.
std::string toUtf8(std::u16string_view units);

/// The units between double quotes, for a person and for `parseQuoted`: UTF-8 with `\"`, `\\`, and `\uNNNN` for
/// control characters and lone surrogates.
std::string quoted(std::u16string_view units);

/// Reads what `quoted` wrote from the front of `text` and removes it there; nothing when it does not start so.
std::optional<std::u16string> parseQuoted(std::string_view& text);

/// Bytes with everything but printable UTF-8 written as `\xNN`. A backslash stays, but for one before an `x`, which is
/// `\x5C`: so `\x` is always an escape, and other text is unchanged.
std::string printable(std::string_view bytes);

/// A text as it stands between `$'` and `'`: with `\n`, `\r`, `\t`, `\'`, `\\`, and a backslash with three octal digits
/// for each byte that can't be shown.
std::string escaped(std::string_view text);

/// A text as part of a word that a shell reads as it is: between single quotes where it is empty or has blanks, quotes
/// or backslashes; as in `$'A\nB'` where it has control characters or bytes that are no UTF-8. No backslash stands
/// before an `x` there, so that `printable` leaves it alone.
std::string asWord(std::string_view text);

/// What some programs write in front of a text to tell that it is UTF-8.
inline constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

/// The text behind a byte order mark in front of it, if there is one.
inline std::string_view withoutMark(std::string_view text) {
  return text.substr(text.starts_with(byteOrderMark) ? byteOrderMark.size() : 0);
}

/// The front of `bytes` that is UTF-8.
std::string_view utf8Front(std::string_view bytes);

/// True when all of `bytes` are UTF-8.
inline bool isUtf8(std::string_view bytes) {
  return utf8Front(bytes).size() == bytes.size();
}

/// The bytes, with U+FFFD in place of each that is no UTF-8.
std::string wellFormed(std::string_view bytes);

/// True when they also have no control characters.
bool isPrintable(std::string_view bytes);

/// A text as `printable` writes it, unless it is printable: for what may have been written so already.
std::string asLine(std::string_view text);

/// The front of a text in UTF-8 that is longer, as whole characters with `...` behind them.
std::string shortened(std::string_view text, std::size_t longest);

}  // namespace virtualtv::text
