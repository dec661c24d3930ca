#pragma once

#include <optional>

namespace virtualtv::import {

/// How a region numbers its terrestrial channels.
enum class Raster { european, australian, american };

/// The number of the terrestrial channel on a frequency.
/// @param kilohertz  the middle of the channel; up to half a megahertz beside it, as transmitters are, will do.
/// @param bandwidth  kHz, 0 when unknown.
/// @return nothing when the raster has no such channel. The Australian 9A, which has no number of its own, is 13.
std::optional<int> rasterChannel(Raster raster, int kilohertz, int bandwidth);

/// True for a channel that tells the Australian raster from the European one: 7 MHz wide in the UHF bands.
bool isAustralianUhf(int kilohertz, int bandwidth);

}  // namespace virtualtv::import
