// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "shell/Lines.h"

namespace virtualtv::shell {

/// The names that equal `word` when case, full stops, hyphens, underscores and the like are ignored. @return names of
/// `known`, in their order.
Lines alike(std::string_view word, const Lines& known);

/// The names that someone who typed `word` most likely meant. These are the names that are `alike`; else up to four
/// names that start with the word; else the names with the fewest edits (a letter changed, missing, added or swapped
/// with the next), if few. @return names of `known` in their order, all equally near; none when nothing is near, or too
/// many are.
Lines nearest(std::string_view word, const Lines& known);

}  // namespace virtualtv::shell
