// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string_view>

#include "import/ListBuilder.h"

namespace virtualtv::import {

// Readers for the values of a libdvbv5 channel file. Words may be in any case. Invalid values throw `Unreadable`.

/// A value of DELIVERY_SYSTEM.
struct Dvbv5System {
  std::string_view name;
  EAntennaMode antenna;
  Raster raster = Raster::european;
};

Dvbv5System readDvbv5System(std::string_view text);

/// QAM/64, QAM_64, QAM64 and 64QAM mean the same.
Modulation readDvbv5Modulation(std::string_view text);

/// 'H', 'V', 'L' or 'R', 0 for none.
char readDvbv5Polarisation(std::string_view text);

/// Returns kHz. Files have kHz for satellites and Hz for other antennas.
int readDvbv5Frequency(std::string_view text, EAntennaMode antenna);

/// Returns kHz; 0 when the tuner is to detect it.
int readDvbv5Bandwidth(std::string_view text);

/// The kind of streams that a key with PIDs lists.
struct Dvbv5Streams {
  bool video = false;
  AudioCoding coding = CODING_UNKNOWN;
};

/// The streams that a key lists. A key with PID_ ends in their stream type in the program map, in hexadecimal. The
/// plain audio key lists audio of any coding. @return nothing when the key lists no streams.
std::optional<Dvbv5Streams> dvbv5Streams(std::string_view name);

}  // namespace virtualtv::import
