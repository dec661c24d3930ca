// SPDX-License-Identifier: MIT
// The report of an import: counts in words, problems, and errors.
#include "channels/ImportList.h"

#include <gtest/gtest.h>

#include "set/Knobs.h"
#include "virtualtv/shell/SmallList.h"

namespace virtualtv::test {
namespace {

using Lines = std::vector<std::string>;
using shell::smallList;

TEST(ImportReport, AListWithoutServicesIsAnErrorInAllFormats) {
  Storage storage;
  Tv tv(storage);
  const std::string before = getKnob(tv, "services");
  for (const import::Format& format : import::formats()) {
    const bool hasComments = format.name != "lamedb" && format.name != "json";
    for (const char* content : {"", hasComments ? "# only\n\n# comments\n" : "\n \n"}) {
      const ImportReport report = importServices(tv, "l\n", content, {&format, ""});
      EXPECT_EQ(report.problemLines(), Lines{});
      EXPECT_EQ(report.error(), "l\n: no service in it");
      EXPECT_EQ(report.summary(), "imported 0 services: 0 added, 0 changed, 0 gone; 0 lines could not be read");
    }
  }
  EXPECT_EQ(getKnob(tv, "services"), before);
}

TEST(ImportReport, CountsInWordsThatFit) {
  Storage storage;
  Tv tv(storage);
  const ImportReport both = importServices(tv, "l", smallList, {});
  EXPECT_EQ(both.error(), "");
  EXPECT_EQ(both.summary(), "imported 2 services: 2 added, 0 changed, 81 gone; 1 line could not be read");
  EXPECT_EQ(both.imported, 2U);
  EXPECT_EQ(both.changes, (ServiceChanges{2, 0, 81}));
  const ImportReport none =
      importServices(tv, "l", "no channel\nno channel either\n", {import::formatNamed("vdr"), ""});
  EXPECT_EQ(none.error(), "l: no service in it");
  EXPECT_EQ(none.summary(), "imported 0 services: 0 added, 0 changed, 0 gone; 2 lines could not be read");
  EXPECT_EQ(none.problemLines().size(), 2U);
  EXPECT_EQ(getKnob(tv, "services"), "2");
}

TEST(ImportReport, EscapesNamesAndWhatItQuotesOnce) {
  Storage storage;
  Tv tv(storage);
  const ImportReport report = importServices(tv, "l\x01", "\x02\n", {import::formatNamed("vdr"), ""});
  EXPECT_EQ(report.problemLines(), Lines{"l\\x01:1: \"\\x02\" has 1 of the 13 fields of a service"});
}

TEST(ImportReport, ShowsAHundredProblemsAndCountsTheRest) {
  Storage storage;
  Tv tv(storage);
  std::string list = std::string(smallList) + ":@1 Taken\n";
  for (int line = 0; line < 98; ++line) list += "x\n";
  EXPECT_EQ(importServices(tv, "l", list, {}).problemLines().size(), 100U);
  const Lines one = importServices(tv, "l", list + "x\n", {}).problemLines();
  ASSERT_EQ(one.size(), 101U);
  EXPECT_EQ(one[1], "l:4: channel number \"1\" is less than 3; its services start at 3");
  EXPECT_EQ(one.back(), "l: 1 more problem");
  const ImportReport many = importServices(tv, "l\n", list + "x\nx\n", {});
  EXPECT_EQ(many.problemLines().back(), "l\\x0A: 2 more problems");
  EXPECT_TRUE(many.summary().ends_with("; 101 lines could not be read")) << "remarks are none of them";
}

}  // namespace
}  // namespace virtualtv::test
