// SPDX-License-Identifier: MIT
#include "import/Raster.h"

#include <array>
#include <cstdlib>

namespace virtualtv::import {

namespace {

/// Adjacent channels of equal width.
struct Band {
  Raster raster;
  int bandwidth;  ///< kHz
  int middle;     ///< centre of the first channel, kHz
  int first;      ///< number of the first channel
  int last;       ///< number of the last channel
};

constexpr std::array<Band, 11> bands{{
    {Raster::european, 7000, 177500, 5, 12},
    {Raster::european, 8000, 178000, 6, 12},
    {Raster::european, 8000, 474000, 21, 69},
    {Raster::australian, 7000, 177500, 6, 9},
    {Raster::australian, 7000, 205500, 13, 13},
    {Raster::australian, 7000, 212500, 10, 12},
    {Raster::australian, 7000, 529500, 28, 69},
    {Raster::american, 6000, 57000, 2, 4},
    {Raster::american, 6000, 79000, 5, 6},
    {Raster::american, 6000, 177000, 7, 13},
    {Raster::american, 6000, 473000, 14, 69},
}};

constexpr int farthest = 500;  // kHz from the centre of the channel

/// The channel of a band that is nearest to a frequency, and its distance.
struct Nearest {
  int channel;
  int distance;
};

Nearest nearest(const Band& band, int kilohertz) {
  const int steps = (kilohertz - band.middle + band.bandwidth / 2) / band.bandwidth;
  return {band.first + steps, std::abs(kilohertz - band.middle - steps * band.bandwidth)};
}

}  // namespace

std::optional<int> rasterChannel(Raster raster, int kilohertz, int bandwidth) {
  std::optional<int> channel;
  int distance = farthest + 1;
  for (const Band& band : bands) {
    if (band.raster != raster || (bandwidth != 0 && bandwidth != band.bandwidth)) continue;
    const Nearest found = nearest(band, kilohertz);
    if (found.channel < band.first || found.channel > band.last || found.distance >= distance) continue;
    channel = found.channel;
    distance = found.distance;
  }
  return channel;
}

bool isAustralianUhf(int kilohertz, int bandwidth) {
  constexpr int uhf = 300000;
  return bandwidth == 7000 && kilohertz > uhf && rasterChannel(Raster::australian, kilohertz, bandwidth).has_value();
}

}  // namespace virtualtv::import
