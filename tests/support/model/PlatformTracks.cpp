// SPDX-License-Identifier: MIT
// The platform's operations on tracks and favourites, and the manager of the secondary stack. While the stack does not
// show the ISP source, the manager reports nothing.
#include <algorithm>
#include <limits>

#include "support/model/Platform.h"
#include "support/model/Tracks.h"

namespace model {

namespace {

constexpr Interface manager{"set", 1};
constexpr int good = 0;
constexpr int bad = -1;

const virtualtv::SecondaryStack& stackOf(const Platform& tv) {
  return tv.set.state.isp;
}

/// Makes a call of the manager, which fails while its stack does not show the ISP source. @param body  returns whether
/// it succeeded.
template <typename Values, typename Body>
int callManager(const Platform& tv, const Operation& operation, const Values& values, Body body) {
  return call(tv.calls, operation, manager, values, [&] { return stackOf(tv).shown && body() ? good : bad; });
}

TSHybridSBT recordOf(const SubtitleTrack& track) {
  TSHybridSBT record;
  record.type = static_cast<decltype(record.type)>(track.type);
  record.pid = static_cast<decltype(record.pid)>(track.pid);
  return record;
}

unsigned countOf(const std::vector<SubtitleTrack>& tracks, int kind) {
  return static_cast<unsigned>(
      std::count_if(tracks.begin(), tracks.end(), [=](const SubtitleTrack& track) { return track.type == kind; }));
}

}  // namespace

int Platform::getCurrentAudioInfo(Interface av, int& lang, int& index) const {
  return call(calls, op("IAVControl::GetCurrentAudioInfo"), av, args(out("lang", lang), out("index", index)), [&] {
    const AudioTrack* const track = audioInUse(set, windowOf(av));
    if (track == nullptr) return 0;
    lang = track->lang;
    index = set.state[windowOf(av)].inUse.audio;
    return 1;
  });
}

int Platform::setCurrentAudioByIndex(Interface av, int index) const {
  return call(calls, op("IAVControl::SetCurrentAudioByIndex"), av, args(in("index", index)),
              [&] { return selectAudio(set, windowOf(av), index) ? 1 : 0; });
}

int Platform::getAudioSize(Interface aux, std::uint64_t serviceId, unsigned& size) const {
  return call(calls, op("ServiceDataAux::GetAudioSize"), aux, args(in("serviceId", serviceId), out("size", size)), [&] {
    const Service* const service = at(set, keyOf(set, serviceId));
    if (service == nullptr) return 0;
    size = static_cast<unsigned>(service->audio.size());
    return 1;
  });
}

int Platform::getAudio(Interface aux, std::uint64_t serviceId, int index, TSAudio& audio) const {
  return call(calls, op("ServiceDataAux::GetAudio"), aux,
              args(in("serviceId", serviceId), in("index", index), out("audio", audio)), [&] {
                const Service* const service = at(set, keyOf(set, serviceId));
                const AudioTrack* const track = service == nullptr ? nullptr : told(service->audio, index);
                if (track == nullptr) return 0;
                audio.lang = track->lang;
                audio.decodeType = track->decodeType;
                audio.pid = static_cast<unsigned short>(track->pid);
                audio.audioMode = track->audioMode;
                audio.audioType = track->audioType;
                return 1;
              });
}

int Platform::getHybridSbtSize(Interface aux, std::uint64_t serviceId, unsigned& size) const {
  return call(calls, op("ServiceDataAux::GetHybridSBTSize"), aux, args(in("serviceId", serviceId), out("size", size)),
              [&] {
                const Service* const service = at(set, keyOf(set, serviceId));
                if (service == nullptr) return 0;
                size = static_cast<unsigned>(service->subtitles.size());
                return 1;
              });
}

int Platform::getHybridSbt(Interface aux, std::uint64_t serviceId, int index, int& lang) const {
  TSHybridSBT subtitle;
  return call(calls, op("ServiceDataAux::GetHybridSBT"), aux,
              args(in("serviceId", serviceId), in("index", index), out("lang", lang), out("subtitle", subtitle)), [&] {
                const Service* const service = at(set, keyOf(set, serviceId));
                const SubtitleTrack* const track = service == nullptr ? nullptr : told(service->subtitles, index);
                if (track == nullptr) return 0;
                lang = track->lang;
                subtitle = recordOf(*track);
                return 1;
              });
}

int Platform::getCurrentHybridSbt(Interface data, int& lang) const {
  TSHybridSBT subtitle;
  return call(calls, op("IDataControl::GetCurrentHybridSBT"), data, args(out("lang", lang), out("subtitle", subtitle)),
              [&] {
                const virtualtv::WindowState& window = set.state[windowOf(data)];
                if (at(set, window.service) == nullptr) return 0;
                const SubtitleTrack* const track = subtitleInUse(set, windowOf(data));
                if (track == nullptr && window.inUse.subtitle >= 0) return 0;
                lang = track == nullptr ? -1 : track->lang;
                if (track != nullptr) subtitle = recordOf(*track);
                return 1;
              });
}

int Platform::selectHybridSbt(Interface data, int index) const {
  return call(calls, op("IDataControl::SelectHybridSBT"), data, args(in("index", index)),
              [&] { return selectSubtitle(set, windowOf(data), index) ? 1 : 0; });
}

int Platform::setFavorites(Interface service, std::uint64_t serviceId, bool member, char group) const {
  const int number = static_cast<unsigned char>(group);
  const std::list<std::pair<unsigned long long, bool>> members{{serviceId, member}};
  return call(calls, op("IService::SetFavorites"), service, args(in("", members), in("group", number)), [&] {
    const auto found = set.services.find(keyOf(set, serviceId));
    if (found == set.services.end()) return 0;
    found->second.favourites[static_cast<std::uint8_t>(number)] = member;
    return 1;
  });
}

int Platform::getFavorites(Interface service, std::uint64_t serviceId, std::map<unsigned char, bool>& favorites) const {
  return call(calls, op("IService::GetFavorites"), service,
              args(in("serviceId", serviceId), out("favorites", favorites)), [&] {
                const Service* const found = at(set, keyOf(set, serviceId));
                if (found == nullptr) return 0;
                favorites = found->favourites;
                return 1;
              });
}

bool Platform::getInstance() const {
  const Operation& operation = op("CD2tvMgrProxy::GetInstance");
  const Fault* const fault = detail::begin(calls, operation, {}, "client=\"EMP_WINDOW\"");
  const bool there = fault == nullptr && stackOf(*this).present;
  calls.made.back().result = there ? "made" : "null";
  return there;
}

void Platform::destroyInstance() const {
  detail::begin(calls, op("CD2tvMgrProxy::DestroyInstance"), {}, "");
  calls.made.back().result.clear();
}

int Platform::getTotalNumOfAudio(unsigned& count) const {
  return callManager(*this, op("CD2tvMgrProxy::GetTotalNumOfAudio"), args(out("count", count)), [&] {
    count = static_cast<unsigned>(stackOf(*this).audio.size());
    return true;
  });
}

int Platform::getMultiAudioInfo(MVPDAudio& audio, unsigned position) const {
  return callManager(*this, op("CD2tvMgrProxy::GetMultiAudioInfo"), args(in("position", position), out("audio", audio)),
                     [&] {
                       const AudioTrack* const track = told(stackOf(*this).audio, position);
                       if (track == nullptr) return false;
                       audio = {static_cast<int>(position), track->pid,       track->decodeType,
                                track->audioMode,           track->audioType, track->lang};
                       return true;
                     });
}

int Platform::getCurrentAudioInfo(int& pid, int& index, unsigned& lang) const {
  return callManager(*this, op("CD2tvMgrProxy::GetCurrentAudioInfo"),
                     args(out("pid", pid), out("index", index), out("lang", lang)), [&] {
                       const int inUse = stackOf(*this).inUse.audio;
                       const AudioTrack* const track = told(stackOf(*this).audio, inUse);
                       if (track == nullptr) return false;
                       pid = track->pid;
                       index = inUse;
                       lang = static_cast<unsigned>(track->lang);
                       return true;
                     });
}

int Platform::changeAudioByPid(unsigned pid) const {
  return callManager(*this, op("CD2tvMgrProxy::ChangeAudioByPID"), args(in("pid", pid)),
                     [&] { return selectIspAudioByPid(set, pid); });
}

int Platform::changeAudioByIndex(unsigned index) const {
  return callManager(*this, op("CD2tvMgrProxy::ChangeAudioByIndex"), args(in("index", index)),
                     [&] { return selectIspAudio(set, index); });
}

int Platform::getTotalNumOfSubtitle(unsigned& subtitles, unsigned& teletext, unsigned& teletextSubtitles) const {
  return callManager(
      *this, op("CD2tvMgrProxy::GetTotalNumOfSubtitle"),
      args(out("subtitles", subtitles), out("teletext", teletext), out("teletextSubtitles", teletextSubtitles)), [&] {
        subtitles = countOf(stackOf(*this).subtitles, virtualtv::KIND_DVB);
        teletext = countOf(stackOf(*this).subtitles, virtualtv::KIND_TELETEXT);
        teletextSubtitles = countOf(stackOf(*this).subtitles, virtualtv::KIND_TELETEXT_SUBTITLE);
        return true;
      });
}

int Platform::getDvbSubtitleInfo(DVBSubtitleInfo& subtitle, int position) const {
  return callManager(*this, op("CD2tvMgrProxy::GetDVBSubtitleInfo"),
                     args(in("position", position), out("subtitle", subtitle)), [&] {
                       const SubtitleTrack* const track = told(stackOf(*this).subtitles, position);
                       if (track == nullptr) return false;
                       subtitle = {static_cast<unsigned>(position), static_cast<unsigned>(track->lang)};
                       return true;
                     });
}

int Platform::getCurrentSubtitle(int& language) const {
  return callManager(*this, op("CD2tvMgrProxy::GetCurrentSubtitle"), args(out("language", language)), [&] {
    const int inUse = stackOf(*this).inUse.subtitle;
    const SubtitleTrack* const track = told(stackOf(*this).subtitles, inUse);
    if (track == nullptr && inUse >= 0) return false;
    language = track == nullptr ? -1 : track->lang;
    return true;
  });
}

int Platform::changeSubtitleLanguage(int index) const {
  return callManager(*this, op("CD2tvMgrProxy::ChangeSubtitleLanguage"), args(in("index", index)),
                     [&] { return selectIspSubtitle(set, index); });
}

int Platform::getVideoResolution(unsigned& width, unsigned& height) const {
  return callManager(*this, op("CD2tvMgrProxy::GetVideoResolution"), args(out("width", width), out("height", height)),
                     [&] {
                       width = static_cast<unsigned>(stackOf(*this).width);
                       height = static_cast<unsigned>(stackOf(*this).height);
                       return true;
                     });
}

}  // namespace model
