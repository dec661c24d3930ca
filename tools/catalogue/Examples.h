// SPDX-License-Identifier: MIT
#pragma once

#include <json/json.h>

#include <map>
#include <string>

#include "Problems.h"

namespace catalogue {

/// How the form of a command that takes a parameter list is told from the other one, behind the command's name.
inline constexpr const char* withList = " with a parameter list";

/// An example of each command, as a transcript shows it, by the command's name; with `withList` for that form.
using Examples = std::map<std::string, std::string>;

/// Reads the examples from a transcript's scenes.
///
/// Reports a command of the catalogue without an example, an example of what is no command, a command's second example,
/// one that does not run its command, and a file that is no transcript.
/// @param file  its name in problems.
Examples readExamples(const std::string& file, const std::string& text, const Json::Value& catalogue,
                      Problems& problems);

}  // namespace catalogue
