// SPDX-License-Identifier: MIT
#include "import/Streams.h"

#include <utility>

namespace virtualtv::import {

bool isStreamPid(int pid) {
  return pid > 1 && std::cmp_less(pid, greatestPid);
}

bool isVideoType(int streamType) {
  switch (streamType) {
    case 0x01:
    case 0x02:
    case 0x10:
    case 0x1B:
    case 0x24:
    case 0xEA:
      return true;
    default:
      return false;
  }
}

AudioCoding audioCoding(int streamType) {
  switch (streamType) {
    case 0x03:
    case 0x04:
      return CODING_MPEG;
    case 0x0F:
    case 0x11:
    case 0x7C:
      return CODING_AAC;
    case 0x6A:
    case 0x81:
      return CODING_AC3;
    case 0x7A:
    case 0x87:
      return CODING_EAC3;
    default:
      return CODING_UNKNOWN;
  }
}

bool isSatelliteFrequency(std::uint64_t kilohertz) {
  return kilohertz >= 2'000'000 && kilohertz <= 50'000'000;
}

bool isGroundFrequency(std::uint64_t hertz) {
  return hertz >= 30'000'000 && hertz <= 1'500'000'000;
}

}  // namespace virtualtv::import
