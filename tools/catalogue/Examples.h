// SPDX-License-Identifier: MIT
#pragma once

#include <json/json.h>

#include <map>
#include <string>

#include "Problems.h"

namespace catalogue {

/// Follows a command's name to name its form that takes a parameter list.
inline constexpr const char* withList = " with a parameter list";

/// Examples as transcripts, by the name of their command; `withList` follows the name for the form with a parameter
/// list.
using Examples = std::map<std::string, std::string>;

/// Reads the examples from the scenes of a transcript, each named after its command.
///
/// Adds to `problems`: a command of the catalogue without an example, an example of an unknown command, a second
/// example of a command, and an example that does not run its command. If the text is not a transcript, adds that, and
/// returns no examples.
/// @param file  name of the file, for problems.
Examples readExamples(const std::string& file, const std::string& text, const Json::Value& catalogue,
                      Problems& problems);

}  // namespace catalogue
