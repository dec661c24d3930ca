// SPDX-License-Identifier: MIT
#pragma once

#include "support/Tracks.h"
#include "window/report/Documents.h"

/// Shared parts of the tests of subtitles.
namespace subtitle {

using support::Lines;
using tracks::Members;
using virtualtv::SubtitleTrack;

/// Three tracks of a service.
inline const std::vector<SubtitleTrack> threeTracks{
    {270, 41, virtualtv::KIND_DVB, true}, {271, 51, virtualtv::KIND_DVB, true}, {272, 61, virtualtv::KIND_DVB, true}};

/// Two DVB subtitles, two teletext pages and a teletext subtitle page of the secondary stack.
inline const std::vector<SubtitleTrack> fiveEntries{{270, 41, virtualtv::KIND_DVB, true},
                                                    {271, 51, virtualtv::KIND_DVB, true},
                                                    {272, 61, virtualtv::KIND_TELETEXT, true},
                                                    {272, 71, virtualtv::KIND_TELETEXT, true},
                                                    {272, 81, virtualtv::KIND_TELETEXT_SUBTITLE, true}};

/// An element of a list of subtitles.
inline Members element(const std::string& index, const std::string& lang) {
  return {{"index", index}, {"lang", lang}};
}

inline const Lines dataControlMissing{"0 svc_datacontrol_proxy is NULL, t_eWindow =0",
                                      "0 CEmpTaskWindow svc_datacontrol_proxy create is FAIL!!",
                                      "0 ServiceDataControlproxy is NULL"};

/// A worker for the main window; the TV service shows 281 with three subtitles.
class SubtitleTest : public tracks::TrackTest {
 protected:
  void SetUp() override {
    TrackTest::SetUp();
    virtualtv::Service service;
    service.subtitles = threeTracks;
    showTv(service);
  }
};

/// The same with the ISP source on screen, which has the five entries.
class IspSubtitleTest : public SubtitleTest {
 protected:
  void SetUp() override {
    SubtitleTest::SetUp();
    showIsp({}, fiveEntries);
  }
};

}  // namespace subtitle
