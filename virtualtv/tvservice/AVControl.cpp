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
  explicit AVControl(const Profile& profile) : profile_(profile) {}

  int MuteVideo(int mute) override {
    return callTv(op("IAVControl::MuteVideo"), profile_.handle, args(in("mute", mute)), [&](Tv& tv) {
      if (mute != 0 && mute != 1) return 0;
      tv.mute(profile_.window, mute == 1);
      return 1;
    });
  }
  int GetResolution(EResolution& code, TSResolution& resolution) override {
    return callTv(op("IAVControl::GetResolution"), profile_.handle,
                  args(out("code", code), out("resolution", resolution)), [&](Tv& tv) {
                    const auto told = tv.state()[profile_.window].resolution;
                    const auto picture = pictureOn(tv, profile_.window);
                    if (!told && !picture) return -1;
                    code = static_cast<EResolution>(told ? *told : resolutionCode(*picture));
                    if (picture) fill(resolution, *picture);
                    return 0;
                  });
  }
  int GetCurrentAudioInfo(int* lang, int* index) override {
    return callTv(op("IAVControl::GetCurrentAudioInfo"), profile_.handle,
                  args(out("lang", *lang), out("index", *index)), [&](Tv& tv) {
                    const WindowState& window = tv.state()[profile_.window];
                    const auto tracks = tv.services().audio(window.service);
                    const AudioTrack* const track = readableAt(tracks, window.inUse.audio);
                    if (track == nullptr) return 0;
                    *lang = track->lang;
                    *index = window.inUse.audio;
                    return 1;
                  });
  }
  int SetCurrentAudioByIndex(int index) override {
    return callTv(op("IAVControl::SetCurrentAudioByIndex"), profile_.handle, args(in("index", index)),
                  [&](Tv& tv) { return tv.selectAudio(profile_.window, index) ? 1 : 0; });
  }

 private:
  Profile profile_;
};

}  // namespace

std::shared_ptr<IAVControl> makeAVControl(const Profile& profile) {
  return std::make_shared<AVControl>(profile);
}

}  // namespace virtualtv::tvservice
