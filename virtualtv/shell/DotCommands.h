#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "shell/Lines.h"

namespace virtualtv::shell {

class Session;

/// A command that speaks to the set instead of the plug-in.
struct DotCommand {
  std::string_view name;   ///< with its full stop
  std::string_view usage;  ///< what follows the name
  std::string_view help;
  /// Runs it. @return what it prints. Throws a std::exception with a line for a person when it can't be done.
  Lines (*run)(Session& session, const std::vector<std::string>& words);
  bool drivesEngines = false;  ///< it makes the plug-in call the set
  bool isTyped = true;         ///< false for one of files alone, which nobody is offered
};

/// All of them; help, completion and documentation walk this table.
std::span<const DotCommand> dotCommands();

/// @throws std::invalid_argument when there is no such command.
const DotCommand& dotCommand(const std::string& name);

}  // namespace virtualtv::shell
