// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "virtualtv/broadcast/Broadcast.h"

namespace broadcast_tests {
namespace {

using virtualtv::ServiceKind;
using virtualtv::broadcast::FoundService;
using virtualtv::broadcast::Scan;

FoundService of(int type, const std::string& name = "News", const std::string& provider = "Coast") {
  return only(Stream().add(0x11, services(2, 3, described(1, type, provider, name))).filler(2).bytes);
}

TEST(FoundService, IsOfTheKindThatItsTypeTells) {
  for (const int type : {0x01, 0x11, 0x16, 0x19, 0x1F, 0x20}) EXPECT_EQ(of(type).kind, ServiceKind::television) << type;
  for (const int type : {0x02, 0x0A}) EXPECT_EQ(of(type).kind, ServiceKind::radio) << type;
  for (const int type : {0x03, 0x0C, 0x10}) EXPECT_EQ(of(type).kind, ServiceKind::data) << type;
  for (const int type : {0x00, 0x80, 0xFF}) EXPECT_EQ(of(type).kind, std::nullopt) << type;
}

TEST(FoundService, HasItsTextsInAnyCharacterTable) {
  EXPECT_EQ(of(1, "\x05\xC7slem").name, "Çslem");                           // ISO 8859-9
  EXPECT_EQ(of(1, std::string("\x10\x00\x02\xA3", 4) + "uk").name, "Łuk");  // ISO 8859-2
  EXPECT_EQ(of(1, std::string("\x11\x04\x1C\x00I", 5)).name, "МI");
  EXPECT_EQ(of(1, "\x15K\xC3\xB8").name, "Kø");
  EXPECT_EQ(of(1,
               "\xCE"
               "e\xCE"
               "e")
                .provider,
            "Coast");
  EXPECT_EQ(of(1,
               "\x86"
               "News\x87 24")
                .name,
            "News 24");
  EXPECT_EQ(of(1, "News",
               "\x01\xBF"
               "erez")
                .provider,
            "Пerez");
}

TEST(FoundService, OfAnotherStreamCountsWithoutTracks) {
  Stream stream = oneService();
  stream.add(0x11, services(7, 3, described(1, 2, "Hills", "Waves"), false));
  const Scan found = scan(stream.bytes);
  ASSERT_EQ(found.services.size(), 2U);
  EXPECT_EQ(found.services[0].name, "News");
  EXPECT_TRUE(found.services[0].isCarried);
  EXPECT_EQ(found.services[1].name, "Waves");
  EXPECT_FALSE(found.services[1].isCarried);
  EXPECT_TRUE(found.services[1].audio.empty());
  EXPECT_EQ(found.services[1].stream.stream, 7);
}

TEST(FoundService, OfAnotherNetworkWithTheSameIdsIsAnother) {
  Stream stream = oneService();
  stream.add(0x11, services(2, 1, described(1, 2, "Hills", "Waves"), false));
  const Scan found = scan(stream.bytes);
  ASSERT_EQ(found.services.size(), 2U);
  EXPECT_EQ(found.services[0].name, "News");
  EXPECT_EQ(found.services[0].stream.network, 3);
  EXPECT_EQ(found.services[1].name, "Waves");
}

TEST(FoundService, IsScrambledWhereItsDescriptionSaysSo) {
  const auto found = scan(Stream().add(0x11, services(2, 3, described(1, 1, "", "News", true))).filler(2).bytes);
  EXPECT_TRUE(found.services.at(0).isScrambled);
  EXPECT_EQ(found.services.at(0).provider, "");
}

TEST(FoundService, WithoutADescriptionHasWhatItsTablesTell) {
  const Blob bytes = Stream().add(0x00, programs(2, {{0, 0x10}, {7, 100}})).filler(2).bytes;
  EXPECT_EQ(document(scan(bytes)), R"({"packets":3,"problems":[],"services":[{"audio":[],"programNumber":7,)"
                                   R"("scrambled":false,"subtitles":[],"transportStreamId":2}]})");
}

TEST(FoundService, HasWhatIsOn) {
  // 1993-10-13 12:45:00, for an hour and a half: the usual example of a modified Julian date.
  const Blob when{0xC0, 0x79, 0x12, 0x45, 0x00, 0x01, 0x30, 0x00};
  const auto event = [&](const std::string& name, const std::string& words) {
    return number(77, 2) + when + loop(descriptor(0x4D, text("eng") + counted(name) + counted(words)));
  };
  Stream stream = oneService();
  stream.add(0x12, events(1, 2, 3, 0, event("Noon", "Weather")));
  stream.add(0x12, events(1, 2, 3, 1, event("Later", "")));
  const FoundService service = only(stream.bytes);
  ASSERT_TRUE(service.present && service.following);
  EXPECT_EQ(service.present->name, "Noon");
  EXPECT_EQ(service.present->text, "Weather");
  EXPECT_EQ(service.present->start, 750516300);  // date -u -d '1993-10-13 12:45' +%s
  EXPECT_EQ(service.present->duration, 5400);
  EXPECT_EQ(service.following->name, "Later");
}

TEST(FoundService, MayHaveAnEventWithoutATime) {
  Stream stream = oneService();
  stream.add(0x12, events(1, 2, 3, 0, number(77, 2) + Blob(8, 0xFF) + loop({})));
  stream.add(0x12, events(1, 2, 3, 1, {}));
  const FoundService service = only(stream.bytes);
  ASSERT_TRUE(service.present);
  EXPECT_EQ(service.present->start, std::nullopt);
  EXPECT_EQ(service.present->duration, std::nullopt);
  EXPECT_FALSE(service.following);
}

}  // namespace
}  // namespace broadcast_tests
