// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "shell/Lines.h"

namespace virtualtv::shell {

/// The names that equal `word` when case, full stops, hyphens, underscores and the like are ignored. @return names of
/// `known`, in their order.
Lines alike(std::string_view word, const Lines& known);

/// The names that someone who typed `word` most likely meant. These are the names that are `alike`. If there are none,
/// they are the names that start with the word, but only if at most four do. If there are none either, they are the
/// names with the fewest edits (a letter changed, missing, added or swapped with the next), but only if the edits are
/// few for a word of that length. @return names of `known`, in their order.
Lines nearest(std::string_view word, const Lines& known);

}  // namespace virtualtv::shell
