// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

#include "support/comparison/Comparison.h"

namespace comparison {

/// Whether calls fail in a script.
enum class Faults { none, some };

/// A script of random commands and changes from outside. The same seed gives the same script on every machine.
/// @param set  the set that it starts with: scripts name its services.
Script randomScript(std::uint64_t seed, std::size_t lines, const model::Set& set, Faults faults = Faults::none);

}  // namespace comparison
