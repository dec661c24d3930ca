// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

/// The plug-in's sources, parsed to find what is on a line.
namespace engine {

/// True for a line of the operation, which is a line of the function of that name.
bool isLineOf(std::string_view operation, int line);

}  // namespace engine
