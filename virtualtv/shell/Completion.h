#pragma once

#include <string_view>

#include "shell/Lines.h"

namespace virtualtv::shell {

class Session;

/// What the last word of a half-typed line can become: commands, operations, knobs, settings keys, files and so on,
/// whole words in order. The word is what stands behind the last blank.
Lines completions(Session& session, std::string_view line);

/// What all of these start with.
std::string commonStart(const Lines& words);

}  // namespace virtualtv::shell
