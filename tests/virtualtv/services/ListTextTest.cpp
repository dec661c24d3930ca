// SPDX-License-Identifier: MIT
// Tracks and favourites as texts: how they are written and read, and what the errors for invalid texts say.
#include "services/ListText.h"

#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <random>
#include <stdexcept>

namespace virtualtv::test {
namespace {

using Tracks = std::vector<AudioTrack>;
using Subtitles = std::vector<SubtitleTrack>;

LanguageCode language(const char* letters) {
  return letters[0] << 16 | letters[1] << 8 | letters[2];
}

/// The error for a text, "" when it is accepted.
template <typename Read>
std::string refusal(Read read, const std::string& text) {
  try {
    read(text);
    return "";
  } catch (const std::invalid_argument& error) {
    return error.what();
  }
}

// Languages.

TEST(LanguageNames, AreThreeLettersOfEitherCase) {
  EXPECT_EQ(languageNamed("eng"), 0x656E67);
  EXPECT_EQ(languageNamed("ENG"), 0x656E67);
  EXPECT_EQ(languageNamed("und"), 0);
  EXPECT_EQ(languageNamed("UND"), 0);
  for (const char* text : {"", "en", "engl", "en1", "e g", "\xC3\xA9n", "123"}) {
    EXPECT_EQ(languageNamed(text), std::nullopt) << text;
  }
}

TEST(LanguageNames, AreNumbersWhereNoLettersStandForThem) {
  EXPECT_EQ(nameOfLanguage(language("deu")), "deu");
  EXPECT_EQ(nameOfLanguage(0), "und");
  EXPECT_EQ(nameOfLanguage(-1), "-1");
  EXPECT_EQ(nameOfLanguage(language("ENG")), std::to_string(language("ENG")));
  EXPECT_EQ(nameOfLanguage(language("und")), std::to_string(language("und")));
  EXPECT_EQ(nameOfLanguage(1 << 24 | language("eng")), std::to_string(1 << 24 | language("eng")));
}

// Audio tracks.

TEST(AudioText, TellsAllPartsOfATrack) {
  const Tracks tracks{{256, language("eng"), CODING_AAC, 2, 0}, {257, language("deu"), CODING_AC3, 4, 3, false}};
  const std::string text = "256:eng:aac:2:0,!257:deu:ac3:4:3";
  EXPECT_EQ(textOf(tracks), text);
  EXPECT_EQ(readAudioTracks(text), tracks);
}

TEST(AudioText, OfNoTrackIsNone) {
  EXPECT_EQ(textOf(Tracks()), "none");
  EXPECT_EQ(readAudioTracks("none"), Tracks());
}

TEST(AudioText, MayLeaveOutLaterParts) {
  const Tracks wanted{{256},
                      {257, language("eng")},
                      {258, 0, CODING_EAC3},
                      {259, 0, CODING_UNKNOWN, 2},
                      {260, 0, CODING_MPEG, 2, 3},
                      {261, 0, CODING_UNKNOWN, 0, 0, false}};
  EXPECT_EQ(readAudioTracks("256,257:eng,258:und:eac3,259:und:unknown:2,260:und:mpeg:2:3,!261"), wanted);
}

TEST(AudioText, TakesNumbersForLanguagesAndCodings) {
  const Tracks wanted{{0, -1, 77, -5, INT_MAX}, {65535, INT_MIN, CODING_AAC}};
  EXPECT_EQ(readAudioTracks("0:-1:77:-5:2147483647,65535:-2147483648:4"), wanted);
  EXPECT_EQ(textOf(wanted), "0:-1:77:-5:2147483647,65535:-2147483648:aac:0:0");
}

const std::string ofInt = "a number from -2147483648 to 2147483647";

TEST(AudioText, SaysWhichPieceIsWrongAndWhatIsWantedThere) {
  const std::string pid = "a PID from 0 to 65535 is wanted, not ";
  const std::string lang = "a language (three letters, und or " + ofInt + ") is wanted, not ";
  const std::string coding = "a coding (unknown, mpeg, ac3, eac3, aac or " + ofInt + ") is wanted, not ";
  const std::string behind = "nothing behind PID:LANG:CODING:MODE:TYPE is wanted, not ";
  const std::vector<std::pair<std::string, std::string>> refusals{
      {"", "track 1, '': " + pid + "''"},
      {"!", "track 1, '!': " + pid + "''"},
      {"!!1", "track 1, '!!1': " + pid + "'!1'"},
      {"1,", "track 2, '': " + pid + "''"},
      {",1", "track 1, '': " + pid + "''"},
      {"1,,2", "track 2, '': " + pid + "''"},
      {"1,none", "track 2, 'none': " + pid + "'none'"},
      {"None", "track 1, 'None': " + pid + "'None'"},
      {"1, 2", "track 2, ' 2': " + pid + "' 2'"},
      {"-1", "track 1, '-1': " + pid + "'-1'"},
      {"65536", "track 1, '65536': " + pid + "'65536'"},
      {"0x10", "track 1, '0x10': " + pid + "'0x10'"},
      {"99999999999", "track 1, '99999999999': " + pid + "'99999999999'"},
      {":eng", "track 1, ':eng': " + pid + "''"},
      {"1:", "track 1, '1:': " + lang + "''"},
      {"1:en", "track 1, '1:en': " + lang + "'en'"},
      {"1:engl:aac", "track 1, '1:engl:aac': " + lang + "'engl'"},
      {"1::aac", "track 1, '1::aac': " + lang + "''"},
      {"1:2147483648", "track 1, '1:2147483648': " + lang + "'2147483648'"},
      {"1:eng,2:deu:mp3,3:x", "track 2, '2:deu:mp3': " + coding + "'mp3'"},
      {"1:eng:AAC", "track 1, '1:eng:AAC': " + coding + "'AAC'"},
      {"1:eng:", "track 1, '1:eng:': " + coding + "''"},
      {"1:eng:aac:stereo", "track 1, '1:eng:aac:stereo': " + ofInt + " as mode is wanted, not 'stereo'"},
      {"1:eng:aac:", "track 1, '1:eng:aac:': " + ofInt + " as mode is wanted, not ''"},
      {"1:eng:aac:2:x", "track 1, '1:eng:aac:2:x': " + ofInt + " as type is wanted, not 'x'"},
      {"1:eng:aac:2:", "track 1, '1:eng:aac:2:': " + ofInt + " as type is wanted, not ''"},
      {"1:eng:aac:2:0:", "track 1, '1:eng:aac:2:0:': " + behind + "''"},
      {"1:eng:aac:2:0:7:8", "track 1, '1:eng:aac:2:0:7:8': " + behind + "'7:8'"},
  };
  for (const auto& [text, reason] : refusals) EXPECT_EQ(refusal(readAudioTracks, text), reason);
}

// Subtitles.

TEST(SubtitleText, TellsAllPartsOfASubtitle) {
  const Subtitles tracks{{259, language("eng"), KIND_DVB}, {260, 0, KIND_TELETEXT, false}};
  const std::string text = "259:eng:dvb,!260:und:teletext";
  EXPECT_EQ(textOf(tracks), text);
  EXPECT_EQ(readSubtitleTracks(text), tracks);
  EXPECT_EQ(textOf(Subtitles()), "none");
  EXPECT_EQ(readSubtitleTracks("none"), Subtitles());
}

TEST(SubtitleText, MayLeaveOutLaterParts) {
  EXPECT_EQ(readSubtitleTracks("259,!260:eng"), (Subtitles{{259}, {260, language("eng"), KIND_DVB, false}}));
}

TEST(SubtitleText, OfAServiceHasNoTeletextSubtitlePages) {
  const std::string wanted = "a kind (dvb or teletext) is wanted, not ";
  EXPECT_EQ(refusal(readSubtitleTracks, "1:eng:dvb,2:eng:teletext-subtitle"),
            "track 2, '2:eng:teletext-subtitle': " + wanted + "'teletext-subtitle'");
  EXPECT_EQ(refusal(readSubtitleTracks, "1:eng:"), "track 1, '1:eng:': " + wanted + "''");
  EXPECT_EQ(refusal(readSubtitleTracks, "1:eng:1"), "track 1, '1:eng:1': " + wanted + "'1'");
}

TEST(SubtitleText, OfTheIspSourceIsInTheOrderOfKinds) {
  const Subtitles wanted{{2, language("eng"), KIND_DVB},
                         {5, language("deu"), KIND_DVB},
                         {3, language("eng"), KIND_TELETEXT, false},
                         {1, language("eng"), KIND_TELETEXT_SUBTITLE},
                         {4, language("deu"), KIND_TELETEXT_SUBTITLE}};
  EXPECT_EQ(readIspSubtitles("1:eng:teletext-subtitle,2:eng:dvb,!3:eng:teletext,4:deu:teletext-subtitle,5:deu:dvb"),
            wanted);
  EXPECT_EQ(textOf(wanted), "2:eng:dvb,5:deu:dvb,!3:eng:teletext,1:eng:teletext-subtitle,4:deu:teletext-subtitle");
}

TEST(SubtitleText, SaysWhichPieceIsWrongAndWhatIsWantedThere) {
  EXPECT_EQ(refusal(readIspSubtitles, "1:eng:dvb,x"), "track 2, 'x': a PID from 0 to 65535 is wanted, not 'x'");
  EXPECT_EQ(refusal(readIspSubtitles, "1:e"),
            "track 1, '1:e': a language (three letters, und or " + ofInt + ") is wanted, not 'e'");
  EXPECT_EQ(refusal(readIspSubtitles, "1:eng:ttx"),
            "track 1, '1:eng:ttx': a kind (dvb, teletext or teletext-subtitle) is wanted, not 'ttx'");
  EXPECT_EQ(refusal(readIspSubtitles, "1:eng:dvb:0"),
            "track 1, '1:eng:dvb:0': nothing behind PID:LANG:KIND is wanted, not '0'");
}

// Favourites.

TEST(FavouriteText, TellsGroupsAndMembership) {
  const std::map<std::uint8_t, bool> groups{{0, true}, {1, true}, {12, false}, {255, true}};
  EXPECT_EQ(textOf(groups), "0=1,1=1,12=0,255=1");
  EXPECT_EQ(readFavourites("255=1,12=0,1=1,0=1"), groups);
  EXPECT_EQ(textOf(std::map<std::uint8_t, bool>()), "none");
  EXPECT_TRUE(readFavourites("none").empty());
}

TEST(FavouriteText, SaysWhichPieceIsWrongAndWhatIsWantedThere) {
  const std::string wanted = ": a group from 0 to 255 with =1 or =0 behind it is wanted";
  for (const std::string text : {"", "1", "=1", "1=", "1=2", "256=1", "-1=1", "1=on", "x=1", "1=11", " 1=1", "1=1=1"}) {
    EXPECT_EQ(refusal(readFavourites, text), "favourite 1, '" + text + "'" + wanted);
    EXPECT_EQ(refusal(readFavourites, "7=0," + text), "favourite 2, '" + text + "'" + wanted);
  }
  EXPECT_EQ(refusal(readFavourites, "1=1,2=1,1=1"), "favourite 3, '1=1': the group stands there already");
}

// All lists.

class Random {
 public:
  int number() { return static_cast<int>(engine_() >> engine_() % 32); }
  int below(int limit) { return static_cast<int>(engine_() % static_cast<unsigned>(limit)); }
  int signedNumber() { return below(2) == 0 ? number() : -1 - (number() & INT_MAX); }
  LanguageCode anyLanguage() {
    if (below(2) == 0) return signedNumber();
    LanguageCode code = 0;
    for (int letter = 0; letter < 3; ++letter) code = code << 8 | ("abdenru"[below(7)]);
    return code;
  }

