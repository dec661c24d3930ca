#pragma once

#include <optional>
#include <string_view>

#include "import/ServiceList.h"

namespace virtualtv::import {

// How the values of a libdvbv5 channel file are written; words may be in any case. What can't be read is thrown as
// `Unreadable`.

/// A value of DELIVERY_SYSTEM.
struct Dvbv5System {
  std::string_view name;
  EAntennaMode antenna;
  Raster raster = Raster::european;
};

Dvbv5System readDvbv5System(std::string_view text);

/// Takes QAM/64, QAM_64, QAM64 and 64QAM for the same.
Modulation readDvbv5Modulation(std::string_view text);

/// 'H', 'V', 'L' or 'R', 0 for none.
char readDvbv5Polarisation(std::string_view text);

/// kHz. Satellites are written in kHz, the others in Hz.
int readDvbv5Frequency(std::string_view text, EAntennaMode antenna);

/// kHz, 0 when the tuner is to find it.
int readDvbv5Bandwidth(std::string_view text);

/// What the streams of a key with PIDs are.
struct Dvbv5Streams {
  bool video = false;
  AudioCoding coding = CODING_UNKNOWN;
};

/// PID_ is followed by the stream type of the program map, hexadecimal; the plain audio key has audio of any coding.
/// @return nothing for a key of anything else.
std::optional<Dvbv5Streams> dvbv5Streams(std::string_view name);

}  // namespace virtualtv::import
