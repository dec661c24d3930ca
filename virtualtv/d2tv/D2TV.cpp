// SPDX-License-Identifier: MIT
// The secondary TV stack, which shows the ISP source. While the stack does not show the ISP source, its manager reports
// nothing.
#include "d2tv/CD2tvMgrProxy.h"
#include "d2tv/D2TVCAPI.h"

#include <algorithm>
#include <limits>

#include "seam/Seam.h"
#include "set/CallTv.h"
#include "set/Tv.h"

using virtualtv::AudioTrack;
using virtualtv::SecondaryStack;
using virtualtv::SubtitleTrack;
using virtualtv::Tv;
using virtualtv::seam::args;
using virtualtv::seam::Handle;
using virtualtv::seam::in;
using virtualtv::seam::op;
using virtualtv::seam::out;

namespace {

constexpr int good = 0;
constexpr int bad = -1;

const Handle manager{"set", 1};

/// Carries out a call of the manager. `body` takes what the stack shows, and returns whether it succeeded.
template <typename Values, typename Body>
int tell(const virtualtv::seam::Operation& operation, const Values& values, Body body) {
  return virtualtv::callTv(operation, manager, values, [&](Tv& tv) {
    const SecondaryStack& stack = tv.state().isp;
    return stack.shown && body(stack) ? good : bad;
  });
}

/// The same for a call that changes the set. `body` takes the set.
template <typename Values, typename Body>
int change(const virtualtv::seam::Operation& operation, const Values& values, Body body) {
  return virtualtv::callTv(operation, manager, values, [&](Tv& tv) { return body(tv) ? good : bad; });
}

/// Converts a position to `int`, clamped to its largest value.
int positionOf(unsigned position) {
  constexpr auto greatest = static_cast<unsigned>(std::numeric_limits<int>::max());
  return static_cast<int>(std::min(position, greatest));
}

/// The position of the first readable track with a PID; the number of tracks when there is none.
int positionOfPid(const std::vector<AudioTrack>& tracks, unsigned pid) {
  const auto found = std::find_if(tracks.begin(), tracks.end(), [=](const AudioTrack& track) {
    return track.readable && std::cmp_equal(track.pid, pid);
  });
  return static_cast<int>(found - tracks.begin());
}

unsigned countOf(const std::vector<SubtitleTrack>& tracks, int kind) {
  return static_cast<unsigned>(
      std::count_if(tracks.begin(), tracks.end(), [=](const SubtitleTrack& track) { return track.type == kind; }));
}

class Manager : public CD2tvMgrProxy {
 public:
  int GetTotalNumOfAudio(unsigned int* count) override {
    return tell(op("CD2tvMgrProxy::GetTotalNumOfAudio"), args(out("count", *count)), [&](const SecondaryStack& stack) {
      *count = static_cast<unsigned>(stack.audio.size());
      return true;
    });
  }

  int GetMultiAudioInfo(MVPDAudio* audio, unsigned int position) override {
    return tell(op("CD2tvMgrProxy::GetMultiAudioInfo"), args(in("position", position), out("audio", *audio)),
                [&](const SecondaryStack& stack) {
                  const AudioTrack* const track = readableAt(stack.audio, position);
                  if (track == nullptr) return false;
                  *audio = {static_cast<int>(position), track->pid,       track->decodeType,
                            track->audioMode,           track->audioType, track->lang};
                  return true;
                });
  }

  int GetCurrentAudioInfo(int* pid, int* index, unsigned int* lang) override {
    return tell(op("CD2tvMgrProxy::GetCurrentAudioInfo"),
                args(out("pid", *pid), out("index", *index), out("lang", *lang)), [&](const SecondaryStack& stack) {
                  const AudioTrack* const track = readableAt(stack.audio, stack.inUse.audio);
                  if (track == nullptr) return false;
                  *pid = track->pid;
                  *index = stack.inUse.audio;
                  *lang = static_cast<unsigned>(track->lang);
                  return true;
                });
  }

