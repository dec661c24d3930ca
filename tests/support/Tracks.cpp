// SPDX-License-Identifier: MIT
#include "support/Tracks.h"

#include <algorithm>

namespace tracks {

using support::caught;
using virtualtv::AudioTrack;
using virtualtv::Service;
using virtualtv::SubtitleTrack;
using virtualtv::Tv;

namespace {

std::string members(const Members& all, const std::string& indent) {
  std::string text;
  for (const auto& [name, value] : all) {
    text += (text.empty() ? "" : ",\n") + indent + "\"" + name + "\" : " + value;
  }
  return text;
}

/// Puts the secondary stack's tracks on a set and the ISP source on screen.
void show(Tv& tv, const std::vector<AudioTrack>& audio, const std::vector<SubtitleTrack>& subtitles) {
  tv.adjust([&](virtualtv::TvState& state) {
    state.isp.audio = audio;
    state.isp.subtitles = subtitles;
  });
  EXPECT_TRUE(tv.showIsp());
}

}  // namespace

std::string document(const Members& numbers, const std::string& array, const std::vector<Members>& elements) {
  std::string text;
  for (const Members& element : elements) {
    text += (text.empty() ? "" : ",\n");
    text += "      {\n" + members(element, "         ") + "\n      }";
  }
  Members all = numbers;
  if (!array.empty()) all.emplace_back(array, text.empty() ? "[]" : "[\n" + text + "\n   ]");
  return "{\n" + members(all, "   ") + "\n}\n";
}

std::vector<Service> furnished(const Service& with) {
  std::vector<Service> services = channels::threeServices();
  services.front().audio = with.audio;
  services.front().subtitles = with.subtitles;
  services.front().favourites = with.favourites;
  return services;
}

void TrackTest::SetUp() {
  ChannelTest::SetUp();
  setSetting(lastService, "tv-service");
}

void TrackTest::showTv(const Service& with) {
  channels::furnish(tv(), furnished(with));
  setSetting(lastService, "tv-service");
  forget();
}

void TrackTest::showIsp(const std::vector<AudioTrack>& audio, const std::vector<SubtitleTrack>& subtitles) {
  show(tv(), audio, subtitles);
  forget();
}

Lines TrackTest::waysToFail(const std::string& factory) {
  if (factory == "ServiceDataAux") return {"result=null", "result=throw"};
  return {"result=1", "result=-1", "result=null", "result=unwritten", "result=throw"};
}

Lines TrackTest::withException(Lines lines, const std::string& factory) {
  const std::string create = "Create";
  const std::string interface = factory.rfind(create, 0) == 0 ? factory.substr(create.size()) : factory;
  const auto failed = std::find_if(lines.begin(), lines.end(), [](const std::string& line) {
    return line.find(" create is FAIL!!") != std::string::npos;
  });
  lines.insert(failed, caught("t_Check" + interface + "proxy", "TVServiceAPI::" + factory));
  return lines;
}

void TrackCommand::SetUp() {
  ChannelEngineTest::SetUp();
  setSetting(lastService, "tv-service");
}

void TrackCommand::showTv(const Service& with) {
  channels::furnish(tv(), furnished(with));
  setSetting(lastService, "tv-service");
  forget();
}

void TrackCommand::showIsp(const std::vector<AudioTrack>& audio, const std::vector<SubtitleTrack>& subtitles) {
  show(tv(), audio, subtitles);
  forget();
}

void TrackCommand::expectIspAskedAnew(const std::string& command) {
  EXPECT_EQ(execute(command), "ascii");
  EXPECT_EQ(executeUnder("vconf_get_str nth=2 result=isp-service", command), "int -1");
  showIsp({}, {});
  EXPECT_EQ(execute(command), "int -1");
  EXPECT_EQ(executeUnder("vconf_get_str nth=2 result=tv-service", command), "ascii");
}

}  // namespace tracks
