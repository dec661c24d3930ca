// SPDX-License-Identifier: MIT
// A list that is exported in its own format and imported again gives the same services.
#include "channels/ExportList.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <random>

#include "channels/ImportList.h"
#include "set/Tv.h"
#include "virtualtv/support/Support.h"

namespace virtualtv::test {
namespace {

using Losses = std::map<std::string, std::size_t>;

class Export : public ::testing::Test {
 protected:
  ImportReport import(const std::string& content, const char* format = nullptr) {
    tv.reset();
    tv.emplace(storage.emplace());
    return importServices(*tv, "list", content, {format == nullptr ? nullptr : import::formatNamed(format), ""});
  }
  /// Exports the list in each format and imports the result. Whatever a format loses is reported, and a second export
  /// loses nothing more.
  void holds(const std::string& list) {
    for (const char* format : {"vdr", "dvbv5", "m3u", "json"}) {
      import(list);
      const auto before = services();
      const ExportReport first = exported(format);
      if (!first.error().empty()) continue;
      const ImportReport report = import(first.exported.content, format);
      EXPECT_EQ(report.problems.unread(), 0U) << format;
      EXPECT_EQ(report.imported, first.exported.services) << format;
      if (first.losses().empty()) {
        EXPECT_EQ(services(), before) << format;
      }
      EXPECT_EQ(content(format), first.exported.content);
      EXPECT_EQ(exported(format).losses(), "") << format;
    }
  }
  ExportReport exported(const char* format) const {
    return exportServices(tv->services(), *import::formatNamed(format));
  }
  std::string content(const char* format) const { return exported(format).exported.content; }
  std::map<ServiceKey, Service> services() const { return tv->services().all(); }
  void set(int field, const FieldValue& value, ServiceKey key = 1) { tv->setField(key, field, value); }

