// SPDX-License-Identifier: MIT
#pragma once

#include "support/Tracks.h"
#include "window/report/Documents.h"

/// Shared parts of the tests of audio tracks.
namespace sound {

using support::Lines;
using tracks::Members;
using virtualtv::AudioTrack;

/// Three tracks. The numbers within a track all differ.
inline const std::vector<AudioTrack> threeTracks{
    {256, 11, 4, 2, 3, true}, {257, 21, 3, 1, 2, true}, {258, 31, 2, 0, 1, true}};

/// An element of a list of tracks.
inline Members element(const std::string& index, const std::string& pid, const std::string& decodeType,
                       const std::string& audioMode, const std::string& audioType, const std::string& lang) {
  return {{"audioMode", audioMode}, {"audioType", audioType}, {"decodeType", decodeType},
          {"index", index},         {"lang", lang},           {"pid", pid}};
}
inline Members element(std::size_t index) {
  const AudioTrack& track = threeTracks[index];
  return element(std::to_string(index), std::to_string(track.pid), std::to_string(track.decodeType),
                 std::to_string(track.audioMode), std::to_string(track.audioType), std::to_string(track.lang));
}

/// The list of a stack that reports `count` tracks, of which these can be read.
inline std::string list(int count, const std::vector<Members>& elements) {
  return tracks::document({{"NumOfAudio", std::to_string(count)}}, "items", elements);
}

/// The document of a track in use.
inline std::string current(const std::string& index, const std::string& lang, const std::string& pid) {
  return tracks::document({{"index", index}, {"lang", lang}, {"pid", pid}});
}

/// The log lines of an operation whose variant for the secondary stack succeeded or failed.
inline std::string went(const std::string& variant) {
  return "3 Successfull  get the audio information in CEmpTaskWindow::" + variant;
}
inline std::string failed(const std::string& variant) {
  return "0 Fail to get the audio information in CEmpTaskWindow::" + variant;
}

inline const Lines auxMissing{"0 servicedata_aux_proxy is NULL, t_eWindow =0",
                              "0 CEmpTaskWindow servicedata_aux_proxy create is FAIL!!",
                              "0 ServiceDataAuxproxy is NULL"};
inline const Lines avMissing{"0 av_ctrl_proxy is NULL, t_eWindow =0", "0 CEmpTaskWindow av_ctrl_proxy create is FAIL!!",
                             "0 AVControlproxy is NULL"};
inline const Lines navigationMissing = support::join({channels::noNavigation(), {"0 ServiceNavigationproxy is NULL"}});

/// The log line when the service on screen can't be read.
inline const std::string noMode = support::banner(0, "t_GetCurrentChannel");
inline const std::string noService = "0 Fail to get current service data\n";

/// A service on screen without an id, and the id with which its tracks are requested.
inline const std::string nameless = "IServiceNavigation::GetCurrentService out.service={13=7}";
inline const std::string greatest = "18446744073709551615";

/// A worker for the main window; the TV service shows 281 with three tracks.
class SoundTest : public tracks::TrackTest {
 protected:
  void SetUp() override {
    TrackTest::SetUp();
    virtualtv::Service service;
    service.audio = threeTracks;
    showTv(service);
  }

  /// Removes the TV service's proxies, runs an operation, and expects that it created none.
  template <typename Operation>
  auto alone(Operation operation) {
    worker.servicedata_aux_proxy = nullptr;
    worker.av_ctrl_proxy = nullptr;
    worker.svc_navi_proxy = nullptr;
    auto result = operation();
    EXPECT_EQ(worker.servicedata_aux_proxy, nullptr);
    EXPECT_EQ(worker.av_ctrl_proxy, nullptr);
    EXPECT_EQ(worker.svc_navi_proxy, nullptr);
    return result;
  }
};

/// The same with the ISP source on screen, which has the three tracks.
class IspSoundTest : public SoundTest {
 protected:
  void SetUp() override {
    SoundTest::SetUp();
    showIsp(threeTracks, {});
  }
};

}  // namespace sound
