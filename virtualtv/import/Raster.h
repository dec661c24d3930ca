// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

namespace virtualtv::import {

/// The numbering of terrestrial channels in a region.
enum class Raster { european, australian, american };

/// The number of the terrestrial channel on a frequency.
/// @param kilohertz  the centre of the channel; transmitters may be up to half a megahertz off.
/// @param bandwidth  kHz, 0 when unknown.
/// @return nothing when the raster has no such channel. The Australian channel 9A, which has no number, is 13.
std::optional<int> rasterChannel(Raster raster, int kilohertz, int bandwidth);

/// True for a channel that exists in the Australian raster but not in the European one: 7 MHz wide in the UHF bands.
bool isAustralianUhf(int kilohertz, int bandwidth);

}  // namespace virtualtv::import
