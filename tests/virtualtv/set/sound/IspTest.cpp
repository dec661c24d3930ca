// SPDX-License-Identifier: MIT
// The tracks of the ISP source, as the manager of the secondary TV stack reports them.
#include <climits>

#include "d2tv/CD2tvMgrProxy.h"
#include "d2tv/D2TVCAPI.h"
#include "virtualtv/set/sound/SoundTest.h"

namespace virtualtv::test {
namespace {

constexpr int untouched = -77;
constexpr int good = 0;
constexpr int bad = -1;

CD2tvMgrProxy& manager() {
  CD2tvMgrProxy* const made = CD2tvMgrProxy::GetInstance("test");
  EXPECT_NE(made, nullptr);
  return *made;
}

/// Checks a failed call: it must have answered -1 and left its outputs unchanged. @return "fails".
std::string failed(int result, bool asItWas) {
  EXPECT_EQ(result, bad);
  EXPECT_TRUE(asItWas);
  return "fails";
}

std::string audioCount() {
  unsigned count = 77;
  const int result = manager().GetTotalNumOfAudio(&count);
  return result == good ? std::to_string(count) : failed(result, count == 77);
}

/// An audio track: its index, PID, language and three codes.
std::string audioAt(unsigned position) {
  MVPDAudio audio{untouched, 0, 0, 0, 0, 0};
  const int result = manager().GetMultiAudioInfo(&audio, position);
  if (result != good) return failed(result, audio.index == untouched);
  return std::to_string(audio.index) + " " + std::to_string(audio.pid) + ":" + languageText(audio.lang) + ":" +
         std::to_string(audio.decodeType) + ":" + std::to_string(audio.audioMode) + ":" +
         std::to_string(audio.audioType);
}

std::string audioInUse() {
  int pid = untouched;
  int index = untouched;
  unsigned lang = 77;
  const int result = manager().GetCurrentAudioInfo(&pid, &index, &lang);
  if (result != good) return failed(result, pid == untouched && index == untouched && lang == 77);
  return std::to_string(index) + " " + std::to_string(pid) + ":" + languageText(lang);
}

/// The numbers of subtitles of the three kinds.
std::string subtitleCounts() {
  unsigned dvb = 77;
  unsigned teletext = 77;
  unsigned pages = 77;
  const int result = manager().GetTotalNumOfSubtitle(&dvb, &teletext, &pages);
  if (result != good) return failed(result, dvb == 77 && teletext == 77 && pages == 77);
  return std::to_string(dvb) + " " + std::to_string(teletext) + " " + std::to_string(pages);
}

std::string subtitleAt(int position) {
  DVBSubtitleInfo subtitle{77, 77};
  const int result = manager().GetDVBSubtitleInfo(&subtitle, position);
  if (result != good) return failed(result, subtitle.index == 77 && subtitle.lang == 77);
  return std::to_string(subtitle.index) + " " + languageText(subtitle.lang);
}

std::string subtitleInUse() {
  int language = untouched;
  const int result = manager().GetCurrentSubtitle(&language);
  return result == good ? languageText(language) : failed(result, language == untouched);
}

/// The ISP source on screen, with tracks of each kind.
class Isp : public SoundTest {
 protected:
  Isp() {
    turn("isp.audio", "256:eng:aac:2:0,257:deu:ac3:4:3,!258:fra,257:spa");
    turn("isp.subtitles", "1:eng:teletext-subtitle,2:deu:dvb,3:fra:teletext,4:spa:dvb,!5:ita:teletext");
    EXPECT_EQ(D2TVCAPI_setSourceISP(), 1);
    noteEvents();
  }
};

TEST_F(Isp, TellsItsAudioTracks) {
  EXPECT_EQ(audioCount(), "4");
  EXPECT_EQ(audioAt(0), "0 256:eng:4:2:0");
  EXPECT_EQ(audioAt(1), "1 257:deu:2:4:3");
  EXPECT_EQ(audioAt(2), "fails") << "it can't be read";
  EXPECT_EQ(audioAt(3), "3 257:spa:0:0:0");
  for (const unsigned position : {4U, 1U << 31, UINT_MAX}) EXPECT_EQ(audioAt(position), "fails") << position;
}

TEST_F(Isp, HasItsFirstAudioTrackInUse) {
  EXPECT_EQ(audioInUse(), "0 256:eng");
}

TEST_F(Isp, ChangesItsAudioByPosition) {
  EXPECT_EQ(manager().ChangeAudioByIndex(3), good);
  EXPECT_EQ(audioInUse(), "3 257:spa");
  EXPECT_EQ(manager().ChangeAudioByIndex(2), good);
  EXPECT_EQ(audioInUse(), "fails") << "it can't be read";
  EXPECT_EQ(knob("isp.audio_in_use"), "2");
  for (const unsigned position : {4U, 1U << 31, UINT_MAX, UINT_MAX - 1}) {
    EXPECT_EQ(manager().ChangeAudioByIndex(position), bad) << position;
  }
  EXPECT_EQ(knob("isp.audio_in_use"), "2");
}

TEST_F(Isp, ChangesItsAudioByPidToTheFirstTrackThatHasIt) {
  EXPECT_EQ(manager().ChangeAudioByPID(257), good);
  EXPECT_EQ(audioInUse(), "1 257:deu");
  EXPECT_EQ(manager().ChangeAudioByPID(258), bad) << "it can't be read";
  for (const unsigned pid : {0U, 255U, 65536U + 256U, UINT_MAX}) {
    EXPECT_EQ(manager().ChangeAudioByPID(pid), bad) << pid;
  }
  EXPECT_EQ(audioInUse(), "1 257:deu");
}

TEST_F(Isp, CountsItsSubtitlesByKind) {
  EXPECT_EQ(subtitleCounts(), "2 2 1");
}

TEST_F(Isp, TellsItsSubtitlesOneKindAfterTheOther) {
  EXPECT_EQ(subtitleAt(0), "0 deu");
  EXPECT_EQ(subtitleAt(1), "1 spa");
  EXPECT_EQ(subtitleAt(2), "2 fra");
  EXPECT_EQ(subtitleAt(3), "fails") << "it can't be read";
  EXPECT_EQ(subtitleAt(4), "4 eng");
  for (const int position : {-1, 5, INT_MIN, INT_MAX}) EXPECT_EQ(subtitleAt(position), "fails") << position;
}

TEST_F(Isp, HasNoSubtitleInUseAtFirst) {
  EXPECT_EQ(subtitleInUse(), "-1");
}

TEST_F(Isp, ChangesItsSubtitleByPosition) {
  EXPECT_EQ(manager().ChangeSubtitleLanguage(4), good);
  EXPECT_EQ(subtitleInUse(), "eng");
  for (const int position : {-1, 5, INT_MIN, INT_MAX}) {
    EXPECT_EQ(manager().ChangeSubtitleLanguage(position), bad) << position;
  }
  EXPECT_EQ(subtitleInUse(), "eng");
  EXPECT_EQ(manager().ChangeSubtitleLanguage(3), good);
  EXPECT_EQ(subtitleInUse(), "fails") << "it can't be read";
}

TEST_F(Isp, WithoutTracksTellsThatThereAreNone) {
  turn("isp.audio", "none");
  turn("isp.subtitles", "none");
  EXPECT_EQ(audioCount(), "0");
  EXPECT_EQ(audioInUse(), "fails");
  EXPECT_EQ(manager().ChangeAudioByIndex(0), bad);
  EXPECT_EQ(subtitleCounts(), "0 0 0");
  EXPECT_EQ(subtitleInUse(), "-1");
  EXPECT_EQ(manager().ChangeSubtitleLanguage(0), bad);
}

TEST_F(Isp, TellsAndChangesNothingWhileItIsNotShown) {
  ASSERT_GT(switchTo(antennaInput), 0);
  const TvState before = tv->state();
  EXPECT_EQ(audioCount(), "fails");
  EXPECT_EQ(audioAt(0), "fails");
  EXPECT_EQ(audioInUse(), "fails");
  EXPECT_EQ(subtitleCounts(), "fails");
  EXPECT_EQ(subtitleAt(0), "fails");
  EXPECT_EQ(subtitleInUse(), "fails");
  EXPECT_EQ(manager().ChangeAudioByPID(257), bad);
  EXPECT_EQ(manager().ChangeAudioByIndex(1), bad);
  EXPECT_EQ(manager().ChangeSubtitleLanguage(1), bad);
  EXPECT_EQ(tv->state(), before);
}

TEST_F(Isp, KeepsItsTracksInUseBesideTheTvServices) {
  manager().ChangeAudioByIndex(1);
  manager().ChangeSubtitleLanguage(2);
  const auto before = window().inUse;
  switchTo(antennaInput);
  D2TVCAPI_setSourceISP();
  EXPECT_EQ(audioInUse(), "1 257:deu");
  EXPECT_EQ(subtitleInUse(), "fra");
  EXPECT_EQ(window().inUse, before);
}

TEST_F(Isp, TellsListenersOfAChange) {
  manager().ChangeAudioByPID(257);
  manager().ChangeAudioByIndex(0);
  manager().ChangeSubtitleLanguage(1);
  manager().ChangeSubtitleLanguage(9);
  ASSERT_EQ(events.size(), 3U);
  const std::vector<TracksInUse> inUse{{1, -1}, {0, -1}, {0, 1}};
  for (std::size_t index = 0; index < events.size(); ++index) {
    EXPECT_EQ(changeOf<IspChanged>(events[index]).after.inUse, inUse[index]) << index;
  }
}

TEST_F(Isp, KeepsItsTracksAndWhatIsInUse) {
  manager().ChangeAudioByIndex(3);
  manager().ChangeSubtitleLanguage(2);
  const TvState before = tv->state();
  restart();
  EXPECT_EQ(tv->state(), before);
  EXPECT_EQ(audioInUse(), "3 257:spa");
  EXPECT_EQ(subtitleInUse(), "fra");
}

TEST_F(Isp, DoesNotChangeWhatCannotBeKept) {
  breakStore();
  EXPECT_EQ(manager().ChangeAudioByIndex(1), bad);
  EXPECT_EQ(manager().ChangeAudioByPID(257), bad);
  EXPECT_EQ(manager().ChangeSubtitleLanguage(1), bad);
  EXPECT_EQ(tv->takeComplaints().size(), 3U);
  mendStore();
  EXPECT_EQ(audioInUse(), "0 256:eng");
  EXPECT_EQ(subtitleInUse(), "-1");
}

TEST_F(Isp, HasLifelikeTracksInTheBuiltInSet) {
  tv->reset();
  D2TVCAPI_setSourceISP();
  EXPECT_EQ(audioCount(), "4");
  EXPECT_EQ(audioAt(1), "1 7012:deu:4:2:0");
  EXPECT_EQ(subtitleCounts(), "2 1 2");
  EXPECT_EQ(subtitleAt(4), "4 deu");
}

}  // namespace
}  // namespace virtualtv::test
