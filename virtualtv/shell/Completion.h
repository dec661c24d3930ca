#pragma once

#include <string>
#include <string_view>

#include "shell/Lines.h"

namespace virtualtv::shell {

class Session;

/// The names of the commands, those of the shell among them, that a line may start with.
Lines firstWords();

/// What the last word of a half-typed line can become: commands, operations, knobs, settings keys, files and so on,
/// whole words in order, without quotes. Quotes and backslashes in the line are read as when it is run.
Lines completions(Session& session, std::string_view line);

/// The same without a look at what there is of the last word: all words that may stand there.
/// @param before  the words in front of it, none where it is the first one.
/// @param typed  as much of it as there is. It chooses among words that are many: files by their folder, knobs by their
/// service.
Lines wordsBehind(Session& session, const Lines& before, const std::string& typed);

/// What to type behind a half-typed line so that its last word becomes what all of `words` start with; a single word is
/// finished with a blank, unless more of it may follow. In the quotes that are open, else with backslashes.
/// @param words  what `completions` tells of the line.
std::string restOf(std::string_view line, const Lines& words);

/// What all of these start with, in whole characters of UTF-8.
std::string commonStart(const Lines& words);

}  // namespace virtualtv::shell