  std::optional<Storage> storage;
  std::optional<Tv> tv;
};

const std::string vdrList =
    "News "
    "24,News;Company:12187:HC34M2S0:S19.2E:27500:163+164=2:104=deu@3;106=deu@106:105;110=deu:1843,98C:12003:1:1089:7\n"
    ":@20 Other\n"
    "A|B:578:B8C23D12M64:T:0:0:0:0:0:7:1:2:0\n"
    ":Last\n"
    "Old:306000:M256:C:6900:620:621,622=eng@15:0:0:9\n";

const std::string dvbv5List =
    "[News]\n\tSERVICE_ID = 544\n\tVIDEO_PID = 512\n\tAUDIO_PID = 650 651\n\tINVERSION = AUTO\n"
    "\tDELIVERY_SYSTEM = DVBT2\n\tFREQUENCY = 474000000\n\tCODE_RATE_HP = 2/3\n\tMODULATION = QAM/64\n\n"
    "[Sat]\n\tSERVICE_ID = 7\n\tNETWORK_ID = 1\n\tPID_1B = 700\n\tAC3 = 701\n\tDELIVERY_SYSTEM = DVBS2\n"
    "\tFREQUENCY = 12187500\n\tPOLARIZATION = H\n\tSYMBOL_RATE = 27500000\n\tMODULATION = PSK/8\n";

const std::string m3uList =
    "#EXTM3U\n#EXTINF:-1 tvg-id=\"a\" tvg-logo=\"http://l\" group-title=\"G\",News\n#EXTVLCOPT:x=y\nhttp://a\n"
    "#EXTINF:-1 tvg-chno=\"9\" radio=\"true\",Sound\nhttp://b\nhttp://c\n";

TEST_F(Export, GivesEachLineBackInTheFormatThatItCameIn) {
  for (const auto& [format, list] :
       {std::pair("vdr", vdrList), std::pair("dvbv5", dvbv5List), std::pair("m3u", m3uList)}) {
    import(list);
    const ExportReport report = exported(format);
    EXPECT_EQ(report.exported.content, list);
    EXPECT_EQ(report.losses(), "");
    const auto before = services();
    import(report.exported.content);
    EXPECT_EQ(services(), before);
  }
}

TEST_F(Export, WritesWhatTheSetHasOtherwiseByNow) {
  import(vdrList);
  set(TCServiceData::CHANNEL_NAME, u"Neu: eins");
  set(TCServiceData::FREQUENCY, std::uint64_t{11000000});
  set(TCServiceData::MODULATION, std::uint64_t{MODULATION_PSK_8});
  tv->setAudioTracks(1, {{.pid = 5, .lang = 0, .decodeType = CODING_AC3}});
  tv->setSubtitleTracks(1, {});
  const std::string first = content("vdr").substr(0, content("vdr").find('\n'));
  EXPECT_EQ(first, "Neu| eins,News;Company:11000:HM5S1:S19.2E:27500:163+164=2:0;5:0:1843,98C:12003:1:1089:7");
  EXPECT_EQ(exported("vdr").losses(), "");
  import(dvbv5List);
  set(TCServiceData::CHANNEL_NAME, u"Neu");
  set(TCServiceData::FREQUENCY, std::uint64_t{482000});
  tv->setAudioTracks(1, {{.pid = 5, .decodeType = CODING_MPEG}, {.pid = 6, .decodeType = CODING_MPEG}});
  EXPECT_EQ(content("dvbv5").substr(0, content("dvbv5").find("\n\n")),
            "[Neu]\n\tSERVICE_ID = 544\n\tVIDEO_PID = 512\n\tPID_03 = 5 6\n\tINVERSION = AUTO\n"
            "\tDELIVERY_SYSTEM = DVBT2\n\tFREQUENCY = 482000000\n\tCODE_RATE_HP = 2/3\n\tMODULATION = QAM/64");
  import(m3uList);
  set(TCServiceData::CHANNEL_NAME, u"Neu, ja");
  set(TCServiceData::MAJOR, std::uint64_t{3});
  EXPECT_EQ(content("m3u"),
            "#EXTM3U\n#EXTINF:-1 tvg-id=\"a\" tvg-logo=\"http://l\" group-title=\"G\" tvg-chno=\"3\",Neu, ja\n"
            "#EXTVLCOPT:x=y\nhttp://a\n#EXTINF:-1 tvg-chno=\"9\" radio=\"true\",Sound\nhttp://b\nhttp://c\n");
}

TEST_F(Export, CountsWhatAFormatCantHold) {
  import(vdrList);
  set(TCServiceData::LOCK, std::uint64_t{1});
  set(HIDDEN, std::uint64_t{1}, 2);
  set(200, std::uint64_t{5});
  set(TCServiceData::SERVICE_FIELD_110, u"{}");
  tv->setFavouritesOf(1, {{2, true}, {3, false}});
  EXPECT_EQ(exported("vdr").exported.lost,
            (Losses{{"lock", 1}, {"hidden", 1}, {"200", 1}, {"attached", 1}, {"favourites", 1}}));
  EXPECT_EQ(exported("json").exported.lost, Losses{});
  EXPECT_EQ(exported("m3u").exported.leftOut, 3U);
  EXPECT_EQ(exported("m3u").error(), "m3u can hold none of the services");
  EXPECT_EQ(exported("m3u").losses(), "m3u can't hold all: 3 services left out");
}

TEST_F(Export, SaysThatThereAreNoServices) {
  import(vdrList);
  tv->removeServices();
  for (const char* format : {"json", "m3u"}) EXPECT_EQ(exported(format).error(), "there are no services to export");
}

TEST_F(Export, InAnotherFormatKeepsWhatBothKnow) {
  import(
      "News:578000000:INVERSION_OFF:BANDWIDTH_8_MHZ:a:b:QAM_64:c:d:e:620:621\n"
      "Sat:10773:h:1:22000:2304:2306:6301\n");
  EXPECT_EQ(content("vdr"),
            "News:578000:B8M64:T:0:620:621@0:0:0:0\nSat:10773:HM2S0:S0.1E:22000:2304:2306@0:0:0:6301\n");
  EXPECT_EQ(exported("vdr").exported.lost, (Losses{{"what only zap says", 2}}));
  EXPECT_EQ(exported("dvbv5").exported.lost, (Losses{{"what only zap says", 2}}));
  const auto before = services();
  import(content("vdr"));
  for (const auto& [key, service] : services()) {
    Service expected = before.at(key);
    expected.listEntry = service.listEntry;
    EXPECT_EQ(service, expected);
  }
}

TEST_F(Export, OfNamesThatAFormatMarksReadsAsTheyWere) {
  for (const char16_t* name :
       {u"#1", u"a,b", u"a:b", u"@x", u":x", u"[a]", u"a]b", u"\"", u"CHANNELS", u"a = b", u"Ö"}) {
    import(vdrList);
    set(TCServiceData::CHANNEL_NAME, name, 2);
    set(TCServiceData::MAJOR, std::uint64_t{2}, 2);
    for (const char* format : {"vdr", "dvbv5"}) EXPECT_FALSE(exported(format).exported.lost.contains("name"));
    import(content("vdr"));
    EXPECT_EQ(tv->services().read(2)->texts.at(TCServiceData::CHANNEL_NAME), name);
  }
  import(vdrList);
  set(TCServiceData::CHANNEL_NAME, u"a;b|c");
  EXPECT_EQ(exported("vdr").exported.lost, (Losses{{"name", 1}}));
}

TEST_F(Export, OfEachRealListIsImportedAsItWas) {
  const char* const folder = std::getenv("EMP_WINDOW_LISTS");
  if (folder == nullptr || *folder == '\0')
    GTEST_SKIP() << "skipped: EMP_WINDOW_LISTS does not name a folder of real channel lists";
  for (const auto& file : std::filesystem::directory_iterator(folder)) {
    SCOPED_TRACE(file.path().string());
    std::ifstream stream(file.path(), std::ios::binary);
    const std::string list{std::istreambuf_iterator<char>(stream), {}};
    holds(list);
    import(list);
    const import::Format* own = import::recognise(list);
    ASSERT_NE(own, nullptr);
    EXPECT_EQ(exported(import::isWritten(*own) ? std::string(own->name).c_str() : "json").losses(), "");
  }
}

/// A list with random values, in a random format.
std::string randomList(std::mt19937& random) {
  const auto below = [&](unsigned limit) { return std::uniform_int_distribution<unsigned>(0, limit - 1)(random); };
  const auto text = [&](unsigned limit) { return std::to_string(below(limit)); };
  const auto oneOf = [&](std::initializer_list<const char*> words) {
    return std::string(words.begin()[below(static_cast<unsigned>(words.size()))]);
  };
  const unsigned kind = below(4);
  std::string list;
  for (unsigned count = below(20) + 1; count > 0; --count) {
    const std::string name = oneOf({"News", "a,b;C", "Größe", "#x", " x ", "A|B", "[y]", "\xC4tv", "x=1"}) + text(9);
    if (kind == 0) {
      if (below(4) == 0) list += ":" + oneOf({"", "@5 ", "@900 "}) + oneOf({"", "G", "H|I", "@J"}) + "\n";
      list +=
          name +
          oneOf(
              {":12187:HC34M2S0:S19.2E:27500:", ":578:B8M64:T:0:", ":306:M256:C:6900:", ":57:M10:A:0:", ":1:x:P:0:"}) +
          text(3) + oneOf({"", "=27", "+5=2"}) + ":" + oneOf({"0", "10", "10=deu+eng,11=x@4;12=eng,13@122", ";9"}) +
          ":" + oneOf({"0", "5", "5;6=deu,7"}) + ":" + oneOf({"0", "1843,98C"}) + ":" + text(4) +
          oneOf({"", ":1", ":0:0", ":9:8:0"}) + "\n";
    } else if (kind == 1) {
      list += "[" + name + "]\n" + oneOf({"", "CHANNEL = other\n", "\tCODE_RATE_HP = 2/3\n# note\n"}) +
              "SERVICE_ID = " + text(4) + "\nDELIVERY_SYSTEM = " +
              oneOf({"DVBT\nFREQUENCY = 474000000\nBANDWIDTH_HZ = 7000000",
                     "DVBS\nFREQUENCY = 12187499\nSYMBOL_RATE = 27500001",
                     "ATSC\nFREQUENCY=57000000\nMODULATION=QAM_64", "DVBC2\nFREQUENCY = 306000400"}) +
              "\n" + oneOf({"", "MODULATION = 256QAM\n"}) +
              oneOf({"", "AUDIO_PID = 5 6\n", "PID_81 = 5,6\nAUDIO_PID = 7\nAC3=9\n"}) +
              oneOf({"", "VIDEO_PID = 4 # main\n", "PID_1b = 7\n"}) +
              oneOf({"", "NETWORK_ID = 4\n", "TRANSPORT_ID = 3\n"});
    } else if (kind == 2) {
      list += oneOf({"", "#EXTGRP:Grp\n"}) + "#EXTINF:-1" +
              oneOf({"", " tvg-id=\"a\"", " TVG-CHNO=\"40\" radio=\"true\""}) + oneOf({"", " group-title=\"x,y\""}) +
              "," + name + "\nhttp://" + text(4) + "\n";
    } else {
      list += oneOf({"N", "Größe", "a,b"}) +
              oneOf({":10773:h:0:22000:", ":57000000:8VSB:", ":306000000:INVERSION_AUTO:6900000:FEC_NONE:QAM_64:"}) +
              text(5) + ":" + oneOf({"0", "7", "7,8"}) + ":" + text(4) + "\n";
    }
  }
  return list;
}

TEST_F(Export, OfRandomListsIsImportedAsItWas) {
  for (const unsigned seed : {20240229U, std::random_device{}()}) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    for (int round = 0; round < 30 && !HasFailure(); ++round) {
      const std::string list = randomList(random);
      SCOPED_TRACE(list);
      if (import::recognise(list) == nullptr) {  // it consists of comments
        EXPECT_TRUE(list.starts_with('#'));
        continue;
      }
      holds(list);
      import(list);
      const import::Format* own = import::recognise(list);
      if (own == nullptr || !import::isWritten(*own)) continue;
      EXPECT_EQ(exported(std::string(own->name).c_str()).losses(), "");
    }
  }
}

}  // namespace
}  // namespace virtualtv::test
