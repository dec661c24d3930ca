// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>

#include "virtualtv/services/Support.h"

namespace virtualtv::test {
namespace {

using Data = TCServiceData;

class Seek : public testing::Test, public MemoryStore {
 public:
  Seek() {
    criteria.fetch({12}).where(HIDDEN, 0);
    store.replaceAll({serviceOf(30, 3), serviceOf(10, 1), serviceOf(20, 2), serviceOf(40, 4)});
  }

  void mark(std::uint64_t id, int field) { store.set(store.keyOf(id).value(), field, std::uint64_t{1}); }

  Criteria criteria;
};

TEST_F(Seek, GoesOneStepInListOrder) {
  EXPECT_EQ(nextOf(store, criteria, 10), "12=20");
  EXPECT_EQ(nextOf(store, criteria, 20), "12=30");
  EXPECT_EQ(previousOf(store, criteria, 30), "12=20");
  EXPECT_EQ(previousOf(store, criteria, 20), "12=10");
}

TEST_F(Seek, StartsOverAtTheOtherEnd) {
  EXPECT_EQ(nextOf(store, criteria, 40), "12=10");
  EXPECT_EQ(previousOf(store, criteria, 10), "12=40");
}

TEST_F(Seek, GoesPastWhatTheCriteriaDoNotSelect) {
  mark(20, HIDDEN);
  mark(10, HIDDEN);
  EXPECT_EQ(previousOf(store, criteria, 30), "12=40");
  EXPECT_EQ(nextOf(store, criteria, 40), "12=30");
}

TEST_F(Seek, StartsFromAServiceThatIsNotSelectedAtItsPlace) {
  mark(20, HIDDEN);
  EXPECT_EQ(nextOf(store, criteria, 20), "12=30");
  EXPECT_EQ(previousOf(store, criteria, 20), "12=10");
}

TEST_F(Seek, GoesPastLockedServicesWhenAsked) {
  mark(20, Data::LOCK);
  mark(10, Data::LOCK);
  EXPECT_EQ(nextOf(store, criteria, 10), "12=20");
  EXPECT_EQ(nextOf(store, criteria, 10, true), "12=30");
  EXPECT_EQ(nextOf(store, criteria, 40, true), "12=30");
  EXPECT_EQ(previousOf(store, criteria, 30, true), "12=40");
}

TEST_F(Seek, GoesPastServicesWithoutAnId) {
  for (const std::uint64_t id : {20U, 10U}) store.unset(store.keyOf(id).value(), Data::SERVICE_ID);
  EXPECT_EQ(nextOf(store, criteria, 40), "12=30");
  EXPECT_EQ(previousOf(store, criteria, 30), "12=40");
  EXPECT_EQ(nextOf(store, criteria, ~std::uint64_t{0}), "12=30");
}

TEST_F(Seek, FindsNothingWhereNoServiceHasAnId) {
  for (const std::uint64_t id : {10U, 20U, 30U, 40U}) store.unset(store.keyOf(id).value(), Data::SERVICE_ID);
  EXPECT_EQ(nextOf(store, criteria, 10), "none");
  EXPECT_EQ(previousOf(store, criteria, ~std::uint64_t{0}), "none");
}

TEST_F(Seek, TakesALockOfZeroForNone) {
  store.set(store.keyOf(20).value(), Data::LOCK, std::uint64_t{0});
  EXPECT_EQ(nextOf(store, criteria, 10, true), "12=20");
}

TEST_F(Seek, InAListOfTheCurrentServiceAloneAnswersThat) {
  for (const std::uint64_t id : {10U, 30U, 40U}) mark(id, HIDDEN);
  EXPECT_EQ(nextOf(store, criteria, 20), "12=20");
  EXPECT_EQ(previousOf(store, criteria, 20), "12=20");
  mark(20, Data::LOCK);
  EXPECT_EQ(nextOf(store, criteria, 20, true), "none");
}

TEST_F(Seek, FindsNothingInAnEmptyList) {
  for (const std::uint64_t id : {10U, 20U, 30U, 40U}) mark(id, HIDDEN);
  EXPECT_EQ(nextOf(store, criteria, 20), "none");
  EXPECT_EQ(previousOf(store, criteria, 20), "none");
  store.replaceAll({});
  EXPECT_EQ(nextOf(store, criteria, 20), "none");
}

TEST_F(Seek, FromAnIdThatNoServiceHasGoesToTheEndsOfTheList) {
  EXPECT_EQ(nextOf(store, criteria, 11), "12=10");
  EXPECT_EQ(previousOf(store, criteria, 11), "12=40");
  EXPECT_EQ(nextOf(store, criteria, ~std::uint64_t{0}), "12=10");
}

TEST_F(Seek, StaysWithinTheMode) {
  store.set(store.keyOf(20).value(), Data::ANTENNA_MODE, std::uint64_t{1});
  EXPECT_EQ(nextOf(store, criteria, 10, false, modeOf(0, 0)), "12=30");
  EXPECT_EQ(nextOf(store, criteria, 10, false, modeOf(1, 0)), "12=20");
  EXPECT_EQ(nextOf(store, criteria, 10, false, modeOf(2, 0)), "none");
}

TEST_F(Seek, KeepsToListOrderWhateverOrderTheCriteriaAskFor) {
  criteria.orderBy(12, SORT_DESCENDING);
  EXPECT_EQ(nextOf(store, criteria, 10), "12=20");
}

TEST_F(Seek, GoesThroughServicesOfOneNumberByTheirKey) {
  store.replaceAll({serviceOf(3, 1), serviceOf(1, 1), serviceOf(2, 1)});
  EXPECT_EQ(nextOf(store, criteria, 3), "12=1");
  EXPECT_EQ(nextOf(store, criteria, 1), "12=2");
  EXPECT_EQ(nextOf(store, criteria, 2), "12=3");
  EXPECT_EQ(previousOf(store, criteria, 3), "12=2");
}

TEST_F(Seek, GoesThroughServicesWithoutNumbersAtTheEnd) {
  Service bare;
  bare.numbers[Data::SERVICE_ID] = 50;
  store.add(bare);
  EXPECT_EQ(nextOf(store, criteria, 40), "12=50");
  EXPECT_EQ(nextOf(store, criteria, 50), "12=10");
  EXPECT_EQ(previousOf(store, criteria, 50), "12=40");
}

TEST_F(Seek, IsNotHeldUpByServicesThatShareAnId) {
  store.replaceAll({serviceOf(1, 1), serviceOf(2, 2), serviceOf(1, 3), serviceOf(1, 4)});
  EXPECT_EQ(nextOf(store, criteria, 1), "12=2");
  EXPECT_EQ(previousOf(store, criteria, 1), "12=2");
  store.remove(2);
  EXPECT_EQ(nextOf(store, criteria, 1), "12=1");
}

TEST_F(Seek, ReachesEveryServiceOfALongListOnce) {
  std::vector<Service> services;
  services.reserve(500);
  for (int number = 0; number < 500; ++number) {
    services.push_back(serviceOf(static_cast<std::uint64_t>(number * 7 % 500), number / 3, number % 2));
  }
  store.replaceAll(services);
  std::vector<std::string> seen;
  std::uint64_t id = 0;
  for (int step = 0; step < 500; ++step) {
    TCServiceData record;
    ASSERT_TRUE(store.next(criteria, anyMode, id, false, record));
    unsigned long long next = 0;
    ASSERT_TRUE(record.Get(Data::SERVICE_ID, next));
    TCServiceData back;
    ASSERT_TRUE(store.previous(criteria, anyMode, next, false, back));
    EXPECT_EQ(describe(back), "12=" + std::to_string(id));
    seen.push_back(describe(record));
    id = next;
  }
  EXPECT_EQ(id, 0U);
  std::vector<std::string> list = listOf(store, criteria);
  std::sort(list.begin(), list.end());
  std::sort(seen.begin(), seen.end());
  EXPECT_EQ(seen, list);
}

}  // namespace
}  // namespace virtualtv::test
