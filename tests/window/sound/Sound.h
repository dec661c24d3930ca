#pragma once

#include "support/Tracks.h"
#include "window/report/Documents.h"

/// What the tests of audio tracks share.
namespace sound {

using support::Lines;
using tracks::Members;
using virtualtv::AudioTrack;

/// Three tracks, each of whose numbers is found nowhere else in it.
inline const std::vector<AudioTrack> threeTracks{
    {256, 11, 4, 2, 3, true}, {257, 21, 3, 1, 2, true}, {258, 31, 2, 0, 1, true}};

/// The list of them, the same from either stack.
inline const std::string textOfThreeTracks = R"({
   "NumOfAudio" : 3,
   "items" : [
      {
         "audioMode" : 2,
         "audioType" : 3,
         "decodeType" : 4,
         "index" : 0,
         "lang" : 11,
         "pid" : 256
      },
      {
         "audioMode" : 1,
         "audioType" : 2,
         "decodeType" : 3,
         "index" : 1,
         "lang" : 21,
         "pid" : 257
      },
      {
         "audioMode" : 0,
         "audioType" : 1,
         "decodeType" : 2,
         "index" : 2,
         "lang" : 31,
         "pid" : 258
      }
   ]
}
)";

/// An element of a list of tracks.
inline Members element(const std::string& index, const std::string& pid, const std::string& decodeType,
                       const std::string& audioMode, const std::string& audioType, const std::string& lang) {
  return {{"audioMode", audioMode}, {"audioType", audioType}, {"decodeType", decodeType},
          {"index", index},         {"lang", lang},           {"pid", pid}};
}
inline Members element(int index, const AudioTrack& track) {
  return element(std::to_string(index), std::to_string(track.pid), std::to_string(track.decodeType),
                 std::to_string(track.audioMode), std::to_string(track.audioType), std::to_string(track.lang));
}

/// The document of a track in use.
inline std::string current(const std::string& index, const std::string& lang, const std::string& pid) {
  return tracks::document({{"index", index}, {"lang", lang}, {"pid", pid}});
}

/// The lines of an operation whose variant for the secondary stack went well or did not.
inline std::string went(const std::string& variant) {
  return "3 Successfull  get the audio information in CEmpTaskWindow::" + variant;
}
inline std::string failed(const std::string& variant) {
  return "0 Fail to get the audio information in CEmpTaskWindow::" + variant;
}

inline const std::string noAux = "0 ServiceDataAuxproxy is NULL";
inline const std::string noAv = "0 AVControlproxy is NULL";
inline const Lines auxMissing{"0 servicedata_aux_proxy is NULL, t_eWindow =0",
                              "0 CEmpTaskWindow servicedata_aux_proxy create is FAIL!!", noAux};
inline const Lines avMissing{"0 av_ctrl_proxy is NULL, t_eWindow =0", "0 CEmpTaskWindow av_ctrl_proxy create is FAIL!!",
                             noAv};

/// As a trace shows the main window's first interfaces, before the operation and its arguments.
inline const std::string aux = "ServiceDataAux[main#1]::";
inline const std::string av = "IAVControl[main#1]::";

/// The two ways in which the service on screen can't be told: as words of a fault, with what is logged then.
inline const std::vector<std::pair<std::string, Lines>> noCurrent{
    {"IServiceNavigation::GetTvMode result=0", {support::banner(0, "t_GetCurrentChannel")}},
    {"IServiceNavigation::GetTvMode result=throw",
     {support::caught("t_GetCurrentChannel", "IServiceNavigation::GetTvMode"),
      support::banner(0, "t_GetCurrentChannel")}},
    {"IServiceNavigation::GetCurrentService result=0", {"0 Fail to get current service data\n"}},
    {"IServiceNavigation::GetCurrentService result=-1", {"0 Fail to get current service data\n"}},
    {"IServiceNavigation::GetCurrentService result=throw",
     {support::caught("t_GetCurrentChannel", "IServiceNavigation::GetCurrentService"),
      "0 Fail to get current service data\n"}}};

/// A worker for the main window; the TV service shows 281 without tracks.
class SoundTest : public tracks::TrackTest {
 protected:
  /// The service on screen has these tracks.
  void give(const std::vector<AudioTrack>& audio) {
    virtualtv::Service service;
    service.audio = audio;
    showTv(service);
  }
};

}  // namespace sound
