// SPDX-License-Identifier: MIT
#include "Cases.h"

#include "support/Commands.h"
#include "tvservice/TCServiceData.h"
#include "tvservice/TVServiceTypes.h"

namespace sweep {

namespace {

using Data = TCServiceData;
using virtualtv::Service;

Service service(std::uint64_t id, std::uint64_t type, std::uint64_t ptc, std::uint64_t major, std::uint64_t program,
                const std::u16string& name) {
  Service made;
  made.numbers = {{Data::SERVICE_ID, id},
                  {Data::CHANNEL_TYPE, type},
                  {Data::PTC, ptc},
                  {Data::FREQUENCY, 578000 + 8000 * (ptc - 34)},
                  {Data::MODULATION, 6},
                  {Data::MAJOR, major},
                  {Data::MINOR, 0},
                  {Data::PROGRAM_NUMBER, program},
                  {Data::TRANSPORT_STREAM_ID, 17},
                  {Data::LOCK, 0},
                  {Data::SOURCE_ID, 4},
                  {Data::ORIGINAL_NETWORK_ID, 8442},
                  {Data::ANTENNA_MODE, ANTENNA_TERRESTRIAL},
                  {virtualtv::HIDDEN, 0},
                  {virtualtv::SERVICE_MODE, 0}};
  if (!name.empty()) made.texts[Data::CHANNEL_NAME] = name;
  return made;
}

Service satelliteService() {
  Service made = service(900, 9, 3, 1, 50, u"Orbit");
  made.numbers[Data::FREQUENCY] = 11727000;
  made.numbers[Data::MODULATION] = 16;
  made.numbers[Data::SYMBOL_RATE] = 27;
  made.numbers[Data::MINOR] = 2;
  made.numbers[Data::ANTENNA_MODE] = ANTENNA_SATELLITE;
  return made;
}

std::string lineOf(const engine::Command& command) {
  std::string line = command.name;
  for (const std::string& parameter : command.parameters) line += " '" + parameter + "'";
  return line;
}

/// Inputs that are not in the command table.
const std::vector<std::string> more{
    ".reopen",
    "+ SetScreenCropRect 10 20 300 200 0 0 480 270 1",
    "SetDVBSIChannelDirectEx '{\"TYPE\": 9, \"ModulationType\": 16, \"SymbolRate\": 27, \"ProgramNumber\": 50, "
    "\"PTC\": 3, \"ProgNum\": 9, \"MINOR_NUMBER_ONE_PART\": 2, \"SatelliteId\": \"1A\", \"Frequency\": 11727000, "
    "\"Polarization\": 1}' 0",
    "SetDVBSIChannelDirectEx '{\"Frequency\": \"no number\"}' 0",
    "SetDVBSIChannelDirectEx '{}' 1",
    "GetChannel_ServiceId 7 0 28",
    "GetChannel_ServiceId 7 0 0",
    "SetSource 0",
    "SetSource 43",
    "SetSource 100",
    "SetSource 1",
    "SetSource x",
    "SetSourceAndTune 31 99",
    "SetSourceAndTune 0 7",
    "SetChannel 7 0",
    "SetChannelByServiceid 281",
    "SetChannelByServiceid 7",
    "SetChannel_Seek 5 0",
    "SetTVMode 12",
    "SetTVMode 0",
    "FindChannel 20 4",
    "FindChannel 2 0",
    "GetSource 8",
    "ChangeAudioPID 257",
    "ChangeAudioPID 9",
    "ChangeAudioByIndex 5",
    "ChangeSubtitle 1",
    "UpdateFavorites 282 0 12",
    "GetFavorites 7",
    "MuteVideo 0",
    "SetScreenRect 0 0 0 0",
};

/// Faults that make every factory fail while the engine is opened.
std::vector<std::string> unconnected() {
  std::vector<std::string> lines;
  lines.reserve(engine::factories.size() + 2);
  for (const char* const factory : engine::factories)
    lines.push_back(std::string(".fault ") + factory + " always result=null");
  lines.emplace_back(".reopen");
  lines.emplace_back(".fault clear");
  return lines;
}

}  // namespace

std::vector<Service> services() {
  Service first = service(281, 1, 34, 7, 300, u"News 24");
  first.audio = {{256, 6647399, 1, 0, 0, true}, {257, 6579573, 2, 1, 3, true}};
  first.subtitles = {{270, 6647399, 0, true}, {271, 6579573, 1, true}};
  first.favourites = {{1, true}, {12, false}};
  first.texts[Data::SERVICE_FIELD_110] = u"{\"logo\": \"news.png\", \"major\": 70}";
  Service second = service(282, 2, 35, 8, 20, u"Radio 5");
  second.audio = {{300, 0, 1, 0, 0, false}};
  return {first, second, service(283, 1, 36, 9, 30, u""), satelliteService()};
}

std::vector<Context> contexts() {
  const std::string find = "FindChannel 0 1";
  return {
      {"the main window on TV", {".app an.app a.widget", "SetChannel 8 0", "SetChannel 7 0", find}, {find}},
      {"the ISP source",
       {".app an.app", ".set isp.audio 255:eng,256:deu", ".set isp.subtitles 270:eng,271:deu:teletext", "SetSource 48"},
       {}},
      {"picture-in-picture", {"SetWindow 1", "SetChannelByServiceid 282", "SetSource 31", find}, {"SetWindow 1", find}},
      {"an input", {"SetSource 31", find}, {find}},
      {"no source", {"DisconnectSource"}, {}},
      {"an engine without interfaces", unconnected(), unconnected()},
  };
}

std::vector<std::string> commands() {
  std::vector<std::string> lines;
  lines.reserve(engine::everyCommand().size() + more.size());
  for (const engine::Command& command : engine::everyCommand()) lines.push_back(lineOf(command));
  lines.insert(lines.end(), more.begin(), more.end());
  return lines;
}

}  // namespace sweep
