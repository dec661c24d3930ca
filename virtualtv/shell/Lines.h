#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace virtualtv::shell {

/// Lines of text without their line breaks.
using Lines = std::vector<std::string>;

constexpr std::string_view blanks = " \t";  ///< that stand between words

/// Puts more lines behind those that are there.
void append(Lines& lines, const Lines& more);

/// The lines of a text. Carriage returns at the end of a line belong to its break, which the last line need not have;
/// so lines that are written with plain breaks read as the same.
Lines splitLines(std::string_view text);

/// Splits a line into words as a POSIX shell does: blanks separate, single quotes keep all between them, double quotes
/// all but a backslash before `"`, `\`, `$` or a backquote; in `$'...'` stand `\n`, `\r`, `\t`, `\'`, `\"`, `\\` and,
/// for any byte, `\xNN` and the octal `\NNN`; elsewhere a backslash keeps the next character. Nothing is expanded, and
/// `#` is a character like others.
/// @throws std::invalid_argument with a line for a person when a quote is not closed, a backslash ends the line, or
/// `$'...'` has another escape.
std::vector<std::string> splitWords(std::string_view line);

/// A line of words that is still being typed.
struct HalfTyped {
  Lines words;          ///< those in front of the last one
  std::string last;     ///< as much of the last one as there is, as `splitWords` reads it; empty behind a blank
  char quote = '\0';    ///< the quote in it that is not closed
  bool escape = false;  ///< a backslash at its end keeps the next character
};

/// Splits such a line as `splitWords` does, but takes an open quote, a backslash at the end or an unknown escape as
/// they come.
HalfTyped splitHalfTyped(std::string_view line);

/// What closes such a quote.
char closing(char quote);

/// A text as it is typed so that `splitWords` reads it as part of a word.
/// @param quote  the quote that is open where it is typed, and stays open, `$` for `$'`; 0 for none.
std::string asTyped(std::string_view text, char quote = '\0');

/// A text as one line that a terminal shows as it is, with escapes as `text::printable` writes them. Not for text that
/// has been escaped already.
std::string oneLine(std::string_view text);

}  // namespace virtualtv::shell
