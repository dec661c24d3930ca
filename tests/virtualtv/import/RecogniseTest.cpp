// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "virtualtv/import/Lists.h"

namespace import_tests {
namespace {

using virtualtv::import::Format;
using virtualtv::import::formatNamed;
using virtualtv::import::formats;

TEST(Format, IsFoundByItsName) {
  std::string names;
  for (const Format& format : formats()) {
    EXPECT_EQ(formatNamed(format.name), &format);
    EXPECT_FALSE(format.title.empty());
    names += std::string(format.name) + ' ';
  }
  EXPECT_EQ(names, "vdr dvbv5 zap lamedb m3u json ");
  EXPECT_EQ(formatNamed("VDR"), nullptr);
  EXPECT_EQ(formatNamed(""), nullptr);
}

TEST(Recognise, KnowsVdrByALineOfItsShape) {
  EXPECT_EQ(recognised(VdrLine{}.text()), "vdr");
  EXPECT_EQ(recognised("\xEF\xBB\xBF# list\r\n\r\n:Group\r\n" + VdrLine{}.text()), "vdr");
  EXPECT_EQ(recognised("broken\n" + terrestrial("578").text()), "vdr");
  EXPECT_EQ(recognised("News:12187:h:S19.2E:27500:163:104:105:0:12003"), "vdr");
}

TEST(Recognise, KnowsVdrThoughOtherFieldsAreWrong) {
  VdrLine line;
  line.service = "70000";
  line.parameters = "?";
  EXPECT_EQ(recognised(line.text()), "vdr");
}

TEST(Recognise, KnowsDvbv5ByASectionWithItsKeys) {
  EXPECT_EQ(recognised(section("News")), "dvbv5");
  EXPECT_EQ(recognised("# file\r\n\r\n[News]\r\n\tdelivery_system=DVBT\r\n"), "dvbv5");
  EXPECT_EQ(recognised("[A:12187:x]\nNEW = 1\nFREQUENCY = 1\n"), "dvbv5");
}

TEST(Recognise, GoesByTheFirstLineThatDecides) {
  EXPECT_EQ(recognised(section("News") + VdrLine{}.text()), "dvbv5");
  EXPECT_EQ(recognised("[Head]\n" + VdrLine{}.text() + section("News")), "vdr");
  VdrLine both;
  both.name = "FREQUENCY=1";
  EXPECT_EQ(recognised("[Head]\n" + both.text()), "vdr");
}

TEST(Recognise, KnowsNoneWithoutALineThatDecides) {
  EXPECT_EQ(recognised(""), "");
  EXPECT_EQ(recognised("\xEF\xBB\xBF"), "");
  EXPECT_EQ(recognised(":Group\n# comment\n"), "");
  EXPECT_EQ(recognised("#" + VdrLine{}.text() + "#" + section("A")), "");
  EXPECT_EQ(recognised("FREQUENCY = 474000000\n"), "");
  EXPECT_EQ(recognised("[settings]\nname = value\n"), "");
  EXPECT_EQ(recognised("root:x:0:0:root:/root:/bin/sh\n"), "");
  EXPECT_EQ(recognised("a:1:2:3:4:5:6:7:8:9:10:11:12\n"), "");
}

TEST(Recognise, KnowsALamedbByItsHead) {
  EXPECT_EQ(recognised("eDVB services /3/\ntransponders\n00320000:0002:0055\n\ts 12379000:27500000:0:3:50:2\n/\nend\n"
                       "services\n1b1d:00820000:0443:0001:1:0\nNews\np:Company,c:000200,c:010201\n"),
            "lamedb");
  EXPECT_EQ(recognised("eDVB services /9/\r\n"), "lamedb");
}

TEST(Recognise, KnowsAZapFileByALineOfAnyAntenna) {
  EXPECT_EQ(recognised("News:578000000:INVERSION_OFF:BANDWIDTH_8_MHZ:FEC_2_3:FEC_NONE:QAM_64:TRANSMISSION_MODE_2K:"
                       "GUARD_INTERVAL_1_32:HIERARCHY_NONE:620:621:7\n"),
            "zap");
  EXPECT_EQ(recognised("# all\n[1341]:11469:h:0:27500:521:649:4929\nNews:10773:h:0:22000:2304:2306:6301\n"), "zap");
  EXPECT_EQ(recognised("News:306000000:INVERSION_AUTO:6900000:FEC_NONE:QAM_64:620:621:7\n"), "zap");
  EXPECT_EQ(recognised("News:473000000:8VSB:49:52:1\n"), "zap");
  EXPECT_EQ(recognised("News:306000000:INVERSION_AUTO:6900000\n"), "");
  EXPECT_EQ(recognised("News:x:8VSB:49:52:1\n"), "");
}

}  // namespace
}  // namespace import_tests
