// SPDX-License-Identifier: MIT
// The plug-in's commands by their names, and how their parameters are read.
#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <limits>
#include <map>

#include "support/model/Plugin.h"

namespace model {

namespace {

using Run = Reply (*)(const Command&);

std::map<std::string, Run> makeCommands() {
  std::map<std::string, Run> commands{
      {"SetWindow", setWindow},
      {"GetSource", getSource},
      {"GetPreviousSource", getPreviousSource},
      {"GetSourceState", getSourceState},
      {"SetSource", setSource},
      {"SetSourceAndTune", setSourceAndTune},
      {"SetPreviousSource", setPreviousSource},
      {"DisconnectSource", disconnectSource},
      {"GetTVMode", getTvMode},
      {"SetTVMode", setTvMode},
      {"GetSignalStrength", getSignalStrength},
      {"FindChannel", findChannel},
      {"GetChannel_Size", getChannelSize},
      {"GetChannel_ServiceId", getChannelServiceId},
      {"GetStartChannel_ServiceId", getStartChannelServiceId},
      {"SetChannel", setChannel},
      {"SetChannel_PTC", setChannelByPtc},
      {"SetChannel_Seek", setChannelBySeek},
      {"SetChannelByServiceid", setChannelByServiceId},
      {"SetChannelDirect", setChannelDirect},
      {"SetScreenRect", setScreenRect},
      {"GetScreenRect", getScreenRect},
      {"GetAFDGeometryRectSize", getActiveRect},
      {"GetScreenRect_PosMode", getScreenMode},
      {"GetScreenRect_SizeMode", getScreenMode},
      {"SetScreenRect_PosSizeMode", setScreenMode},
      {"GetState_Show", getShowState},
      {"SetScreenCropRect", setScreenCropRect},
      {"GetScreenCropRect", getScreenCropRect},
      {"SetScreenZorder", setScreenZorder},
      {"Show", show},
      {"MuteVideo", muteVideo},
      {"GetResolution", getResolution},
      {"GetResolutionDetail", getResolutionDetail},
      {"GetMultiAudioInfo", getMultiAudioInfo},
      {"GetCurrentAudioInfo", getCurrentAudioInfo},
      {"ChangeAudioPID", changeAudioPid},
      {"ChangeAudioByIndex", changeAudioByIndex},
      {"SetSourceVolume", setSourceVolume},
      {"GetSubtitleInfo", getSubtitleInfo},
      {"GetCurrentSubtitle", getCurrentSubtitle},
      {"ChangeSubtitle", changeSubtitle},
      {"GetFavorites", getFavorites},
      {"UpdateFavorites", updateFavorites},
      {"SetDVBSIChannelDirectEx", setChannelBySatellite},
      {"GetChannel_OnTVJson", getChannelJson},
      {"GetCurrentChannelInfo", getCurrentChannelInfo},
      {"GetCurrentChannel", getCurrentChannelInfo},
      {"GetPreviousChannelInfo", getPreviousChannelInfo},
      {"GetStartChannel_Info", getStartChannelInfo},
      {"GetFullChannelList", getFullChannelList},
  };
  for (const char* field : {"Type", "Major", "Minor", "Name"}) {
    commands.emplace(std::string("GetStartChannel_") + field, getField);
  }
  for (const char* field :
       {"Type", "Major", "Minor", "Name", "ServiceName", "OriginNetID", "ProgramNumber", "PTC", "TransportStreamID"}) {
    commands.emplace(std::string("GetChannel_") + field, getField);
    commands.emplace(std::string("GetCurrentChannel_") + field, getField);
  }
  return commands;
}

}  // namespace

int Command::decimal(std::size_t index) const {
  constexpr long least = std::numeric_limits<int>::min();
  constexpr long most = std::numeric_limits<int>::max();
  return static_cast<int>(std::clamp(std::strtol(parameters[index].c_str(), nullptr, 10), least, most));
}

std::optional<int> Command::number(std::size_t index) const {
  const std::string& text = parameters[index];
  const std::size_t digits = text.find_first_not_of("+-") == 1 ? 1 : 0;
  if (digits == text.size() || text.find_first_not_of("0123456789", digits) != std::string::npos) return std::nullopt;
  errno = 0;
  const long value = std::strtol(text.c_str(), nullptr, 10);
  const bool fits = errno == 0 && value >= std::numeric_limits<int>::min() && value <= std::numeric_limits<int>::max();
  return fits ? std::optional(static_cast<int>(value)) : std::nullopt;
}

std::uint64_t Command::identifier(std::size_t index) const {
  return std::strtoull(parameters[index].c_str(), nullptr, 0);
}

Reply answer(const Command& command) {
  static const std::map<std::string, Run> commands = makeCommands();
  const auto found = commands.find(command.name);
  return found == commands.end() ? Reply(Refused{}) : found->second(command);
}

Reply answerList(const Command& command) {
  if (command.name.empty()) return Refused{};
  return command.name == "SetScreenCropRect" ? setScreenCropRectByList(command) : Reply(Refused{-1});
}

}  // namespace model
