// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "services/Service.h"

namespace virtualtv::import {

/// The greatest PID, and the greatest network, transport stream and service id.
constexpr std::uint64_t greatestPid = 8191;
constexpr std::uint64_t greatestId = 65535;

/// False for the PIDs that lists use for "no stream": 0 and 1 belong to tables, 8191 to stuffing.
bool isStreamPid(int pid);

/// True for the stream types of moving pictures in a program map.
bool isVideoType(int streamType);

/// The coding of an audio stream, given its stream type in the program map or the tag of a descriptor there.
/// `CODING_UNKNOWN` for other streams.
AudioCoding audioCoding(int streamType);

/// True for the frequencies that satellites send on, 2 to 50 GHz.
bool isSatelliteFrequency(std::uint64_t kilohertz);

/// True for the frequencies of terrestrial and cable channels, 30 MHz to 1.5 GHz.
bool isGroundFrequency(std::uint64_t hertz);

}  // namespace virtualtv::import
