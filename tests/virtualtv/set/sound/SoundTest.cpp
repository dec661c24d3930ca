// SPDX-License-Identifier: MIT
#include "virtualtv/set/sound/SoundTest.h"

#include "tvservice/IAVControl.h"
#include "tvservice/IDataControl.h"
#include "tvservice/IService.h"
#include "tvservice/ServiceDataAux.h"

namespace virtualtv::test {

namespace {

constexpr int untouched = -77;

EProfile profileOf(WindowId window) {
  return window == WindowId::main ? PROFILE_MAIN : PROFILE_PIP;
}

ServiceDataAux& data() {
  return *TVServiceAPI::ServiceDataAux(PROFILE_MAIN, 0);
}

IAVControl& sound(WindowId window) {
  IAVControl* made = nullptr;
  EXPECT_EQ(TVServiceAPI::CreateAVControl(profileOf(window), 0, &made), 0);
  return *made;
}

IDataControl& subtitles(WindowId window) {
  IDataControl* made = nullptr;
  EXPECT_EQ(TVServiceAPI::CreateDataControl(profileOf(window), 0, &made), 0);
  return *made;
}

IService& services() {
  IService* made = nullptr;
  EXPECT_EQ(TVServiceAPI::CreateService(&made), 0);
  return *made;
}

/// PID, language and codes, separated by colons.
std::string textOf(int pid, int lang, std::initializer_list<int> codes) {
  std::string text = std::to_string(pid) + ":" + languageText(lang);
  for (const int code : codes) text += ":" + std::to_string(code);
  return text;
}

std::string sizeText(int result, unsigned size) {
  if (result > 0) return std::to_string(size);
  EXPECT_EQ(size, 77U);
  return "fails";
}

/// A subtitle that a call returned.
std::string told(int result, int lang, const TSHybridSBT& track) {
  if (result > 0) return textOf(track.pid, lang, {track.type});
  EXPECT_EQ(lang, untouched);
  EXPECT_EQ(textOf(track.pid, 0, {track.type}), "0:0:0");
  return "fails";
}

}  // namespace

std::string languageText(std::int64_t code) {
  std::string letters;
  for (const int shift : {16, 8, 0}) letters += static_cast<char>(code >> shift & 0xFF);
  const bool spelt = code >> 24 == 0 && letters.find_first_not_of("abcdefghijklmnopqrstuvwxyz") == std::string::npos;
  return spelt ? letters : std::to_string(code);
}

std::string SoundTest::audioSize(std::uint64_t service) {
  unsigned size = 77;
  const int result = data().GetAudioSize(service, size);
  return sizeText(result, size);
}

std::string SoundTest::audio(std::uint64_t service, int position) {
  TSAudio track;
  const int result = data().GetAudio(service, position, track);
  std::string text = textOf(track.pid, track.lang, {track.decodeType, track.audioMode, track.audioType});
  if (result > 0) return text;
  EXPECT_EQ(text, "0:0:0:0:0");
  return "fails";
}

std::string SoundTest::currentAudio(WindowId on) {
  int lang = untouched;
  int position = untouched;
  if (sound(on).GetCurrentAudioInfo(&lang, &position) > 0) return std::to_string(position) + " " + languageText(lang);
  EXPECT_EQ(lang, untouched);
  EXPECT_EQ(position, untouched);
  return "fails";
}

std::string SoundTest::subtitleSize(std::uint64_t service) {
  unsigned size = 77;
  const int result = data().GetHybridSBTSize(service, size);
  return sizeText(result, size);
}

std::string SoundTest::subtitle(std::uint64_t service, int position) {
  int lang = untouched;
  TSHybridSBT track;
  const int result = data().GetHybridSBT(service, position, lang, track);
  return told(result, lang, track);
}

std::string SoundTest::currentSubtitle(WindowId on) {
  int lang = untouched;
  TSHybridSBT track;
  const int result = subtitles(on).GetCurrentHybridSBT(lang, track);
  if (result > 0 && lang == -1) return "-1";
  return told(result, lang, track);
}

std::string SoundTest::favourites(std::uint64_t service) {
  std::map<unsigned char, bool> groups;
  if (services().GetFavorites(service, groups) <= 0) {
    EXPECT_TRUE(groups.empty());
    return "fails";
  }
  std::string text;
  for (const auto& [group, member] : groups) {
    text += (text.empty() ? "" : ",") + std::to_string(group) + (member ? "=1" : "=0");
  }
  return text;
}

int SoundTest::selectAudio(int position, WindowId on) {
  return sound(on).SetCurrentAudioByIndex(position);
}

int SoundTest::selectSubtitle(int position, WindowId on) {
  return subtitles(on).SelectHybridSBT(position);
}

int SoundTest::favour(std::uint64_t service, bool member, int group) {
  return services().SetFavorites({{service, member}}, static_cast<char>(group));
}

}  // namespace virtualtv::test
