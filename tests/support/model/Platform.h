// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "d2tv/CD2tvMgrProxy.h"
#include "support/model/Calls.h"
#include "support/model/Set.h"
#include "tvservice/TCCriteriaHelper.h"
#include "tvservice/TCServiceData.h"
#include "tvservice/TVServiceTypes.h"

namespace model {

/// The operations of the platform on the model's set. Arguments and results are those of the platform's declarations;
/// texts and lists are values. Operations of an interface take the interface first. All record the call, and fail as
/// the faults say.
struct Platform {
  Set& set;
  Calls& calls;

  // Settings, system information, applications.

  int getInt(const std::string& key, int& value) const;
  int setInt(const std::string& key, int value) const;
  std::optional<std::string> getText(const std::string& key) const;
  int setText(const std::string& key, const std::string& value) const;
  int region(int& value) const;
  int country(int& value) const;
  /// @param type  1 for the application's id, 2 for the widget's. @param info  the id.
  std::string appInfo(int type, const std::string& info) const;

  // Sources.

  int getSourceState(Interface control, int& state) const;
  int getCurrentSourceInfo(Interface control, int& source) const;
  int getPreviousSourceInfo(Interface control, int& source) const;
  int setSource(Interface control, int source, const std::string& appId) const;
  int setSource(Interface control, int source, std::uint64_t serviceId, const std::string& appId) const;
  int deactivateSource(Interface control) const;
  int setSourceIsp() const;

  // Channels.

  int findService(Interface service, const TCCriteriaHelper& criteria, TCServiceData& found) const;
  int tuneService(Interface navigation, std::uint64_t serviceId, const std::string& appId) const;
  int getTvMode(Interface navigation, TSTvMode& mode) const;
  int setTvMode(Interface navigation, TSTvMode mode, const std::string& appId) const;
  int getCurrentService(Interface navigation, TSTvMode mode, const TCCriteriaHelper& criteria,
                        TCServiceData& service) const;
  int getCurrentServiceInfo(Interface navigation, TSTvMode mode, const TCCriteriaHelper& criteria,
                            TCServiceData& service) const;
  int getPreviousServiceId(Interface navigation, TSTvMode mode, unsigned long long& serviceId) const;
  int seekService(Interface navigation, const TCCriteriaHelper& criteria, std::uint64_t currentId, Direction direction,
                  TCServiceData& service) const;
  int getOptimumService(Interface navigation, const TCCriteriaHelper& criteria, TCServiceData& service) const;
  int getServiceList(Interface navigation, const TCCriteriaHelper& criteria, Records& services) const;
  int getStartService(Interface navigation, unsigned long long& serviceId, int& source) const;
  int getSignalStrength(Interface tuner, unsigned char& strength) const;
  int lookupTransponder(Interface satellite, const TSTransponder& transponder, unsigned short& result) const;
  /// @param modeFirst  true if the TV mode comes before the navigation mode.
  int getNavigationCriteria(TSTvMode mode, TCCriteriaHelper& criteria, bool modeFirst = false) const;
  int getOptimumCriteria(std::uint16_t major, std::uint16_t minor, TCCriteriaHelper& criteria) const;

  // Pictures.

  int setSize(Interface video, int x, int y, int height, int width) const;
  int getSize(Interface video, int& x, int& y, int& height, int& width) const;
  int setDefaultSize(Interface video) const;
  int getAfdGeometryRectSize(Interface video, int& x, int& y, int& width, int& height) const;
  int setCropArea(Interface video, const TSRectInfo& crop, const TSRectInfo& display) const;
  int getCropArea(Interface video, TSRectInfo& crop, TSRectInfo& display) const;
  int setZOrder(Interface video, int order) const;
  int muteVideo(Interface av, int mute) const;
  int getResolution(Interface av, int& code, TSResolution& resolution) const;

  // Tracks and favourites.

  int getCurrentAudioInfo(Interface av, int& lang, int& index) const;
  int setCurrentAudioByIndex(Interface av, int index) const;
  int getAudioSize(Interface aux, std::uint64_t serviceId, unsigned& size) const;
  int getAudio(Interface aux, std::uint64_t serviceId, int index, TSAudio& audio) const;
  int getHybridSbtSize(Interface aux, std::uint64_t serviceId, unsigned& size) const;
  int getHybridSbt(Interface aux, std::uint64_t serviceId, int index, int& lang) const;
  int getCurrentHybridSbt(Interface data, int& lang) const;
  int selectHybridSbt(Interface data, int index) const;
  int setFavorites(Interface service, std::uint64_t serviceId, bool member, char group) const;
  int getFavorites(Interface service, std::uint64_t serviceId, std::map<unsigned char, bool>& favorites) const;

  // The manager of the secondary stack.

  /// @return true if there is a manager.
  bool getInstance() const;
  void destroyInstance() const;
  int getTotalNumOfAudio(unsigned& count) const;
  int getMultiAudioInfo(MVPDAudio& audio, unsigned position) const;
  int getCurrentAudioInfo(int& pid, int& index, unsigned& lang) const;
  int changeAudioByPid(unsigned pid) const;
  int changeAudioByIndex(unsigned index) const;
  int getTotalNumOfSubtitle(unsigned& subtitles, unsigned& teletext, unsigned& teletextSubtitles) const;
  int getDvbSubtitleInfo(DVBSubtitleInfo& subtitle, int position) const;
  int getCurrentSubtitle(int& language) const;
  int changeSubtitleLanguage(int index) const;
  int getVideoResolution(unsigned& width, unsigned& height) const;
};

/// The window of an interface.
WindowId windowOf(Interface interface);

/// Evaluates criteria on plain lists.
Conditions conditionsOf(const TCCriteriaHelper& criteria);

}  // namespace model