  int ChangeAudioByPID(unsigned int pid) override {
    return change(op("CD2tvMgrProxy::ChangeAudioByPID"), args(in("pid", pid)),
                  [&](Tv& tv) { return tv.selectIspAudio(positionOfPid(tv.state().isp.audio, pid)); });
  }

  int ChangeAudioByIndex(unsigned int index) override {
    return change(op("CD2tvMgrProxy::ChangeAudioByIndex"), args(in("index", index)),
                  [&](Tv& tv) { return tv.selectIspAudio(positionOf(index)); });
  }

  int GetTotalNumOfSubtitle(unsigned int* subtitles, unsigned int* teletext, unsigned int* teletextSubtitles) override {
    return tell(
        op("CD2tvMgrProxy::GetTotalNumOfSubtitle"),
        args(out("subtitles", *subtitles), out("teletext", *teletext), out("teletextSubtitles", *teletextSubtitles)),
        [&](const SecondaryStack& stack) {
          *subtitles = countOf(stack.subtitles, virtualtv::KIND_DVB);
          *teletext = countOf(stack.subtitles, virtualtv::KIND_TELETEXT);
          *teletextSubtitles = countOf(stack.subtitles, virtualtv::KIND_TELETEXT_SUBTITLE);
          return true;
        });
  }

  int GetDVBSubtitleInfo(DVBSubtitleInfo* subtitle, int position) override {
    return tell(op("CD2tvMgrProxy::GetDVBSubtitleInfo"), args(in("position", position), out("subtitle", *subtitle)),
                [&](const SecondaryStack& stack) {
                  const SubtitleTrack* const track = readableAt(stack.subtitles, position);
                  if (track == nullptr) return false;
                  *subtitle = {static_cast<unsigned>(position), static_cast<unsigned>(track->lang)};
                  return true;
                });
  }

  int GetCurrentSubtitle(int* language) override {
    return tell(op("CD2tvMgrProxy::GetCurrentSubtitle"), args(out("language", *language)),
                [&](const SecondaryStack& stack) {
                  if (stack.inUse.subtitle < 0) {
                    *language = -1;
                    return true;
                  }
                  const SubtitleTrack* const track = readableAt(stack.subtitles, stack.inUse.subtitle);
                  if (track == nullptr) return false;
                  *language = track->lang;
                  return true;
                });
  }

  int ChangeSubtitleLanguage(int index) override {
    return change(op("CD2tvMgrProxy::ChangeSubtitleLanguage"), args(in("index", index)),
                  [&](Tv& tv) { return tv.selectIspSubtitle(index); });
  }

  int GetVideoResolution(unsigned int* width, unsigned int* height) override {
    return tell(op("CD2tvMgrProxy::GetVideoResolution"), args(out("width", *width), out("height", *height)),
                [&](const SecondaryStack& stack) {
                  *width = static_cast<unsigned>(stack.width);
                  *height = static_cast<unsigned>(stack.height);
                  return true;
                });
  }
};

}  // namespace

CD2tvMgrProxy::~CD2tvMgrProxy() = default;

CD2tvMgrProxy* CD2tvMgrProxy::GetInstance(const char* client) {
  return virtualtv::seam::pass(op("CD2tvMgrProxy::GetInstance"), {}, args(in("client", client)),
                               []() -> CD2tvMgrProxy* {
                                 static Manager instance;
                                 return Tv::current().state().isp.present ? &instance : nullptr;
                               });
}

void CD2tvMgrProxy::DestroyInstance() {
  virtualtv::seam::pass(op("CD2tvMgrProxy::DestroyInstance"), {}, args(), [] {});  // the instance holds no resources
}

int D2TVCAPI_setSourceISP() {
  return virtualtv::callTv(op("D2TVCAPI_setSourceISP"), {}, args(), [](Tv& tv) { return tv.showIsp() ? 1 : 0; });
}
