#include <gtest/gtest.h>

#include "virtualtv/import/Lists.h"

namespace import_tests {
namespace {

using virtualtv::import::Format;
using virtualtv::import::formatNamed;
using virtualtv::import::recognise;

TEST(Format, HasANameEach) {
  EXPECT_EQ(virtualtv::import::name(Format::vdr), "vdr");
  EXPECT_EQ(virtualtv::import::name(Format::dvbv5), "dvbv5");
  EXPECT_EQ(formatNamed("vdr"), Format::vdr);
  EXPECT_EQ(formatNamed("dvbv5"), Format::dvbv5);
  EXPECT_EQ(formatNamed("VDR"), std::nullopt);
  EXPECT_EQ(formatNamed(""), std::nullopt);
}

TEST(Format, StandsInTheResult) {
  EXPECT_EQ(readVdr("").format, Format::vdr);
  EXPECT_EQ(readDvbv5("").format, Format::dvbv5);
}

TEST(Recognise, KnowsVdrByALineOfItsShape) {
  EXPECT_EQ(recognise(VdrLine{}.text()), Format::vdr);
  EXPECT_EQ(recognise("\xEF\xBB\xBF# list\r\n\r\n:Group\r\n" + VdrLine{}.text()), Format::vdr);
  EXPECT_EQ(recognise("broken\n" + terrestrial("578").text()), Format::vdr);
  EXPECT_EQ(recognise("News:12187:h:S19.2E:27500:163:104:105:0:12003"), Format::vdr);
}

TEST(Recognise, KnowsVdrThoughOtherFieldsAreWrong) {
  VdrLine line;
  line.service = "70000";
  line.parameters = "?";
  EXPECT_EQ(recognise(line.text()), Format::vdr);
}

TEST(Recognise, KnowsDvbv5ByASectionWithItsKeys) {
  EXPECT_EQ(recognise(section("News")), Format::dvbv5);
  EXPECT_EQ(recognise("# file\r\n\r\n[News]\r\n\tdelivery_system=DVBT\r\n"), Format::dvbv5);
  EXPECT_EQ(recognise("[A:12187:x]\nNEW = 1\nFREQUENCY = 1\n"), Format::dvbv5);
}

TEST(Recognise, KnowsNoneWithoutALineThatDecides) {
  EXPECT_EQ(recognise(""), std::nullopt);
  EXPECT_EQ(recognise("\xEF\xBB\xBF"), std::nullopt);
  EXPECT_EQ(recognise(":Group\n# comment\n"), std::nullopt);
  EXPECT_EQ(recognise("#" + VdrLine{}.text() + "#" + section("A")), std::nullopt);
  EXPECT_EQ(recognise("FREQUENCY = 474000000\n"), std::nullopt);
  EXPECT_EQ(recognise("[settings]\nname = value\n"), std::nullopt);
  EXPECT_EQ(recognise("root:x:0:0:root:/root:/bin/sh\n"), std::nullopt);
  EXPECT_EQ(recognise("a:1:2:3:4:5:6:7:8:9:10:11:12\n"), std::nullopt);
}

TEST(Recognise, DoesNotTakeOtherChannelListsForItsOwn) {
  EXPECT_EQ(recognise("News:578000000:INVERSION_OFF:BANDWIDTH_8_MHZ:FEC_2_3:FEC_NONE:QAM_64:TRANSMISSION_MODE_2K:"
                      "GUARD_INTERVAL_1_32:HIERARCHY_NONE:620:621:7\n"),
            std::nullopt);
  EXPECT_EQ(recognise("[1341]:11469:h:0:27500:521:649:4929\nNews:10773:h:0:22000:2304:2306:6301\n"), std::nullopt);
  EXPECT_EQ(recognise("News:306000000:INVERSION_AUTO:6900000:FEC_NONE:QAM_64:620:621:7\n"), std::nullopt);
  EXPECT_EQ(recognise("eDVB services /3/\ntransponders\n00320000:0002:0055\n\ts 12379000:27500000:0:3:50:2\n/\nend\n"
                      "services\n1b1d:00820000:0443:0001:1:0\nNews\np:Company,c:000200,c:010201\n"),
            std::nullopt);
}

}  // namespace
}  // namespace import_tests
