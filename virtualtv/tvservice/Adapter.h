// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "seam/Seam.h"
#include "services/Service.h"
#include "set/CallTv.h"
#include "set/State.h"
#include "tvservice/TVServiceTypes.h"

// Shared parts of the adapters behind the TV service's interfaces.

namespace virtualtv::tvservice {

/// Identifies an interface of a client: the window that it acts on, and its handle in traces.
struct Identity {
  WindowId window = WindowId::main;
  seam::Handle handle;
};

/// Writes the language and the kind of the subtitle at a position. @return false, and nothing written, when there is no
/// readable subtitle there.
inline bool tell(const std::vector<SubtitleTrack>& tracks, int position, int& lang, TSHybridSBT& subtitle) {
  const SubtitleTrack* const track = readableAt(tracks, position);
  if (track == nullptr) return false;
  lang = track->lang;
  subtitle.type = track->type;
  subtitle.pid = static_cast<unsigned short>(track->pid);
  return true;
}

}  // namespace virtualtv::tvservice
