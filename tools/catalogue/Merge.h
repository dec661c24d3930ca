// SPDX-License-Identifier: MIT
#pragma once

#include <json/json.h>

#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "Commands.h"
#include "Help.h"

namespace catalogue {

/// What the code says about one form of a command: with the parameters of its row, or with a parameter list.
struct Form {
  std::string_view name;
  std::vector<kel::Parameter> parameters;
  int preset = 0;              ///< default of the answered number
  std::optional<int> refusal;  ///< answer when a required parameter does not parse; if absent, there is no answer then
};

/// The commands that take a parameter list. They have no row: the engine's entry for lists runs them itself. A test
/// compares this list with the engine.
const std::vector<Form>& listForms();

/// Makes the catalogue: for each command of `table` and then of `lists`, what the code and the help texts say about it.
///
/// Reports problems to `help`: errors in the help texts, each command without a help text, each help text without a
/// command, and each command whose help describes another number of parameters than the code has. Use the catalogue
/// only if nothing was reported.
Json::Value merge(std::span<const kel::Command> table, const std::vector<Form>& lists, const Help& help);

}  // namespace catalogue
