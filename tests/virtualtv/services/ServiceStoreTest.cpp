// SPDX-License-Identifier: MIT
#include "services/ServiceStore.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "store/Transaction.h"
#include "virtualtv/services/Support.h"

namespace virtualtv::test {
namespace {

using Data = TCServiceData;
using Keys = std::vector<ServiceKey>;

constexpr std::uint64_t highBit = std::uint64_t{1} << 63;
constexpr std::uint64_t minusOne = ~std::uint64_t{0};

/// A service with every field, a few fields of unknown ids, tracks and favourites.
Service wholeService(std::uint64_t id) {
  Service service = serviceOf(id, 3, 1);
  for (const int field : {1, 2, 4, 6, 7, 15, 18, 22, 37, 41}) {
    service.numbers[field] = static_cast<std::uint64_t>(field) * 100;
  }
  service.numbers[HIDDEN] = 1;
  service.numbers[SERVICE_MODE] = 21;
  service.texts[Data::SERVICE_FIELD_110] = u"{\"a\": 1}";
  service.numbers[200] = minusOne;
  service.numbers[-5] = highBit;
  service.texts[201] = std::u16string(u"\0\xD800\xFFFF", 3);
  service.group = "Düsseldorf\n";
  service.audio = {{.pid = 101, .lang = 6645601, .decodeType = CODING_AC3, .audioMode = 2, .audioType = 3},
                   {.pid = 102, .lang = 0, .decodeType = 0, .audioMode = 0, .audioType = 0, .readable = false}};
  service.subtitles = {{.pid = 201, .lang = 6645601, .type = 1}, {.pid = 202, .readable = false}};
  service.favourites = {{0, true}, {1, false}, {255, true}};
  service.footage = Footage{"a/b.ts", 256, streamOfH264, id % 2 == 0};
  return service;
}

std::string refusalOf(const std::function<void()>& body) {
  try {
    body();
  } catch (const std::invalid_argument& error) {
    return error.what();
  }
  return "";
}

class Services : public testing::Test, public MemoryStore {
 public:
  std::vector<Service> all() {
    std::vector<Service> services;
    for (const ServiceKey key : store.keys()) services.push_back(store.read(key).value());
    return services;
  }

