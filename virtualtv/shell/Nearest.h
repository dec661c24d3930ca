#pragma once

#include <string_view>

#include "shell/Lines.h"

namespace virtualtv::shell {

/// The names that read as `word` when case, full stops, hyphens, underscores and the like do not count.
/// @return names of `known` in their order.
Lines alike(std::string_view word, const Lines& known);

/// The names that someone who typed `word` most likely meant: those that are alike, or up to four that start with it,
/// or those with the fewest letters changed, missing, added or swapped with the next one, if these are few.
/// @return names of `known` in their order, all equally near; none when nothing is near, or too much.
Lines nearest(std::string_view word, const Lines& known);

}  // namespace virtualtv::shell
