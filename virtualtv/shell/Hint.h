#pragma once

#include <string>
#include <string_view>

#include "shell/Lines.h"

namespace virtualtv::shell {

class Session;

/// What a person who typed a line most likely meant, when the plug-in refused its command, or there is none of that
/// name or no knob, operation or topic of the name behind it.
/// @param session  the one that ran the line.
/// @param line  what was typed.
/// @param printed  what it printed.
/// @return a comment line such as `# did you mean: GetTVMode`, so that it may stand in a transcript; empty where
/// nothing is to be said.
std::string hintOn(Session& session, std::string_view line, const Lines& printed);

}  // namespace virtualtv::shell
