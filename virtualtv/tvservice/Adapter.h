#pragma once

#include <vector>

#include "seam/Seam.h"
#include "services/Service.h"
#include "set/Answer.h"
#include "set/State.h"
#include "tvservice/TVServiceTypes.h"

// What the adapters behind the TV service's interfaces share.

namespace virtualtv::tvservice {

/// An interface that a client was given: which window it acts on, and its number.
struct Profile {
  WindowId window = WindowId::main;
  seam::Handle handle;
};

/// Tells a client of the subtitle at a position. @return false, and nothing written, where there is none that can be
/// read.
inline bool tell(const std::vector<SubtitleTrack>& tracks, int position, int& lang, TSHybridSBT& subtitle) {
  const SubtitleTrack* const track = readableAt(tracks, position);
  if (track == nullptr) return false;
  lang = track->lang;
  subtitle.type = track->type;
  subtitle.pid = static_cast<unsigned short>(track->pid);
  return true;
}

}  // namespace virtualtv::tvservice
