#pragma once

#include <json/json.h>

#include <span>

#include "Commands.h"
#include "Help.h"

namespace catalogue {

/// Makes the catalogue: what the command table says of each command together with what the help texts say of it, in
/// the table's order.
///
/// Reports, among what is wrong with the help texts themselves, each command without a help text, each help text
/// without a command, and each command whose help describes another number of parameters than its row has. The
/// catalogue is to be used only when nothing was reported.
Json::Value merge(std::span<const kel::Command> table, const Help& help);

}  // namespace catalogue
