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

/// What the code states of a command in one of its forms: with the parameters of its row, or with a parameter list.
struct Form {
  std::string_view name;
  std::vector<kel::Parameter> parameters;
  int preset = 0;              ///< of the answer's value
  std::optional<int> refusal;  ///< answer when a required parameter does not parse; without one there is no answer then
};

/// The commands that take a parameter list. They have no row: the engine's entry for lists runs them itself. A test
/// holds this against the engine.
const std::vector<Form>& listForms();

/// Makes the catalogue: what the command table and `lists` say of each command together with what the help texts say of
/// it, in their order.
///
/// Reports, among what is wrong with the help texts themselves, each command without a help text, each help text
/// without a command, and each command whose help describes another number of parameters than its row has. The
/// catalogue is to be used only when nothing was reported.
Json::Value merge(std::span<const kel::Command> table, const std::vector<Form>& lists, const Help& help);

}  // namespace catalogue
