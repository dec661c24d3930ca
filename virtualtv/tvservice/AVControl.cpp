// SPDX-License-Identifier: MIT
// Picture muting, the resolution, and the audio track of a window.
#include "services/ServiceStore.h"
#include "set/Picture.h"
#include "tvservice/Adapters.h"

namespace virtualtv::tvservice {

namespace {

using seam::args;
using seam::in;
using seam::op;
using seam::out;

void fill(TSResolution& resolution, const Picture& picture) {
  resolution.horizontal = static_cast<unsigned>(picture.width);
  resolution.vertical = static_cast<unsigned>(picture.height);
  resolution.frequency = static_cast<unsigned>(picture.rate);
  resolution.horizontalFrequency = linesPerSecond(picture);
}

class AVControl : public IAVControl {
 public:
  explicit AVControl(const Identity& identity) : identity_(identity) {}

  int MuteVideo(int mute) override {
    return callTv(op("IAVControl::MuteVideo"), identity_.handle, args(in("mute", mute)), [&](Tv& tv) {
      if (mute != 0 && mute != 1) return 0;
      tv.mute(identity_.window, mute == 1);
      return 1;
    });
  }
  int GetResolution(EResolution& code, TSResolution& resolution) override {
    return callTv(op("IAVControl::GetResolution"), identity_.handle,
                  args(out("code", code), out("resolution", resolution)), [&](Tv& tv) {
                    const auto told = tv.state()[identity_.window].resolution;
                    const auto picture = pictureOn(tv, identity_.window);
                    if (!told && !picture) return -1;
                    code = static_cast<EResolution>(told ? *told : resolutionCode(*picture));
                    if (picture) fill(resolution, *picture);
                    return 0;
                  });
  }
  int GetCurrentAudioInfo(int* lang, int* index) override {
    return callTv(op("IAVControl::GetCurrentAudioInfo"), identity_.handle,
                  args(out("lang", *lang), out("index", *index)), [&](Tv& tv) {
                    const WindowState& window = tv.state()[identity_.window];
                    const auto tracks = tv.services().audio(window.service);
                    const AudioTrack* const track = readableAt(tracks, window.inUse.audio);
                    if (track == nullptr) return 0;
                    *lang = track->lang;
                    *index = window.inUse.audio;
                    return 1;
                  });
  }
  int SetCurrentAudioByIndex(int index) override {
    return callTv(op("IAVControl::SetCurrentAudioByIndex"), identity_.handle, args(in("index", index)),
                  [&](Tv& tv) { return tv.selectAudio(identity_.window, index) ? 1 : 0; });
  }

 private:
  Identity identity_;
};

}  // namespace

std::shared_ptr<IAVControl> makeAVControl(const Identity& identity) {
  return std::make_shared<AVControl>(identity);
}

}  // namespace virtualtv::tvservice
