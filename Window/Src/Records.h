// SPDX-License-Identifier: MIT
#pragma once

#include "tvservice/TVServiceTypes.h"

// Creates records of the TV service with all members 0, to pass to its operations. The library's own constructors may
// leave any values in them.

namespace kel {

inline void Zero(TSAudio& audio) {
  audio.lang = 0;
  audio.decodeType = 0;
  audio.pid = 0;
  audio.audioMode = 0;
  audio.audioType = 0;
}

inline void Zero(TSHybridSBT& subtitle) {
  subtitle.type = 0;
  subtitle.pid = 0;
}

inline void Zero(TSRectInfo& rect) {
  rect.x = 0;
  rect.y = 0;
  rect.width = 0;
  rect.height = 0;
}

inline void Zero(TSResolution& resolution) {
  resolution.horizontal = 0;
  resolution.vertical = 0;
  resolution.frequency = 0;
  resolution.horizontalFrequency = 0;
}

template <typename Record>
Record Zeroed() {
  Record record;
  Zero(record);
  return record;
}

}  // namespace kel
