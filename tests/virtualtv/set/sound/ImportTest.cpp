// SPDX-License-Identifier: MIT
// The tracks in imported channel lists, as clients read them.
#include "import/Import.h"

#include "virtualtv/set/sound/SoundTest.h"

namespace virtualtv::test {
namespace {

class ImportedTracks : public SoundTest {
 protected:
  void import(const std::string& list) {
    const import::Format* format = import::recognise(list);
    ASSERT_NE(format, nullptr);
    const import::Result result = import::read(list, *format);
    ASSERT_EQ(result.problems.count(), 0U);
    tv->import(result.services, false);
  }
};

constexpr const char* vdr =
    "One;Net:474000:B8C23D12G4M64T8Y0:T:27500:101:102=eng@4,103=deu+fra@17;104=UND@106,105:106;107=eng,108=deu+und,109:"
    "0:"
    "1:1:1:0\n"
    "Two;Net:474000:B8C23D12G4M64T8Y0:T:27500:201:0:0:0:2:1:1:0\n";

TEST_F(ImportedTracks, OfAVdrListAreThoseOfItsAudioAndSubtitlePids) {
  import(vdr);
  const std::uint64_t one = current();
  EXPECT_EQ(knob("service.#1.audio"),
            "102:eng:mpeg:0:0,103:deu:aac:0:0,103:fra:aac:0:0,104:und:ac3:0:0,105:und:ac3:0:0");
  EXPECT_EQ(audioSize(one), "5");
  EXPECT_EQ(audio(one, 0), "102:eng:1:0:0");
  EXPECT_EQ(audio(one, 2), "103:fra:4:0:0");
  EXPECT_EQ(audio(one, 3), "104:0:2:0:0");
  EXPECT_EQ(knob("service.#1.subtitles"), "107:eng:dvb,108:deu:dvb,108:und:dvb,109:und:dvb");
  EXPECT_EQ(subtitleSize(one), "4");
  EXPECT_EQ(subtitle(one, 1), "108:deu:0");
}

TEST_F(ImportedTracks, AreThereToChoose) {
  import(vdr);
  EXPECT_EQ(currentAudio(), "0 eng");
  EXPECT_EQ(selectAudio(1), 1);
  EXPECT_EQ(selectSubtitle(1), 1);
  EXPECT_EQ(currentAudio(), "1 deu");
  EXPECT_EQ(currentSubtitle(), "108:deu:0");
}

TEST_F(ImportedTracks, AreNoneWhereTheListHasNone) {
  import(vdr);
  EXPECT_EQ(knob("service.#2.audio"), "none");
  EXPECT_EQ(knob("service.#2.subtitles"), "none");
  EXPECT_EQ(knob("service.#2.favourites"), "none");
  tv->tune(WindowId::main, 2);
  EXPECT_EQ(audioSize(current()), "0");
  EXPECT_EQ(currentAudio(), "fails");
}

TEST_F(ImportedTracks, OfALibdvbv5ListHaveACodingByTheirKeyAndNoLanguage) {
  import(
      "[One]\n\tSERVICE_ID = 1\n\tVIDEO_PID = 101\n\tAUDIO_PID = 102 103\n\tPID_0f = 104\n\tAC3_PID = 105\n"
      "\tPID_87 = 106\n\tFREQUENCY = 474000000\n\tDELIVERY_SYSTEM = DVBT\n");
  EXPECT_EQ(knob("service.#1.audio"),
            "102:und:unknown:0:0,103:und:unknown:0:0,104:und:aac:0:0,105:und:ac3:0:0,106:und:eac3:0:0");
  EXPECT_EQ(audio(current(), 3), "105:0:2:0:0");
  EXPECT_EQ(subtitleSize(current()), "0");
}

TEST_F(ImportedTracks, TakeThePlaceOfThoseOfTheSameServiceWhenAdded) {
  import(vdr);
  selectAudio(4);
  auto service = *tv->services().read(1);
  service.audio = {{900, *languageNamed("jpn"), CODING_AAC}};
  tv->import({service}, true);
  EXPECT_EQ(audioSize(current()), "1");
  EXPECT_EQ(currentAudio(), "0 jpn");
}

}  // namespace
}  // namespace virtualtv::test
