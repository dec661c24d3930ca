// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <string>
#include <vector>

/// The commands for tests of the whole engine.
namespace engine {

/// A command with parameters that succeed on a set with services.
struct Command {
  std::string name;
  std::vector<std::string> parameters;
  std::string unconnected;  ///< its answer when no interface of the set is available
};

/// Such a command as a row of a table; missing parameters are null.
struct Row {
  const char* name;
  std::array<const char*, 4> parameters;
  const char* unconnected;
};

/// Every command in the order in which names are compared, once in each of its forms. Apart from the command table,
/// this is the only list of all names: derive any other list from one of these two.
inline constexpr Row rows[] = {
    {"SetWindow", {"0"}, "int 0"},
    {"SetWindow", {"1"}, "int 0"},
    {"GetCurrentChannel_Major", {}, "int -1"},
    {"GetCurrentChannel_Minor", {}, "int -1"},
    {"GetCurrentChannel_Name", {}, "int -1"},
    {"GetCurrentChannel_OriginNetID", {}, "int -1"},
    {"GetCurrentChannel_ProgramNumber", {}, "int -1"},
    {"GetCurrentChannel_PTC", {}, "int -1"},
    {"GetCurrentChannel_ServiceName", {}, "int -1"},
    {"GetCurrentChannel_TransportStreamID", {}, "int -1"},
    {"GetCurrentChannel_Type", {}, "int -1"},
    {"GetScreenRect", {}, "ascii"},
    {"GetAFDGeometryRectSize", {}, "ascii"},
    {"GetScreenRect_PosMode", {}, "int 9"},
    {"GetScreenRect_SizeMode", {}, "int 9"},
    {"GetState_Show", {}, "int 5"},
    {"SetChannel", {"8", "0"}, "int 0"},
    {"SetChannel_PTC", {"35"}, "int 0"},
    {"SetChannel_Seek", {"3", "0"}, "int 0"},
    {"SetChannel_Seek", {"4", "0"}, "int 0"},
    {"SetChannelByServiceid", {"282"}, "int 0"},
    {"SetScreenRect", {"480", "270", "480", "270"}, "int 0"},
    {"SetScreenRect", {"-1", "0", "0", "0"}, "int 0"},
    {"SetScreenRect_PosSizeMode", {"0", "0"}, "int -1"},
    {"Show", {"0"}, "int -1"},
    {"Show", {"1"}, "int -1"},
    {"GetResolution", {}, "int -1"},
    {"GetSource", {"0"}, "int -1"},
    {"GetSource", {"6"}, "int 101"},
    {"SetSource", {"31"}, "int -1"},
    {"SetSource", {"31", "8"}, "int -1"},
    {"SetSource", {"48"}, "int -1"},
    {"SetSourceAndTune", {"31", "8"}, "int -1"},
    {"GetPreviousSource", {}, "int -1"},
    {"SetPreviousSource", {}, "int 0"},
    {"FindChannel", {"0", "1"}, "int -1"},
    {"GetChannel_Major", {"0"}, "int -1"},
    {"GetChannel_Minor", {"0"}, "int -1"},
    {"GetChannel_Name", {"0"}, "int -1"},
    {"GetChannel_OriginNetID", {"0"}, "int -1"},
    {"GetChannel_ProgramNumber", {"0"}, "int -1"},
    {"GetChannel_PTC", {"0"}, "int -1"},
    {"GetChannel_ServiceName", {"0"}, "int -1"},
    {"GetChannel_TransportStreamID", {"0"}, "int -1"},
    {"GetChannel_Type", {"0"}, "int -1"},
    {"GetChannel_Size", {}, "int 0"},
    {"GetChannel_ServiceId", {"0"}, "int -1"},
    {"GetChannel_ServiceId", {"7", "0", "20"}, "int -1"},
    {"GetChannel_OnTVJson", {"0"}, "int -1"},
    {"SetScreenCropRect", {"10", "20", "300", "200"}, "int -1"},
    {"GetScreenCropRect", {"0"}, "int -1"},
    {"SetScreenZorder", {"1"}, "int -1"},
    {"DisconnectSource", {}, "int 0"},
    {"ChangeAudioPID", {"256"}, "int 0"},
    {"ChangeAudioByIndex", {"0"}, "int 0"},
    {"GetMultiAudioInfo", {}, "ascii"},
    {"SetSourceVolume", {"5"}, "int 0"},
    {"SetTVMode", {"1"}, "int 0"},
    {"GetTVMode", {}, "int -1"},
    {"GetFavorites", {"281"}, "int -1"},
    {"UpdateFavorites", {"281", "1", "1"}, "int 0"},
    {"GetFullChannelList", {}, "int -1"},
    {"GetCurrentAudioInfo", {}, "int -1"},
    {"GetSignalStrength", {}, "int 0"},
    {"GetCurrentChannelInfo", {}, "int -1"},
    {"GetCurrentChannel", {}, "int -1"},
    {"GetCurrentSubtitle", {}, "int -1"},
    {"GetSubtitleInfo", {}, "ascii"},
    {"ChangeSubtitle", {"0"}, "int -1"},
    {"GetStartChannel_Type", {}, "int -1"},
    {"GetStartChannel_Major", {}, "int -1"},
    {"GetStartChannel_Minor", {}, "int -1"},
    {"GetStartChannel_Name", {}, "int -1"},
    {"GetStartChannel_ServiceId", {}, "ascii"},
    {"GetStartChannel_Info", {}, "int -1"},
    {"GetPreviousChannelInfo", {}, "int -1"},
    {"GetResolutionDetail", {}, "int -1"},
    {"GetSourceState", {}, "int -1"},
    {"MuteVideo", {"1"}, "int -1"},
    {"SetDVBSIChannelDirectEx", {"{}", "0"}, "int 0"},
    {"SetChannelDirect", {"35", "2", "0", "1"}, "int 0"},
};

inline const std::vector<Command>& everyCommand() {
  static const std::vector<Command> all = [] {
    std::vector<Command> commands;
    for (const Row& row : rows) {
      Command& command = commands.emplace_back(Command{row.name, {}, row.unconnected});
      for (const char* parameter : row.parameters) {
        if (parameter != nullptr) command.parameters.emplace_back(parameter);
      }
    }
    return commands;
  }();
  return all;
}

/// The names of the commands, in the order in which they are compared.
inline std::vector<std::string> names() {
  std::vector<std::string> names;
  for (const Row& row : rows) {
    if (names.empty() || names.back() != row.name) names.emplace_back(row.name);
  }
  return names;
}

/// The factories of the proxies that the worker makes.
inline constexpr std::array factories{
    "TVServiceAPI::CreateService",      "TVServiceAPI::CreateSourceControl", "TVServiceAPI::CreateServiceNavigation",
    "TVServiceAPI::CreateAVControl",    "TVServiceAPI::ServiceDataAux",      "TVServiceAPI::CreateVideoControl",
    "TVServiceAPI::CreateTunerControl", "TVServiceAPI::CreateDataControl",
};

}  // namespace engine
