// SPDX-License-Identifier: MIT
#include "services/Query.h"

#include <gtest/gtest.h>

#include <cstring>

#include "virtualtv/services/Support.h"

namespace virtualtv::test {
namespace {

using Data = TCServiceData;
using Texts = std::vector<std::string>;

constexpr std::uint64_t highBit = std::uint64_t{1} << 63;

class Criterion : public testing::Test, public MemoryStore {
 public:
  Service with(std::uint64_t id, int field, std::uint64_t value) {
    Service service = serviceOf(id, static_cast<int>(id));
    service.numbers[field] = value;
    return service;
  }

  Service without(std::uint64_t id, int field) {
    Service service = serviceOf(id, static_cast<int>(id));
    service.numbers.erase(field);
    service.texts.erase(field);
    return service;
  }

  Texts idsWhere(int field, int value) { return listOf(store, Criteria().fetch({12}).where(field, value)); }
};

TEST_F(Criterion, FetchGivesTheFieldsAskedForInTheOrderOfAsking) {
  store.add(serviceOf(7, 3, 1));
  EXPECT_EQ(listOf(store, Criteria().fetch({14, 12, 16, 13})), Texts{"14=1 12=7 16=\"Service 7\" 13=3"});
}

TEST_F(Criterion, FetchGivesOnlyWhatTheServiceHas) {
  store.add(without(7, Data::MINOR));
  store.add(without(8, Data::CHANNEL_NAME));
  EXPECT_EQ(listOf(store, Criteria().fetch({12, 14, 16, 22, 999})), (Texts{"12=7 16=\"Service 7\"", "12=8 14=0"}));
}

TEST_F(Criterion, FetchOfNothingGivesEmptyRecords) {
  store.replaceAll({serviceOf(1, 1), serviceOf(2, 2)});
  EXPECT_EQ(listOf(store, Criteria()), (Texts{"", ""}));
}

TEST_F(Criterion, AFieldFetchedTwiceIsThereOnce) {
  store.add(serviceOf(7, 3));
  EXPECT_EQ(firstOf(store, Criteria().fetch({12, 13, 12})), "12=7 13=3");
}

TEST_F(Criterion, FetchGivesFieldsOfAnyId) {
  Service service = serviceOf(7, 3);
  service.numbers[200] = highBit;
  service.texts[-4] = u"text";
  store.add(service);
  EXPECT_EQ(firstOf(store, Criteria().fetch({200, -4, 12})), "200=9223372036854775808 -4=\"text\" 12=7");
}

TEST_F(Criterion, FetchGivesNegativeNumbersAndLargeIds) {
  Service service = serviceOf(~std::uint64_t{1}, 3);
  service.numbers[Data::FREQUENCY] = static_cast<std::uint64_t>(-5);
  store.add(service);
  TCServiceData record;
  ASSERT_TRUE(store.first(Criteria().fetch({12, 4}), anyMode, record));
  int frequency = 0;
  EXPECT_TRUE(record.Get(Data::FREQUENCY, frequency));
  EXPECT_EQ(frequency, -5);
  unsigned long long id = 0;
  EXPECT_TRUE(record.Get(Data::SERVICE_ID, id));
  EXPECT_EQ(id, ~std::uint64_t{1});
}

TEST_F(Criterion, TheUnitsOfATextLieInTheRecordHighByteFirst) {
  Service service;
  service.texts[Data::CHANNEL_NAME] = u"A\x4E2D";
  store.add(service);
  TCServiceData record;
  ASSERT_TRUE(store.first(Criteria().fetch({16}), anyMode, record));
  ASSERT_EQ(record.GetLength(16), 2);
  unsigned short units[2];
  record.Get(16, units);
  const unsigned char expected[] = {0x00, 0x41, 0x4E, 0x2D};
  EXPECT_EQ(std::memcmp(units, expected, sizeof expected), 0);
}

TEST_F(Criterion, AnEmptyTextIsHeldWithItsLengthOfNone) {
  Service service;
  service.texts[Data::CHANNEL_NAME] = u"";
  store.add(service);
  EXPECT_EQ(firstOf(store, Criteria().fetch({16})), "16=\"\"");
}

TEST_F(Criterion, ARecordLosesWhatItHeldOnlyWhenAServiceIsFound) {
  store.add(serviceOf(7, 3));
  TCServiceData record;
  record.Set(500, 1);
  EXPECT_FALSE(store.first(Criteria().fetch({12}).where(12, 8), anyMode, record));
  EXPECT_EQ(describe(record), "500=1");
  EXPECT_TRUE(store.first(Criteria().fetch({12}), anyMode, record));
  EXPECT_EQ(describe(record), "12=7");
}

TEST_F(Criterion, WhereSelectsByEveryNumberField) {
  for (const int field : {1, 2, 4, 6, 7, 13, 14, 15, 18, 22, 37, 41, 115, 200, 1001, 1002}) {
    store.replaceAll({with(1, field, 5), with(2, field, 6), without(3, field)});
    EXPECT_EQ(idsWhere(field, 6), Texts{"12=2"}) << field;
    EXPECT_EQ(idsWhere(field, 7), Texts()) << field;
  }
}

TEST_F(Criterion, WhereDoesNotHoldForAnAbsentField) {
  store.replaceAll({without(1, Data::MINOR), without(2, Data::LOCK)});
  EXPECT_EQ(idsWhere(Data::MINOR, 0), Texts{"12=2"});
  EXPECT_EQ(idsWhere(Data::LOCK, 0), Texts());
  EXPECT_EQ(idsWhere(Data::LOCK, -1), Texts());
  EXPECT_EQ(idsWhere(200, 0), Texts());
}

TEST_F(Criterion, AServiceThatDoesNotSayWhetherItIsHiddenIsNot) {
  store.replaceAll({without(1, HIDDEN), with(2, HIDDEN, 0), with(3, HIDDEN, 1)});
  EXPECT_EQ(idsWhere(HIDDEN, 0), (Texts{"12=1", "12=2"}));
  EXPECT_EQ(firstOf(store, Criteria().fetch({HIDDEN})), "");
}

TEST_F(Criterion, AnIntIsComparedInTheWidthOfTheField) {
  store.replaceAll(
      {with(1, Data::FREQUENCY, 0xFFFFFFFF), with(2, Data::FREQUENCY, ~std::uint64_t{0}), with(3, Data::PTC, 65535)});
  EXPECT_EQ(idsWhere(Data::FREQUENCY, -1), (Texts{"12=1", "12=2"}));
  EXPECT_EQ(listOf(store, Criteria().fetch({12}).where(Data::FREQUENCY, 0xFFFFFFFFULL)), (Texts{"12=1", "12=2"}));
  EXPECT_EQ(idsWhere(Data::PTC, 65535), Texts{"12=3"});
  EXPECT_EQ(idsWhere(Data::PTC, -1), Texts());
  EXPECT_EQ(listOf(store, Criteria().fetch({12}).where(Data::FREQUENCY, 0x1FFFFFFFFULL)), Texts());
}

TEST_F(Criterion, WhereFindsAnyServiceId) {
  for (const std::uint64_t id : {std::uint64_t{0}, highBit, ~std::uint64_t{0} - 1, ~std::uint64_t{0}}) {
    store.replaceAll({serviceOf(id, 1), serviceOf(17, 2), without(18, 12)});
    EXPECT_EQ(firstOf(store, Criteria().fetch({12}).where(12, static_cast<unsigned long long>(id))),
              "12=" + std::to_string(id));
  }
}

TEST_F(Criterion, WhereOnATextNeverHolds) {
  Service service = serviceOf(1, 1);
  service.texts[Data::CHANNEL_NAME] = u"";
  service.texts[300] = u"5";
  store.add(service);
  for (const int field : {16, 110, 300}) {
    EXPECT_EQ(idsWhere(field, 0), Texts()) << field;
    EXPECT_EQ(idsWhere(field, 5), Texts()) << field;
  }
}

TEST_F(Criterion, AllConditionsMustHold) {
  store.replaceAll({with(1, 2, 10), with(2, 2, 10), with(3, 2, 11)});
  EXPECT_EQ(listOf(store, Criteria().fetch({12}).where(2, 10).where(13, 2)), Texts{"12=2"});
  EXPECT_EQ(listOf(store, Criteria().fetch({12}).where(2, 10).where(13, 3)), Texts());
}

TEST_F(Criterion, TwoConditionsOnOneFieldMustBothHold) {
  store.replaceAll({with(1, 1, 4), with(2, 1, 5)});
  EXPECT_EQ(listOf(store, Criteria().fetch({12}).where(1, 5).where(1, 5)), Texts{"12=2"});
  EXPECT_EQ(listOf(store, Criteria().fetch({12}).where(1, 4).where(1, 5)), Texts());
}

TEST_F(Criterion, ListOrderIsTheOrderWhenNoneIsAskedFor) {
  store.replaceAll(
      {serviceOf(1, 9), serviceOf(2, 2, 2), serviceOf(3, 2, 1), without(4, Data::MAJOR), serviceOf(5, 2, 1)});
  EXPECT_EQ(listOf(store, Criteria().fetch({12})), (Texts{"12=3", "12=5", "12=2", "12=1", "12=4"}));
}

TEST_F(Criterion, OrderBySortsServiceIdsAsUnsigned) {
  store.replaceAll(
      {serviceOf(~std::uint64_t{0} - 1, 1), serviceOf(highBit, 2), serviceOf(highBit - 1, 3), serviceOf(0, 4)});
  const Texts ascending{"12=0", "12=9223372036854775807", "12=9223372036854775808", "12=18446744073709551614"};
  EXPECT_EQ(listOf(store, Criteria().fetch({12}).orderBy(12)), ascending);
  EXPECT_EQ(listOf(store, Criteria().fetch({12}).orderBy(12, SORT_DESCENDING)),
            Texts(ascending.rbegin(), ascending.rend()));
}

TEST_F(Criterion, OrderBySettlesTiesByListOrderAndPutsAbsentFieldsLast) {
  store.replaceAll({with(4, 2, 10), with(3, 2, 9), with(2, 2, 10), without(1, 2)});
  EXPECT_EQ(listOf(store, Criteria().fetch({12}).orderBy(2)), (Texts{"12=3", "12=2", "12=4", "12=1"}));
  EXPECT_EQ(listOf(store, Criteria().fetch({12}).orderBy(2, SORT_DESCENDING)), (Texts{"12=2", "12=4", "12=3", "12=1"}));
}

TEST_F(Criterion, OrderBySortsTextsByTheirUnits) {
  Service first = serviceOf(1, 1);
  Service second = serviceOf(2, 2);
  Service third = serviceOf(3, 3);
  first.texts[16] = u"\x0100";
  second.texts[16] = u"a";
  third.texts[16] = u"B";
  store.replaceAll({first, second, third});
  EXPECT_EQ(listOf(store, Criteria().fetch({12}).orderBy(16)), (Texts{"12=3", "12=2", "12=1"}));
}

TEST_F(Criterion, OrderBySortsByFieldsOfAnyId) {
  store.replaceAll({with(1, 200, 7), with(2, 200, static_cast<std::uint64_t>(-1)), with(3, 201, 1)});
  EXPECT_EQ(listOf(store, Criteria().fetch({12}).orderBy(200)), (Texts{"12=2", "12=1", "12=3"}));
}

TEST_F(Criterion, FirstFollowsTheOrderAskedFor) {
  store.replaceAll({serviceOf(9, 1), serviceOf(3, 2), serviceOf(5, 3)});
  EXPECT_EQ(firstOf(store, Criteria().fetch({12})), "12=9");
  EXPECT_EQ(firstOf(store, Criteria().fetch({12}).orderBy(12)), "12=3");
  EXPECT_EQ(firstOf(store, Criteria().fetch({12}).where(13, 4)), "none");
}

TEST_F(Criterion, AModeSelectsItsAntennaAndAnOperatorsListWhereItNamesOne) {
  const auto on = [&](std::uint64_t id, std::uint64_t antenna, std::uint64_t serviceMode) {
    Service service = with(id, Data::ANTENNA_MODE, antenna);
    service.numbers[SERVICE_MODE] = serviceMode;
    return service;
  };
  store.replaceAll({on(1, 0, 0), on(2, 1, 0), on(3, 1, 3), on(4, 1, 27), on(5, 2, 3), without(6, Data::ANTENNA_MODE)});
  const Criteria criteria = Criteria().fetch({12});
  const Texts cable{"12=2", "12=3", "12=4"};
  EXPECT_EQ(listOf(store, criteria, modeOf(-1, -1)).size(), 6U);
  EXPECT_EQ(listOf(store, criteria, modeOf(0, 0)), Texts{"12=1"});
  for (const int all : {-1, 0, 2, 19, 20, 28}) EXPECT_EQ(listOf(store, criteria, modeOf(1, all)), cable) << all;
  EXPECT_EQ(listOf(store, criteria, modeOf(1, 3)), Texts{"12=3"});
  EXPECT_EQ(listOf(store, criteria, modeOf(1, 27)), Texts{"12=4"});
  for (const int none : {4, 18, 21}) EXPECT_EQ(listOf(store, criteria, modeOf(1, none)), Texts()) << none;
  EXPECT_EQ(listOf(store, criteria, modeOf(-1, 3)), Texts());
}

TEST_F(Criterion, ListAppendsToWhatIsThere) {
  store.add(serviceOf(7, 3));
  std::list<TCServiceData*> records;
  EXPECT_EQ(store.list(Criteria().fetch({12}), anyMode, records), 1);
  EXPECT_EQ(store.list(Criteria().fetch({13}), anyMode, records), 1);
  ASSERT_EQ(records.size(), 2U);
  EXPECT_EQ(describe(*records.front()), "12=7");
  EXPECT_EQ(describe(*records.back()), "13=3");
  for (TCServiceData* record : records) delete record;
}

TEST_F(Criterion, AtAnswersTheServiceOfAKeyWhateverTheConditions) {
  const ServiceKey key = store.add(serviceOf(7, 3));
  TCServiceData record;
  EXPECT_TRUE(store.at(key, Criteria().fetch({13, 12}).where(12, 8).orderBy(4), record));
  EXPECT_EQ(describe(record), "13=3 12=7");
  EXPECT_FALSE(store.at(0, Criteria().fetch({12}), record));
  EXPECT_FALSE(store.at(key + 1, Criteria().fetch({12}), record));
  EXPECT_EQ(describe(record), "13=3 12=7");
}

TEST_F(Criterion, MoreShapesThanAreKeptPreparedAreAnsweredAllTheSame) {
  Service service = serviceOf(7, 3);
  for (int field = 2000; field < 2200; ++field) service.numbers[field] = static_cast<std::uint64_t>(field);
  store.add(service);
  for (int round = 0; round < 2; ++round) {
    for (int field = 2000; field < 2200; ++field) {
      EXPECT_EQ(firstOf(store, Criteria().fetch({field}).where(field, field)),
                std::to_string(field) + "=" + std::to_string(field));
    }
  }
}

TEST_F(Criterion, MoreConditionsThanCanBeAskedFailInOneLine) {
  Criteria criteria;
  for (int condition = 0; condition < 2000; ++condition) criteria.where(12, condition);
  EXPECT_TRUE(failureOf([&] { firstOf(store, criteria); }).starts_with("memory: cannot look up services: "));
}

}  // namespace
}  // namespace virtualtv::test
