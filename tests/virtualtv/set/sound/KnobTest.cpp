// SPDX-License-Identifier: MIT
// The knobs of tracks and favourites: what they print, take and refuse, and what survives a restart.
#include <algorithm>

#include "store/Statement.h"
#include "virtualtv/set/sound/SoundTest.h"
#include "virtualtv/support/Support.h"

namespace virtualtv::test {
namespace {

class TrackKnobs : public SoundTest {
 protected:
  TrackKnobs() { tv->import({serviceOf(10, 0, 1), serviceOf(20, 0, 2)}, false); }

  /// The knobs whose values are lists, with a value for each.
  const std::vector<std::pair<std::string, std::string>> lists{
      {"service.10.audio", "256:eng:aac:2:0,!257:deu:ac3:4:0"},
      {"service.10.subtitles", "259:eng:dvb,!260:und:teletext"},
      {"service.10.favourites", "1=1,12=0,255=1"},
      {"isp.audio", "256:eng:aac:2:0,!257:deu:ac3:4:0"},
      {"isp.subtitles", "1:eng:dvb,!2:deu:teletext,3:-1:teletext-subtitle"}};
  /// The knobs whose values are positions.
  const std::vector<std::string> positions{"main.audio",   "main.subtitle",    "pip.audio",
                                           "pip.subtitle", "isp.audio_in_use", "isp.subtitle_in_use"};
};

TEST_F(TrackKnobs, PrintWhatTheyTake) {
  for (const auto& [name, text] : lists) {
    EXPECT_EQ(refusal(name, text), "");
    EXPECT_EQ(knob(name), text);
    EXPECT_EQ(refusal(name, "none"), "");
    EXPECT_EQ(knob(name), "none");
  }
  for (const std::string& name : positions) {
    for (const std::string text : {"1", "0", "-1", "99"}) {
      EXPECT_EQ(refusal(name, text), "");
      EXPECT_EQ(knob(name), text);
    }
  }
}

TEST_F(TrackKnobs, OfAServiceAreReachedByItsKeyToo) {
  turn("service.#2.audio", "77:deu");
  EXPECT_EQ(knob("service.20.audio"), "77:deu:unknown:0:0");
  EXPECT_EQ(knob("service.#1.audio"), "none");
}

TEST_F(TrackKnobs, OfIspSubtitlesPrintThemByKind) {
  turn("isp.subtitles", "3:eng:teletext-subtitle,1:eng,2:eng:teletext");
  EXPECT_EQ(knob("isp.subtitles"), "1:eng:dvb,2:eng:teletext,3:eng:teletext-subtitle");
}

TEST_F(TrackKnobs, RefuseWhatIsNoListAndStayAsTheyWere) {
  for (const auto& [name, text] : lists) turn(name, text);
  const TvState before = tv->state();
  const std::uint64_t revision = tv->revision();
  for (const auto& [name, text] : lists) {
    const std::string said = refusal(name, text + ",x");
    const std::size_t last = 1 + static_cast<std::size_t>(std::count(text.begin(), text.end(), ',')) + 1;
    EXPECT_NE(said.find(" " + std::to_string(last) + ", 'x': "), said.npos) << said;
    EXPECT_EQ(knob(name), text);
  }
  for (const std::string& name : positions) {
    for (const std::string text : {"", "x", "none", "1.5", "2147483648"}) {
      EXPECT_EQ(refusal(name, text), "a number from -2147483648 to 2147483647 is wanted, not '" + text + "'");
    }
  }
  EXPECT_EQ(tv->state(), before);
  EXPECT_EQ(tv->revision(), revision);
}

TEST_F(TrackKnobs, RefuseWhatIsNoServiceNoWindow) {
  for (const char* list : {"audio", "subtitles", "favourites"}) {
    EXPECT_EQ(refusal(std::string("service.30.") + list, "none"), "there is no service 30");
    EXPECT_THROW(knob(std::string("service.30.") + list), std::invalid_argument);
  }
  EXPECT_EQ(refusal("third.audio", "1"), "there is no window 'third'; there are main and pip");
  EXPECT_THROW(knob("isp.service"), std::invalid_argument);
}

TEST_F(TrackKnobs, LeaveTheFieldsOfAServiceToTheirOwn) {
  turn("service.10.audio", "256:eng");
  EXPECT_EQ(knob("service.10.major"), "1");
  EXPECT_EQ(refusal("service.10.sound", "1"), "there is no field 'sound'");
}

TEST_F(TrackKnobs, AreToldToListeners) {
  const ServiceKey service = *tv->services().keyOf(10);
  noteEvents();
  for (const auto& [name, text] : lists) turn(name, text);
  turn("pip.audio", "1");
  ASSERT_EQ(events.size(), lists.size() + 1);
  EXPECT_EQ(changeOf<AudioTracksChanged>(events[0]).service, service);
  EXPECT_EQ(changeOf<AudioTracksChanged>(events[0]).after.size(), 2U);
  EXPECT_EQ(changeOf<SubtitleTracksChanged>(events[1]).after.size(), 2U);
  EXPECT_EQ(changeOf<FavouritesChanged>(events[2]).after.size(), 3U);
  EXPECT_EQ(changeOf<IspChanged>(events[3]).after.audio.size(), 2U);
  EXPECT_EQ(changeOf<IspChanged>(events[4]).after.subtitles.size(), 3U);
  EXPECT_EQ(changeOf<TracksChanged>(events[5]).window, WindowId::pip);
}

TEST_F(TrackKnobs, AreKept) {
  for (const auto& [name, text] : lists) turn(name, text);
  for (const std::string& name : positions) turn(name, "5");
  const TvState before = tv->state();
  restart();
  EXPECT_EQ(tv->state(), before);
  for (const auto& [name, text] : lists) EXPECT_EQ(knob(name), text);
  turn("isp.audio", "none");
  restart();
  EXPECT_EQ(knob("isp.audio"), "none");
}

TEST_F(TrackKnobs, SayWhereAKeptListIsDamaged) {
  Statement(storage.parts().database, "UPDATE set_state SET value = '1:x' WHERE key = 'isp.audio'", "damage the set")
      .run();
  tv.reset();
  EXPECT_EQ(failureOf([&] { tv.emplace(storage); }),
            "memory: cannot read isp.audio of the set that is kept: track 1, '1:x': a language (three letters, und or "
            "a number from -2147483648 to 2147483647) is wanted, not 'x'");
}

TEST_F(TrackKnobs, DoNotTurnWhereTheyCannotBeKept) {
  breakStore();
  for (const auto& list : lists) {
    const std::string before = knob(list.first);
    EXPECT_NE(failureOf([&] { turn(list.first, list.second); }), "") << list.first;
    EXPECT_EQ(knob(list.first), before);
  }
  mendStore();
}

}  // namespace
}  // namespace virtualtv::test
