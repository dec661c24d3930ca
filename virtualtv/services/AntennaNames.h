// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <utility>

#include "tvservice/TVServiceTypes.h"

namespace virtualtv {

/// What people and clients call the antennas.
inline constexpr std::array antennaNames{std::pair<const char*, EAntennaMode>{"terrestrial", ANTENNA_TERRESTRIAL},
                                         std::pair<const char*, EAntennaMode>{"cable", ANTENNA_CABLE},
                                         std::pair<const char*, EAntennaMode>{"satellite", ANTENNA_SATELLITE}};

/// The name of an antenna, given as the number in a service's antenna field; null for any other number.
constexpr const char* antennaName(std::uint64_t antenna) {
  for (const auto& [name, named] : antennaNames) {
    if (static_cast<std::int64_t>(antenna) == named) return name;
  }
  return nullptr;
}

}  // namespace virtualtv
