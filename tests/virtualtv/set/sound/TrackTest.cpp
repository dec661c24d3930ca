// SPDX-License-Identifier: MIT
// The tracks of any service, read by its id.
#include <climits>

#include "virtualtv/set/sound/SoundTest.h"

namespace virtualtv::test {
namespace {

constexpr std::uint64_t none = ~std::uint64_t{0};

/// Two services, 10 with tracks and 20 without.
class Tracks : public SoundTest {
 protected:
  Tracks() {
    tv->import({serviceOf(10, 0, 1), serviceOf(20, 0, 2)}, false);
    turn("service.10.audio", "256:eng:aac:2:0,!257:deu:ac3:4:1,65535:-1:77:-5:6");
    turn("service.10.subtitles", "259:eng:dvb,!260:deu:dvb,65535:und:teletext");
  }
};

TEST_F(Tracks, OfAServiceAreCountedAlsoThoseThatCannotBeRead) {
  EXPECT_EQ(audioSize(10), "3");
  EXPECT_EQ(subtitleSize(10), "3");
}

TEST_F(Tracks, OfAServiceWithoutThemAreNone) {
  EXPECT_EQ(audioSize(20), "0");
  EXPECT_EQ(subtitleSize(20), "0");
  EXPECT_EQ(audio(20, 0), "fails");
  EXPECT_EQ(subtitle(20, 0), "fails");
}

TEST_F(Tracks, OfAServiceAreToldByTheirPositions) {
  EXPECT_EQ(audio(10, 0), "256:eng:4:2:0");
  EXPECT_EQ(audio(10, 2), "65535:-1:77:-5:6");
  EXPECT_EQ(subtitle(10, 0), "259:eng:0");
  EXPECT_EQ(subtitle(10, 2), "65535:0:1");
}

TEST_F(Tracks, ThatCannotBeReadAreNotTold) {
  EXPECT_EQ(audio(10, 1), "fails");
  EXPECT_EQ(subtitle(10, 1), "fails");
}

TEST_F(Tracks, AreNotToldAtPositionsWhereThereAreNone) {
  for (const int position : {-1, 3, INT_MIN, INT_MAX}) {
    EXPECT_EQ(audio(10, position), "fails") << position;
    EXPECT_EQ(subtitle(10, position), "fails") << position;
  }
}

TEST_F(Tracks, OfAServiceThatIsNotThereAreNotTold) {
  for (const std::uint64_t id : {std::uint64_t{0}, std::uint64_t{30}, none}) {
    EXPECT_EQ(audioSize(id), "fails") << id;
    EXPECT_EQ(audio(id, 0), "fails") << id;
    EXPECT_EQ(subtitleSize(id), "fails") << id;
    EXPECT_EQ(subtitle(id, 0), "fails") << id;
  }
}

TEST_F(Tracks, DoNotDependOnWhatTheWindowsShow) {
  tune(20);
  leaveSource();
  EXPECT_EQ(audioSize(10), "3");
  EXPECT_EQ(subtitle(10, 0), "259:eng:0");
}

TEST_F(Tracks, MayBeTwoHundred) {
  std::string list;
  for (int track = 0; track < 200; ++track) list += (track == 0 ? "" : ",") + std::to_string(1000 + track);
  turn("service.20.audio", list);
  turn("service.20.subtitles", list);
  EXPECT_EQ(audioSize(20), "200");
  EXPECT_EQ(audio(20, 199), "1199:0:0:0:0");
  EXPECT_EQ(audio(20, 200), "fails");
  EXPECT_EQ(subtitleSize(20), "200");
  EXPECT_EQ(subtitle(20, 199), "1199:0:0");
}

TEST_F(Tracks, OfTheBuiltInSetAreThoseOfItsDescription) {
  tv->reset();
  constexpr std::uint64_t lighthouseOne = 1152959734176350309U;
  ASSERT_EQ(current(), lighthouseOne);
  EXPECT_EQ(audioSize(lighthouseOne), "5");
  EXPECT_EQ(audio(lighthouseOne, 0), "1011:eng:4:2:0");
  EXPECT_EQ(audio(lighthouseOne, 4), "1015:eng:4:2:3");
  EXPECT_EQ(subtitleSize(lighthouseOne), "3");
  EXPECT_EQ(subtitle(lighthouseOne, 2), "1018:eng:1");
  EXPECT_EQ(favourites(lighthouseOne), "1=1,2=0,12=1");
}

}  // namespace
}  // namespace virtualtv::test
