// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

/// The plug-in's sources, parsed to find the function of a line.
namespace engine {

/// True when the line belongs to the function with the operation's name.
bool isLineOf(std::string_view operation, int line);

}  // namespace engine
