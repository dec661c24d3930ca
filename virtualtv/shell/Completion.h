// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "shell/Lines.h"

namespace virtualtv::shell {

class Session;

/// The command names that a line may start with, including those of the shell.
Lines firstWords();

/// The completions of the last word of a half-typed line: commands, operations, knobs, settings keys, files and so on.
/// Each is a whole word without quotes, and they are sorted. Quotes and backslashes in the line mean the same as when
/// it is run.
Lines completions(Session& session, std::string_view line);

/// All words that can follow the words before them, whether or not they continue what was typed. @param before  the
/// words before it; empty for the first word. @param typed  the typed part of the word, used only to narrow large
/// groups: files to a folder, knobs to a service, commands after a `+` to those that take a list.
Lines wordsBehind(Session& session, const Lines& before, const std::string& typed);

/// The text to append to a half-typed line so that its last word becomes the common start of `words`. If there is only
/// one word, a blank follows it, unless the word may continue. The text is escaped to fit the open quote, or with
/// backslashes when no quote is open. @param words  the result of `completions` for the line.
std::string restOf(std::string_view line, const Lines& words);

/// The common start of all words, in whole UTF-8 characters.
std::string commonStart(const Lines& words);

}  // namespace virtualtv::shell