  int rowsIn(const std::string& table) {
    Statement statement(database, "SELECT count(*) FROM " + table, "count");
    Rows rows = statement.query();
    rows.next();
    return static_cast<int>(rows.integer(0));
  }
};

TEST_F(Services, AreNoneAtFirst) {
  EXPECT_EQ(store.size(), 0U);
  EXPECT_EQ(store.keys(), Keys());
  EXPECT_EQ(store.read(0), std::nullopt);
  EXPECT_EQ(store.read(1), std::nullopt);
  EXPECT_EQ(store.keyOf(7), std::nullopt);
}

TEST_F(Services, AreReadAsTheyWereAdded) {
  const ServiceKey key = store.add(wholeService(7));
  EXPECT_EQ(key, 1);
  EXPECT_EQ(store.read(key), wholeService(7));
}

TEST_F(Services, MayHaveNoFieldAtAll) {
  const ServiceKey key = store.add(Service());
  EXPECT_EQ(store.read(key), Service());
}

TEST_F(Services, TellAnEmptyTextFromNone) {
  Service service;
  service.texts[Data::CHANNEL_NAME] = u"";
  service.texts[201] = u"";
  EXPECT_EQ(store.read(store.add(service)), service);
}

TEST_F(Services, KeepAnyServiceId) {
  for (const std::uint64_t id : {std::uint64_t{0}, std::uint64_t{1}, highBit - 1, highBit, minusOne - 1, minusOne}) {
    const ServiceKey key = store.add(serviceOf(id, 1));
    EXPECT_EQ(store.keyOf(id), key) << id;
    EXPECT_EQ(store.read(key)->numbers.at(Data::SERVICE_ID), id);
  }
}

TEST_F(Services, KeepNamesOfAnyUnitsAndLength) {
  for (const std::u16string& name :
       {std::u16string(3, u'\0'), std::u16string(u"\xD800\xDC00\xDFFF"), std::u16string(70000, u'\x4E2D')}) {
    Service service;
    service.texts[Data::CHANNEL_NAME] = name;
    EXPECT_EQ(store.read(store.add(service)), service);
  }
}

TEST_F(Services, KeepNegativeNumbersWhateverTheirWidth) {
  Service service;
  service.numbers[Data::FREQUENCY] = 0xFFFFFFFF;
  service.numbers[Data::CHANNEL_TYPE] = minusOne;
  const Service kept = store.read(store.add(service)).value();
  EXPECT_EQ(kept.numbers.at(Data::FREQUENCY), minusOne);
  EXPECT_EQ(kept.numbers.at(Data::CHANNEL_TYPE), minusOne);
}

TEST_F(Services, RefuseWhatAFieldCantHold) {
  const ServiceKey key = store.add(serviceOf(7, 1));
  EXPECT_EQ(refusalOf([&] { store.set(key, Data::MAJOR, 65536); }), "field 13 (MAJOR) can't hold 65536");
  EXPECT_EQ(refusalOf([&] { store.set(key, Data::MAJOR, minusOne); }), "field 13 (MAJOR) can't hold -1");
  EXPECT_EQ(refusalOf([&] { store.set(key, Data::FREQUENCY, std::uint64_t{1} << 32); }),
            "field 4 (FREQUENCY) can't hold 4294967296");
  EXPECT_EQ(refusalOf([&] { store.set(key, Data::CHANNEL_NAME, 5); }),
            "field 16 (CHANNEL_NAME) takes a text, not a number");
  EXPECT_EQ(refusalOf([&] { store.set(key, HIDDEN, u"yes"); }),
            "field 1001 (HIDDEN) takes a number from -2147483648 to 2147483647, not a text");
  EXPECT_EQ(refusalOf([&] { store.set(key, FRAME_RATE, u"25"); }),
            "field 1005 (frame_rate) takes a number from -9223372036854775808 to 9223372036854775807, not a text");
  EXPECT_EQ(store.read(key), serviceOf(7, 1));
}

TEST_F(Services, RefuseAFieldThatIsBothNumberAndText) {
  Service service;
  service.numbers[200] = 1;
  service.texts[200] = u"one";
  EXPECT_EQ(refusalOf([&] { store.add(service); }), "field 200 can't hold two values");
  EXPECT_EQ(store.size(), 0U);
}

TEST_F(Services, AreListedByMajorThenMinorNumberThenKeyAbsentOnesLast) {
  Service noMinor = serviceOf(4, 1);
  noMinor.numbers.erase(Data::MINOR);
  Service noMajor = serviceOf(5, 1);
  noMajor.numbers.erase(Data::MAJOR);
  store.replaceAll({noMajor, noMinor, serviceOf(1, 65535, 65535), serviceOf(2, 1, 65535), serviceOf(3, 1, 2),
                    serviceOf(6, 1, 2), Service()});
  EXPECT_EQ(store.keys(), (Keys{5, 6, 4, 2, 3, 1, 7}));
}

TEST_F(Services, AreReplacedWithKeysFromOneOn) {
  store.replaceAll({wholeService(1), wholeService(2), wholeService(3)});
  store.replaceAll({serviceOf(8, 2), serviceOf(9, 1)});
  EXPECT_EQ(store.read(1), serviceOf(8, 2));
  EXPECT_EQ(store.read(2), serviceOf(9, 1));
  EXPECT_EQ(store.size(), 2U);
  for (const char* table : {"raw_field", "audio_track", "subtitle_track", "favourite", "list_entry", "recording"})
    EXPECT_EQ(rowsIn(table), 0);
}

TEST_F(Services, AreEachKeptWithWhatIsTheirsHoweverManyThereAre) {
  std::vector<Service> many;
  for (std::uint64_t id = 1; id <= 1200; ++id) {
    Service service = id % 3 == 0 ? Service() : wholeService(id);
    service.numbers[Data::MAJOR] = id;
    for (std::uint64_t track = 0; track < id % 7; ++track) service.audio.push_back({.pid = static_cast<int>(id)});
    if (id % 5 == 0) service.listEntry = "entry " + std::to_string(id);
    if (id % 4 == 0) service.subtitles.clear();
    many.push_back(service);
  }
  store.replaceAll(many);
  EXPECT_EQ(all(), many);
  store.renew(many);
  EXPECT_EQ(all(), many);
}

TEST_F(Services, AreRestoredWithTheirKeys) {
  store.replaceAll({serviceOf(1, 1), serviceOf(2, 2)});
  const std::map<ServiceKey, Service> wanted{{2, wholeService(20)}, {7, serviceOf(70, 1)}, {9, Service()}};
  store.restoreAll(wanted);
  EXPECT_EQ(store.all(), wanted);
  EXPECT_EQ(store.keys(), (Keys{7, 2, 9}));
  EXPECT_EQ(store.add(serviceOf(80, 1)), 10);
}

TEST_F(Services, AreNotRestoredWithKeysThatListOrderHasNoRoomFor) {
  store.replaceAll({serviceOf(1, 1)});
  const auto before = store.all();
  for (const ServiceKey key : {ServiceKey{-1}, ServiceKey{0}, ServiceStore::greatestKey + 1}) {
    EXPECT_EQ(refusalOf([&] {
                store.restoreAll({{5, serviceOf(2, 2)}, {key, serviceOf(3, 3)}});
              }),
              "no service can have the key " + std::to_string(key));
    EXPECT_EQ(store.all(), before);
  }
  store.restoreAll({{ServiceStore::greatestKey, serviceOf(2, 2)}});
  EXPECT_EQ(store.keys(), Keys{ServiceStore::greatestKey});
}

TEST_F(Services, GetFreeKeysFromBelowWhereTheGreatestIsTaken) {
  store.restoreAll({{1, serviceOf(1, 1)}, {3, serviceOf(3, 3)}, {ServiceStore::greatestKey - 1, serviceOf(4, 4)}});
  store.merge({serviceOf(5, 5), serviceOf(6, 6), serviceOf(3, 9), serviceOf(7, 7)});
  EXPECT_EQ(store.keyOf(5), ServiceStore::greatestKey);
  EXPECT_EQ(store.keyOf(6), 2);
  EXPECT_EQ(store.keyOf(3), 3);
  EXPECT_EQ(store.keyOf(7), 4);
  EXPECT_EQ(store.add(serviceOf(8, 8)), 5);
  EXPECT_EQ(store.size(), 7U);
}

TEST_F(Services, CanBeReplacedByNone) {
  store.replaceAll({wholeService(1)});
  store.replaceAll({});
  EXPECT_EQ(store.size(), 0U);
}

TEST_F(Services, AreReplacedAllOrNotAtAll) {
  store.replaceAll({wholeService(1), serviceOf(2, 1)});
  const std::vector<Service> before = all();
  Service broken = serviceOf(4, 1);
  broken.numbers[Data::PTC] = 70000;
  EXPECT_EQ(refusalOf([&] { store.replaceAll({wholeService(3), broken}); }), "field 2 (PTC) can't hold 70000");
  EXPECT_EQ(all(), before);
  EXPECT_EQ(refusalOf([&] { store.merge({serviceOf(1, 9), broken}); }), "field 2 (PTC) can't hold 70000");
  EXPECT_EQ(all(), before);
  EXPECT_EQ(refusalOf([&] { store.renew({serviceOf(1, 9), broken}); }), "field 2 (PTC) can't hold 70000");
  EXPECT_EQ(all(), before);
}

TEST_F(Services, StayAsTheyWereWhenTheDiskIsFull) {
  store.replaceAll({wholeService(1), serviceOf(2, 1)});
  const std::vector<Service> before = all();
  database.execute("PRAGMA max_page_count = 40", "limit it");
  std::vector<Service> many;
  for (std::uint64_t id = 3; id < 2000; ++id) many.push_back(wholeService(id));
  const auto tellsOfTheDisk = [](const std::string& text) { return text.ends_with(": no space left on the disk"); };
  EXPECT_PRED1(tellsOfTheDisk, failureOf([&] { store.replaceAll(many); }));
  EXPECT_EQ(all(), before);
  EXPECT_PRED1(tellsOfTheDisk, failureOf([&] { store.merge(many); }));
  EXPECT_EQ(all(), before);
  EXPECT_EQ(failureOf([&] { store.set(1, Data::CHANNEL_NAME, std::u16string(500000, u'x')); }),
            "memory: cannot change a field of a service: no space left on the disk");
  EXPECT_EQ(all(), before);
}

TEST_F(Services, MergedOnesTakeThePlaceOfThoseWithTheirId) {
  store.replaceAll({wholeService(1), serviceOf(2, 20), serviceOf(3, 30)});
  Service changed = serviceOf(2, 5);
  EXPECT_EQ(store.merge({changed, serviceOf(4, 40), serviceOf(3, 30)}), (ServiceChanges{1, 1, 0}));
  EXPECT_EQ(store.read(1), wholeService(1));
  EXPECT_EQ(store.read(2), changed);
  EXPECT_EQ(store.keyOf(4), 4);
  EXPECT_EQ(store.size(), 4U);
}

TEST_F(Services, TakenFromAListLeaveNothingOfWhatListsTellButWhatTheUserMadeOfThem) {
  const Service before = wholeService(1);
  Service expected = serviceOf(1, 1);
  for (const int field : {int{Data::LOCK}, int{HIDDEN}, int{SERVICE_MODE}, 200, -5}) {
    expected.numbers[field] = before.numbers.at(field);
  }
  for (const int field : {int{Data::SERVICE_FIELD_110}, 201}) expected.texts[field] = before.texts.at(field);
  expected.favourites = before.favourites;
  expected.footage = before.footage;
  store.replaceAll({before, serviceOf(2, 2)});
  EXPECT_EQ(store.merge({serviceOf(1, 1)}), (ServiceChanges{0, 1, 0}));
  EXPECT_EQ(store.read(1), expected);
  store.replaceAll({serviceOf(2, 2), before});
  EXPECT_EQ(store.renew({serviceOf(1, 1)}), (ServiceChanges{0, 1, 1}));
  EXPECT_EQ(store.read(1), expected);
  EXPECT_EQ(store.size(), 1U);
}

TEST_F(Services, OfAListThatHasThemAllAreAsTheyWere) {
  store.replaceAll({wholeService(1), wholeService(2)});
  const std::vector<Service> before = all();
  EXPECT_EQ(store.merge(before), ServiceChanges());
  EXPECT_EQ(store.renew(before), ServiceChanges());
  EXPECT_EQ(all(), before);
}

TEST_F(Services, RenewedOnesWithOneIdAllStand) {
  store.replaceAll({wholeService(1), serviceOf(1, 5)});
  EXPECT_EQ(store.renew({serviceOf(1, 1), serviceOf(1, 2), Service()}), (ServiceChanges{1, 2, 1}));
  EXPECT_EQ(store.size(), 3U);
  EXPECT_EQ(store.read(2)->favourites, wholeService(1).favourites);
}

TEST_F(Services, KeepTheirRecordingWhenMergedOnesHaveNone) {
  const Footage trusted{"/a.ts", 256, streamOfH264, true};
  Service service = serviceOf(1, 1);
  const auto merged = [&](const std::optional<Footage>& footage) {
    service.footage = footage;
    store.merge({service});
    return store.read(1)->footage;
  };
  EXPECT_EQ(merged(trusted), trusted);
  EXPECT_EQ(merged(std::nullopt), trusted);
  Footage told = trusted;
  told.isTrusted = false;
  EXPECT_EQ(merged(told), trusted);
  told.path = "/b.ts";
  EXPECT_EQ(merged(told), told);
  EXPECT_EQ(merged(trusted), trusted);
}

TEST_F(Services, TheLastOfSeveralMergedWithOneIdStands) {
  store.merge({serviceOf(1, 1), serviceOf(1, 2)});
  EXPECT_EQ(store.size(), 1U);
  EXPECT_EQ(store.read(1), serviceOf(1, 2));
}

TEST_F(Services, MergedOnesWithoutAnIdAreAdded) {
  Service nameless;
  store.merge({nameless, nameless});
  EXPECT_EQ(store.size(), 2U);
}

TEST_F(Services, OfOneIdAreFoundByTheirListOrder) {
  store.replaceAll({serviceOf(7, 5), serviceOf(7, 2), serviceOf(7, 3)});
  EXPECT_EQ(store.keyOf(7), 2);
}

TEST_F(Services, GiveUpAllThatTheyHadWhenRemoved) {
  const ServiceKey key = store.add(wholeService(1));
  EXPECT_TRUE(store.remove(key));
  EXPECT_FALSE(store.remove(key));
  EXPECT_EQ(store.read(key), std::nullopt);
  for (const char* table : {"raw_field", "audio_track", "subtitle_track", "favourite", "list_entry", "recording"})
    EXPECT_EQ(rowsIn(table), 0);
}

TEST_F(Services, NeverTakeTheKeyOfARemovedOne) {
  store.replaceAll({serviceOf(1, 1), serviceOf(2, 2)});
  store.remove(2);
  EXPECT_EQ(store.add(serviceOf(3, 3)), 3);
}

TEST_F(Services, HaveEachFieldChangedAlone) {
  const ServiceKey key = store.add(wholeService(7));
  Service expected = wholeService(7);
  for (const auto& [field, number] : wholeService(7).numbers) {
    EXPECT_TRUE(store.set(key, field, std::uint64_t{9}));
    expected.numbers[field] = 9;
    EXPECT_EQ(store.read(key), expected) << field;
  }
  for (const auto& [field, units] : wholeService(7).texts) {
    EXPECT_TRUE(store.set(key, field, u"nine"));
    expected.texts[field] = u"nine";
    EXPECT_EQ(store.read(key), expected) << field;
  }
}

TEST_F(Services, HaveEachFieldMadeAbsentAlone) {
  const ServiceKey key = store.add(wholeService(7));
  Service expected = wholeService(7);
  for (const auto& [field, number] : wholeService(7).numbers) {
    EXPECT_TRUE(store.unset(key, field));
    EXPECT_TRUE(store.unset(key, field));
    expected.numbers.erase(field);
    EXPECT_EQ(store.read(key), expected) << field;
  }
  for (const auto& [field, units] : wholeService(7).texts) {
    EXPECT_TRUE(store.unset(key, field));
    expected.texts.erase(field);
    EXPECT_EQ(store.read(key), expected) << field;
  }
}

TEST_F(Services, AFieldOfAnUnknownIdTurnsFromNumberIntoTextAndBack) {
  const ServiceKey key = store.add(Service());
  store.set(key, 300, std::uint64_t{5});
  store.set(key, 300, u"five");
  EXPECT_EQ(store.read(key)->texts.at(300), u"five");
  EXPECT_TRUE(store.read(key)->numbers.empty());
  store.set(key, 300, std::uint64_t{6});
  EXPECT_EQ(store.read(key)->numbers.at(300), 6U);
  EXPECT_TRUE(store.read(key)->texts.empty());
}

TEST_F(Services, ThatDoNotExistTakeNothing) {
  EXPECT_FALSE(store.set(5, Data::MAJOR, 1));
  EXPECT_FALSE(store.set(5, 300, 1));
  EXPECT_FALSE(store.set(5, 300, u"x"));
  EXPECT_FALSE(store.set(5, Data::CHANNEL_NAME, u"x"));
  EXPECT_FALSE(store.unset(5, Data::MAJOR));
  EXPECT_FALSE(store.unset(5, 300));
  EXPECT_FALSE(store.setAudio(5, {{}}));
  EXPECT_FALSE(store.setSubtitles(5, {{}}));
  EXPECT_FALSE(store.setFavourite(7, 1, true));
  EXPECT_FALSE(store.setFavourites(5, {{1, true}}));
  EXPECT_EQ(store.favourites(7), std::nullopt);
  EXPECT_TRUE(store.audio(5).empty());
  EXPECT_TRUE(store.subtitles(5).empty());
  EXPECT_EQ(rowsIn("raw_field"), 0);
}

TEST_F(Services, HaveTheirTracksReadAndReplacedInOrder) {
  const ServiceKey key = store.add(wholeService(7));
  EXPECT_EQ(store.audio(key), wholeService(7).audio);
  EXPECT_EQ(store.subtitles(key), wholeService(7).subtitles);
  const std::vector<AudioTrack> audio{{.pid = 9}, {.pid = 3}, {.pid = 9, .audioType = 1}};
  const std::vector<SubtitleTrack> subtitles{{.pid = 8}, {.pid = 2}};
  EXPECT_TRUE(store.setAudio(key, audio));
  EXPECT_TRUE(store.setSubtitles(key, subtitles));
  EXPECT_EQ(store.audio(key), audio);
  EXPECT_EQ(store.subtitles(key), subtitles);
  EXPECT_TRUE(store.setAudio(key, {}));
  EXPECT_TRUE(store.audio(key).empty());
}

TEST_F(Services, HaveFavouriteGroupsByTheirId) {
  store.add(serviceOf(highBit, 1));
  EXPECT_EQ(store.favourites(highBit), (std::map<std::uint8_t, bool>()));
  EXPECT_TRUE(store.setFavourite(highBit, 255, true));
  EXPECT_TRUE(store.setFavourite(highBit, 1, true));
  EXPECT_TRUE(store.setFavourite(highBit, 1, false));
  EXPECT_EQ(store.favourites(highBit), (std::map<std::uint8_t, bool>{{1, false}, {255, true}}));
}

TEST_F(Services, HaveTheirFavouriteGroupsReplaced) {
  const ServiceKey key = store.add(wholeService(7));
  const ServiceKey other = store.add(wholeService(8));
  const std::map<std::uint8_t, bool> groups{{2, false}, {200, true}};
  EXPECT_TRUE(store.setFavourites(key, groups));
  EXPECT_EQ(store.read(key)->favourites, groups);
  EXPECT_TRUE(store.setFavourites(key, {}));
  EXPECT_TRUE(store.read(key)->favourites.empty());
  EXPECT_EQ(store.read(other), wholeService(8));
}

TEST_F(Services, AreUndoneWithTheTransactionAroundThem) {
  store.add(serviceOf(1, 1));
  {
    Transaction transaction(database, "do more");
    store.replaceAll({serviceOf(2, 2), serviceOf(3, 3)});
    store.setFavourite(2, 1, true);
  }
  EXPECT_EQ(store.size(), 1U);
  EXPECT_EQ(store.read(1), serviceOf(1, 1));
}

}  // namespace
}  // namespace virtualtv::test
