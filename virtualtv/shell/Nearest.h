#pragma once

#include <string_view>

#include "shell/Lines.h"

namespace virtualtv::shell {

/// The names that someone who typed `word` most likely meant. Case, full stops, hyphens, underscores and the like do
/// not count. The word is a whole name, or the start of up to four, or the nearest are those with the fewest letters
/// changed, missing, added or swapped with the next one, if these are few.
/// @return names of `known` in their order, all equally near; none when nothing is near, or too much.
Lines nearest(std::string_view word, const Lines& known);

}  // namespace virtualtv::shell
