// SPDX-License-Identifier: MIT
#include "live/Playing.h"

#include <optional>

#include "services/ServiceStore.h"
#include "set/Picture.h"
#include "set/Tv.h"

namespace virtualtv::live {

Playing playingOn(Tv& tv, WindowId window) {
  const WindowState& shown = tv.state()[window];
  if (shown.source != SOURCE_TV) throw NothingPlays("an input is on the screen");
  const std::optional<Service> service = tv.services().read(shown.service);
  if (!pictureOn(tv.state(), window, service)) throw NothingPlays("no service with a picture is on the screen");
  if (!service || !service->footage) throw NothingPlays("the service on the screen comes from no recording");
  Playing playing{*service->footage};
  if (const AudioTrack* track = readableAt(service->audio, shown.inUse.audio)) playing.audio = track->pid;
  const SubtitleTrack* subtitle = readableAt(service->subtitles, shown.inUse.subtitle);
  if (subtitle != nullptr && subtitle->type == KIND_DVB) playing.subtitle = subtitle->pid;
  return playing;
}

}  // namespace virtualtv::live
