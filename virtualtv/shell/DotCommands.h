// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "shell/Lines.h"

namespace virtualtv::shell {

class Session;

/// A command for the set instead of the plug-in.
struct DotCommand {
  std::string_view name;   ///< including the full stop
  std::string_view usage;  ///< the arguments, as help shows them
  std::string_view help;
  /// Runs the command. @return its output. Throws a std::exception with a line for a person on failure.
  Lines (*run)(Session& session, const std::vector<std::string>& words);
  bool drivesEngines = false;  ///< the command makes the plug-in call the set
  bool isTyped = true;         ///< false for a command used in files only, which completion and help do not offer
};

/// All of them; help, completion and documentation walk this table.
std::span<const DotCommand> dotCommands();

/// @throws std::invalid_argument when there is no such command.
const DotCommand& dotCommand(const std::string& name);

}  // namespace virtualtv::shell
