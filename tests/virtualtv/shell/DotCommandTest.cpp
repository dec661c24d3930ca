// SPDX-License-Identifier: MIT
#include "shell/DotCommands.h"

#include <algorithm>

#include "seam/Seam.h"
#include "services/ServiceStore.h"
#include "set/Knobs.h"
#include "shell/Files.h"
#include "virtualtv/shell/Support.h"

namespace virtualtv::shell {
namespace {

using DotCommandTest = SessionTest;

// The calls made when an engine is opened and closed.
const std::string opening = "call vconf_get_int(key=\"opened\") value=0 -> -1";
const std::string closing = "call vconf_get_int(key=\"closed\") value=0 -> -1";

bool contains(const Lines& lines, const std::string& wanted) {
  return std::find(lines.begin(), lines.end(), wanted) != lines.end();
}

TEST_F(DotCommandTest, TraceShowsTheCallsBehindTheReply) {
  run("int 1");
  EXPECT_EQ(run(".trace on"), "");
  EXPECT_EQ(lines("read none"), (Lines{"int -7", "call vconf_get_int(key=\"none\") value=-7 -> -1"}));
  EXPECT_EQ(lines("write a 5"), (Lines{"int 0", "call vconf_set_int(key=\"a\", value=5) -> 0"}));
  EXPECT_EQ(lines("int 1"), Lines{"int 1"});
  EXPECT_EQ(run(".trace off"), "");
  EXPECT_EQ(lines("read a"), Lines{"int 5"});
}

TEST_F(DotCommandTest, TraceShowsTheCallsOfOpeningAnEngine) {
  run(".trace on");
  EXPECT_EQ(lines("int 1"), (Lines{"int 1", opening}));
  EXPECT_EQ(lines(".engine other"), Lines{opening});
  EXPECT_EQ(lines(".engine main"), Lines{});
}

TEST_F(DotCommandTest, TraceShowsTheCallsOfClosingAnEngine) {
  run(".trace on");
  run("int 1");
  EXPECT_EQ(lines(".reopen"), (Lines{closing, opening}));
  EXPECT_EQ(lines(".close"), Lines{closing});
}

TEST_F(DotCommandTest, TraceShowsTheCallsOfAllEnginesThatARestartCloses) {
  run(".trace on");
  run("int 1");
  run(".engine other");
  EXPECT_EQ(lines(".restart"), (Lines{closing, closing}));
  EXPECT_EQ(lines(".restart"), Lines{}) << "none was open, and what was shown is not shown again";
  EXPECT_EQ(lines("int 1"), (Lines{"int 1", opening})) << "the trace stays on";
}

TEST_F(DotCommandTest, TraceAndLogWantOnOrOff) {
  EXPECT_EQ(run(".trace"), "error: usage: .trace on|off");
  EXPECT_EQ(run(".trace yes"), "error: usage: .trace on|off");
  EXPECT_EQ(run(".log"), "error: usage: .log on|off [LEVEL]");
  for (const std::string level : {"x", "-1", "2147483648", "''"}) {
    const std::string word = level == "''" ? "" : level;
    EXPECT_EQ(run(".log on " + level), "error: a number from 0 to 2147483647 is wanted, not '" + word + "'");
  }
  EXPECT_EQ(run(".log off 3"), "error: usage: .log on|off [LEVEL]");
}

TEST_F(DotCommandTest, LogShowsMaskedMessagesWithTheirLevelOnOneLine) {
  EXPECT_EQ(lines("log 3 before"), Lines{"empty"});
  run(".log on");
  EXPECT_EQ(lines("log 3 tuned"), (Lines{"empty", "log 3 tuned at *\\x0A"}));
  EXPECT_EQ(lines("log 0 'a\\b \\x'"), (Lines{"empty", "log 0 a\\b \\x5Cx at *\\x0A"}));
  run(".log off");
  EXPECT_EQ(lines("log 0 after"), Lines{"empty"});
}

TEST_F(DotCommandTest, LogCanBeLimitedToALevel) {
  run(".log on 0");
  EXPECT_EQ(lines("log 3 x"), Lines{"empty"});
  EXPECT_EQ(lines("log 0 x").size(), 2U);
}

TEST_F(DotCommandTest, CallsStandBeforeMessages) {
  run("int 1");
  run(".log on");
  run(".trace on");
  const Lines printed = lines("read none");
  EXPECT_EQ(printed.size(), 2U);
  EXPECT_EQ(lines("log 0 x"), (Lines{"empty", "log 0 x at *\\x0A"}));
}

TEST_F(DotCommandTest, LatencyMovesTheClockOfTheSet) {
  run("int 1");
  run(".set latency.vconf_get_int 250");
  run("read a");
  run("read a");
  EXPECT_EQ(run(".get clock"), "clock = 500");
  EXPECT_EQ(run(".get latency.vconf_get_int"), "latency.vconf_get_int = 250");
}

TEST_F(DotCommandTest, WhyTellsWhatTheLastCommandDid) {
  EXPECT_EQ(run(".why"), "error: no command has run yet");
  run("int 1");
  run("write a 5");
  EXPECT_EQ(lines(".why"), (Lines{"command main 2: write a 5", "call vconf_set_int(key=\"a\", value=5) -> 0",
                                  "key a unset -> int 5"}));
  run(".get region");
  run("write a 6");
  EXPECT_TRUE(contains(lines(".why"), "key a int 5 -> int 6"));
  run("log 3 x");
  EXPECT_EQ(lines(".why"), (Lines{"command main 4: log 3 x", "log 3 x at *\\x0A"}));
}

TEST_F(DotCommandTest, WhyTellsOfTheLastCommandThatRan) {
  run("write a 5");
  EXPECT_TRUE(run("write 1 2 3 4 5").starts_with("error: "));
  EXPECT_EQ(lines(".why").front(), "command main 1: write a 5");
  EXPECT_TRUE(run("+").starts_with("error: "));
  EXPECT_EQ(lines(".why").front(), "command main 1: write a 5");
  run("+ Report 1");
  EXPECT_EQ(lines(".why").front(), "command main 2: + Report 1");
}

TEST_F(DotCommandTest, WhyTellsOfAFailedCommandToo) {
  run("int 1");
  run(".fault vconf_set_int result=throw");
  run("write a 5");
  EXPECT_EQ(lines(".why"),
            (Lines{"command main 2: write a 5", "call vconf_set_int(key=\"a\", value=5) -> throws [fault]"}));
}

TEST_F(DotCommandTest, WhyTellsOfTheEngineThatRanLastAndNamesIt) {
  run(".engine other");
  run("int 1");
  run(".engine main");
  EXPECT_EQ(lines(".why").front(), "command other 1: int 1");
  run("int 2");
  run(".engine other");
  EXPECT_EQ(lines(".why").front(), "command main 1: int 2");
}

TEST_F(DotCommandTest, GetAndSetReachTheKnobs) {
  EXPECT_EQ(run(".set country 7"), "");
  EXPECT_EQ(run(".get country"), "country = 7");
  EXPECT_EQ(tv().state().country, 7);
  EXPECT_TRUE(run(".set country seven").starts_with("error: "));
  EXPECT_TRUE(run(".set nosuch 1").starts_with("error: "));
  EXPECT_TRUE(run(".get nosuch").starts_with("error: "));
  EXPECT_EQ(run(".set country"), "error: usage: .set NAME VALUE");
  EXPECT_EQ(run(".get country 1"), "error: usage: .get [NAME]");
}

TEST_F(DotCommandTest, GetAloneListsTheKnobsWithTheirValues) {
  const Lines listed = lines(".get");
  EXPECT_EQ(listed.size(), knobNames(tv()).size());
  EXPECT_TRUE(contains(listed, "main.source = " + getKnob(tv(), "main.source")));
}

TEST_F(DotCommandTest, GetOfAGroupPrintsEachKnobOfIt) {
  for (const char* group : {"main", "pip", "isp", "start", "input", "input.13", "latency"}) {
    const Lines listed = lines(std::string(".get ") + group);
    EXPECT_GE(listed.size(), 2U) << group;
    for (const std::string& line : listed) {
      EXPECT_TRUE(line.starts_with(std::string(group) + ".")) << line;
      EXPECT_EQ(run(".get " + line.substr(0, line.find(" = "))), line);
    }
  }
  EXPECT_EQ(lines(".get input.13").size(), 3U);
  EXPECT_EQ(lines(".get latency").size(), seam::operations.size());
  for (const char* none : {"mai", "main.", "service", "service.", "nosuch", ""}) {
    EXPECT_TRUE(run(std::string(".get '") + none + "'").starts_with("error: there is no knob '")) << none;
  }
}

TEST_F(DotCommandTest, GetOfAServicePrintsItsFieldsAndLists) {
  test::write(folder / "list", smallList);
  run(".import list");
  run(".set service.#1.name '\"O\\u0001ne\"'");
  run(".set service.#1.200 -7");
  run(".set service.#1.minor unset");
  run(".set service.#1.favourites 3=1");
  const Lines listed = lines(".get service.#1");
  for (const char* line :
       {"service.#1.type = 9", "service.#1.name = \"O\\u0001ne\"", "service.#1.200 = -7", "service.#1.major = 1",
        "service.#1.audio = 102:eng:mpeg:0:0", "service.#1.subtitles = none", "service.#1.favourites = 3=1"}) {
    EXPECT_TRUE(contains(listed, line)) << line << "\n" << run(".get service.#1");
  }
  EXPECT_EQ(run(".get service.#1").find("minor"), std::string::npos) << "which is unset";
  const std::string id = run(".get service.#1.id").substr(std::string("service.#1.id = ").size());
  EXPECT_EQ(lines(".get service." + id).size(), listed.size());
  EXPECT_EQ(run(".get service.#99"), "error: there is no service #99");
}

TEST_F(DotCommandTest, WhatGetPrintsOfAServiceCanBeSetAgain) {
  test::write(folder / "list", smallList);
  run(".import list");
  const auto before = tv().services().read(1);
  Lines settings;
  for (const std::string& line : lines(".get service.#1")) {
    const std::size_t equals = line.find(" = ");
    settings.push_back(".set " + line.substr(0, equals) + " '" + line.substr(equals + 3) + "'");
  }
  EXPECT_GE(settings.size(), before->numbers.size() + before->texts.size() + 3);
  for (const std::string& setting : settings) EXPECT_EQ(run(setting), "") << setting;
  EXPECT_EQ(tv().services().read(1), before);
}

TEST_F(DotCommandTest, SetTakesNamesWithOddUnits) {
  run(".set service.#1.name '\"a\\uD800\\u0001b\"'");
  EXPECT_EQ(run(".get service.#1.name"), "service.#1.name = \"a\\uD800\\u0001b\"");
}

TEST_F(DotCommandTest, SetRefusesATextThatStartsWithAQuoteAndIsNotQuoted) {
  const std::string before = run(".get service.#1.name");
  for (const std::string bad : {"\"abc", "\"", "\"\\uZZZZ\"", "\"abc\"def", "\"abc\\\"", "\"\\u12\""}) {
    EXPECT_EQ(run(".set service.#1.name '" + bad + "'"),
              "error: field 16 (CHANNEL_NAME) takes a text between double quotes, not '" + bad + "'");
    EXPECT_TRUE(
        run(".set service.#1.201 '" + bad + "'").ends_with(" or a text between double quotes, not '" + bad + "'"));
  }
  EXPECT_EQ(run(".get service.#1.name"), before);
  EXPECT_EQ(run(".set service.#1.name 'a\"b\\u'"), "");
  EXPECT_EQ(run(".get service.#1.name"), "service.#1.name = \"a\\\"b\\\\u\"");
}

TEST_F(DotCommandTest, SetSaysOfAGroupThatItIsOne) {
  for (const std::string group : {"main", "latency", "input", "input.13", "service.#1"}) {
    EXPECT_EQ(run(".set " + group + " 5"),
              "error: '" + group + "' is a group of knobs; '.get " + group + "' prints them");
  }
  EXPECT_EQ(run(".set service.#999 5"), "error: there is no service #999");
  EXPECT_EQ(run(".set mai 5"), "error: there is no knob 'mai'; '.help knobs' lists them");
}

TEST_F(DotCommandTest, SetTellsTheFormOfATvModeAndTheNumbersOfFields) {
  for (const std::string mode : {"1,2,3", "1", "1,2,", ",,"}) {
    EXPECT_EQ(run(".set main.mode " + mode), "error: '" + mode + "': ANTENNA,SERVICE is wanted");
  }
  for (const std::string field : {"4294967295", "2147483648", "-1", "99999999999999999999"}) {
    const std::string error = "error: a field has a number from 0 to 2147483647, not '" + field + "'";
    EXPECT_EQ(run(".set service.#1." + field + " 4"), error);
    EXPECT_EQ(run(".get service.#1." + field), error);
  }
  EXPECT_EQ(run(".set service.#1.2147483647 4"), "");
  EXPECT_EQ(run(".get service.#1.-"), "error: there is no field '-'");
}

TEST_F(DotCommandTest, AnEmptyNameOfAFileIsRefusedWithWhatIsWanted) {
  for (const char* command : {".snapshot ''", ".restore ''", ".source ''"}) {
    EXPECT_EQ(run(command), "error: a file is wanted, not an empty text") << command;
  }
  EXPECT_EQ(run(".import ''"), "error: FILE: a file is wanted, not an empty text");
  EXPECT_EQ(run(".import list --format="), "error: --format: the name of a format is wanted, not an empty text");
}

TEST_F(DotCommandTest, ABackslashBetweenQuotesIsWrittenAsSetTakesIt) {
  const std::string name = "\"a\\\\x41\\u0001\"";
  run(".set service.#1.name '" + name + "'");
  EXPECT_EQ(run(".get service.#1.name"), "service.#1.name = " + name);
  run("int 1");
  run(".trace on");
  EXPECT_EQ(lines("read 'a\\x41'").back(), "call vconf_get_int(key=\"a\\\\x41\") value=-7 -> -1");
}

TEST_F(DotCommandTest, SetTellsTheNumberThatAFieldCantHoldAsItWasTyped) {
  for (const std::string number : {"18446744073709551615", "-1", "65536", "-9223372036854775808"}) {
    EXPECT_EQ(run(".set service.#1.ptc " + number),
              "error: field 2 (PTC) takes a number from 0 to 65535, not '" + number + "'");
  }
  EXPECT_EQ(run(".set service.#1.frequency 4294967295"),
            "error: field 4 (FREQUENCY) takes a number from -2147483648 to 2147483647, not '4294967295'");
  EXPECT_EQ(run(".set service.#1.id -1"),
            "error: field 12 (SERVICE_ID) takes a number from 1 to 18446744073709551615 (0 stands for no service), "
            "not '-1'");
  EXPECT_EQ(run(".set service.#1.ptc x"), "error: field 2 (PTC) takes a number from 0 to 65535, not 'x'");
  EXPECT_EQ(run(".set service.#1.ptc 65535"), "");
  EXPECT_EQ(run(".get service.#1.ptc"), "service.#1.ptc = 65535");
}

TEST_F(DotCommandTest, NoServiceGetsTheIdThatStandsForNone) {
  const std::string before = run(".get service.#1.id");
  EXPECT_EQ(run(".set service.#1.id 0"),
            "error: field 12 (SERVICE_ID) takes a number from 1 to 18446744073709551615 (0 stands for no service), "
            "not '0'");
  EXPECT_EQ(run(".get service.#1.id"), before);
  EXPECT_EQ(run(".get service.0"), "error: there is no service 0");
  EXPECT_EQ(run(".set main.service 0"), "");
  EXPECT_EQ(run(".get main.service"), "main.service = 0");
  EXPECT_EQ(tv().state()[WindowId::main].service, 0);
}

TEST_F(DotCommandTest, VconfReadsWritesRemovesAndListsKeys) {
  EXPECT_EQ(run(".vconf get a"), "unset");
  EXPECT_EQ(run(".vconf set a int -5"), "");
  EXPECT_EQ(run(".vconf get a"), "int -5");
  EXPECT_EQ(run("read a"), "int -5");
  EXPECT_EQ(run(".vconf set a str 'x \"y'"), "");
  EXPECT_EQ(run(".vconf get a"), "str \"x \\\"y\"");
  EXPECT_TRUE(contains(lines(".vconf"), "key a str \"x \\\"y\""));
  EXPECT_EQ(run(".vconf unset a"), "");
  EXPECT_EQ(run(".vconf get a"), "unset");
  EXPECT_EQ(run(".vconf unset a"), "error: the key a is not set");
}

TEST_F(DotCommandTest, VconfIsUnseenByFaultsAndTrace) {
  run("int 1");
  run(".trace on");
  run(".fault vconf_set_int always result=-1");
  EXPECT_EQ(run(".vconf set a int 5"), "");
  EXPECT_EQ(run(".vconf get a"), "int 5");
}

TEST_F(DotCommandTest, VconfRefusesWhatItDoesNotKnow) {
  for (const char* bad : {".vconf get", ".vconf set a", ".vconf set a int", ".vconf nothing a", ".vconf get a b"}) {
    EXPECT_TRUE(run(bad).starts_with("error: usage: .vconf")) << bad;
  }
  for (const std::string number : {"x", "9999999999", "2147483648", "1.5"}) {
    EXPECT_EQ(run(".vconf set a int " + number),
              "error: a number from -2147483648 to 2147483647 is wanted, not '" + number + "'");
  }
  EXPECT_EQ(run(".vconf set a bool 1"), "error: 'bool': int or str is wanted");
  EXPECT_EQ(run(".vconf get a"), "unset");
}

TEST_F(DotCommandTest, ImportReplacesTheServicesAndReportsWhatItCouldNotRead) {
  test::write(folder / "list", smallList);
  const Lines printed = lines(".import list");
  ASSERT_EQ(printed.size(), 2U);
  EXPECT_TRUE(printed[0].starts_with("list:2: ")) << printed[0];
  EXPECT_EQ(printed[1], "imported 2 services: 2 added, 0 changed, 81 gone; 1 line could not be read");
  EXPECT_EQ(run(".get services"), "services = 2");
}

TEST_F(DotCommandTest, ImportCanAddAndKeepsWhatIsOnScreen) {
  const std::size_t before = std::stoul(getKnob(tv(), "services"));
  const std::string shown = getKnob(tv(), "main.service");
  test::write(folder / "list", smallList);
  EXPECT_EQ(lines(".import --add list").back(),
            "imported 2 services: 2 added, 0 changed, 0 gone; 1 line could not be read");
  EXPECT_EQ(getKnob(tv(), "services"), std::to_string(before + 2));
  EXPECT_EQ(getKnob(tv(), "main.service"), shown);
}

TEST_F(DotCommandTest, ImportOfTheSameListKeepsWhatTheUserDid) {
  test::write(folder / "list", smallList);
  run(".import list");
  run(".set main.service #2");
  run(".set service.#2.favourites 3=1");
  run(".set service.#1.lock 1");
  for (const char* again : {".import list", ".import list --add"}) {
    EXPECT_EQ(lines(again).back(), "imported 2 services: 0 added, 0 changed, 0 gone; 1 line could not be read");
    EXPECT_EQ(getKnob(tv(), "service.#2.favourites"), "3=1");
    EXPECT_EQ(getKnob(tv(), "service.#1.lock"), "1");
    EXPECT_EQ(getKnob(tv(), "main.service"), getKnob(tv(), "service.#2.id"));
  }
}

TEST_F(DotCommandTest, ImportTakesTheOptionsOfTheProgram) {
  test::write(folder / "list", "\xA9l\xE1gr:474000:B8C23D12G4M64T8Y0:T:27500:101:102:0:0:1:1:1:0\n");
  run(".import list --encoding ISO-8859-2 --format vdr");
  EXPECT_EQ(getKnob(tv(), "service.#1.name"), "\"Šlágr\"");
  run(".import --format=vdr --encoding=latin1 list");
  EXPECT_EQ(getKnob(tv(), "service.#1.name"), "\"©lágr\"");
  EXPECT_EQ(run(".import list --encoding none"),
            "error: --encoding: there is no encoding 'none'; 'iconv -l' lists those that there are");
  EXPECT_EQ(run(".import list --encoding UTF-16"),
            "error: --encoding: a list can't be in the encoding 'UTF-16', in which not every ASCII character is the "
            "byte itself");
  for (const char* empty : {".import --encoding= list", ".import list --encoding=", ".import list --encoding ''"}) {
    EXPECT_EQ(run(empty), "error: --encoding: the name of an encoding is wanted, not an empty text") << empty;
  }
  EXPECT_TRUE(run(".import --format= list").starts_with("error: --format: ")) << "and list is not its value";
  EXPECT_EQ(run(".import list --format other"), "error: --format: other not in {vdr,dvbv5,zap,lamedb,m3u,json}");
  EXPECT_EQ(lines(".import list --format dvbv5").back(), "error: list: no service in it");
}

TEST_F(DotCommandTest, ExportWritesAListAndTellsWhatItCantHold) {
  const std::string list = "One;Net:474000:B8C23D12G4M64T8Y0:T:27500:101:102:0:0:1:1:1:0\n";
  test::write(folder / "list", list);
  run(".import list");
  EXPECT_EQ(lines(".export out --format vdr"), (Lines{"exported 1 service"}));
  EXPECT_EQ(readFile(folder / "out"), list);
  run(".service #1 lock on");
  EXPECT_EQ(lines(".export out --format=vdr"), (Lines{"exported 1 service", "vdr can't hold all: lock of 1 service"}));
  EXPECT_EQ(lines(".export out"), (Lines{"exported 1 service"}));
  EXPECT_EQ(run(".import out"), "imported 1 service: 0 added, 0 changed, 0 gone; 0 lines could not be read");
  EXPECT_EQ(run(".export out --format m3u"), "error: m3u can hold none of the services");
  EXPECT_EQ(run(".export out --format zap"), "error: --format: zap not in {vdr,dvbv5,m3u,json}");
  EXPECT_EQ(run(".export"), "error: usage: .export FILE [--format NAME]");
}

TEST_F(DotCommandTest, ServiceEditsTheList) {
  run(".service #1 rename 'Mine: first'");
  EXPECT_EQ(getKnob(tv(), "service.#1.name"), "\"Mine: first\"");
  EXPECT_EQ(run(".service #1 paint"),
            "error: one of rename, renumber, move, hide, lock, remove is wanted, not 'paint'");
  EXPECT_TRUE(run(".service #1").starts_with("error: usage: .service ID "));
}

TEST_F(DotCommandTest, ImportReadsALamedbWithItsBouquetsFromADirectory) {
  test::write(
      folder / "lamedb",
      "eDVB services /4/\ntransponders\n00c00000:0440:0001\n\ts 11778000:27500000:1:2:192:2:0\n/\nend\nservices\n"
      "2b66:00c00000:0440:0001:1:0\nNews\np:\nxx\n\np:\nend\n");
  test::write(folder / "bouquets.tv",
              "#SERVICE 1:7:1:0:0:0:0:0:0:0:FROM BOUQUET \"userbouquet.a.tv\" ORDER BY bouquet\n");
  test::write(folder / "userbouquet.a.tv", "#NAME Mine\n#SERVICE 1:0:1:2B66:440:1:C00000:0:0:0:\n#SERVICE 1:0:x\n");
  EXPECT_EQ(lines(".import ."), (Lines{"./lamedb: userbouquet.a.tv, line 3: namespace \"\" is not a hexadecimal number",
                                       "./lamedb:11: service id \"xx\" is not a hexadecimal number",
                                       "imported 1 service: 1 added, 0 changed, 81 gone; 2 lines could not be read"}));
  EXPECT_EQ(tv().services().read(1)->group, "Mine");
  std::filesystem::create_directory(folder / "empty");
  EXPECT_EQ(run(".import empty"), "error: cannot read empty: it is a directory without a lamedb");
}

TEST_F(DotCommandTest, ImportOfWhatIsNoListIsAnErrorAndKeepsTheServices) {
  const std::string before = run(".get services");
  test::write(folder / "noise", "hello\nworld\n");
  EXPECT_EQ(run(".import noise"),
            "error: noise: not a channel list of a known format: VDR's channels.conf (vdr), libdvbv5 (dvbv5), "
            "zap file (zap), Enigma2's lamedb (lamedb), M3U (m3u), JSON (json)");
  EXPECT_TRUE(run(".import none").starts_with("error: cannot read "));
  const std::string usage = "error: usage: .import FILE [--add] [--format NAME] [--encoding NAME]";
  for (const char* bad : {".import", ".import a b", ".import a --all", ".import a --format", ".import --add"}) {
    EXPECT_EQ(run(bad), usage) << bad;
  }
  EXPECT_EQ(run(".get services"), before);
}

TEST_F(DotCommandTest, ImportThatBringsNothingIsAnErrorBehindWhatItPrintsAndKeepsTheServices) {
  const std::string before = run(".get services");
  test::write(folder / "list", "One:474000:B8C23D12G4M64T8Y0:T:27500:301:302:0:0:70000:1:1:0\n");
  EXPECT_EQ(lines(".import list"), (Lines{"list:1: service id \"70000\" is greater than 65535",
                                          "imported 0 services: 0 added, 0 changed, 0 gone; 1 line could not be read",
                                          "error: list: no service in it"}));
  EXPECT_EQ(session->takeRemarks().errors, Lines{"list: no service in it"});
  EXPECT_EQ(run(".get services"), before);
}

TEST_F(DotCommandTest, ImportEscapesItsErrorsOnce) {
  test::write(folder / "l\x01", "# no list\n");
  EXPECT_TRUE(lines(".import l\x01").back().starts_with("error: l\\x01: not a channel list of a known format"));
  test::write(folder / "l\x01", "One:474000:B8C23D12G4M64T8Y0:T:27500:301:302:0:0:70000:1:1:0\n");
  EXPECT_EQ(lines(".import l\x01").back(), "error: l\\x01: no service in it");
}

TEST_F(DotCommandTest, RestoreMakesTheSetWhatASnapshotSays) {
  run("write a 5");
  run(".set country 9");
  test::write(folder / "list", smallList);
  run(".import list");
  const Lines knobs = lines(".get");
  EXPECT_EQ(run(".snapshot s.json"), "");
  run(".reset");
  run("write a 6");
  run("write b 1");
  EXPECT_EQ(run(".restore s.json"), "");
  EXPECT_EQ(lines(".get"), knobs);
  EXPECT_EQ(run("read a"), "int 5");
  EXPECT_EQ(run("read b"), "int -7");
  EXPECT_EQ(run(".snapshot t.json"), "");
  EXPECT_EQ(test::contentOf(folder / "t.json"), test::contentOf(folder / "s.json"));
}

TEST_F(DotCommandTest, RestoreClosesTheEnginesAndEndsFaultsAsARestartDoes) {
  run(".snapshot s.json");
  run(".trace on");
  run("int 1");
  run(".fault vconf_set_int result=-1");
  EXPECT_EQ(lines(".restore s.json"), Lines{closing});
  EXPECT_EQ(findings(), Lines{"a fault was never hit: vconf_set_int times=1 result=-1"});
  EXPECT_EQ(run(".fault"), "no faults");
  EXPECT_EQ(run(".engine"), "no engine is open");
}

TEST_F(DotCommandTest, RestoreOfWhatIsNoSnapshotIsAnErrorAndKeepsTheSetAndItsEngines) {
  run("write a 5");
  run(".snapshot before");
  test::write(folder / "noise", "hello\n");
  test::write(folder / "new", "{\"version\": 2}");
  EXPECT_TRUE(run(".restore noise").starts_with("error: noise: not a snapshot of a set: line 1, column 1: "));
  EXPECT_EQ(run(".restore new"), "error: new: version: this program reads version 1, not 2");
  EXPECT_TRUE(run(".restore none").starts_with("error: cannot read "));
  EXPECT_EQ(run(".restore"), "error: usage: .restore FILE");
  EXPECT_EQ(run(".snapshot a b"), "error: usage: .snapshot FILE");
  EXPECT_TRUE(run(".snapshot none/s").starts_with("error: cannot write "));
  EXPECT_EQ(run("count"), "int 2");
  run(".snapshot after");
  EXPECT_EQ(test::contentOf(folder / "after"), test::contentOf(folder / "before"));
}

TEST_F(DotCommandTest, ServicesShowsATable) {
  test::write(folder / "list", smallList);
  run(".import list");
  run(".set service.#2.lock 1");
  run(".set service.#2.hidden 1");
  const Lines printed = lines(".services");
  ASSERT_EQ(printed.size(), 4U);
  EXPECT_TRUE(printed[0].starts_with("  KEY  ANTENNA      NUMBER  ID"));
  EXPECT_NE(printed[1].find("#1   terrestrial  1"), std::string::npos) << printed[1];
  EXPECT_TRUE(printed[1].ends_with("  -              \"One\"")) << printed[1];
  EXPECT_TRUE(printed[2].ends_with("  locked,hidden  \"Two\"")) << printed[2];
  EXPECT_EQ(printed[3], "2 of 2 services");
}

TEST_F(DotCommandTest, ServicesCanBeLimitedByNumberOrName) {
  test::write(folder / "list", smallList);
  run(".import list");
  EXPECT_EQ(lines(".services 1").size(), 3U);
  EXPECT_EQ(lines(".services 1").back(), "1 of 2 services");
  EXPECT_TRUE(lines(".services tWO")[1].ends_with("\"Two\""));
  EXPECT_EQ(lines(".services tWO").back(), "1 of 2 services");
  EXPECT_EQ(lines(".services three"), Lines{"0 of 2 services"});
}

TEST_F(DotCommandTest, ServicesShowsWhatAServiceLacks) {
  test::write(folder / "list", smallList);
  run(".import list");
  for (const char* field : {"major", "minor", "antenna", "name", "lock"})
    run(".set service.#1." + std::string(field) + " unset");
  bool found = false;
  for (const std::string& line : lines(".services")) {
    found = found || (line.starts_with("  #1   -            -") && line.ends_with("-      \"\""));
  }
  EXPECT_TRUE(found) << run(".services");
}

TEST_F(DotCommandTest, RestartKeepsWhatASetKeepsAndClosesTheEngines) {
  run("write a 5");
  run(".set country 9");
  run("count");
  EXPECT_EQ(run(".restart"), "");
  EXPECT_EQ(run("count"), "int 1");
  EXPECT_EQ(run("read a"), "int 5");
  EXPECT_EQ(run(".get country"), "country = 9");
}

TEST_F(DotCommandTest, RestartKeepsTheNameOfTheEngineInUseAndWhatAppSaid) {
  run(".app org.example.tv");
  run(".engine other");
  run(".app org.example.radio");
  run(".restart");
  EXPECT_EQ(run(".engine"), "no engine is open");
  EXPECT_EQ(run("app"), "ascii org.example.radio");
  EXPECT_EQ(run(".engine"), "engine other (in use)");
  run(".engine main");
  EXPECT_EQ(run("app"), "ascii org.example.tv");
}

TEST_F(DotCommandTest, RestartEndsFaultsAndLatenciesButNotTheTrace) {
  run(".trace on");
  run(".fault vconf_get_int always result=-1");
  run(".set latency.vconf_get_int 250");
  run(".restart");
  EXPECT_EQ(run(".fault"), "no faults");
  EXPECT_EQ(run(".get latency.vconf_get_int"), "latency.vconf_get_int = 0");
  EXPECT_EQ(lines("int 1").size(), 2U);
}

TEST_F(DotCommandTest, ResetGoesBackToTheFirstDay) {
  const Lines first = lines(".get");
  const Lines keys = lines(".vconf");
  run(".app org.example.tv");
  run("write a 5");
  run(".set country 9");
  run(".engine other");
  run(".trace on");
  run(".log on");
  run(".set latency.vconf_get_int 250");
  EXPECT_EQ(run(".reset"), "");
  EXPECT_EQ(lines(".get"), first);
  EXPECT_EQ(lines(".vconf"), keys);
  EXPECT_EQ(run(".why"), "error: no command has run yet");
  EXPECT_EQ(lines("count"), Lines{"int 1"});
  EXPECT_EQ(run("app"), "ascii");
  EXPECT_EQ(run(".engine"), "engine main (in use)");
}

TEST_F(DotCommandTest, ATableNamesEachCommandOnce) {
  for (const DotCommand& command : dotCommands()) {
    EXPECT_EQ(&dotCommand(std::string(command.name)), &command);
    EXPECT_FALSE(command.help.empty());
  }
}

}  // namespace
}  // namespace virtualtv::shell
