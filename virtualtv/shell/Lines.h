// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace virtualtv::shell {

/// Lines of text without their line breaks.
using Lines = std::vector<std::string>;

constexpr std::string_view blanks = " \t";  ///< characters that separate words

/// Appends lines.
void append(Lines& lines, const Lines& more);

/// Splits a text into lines. Carriage returns at the end of a line belong to the line break. The last line need not end
/// in a break.
Lines splitLines(std::string_view text);

/// Splits a line into words as a POSIX shell does. Blanks separate words. Single quotes preserve everything. Double
/// quotes preserve everything except a backslash before `"`, `\`, `$` or a backquote. `$'...'` may contain `\n`, `\r`,
/// `\t`, `\'`, `\"`, `\\` and, for any byte, `\xNN` and the octal `\NNN`. Elsewhere a backslash preserves the next
/// character. Nothing is expanded, and `#` is an ordinary character.
/// @throws std::invalid_argument with a line for a person when a quote is not closed, a backslash ends the line, or
/// `$'...'` has another escape.
std::vector<std::string> splitWords(std::string_view line);

/// A line of words that is still being typed.
struct HalfTyped {
  Lines words;          ///< the words before the last one
  std::string last;     ///< the typed part of the last word, as `splitWords` reads it; empty after a blank
  char quote = '\0';    ///< the open quote in the last word, `$` for `$'`; 0 for none
  bool escape = false;  ///< the line ends with a backslash that escapes the next character
};

/// Splits such a line as `splitWords` does, but accepts an open quote, a backslash at the end or an unknown escape.
HalfTyped splitHalfTyped(std::string_view line);

/// The character that closes such a quote.
char closing(char quote);

/// Escapes a text so that `splitWords` reads it as part of a word. @param quote  the quote that is open at this point,
/// and stays open; `$` for `$'`; 0 for none.
std::string asTyped(std::string_view text, char quote = '\0');

/// Escapes a text to one line that is safe on a terminal, as `text::printable` does. Do not pass text that is escaped
/// already.
std::string oneLine(std::string_view text);

}  // namespace virtualtv::shell
