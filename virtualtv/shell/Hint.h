// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "shell/Lines.h"

namespace virtualtv::shell {

class Session;

/// Suggests what a person most likely meant to type, when the plug-in refused the command, or when the line names a
/// command, knob, operation or topic that does not exist. @param session  the session that ran the line. @param line
/// the typed line. @param printed  its output. @return a comment line such as `# did you mean: GetTVMode`, which is
/// valid in a transcript; empty for no suggestion.
std::string hintOn(Session& session, std::string_view line, const Lines& printed);

}  // namespace virtualtv::shell
