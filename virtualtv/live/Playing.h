#pragma once

#include <stdexcept>

#include "services/Service.h"
#include "set/State.h"

namespace virtualtv {
class Tv;
}

/// The recordings that services play from: what of them a window shows, and the program `ffmpeg` that makes of it what
/// browsers play.
namespace virtualtv::live {

/// What a window plays of a recording. Once it is another one, whoever shows it has to begin anew.
struct Playing {
  Footage footage;
  int audio = 0;     ///< PID of the track that is heard; 0 for none
  int subtitle = 0;  ///< PID of the DVB subtitles that are drawn into the picture; 0 for none

  bool operator==(const Playing&) const = default;
};

/// Says why a window has no recording on its screen.
struct NothingPlays : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// @throws NothingPlays when there is none, StoreError when the service can't be read.
Playing playingOn(Tv& tv, WindowId window);

}  // namespace virtualtv::live