 private:
  std::mt19937 engine_{5};
};

TEST(ListText, ReadsAgainWhatItHasWritten) {
  Random random;
  for (int round = 0; round < 2000; ++round) {
    Tracks audio(static_cast<std::size_t>(random.below(5)));
    for (AudioTrack& track : audio) {
      track = {
          random.below(65536),   random.anyLanguage(),  random.below(2) == 0 ? random.below(5) : random.signedNumber(),
          random.signedNumber(), random.signedNumber(), random.below(3) != 0};
    }
    ASSERT_EQ(readAudioTracks(textOf(audio)), audio) << textOf(audio);
    Subtitles subtitles(static_cast<std::size_t>(random.below(5)));
    for (SubtitleTrack& track : subtitles) {
      track = {random.below(65536), random.anyLanguage(), random.below(3), random.below(3) != 0};
    }
    orderByKind(subtitles);
    ASSERT_EQ(readIspSubtitles(textOf(subtitles)), subtitles) << textOf(subtitles);
    std::map<std::uint8_t, bool> groups;
    for (int count = random.below(6); count > 0; --count) {
      groups[static_cast<std::uint8_t>(random.below(256))] = random.below(2) == 0;
    }
    ASSERT_EQ(readFavourites(textOf(groups)), groups) << textOf(groups);
  }
}

TEST(ListText, ReadsAgainTracksThatNoStreamHas) {
  Random random;
  for (int round = 0; round < 2000; ++round) {
    Tracks audio(static_cast<std::size_t>(random.below(5)));
    for (AudioTrack& track : audio) {
      track = {random.signedNumber(), random.anyLanguage(), random.signedNumber(), 2, 0, random.below(3) != 0};
    }
    ASSERT_EQ(readAllAudioTracks(textOf(audio)), audio) << textOf(audio);
    Subtitles subtitles(static_cast<std::size_t>(random.below(5)));
    for (SubtitleTrack& track : subtitles) {
      const int kind = random.below(2) == 0 ? random.below(3) : random.signedNumber();
      track = {random.signedNumber(), random.anyLanguage(), kind, random.below(3) != 0};
    }
    ASSERT_EQ(readAllSubtitleTracks(textOf(subtitles)), subtitles) << textOf(subtitles);
  }
}

TEST(ListText, ReadsAnyTextOrSaysWhatIsWrongWithIt) {
  Random random;
  const std::string letters = "0123456789:,!=-engacdvbtl none";
  for (int round = 0; round < 20000; ++round) {
    std::string text;
    for (int length = random.below(24); length > 0; --length) {
      text += letters[static_cast<std::size_t>(random.below(static_cast<int>(letters.size())))];
    }
    for (const auto& said :
         {refusal(readAudioTracks, text), refusal(readSubtitleTracks, text), refusal(readIspSubtitles, text),
          refusal(readFavourites, text), refusal(readAllAudioTracks, text), refusal(readAllSubtitleTracks, text)}) {
      ASSERT_TRUE(said.empty() || said.find(" is wanted") != said.npos || said.find("already") != said.npos) << said;
    }
  }
}

}  // namespace
}  // namespace virtualtv::test
