#pragma once

#include <cstddef>
#include <cstdint>

#include "support/comparison/Comparison.h"

namespace comparison {

/// A script of random commands and changes from outside. The same seed gives the same script on every machine.
/// @param set  the set that it starts with: scripts name its services.
Script randomScript(std::uint64_t seed, std::size_t lines, const model::Set& set);

}  // namespace comparison
