// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>

#include "services/Service.h"
#include "set/State.h"

namespace virtualtv {
class Tv;
}

/// Plays the recordings of services: which parts of a recording a window shows, and how `ffmpeg` converts them for
/// browsers.
namespace virtualtv::live {

/// What a window plays of a recording. When this changes, a player must start again.
struct Playing {
  Footage footage;
  int audio = 0;     ///< PID of the audio track; 0 for none
  int subtitle = 0;  ///< PID of the DVB subtitles that are drawn into the picture; 0 for none

  bool operator==(const Playing&) const = default;
};

/// A window shows no recording. The message says why.
struct NothingPlays : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// What a window plays. @throws NothingPlays when it shows no recording, StoreError when the service can't be read.
Playing playingOn(Tv& tv, WindowId window);

}  // namespace virtualtv::live
