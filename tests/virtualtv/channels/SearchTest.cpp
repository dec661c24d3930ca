// SPDX-License-Identifier: MIT
// Pages of services: which services a query selects, in which order, and which of them a page shows.
#include "channels/Search.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <utility>

#include "virtualtv/services/Support.h"

namespace virtualtv::test {
namespace {

class ServiceSearch : public ::testing::Test {
 protected:
  /// Adds a service. The list is in the order of the ids.
  ServiceKey add(std::uint64_t id, std::u16string name, EAntennaMode antenna, ServiceKind kind) {
    Service service = serviceOf(id, static_cast<int>(id));
    service.texts[TCServiceData::CHANNEL_NAME] = std::move(name);
    service.numbers[TCServiceData::ANTENNA_MODE] = static_cast<std::uint64_t>(antenna);
    service.numbers[TCServiceData::CHANNEL_TYPE] = static_cast<std::uint64_t>(channelType(antenna, kind));
    return memory.store.add(service);
  }

  ServiceSearch() {
    add(3, u"Harbour News", ANTENNA_TERRESTRIAL, ServiceKind::television);
    add(1, u"News Radio", ANTENNA_CABLE, ServiceKind::radio);
    add(2, u"\u00C4rger", ANTENNA_CABLE, ServiceKind::television);
    add(4, u"Text", ANTENNA_SATELLITE, ServiceKind::data);
  }

  ServicePage page(const ServiceQuery& query) { return findServices(memory.store, query); }

  std::vector<std::uint64_t> ids(const ServiceQuery& query) {
    std::vector<std::uint64_t> ids;
    for (const auto& [key, service] : page(query).services)
      ids.push_back(service.numbers.at(TCServiceData::SERVICE_ID));
    return ids;
  }

  using Ids = std::vector<std::uint64_t>;
  MemoryStore memory;
};

TEST_F(ServiceSearch, WithoutConditionsSelectsAllInListOrder) {
  EXPECT_EQ(ids({}), (Ids{1, 2, 3, 4}));
  EXPECT_EQ(page({}).total, 4U);
}

TEST_F(ServiceSearch, TellsTheKeyAndAllOfEachService) {
  for (const auto& [key, service] : page({}).services) EXPECT_EQ(memory.store.read(key), service) << key;
}

TEST_F(ServiceSearch, FindsATextInANameInLettersOfEitherCase) {
  EXPECT_EQ(ids({.text = "nEWS"}), (Ids{1, 3}));
  EXPECT_EQ(ids({.text = "\u00C4RG"}), Ids{2});
  EXPECT_EQ(ids({.text = "\u00E4rg"}), Ids{2});
  add(5, u"\u041A\u0438\u043D\u043E \u039F\u03B4\u03CC\u03C2 \u0130st", ANTENNA_CABLE, ServiceKind::data);
  for (const char* text : {"\u043A\u0438\u043D", "\u041A\u0418\u041D", "\u03BF\u03B4", "\u0394\u038C\u03A3", "ist"}) {
    EXPECT_EQ(ids({.text = text}), Ids{5}) << text;
  }
  EXPECT_EQ(ids({.text = "arg"}), Ids{}) << "a letter with a mark is another one";
  EXPECT_EQ(ids({.text = "nothing"}), Ids{});
  EXPECT_EQ(page({.text = "nothing"}).total, 0U);
}

TEST_F(ServiceSearch, SelectsByAntennaAndKind) {
  EXPECT_EQ(ids({.antenna = ANTENNA_CABLE}), (Ids{1, 2}));
  EXPECT_EQ(ids({.kind = ServiceKind::television}), (Ids{2, 3}));
  EXPECT_EQ(ids({.kind = ServiceKind::radio}), Ids{1});
  EXPECT_EQ(ids({.kind = ServiceKind::data}), Ids{4});
  EXPECT_EQ(ids({.antenna = ANTENNA_CABLE, .kind = ServiceKind::television}), Ids{2});
  EXPECT_EQ(ids({.text = "news", .antenna = ANTENNA_CABLE}), Ids{1});
}

TEST_F(ServiceSearch, SelectsByMajorNumberOnEachAntenna) {
  Service twin = serviceOf(30, 3);
  twin.numbers[TCServiceData::ANTENNA_MODE] = ANTENNA_CABLE;
  memory.store.add(twin);
  EXPECT_EQ(ids({.major = 3}), (Ids{3, 30}));
  EXPECT_EQ(ids({.antenna = ANTENNA_CABLE, .major = 3}), Ids{30});
  EXPECT_EQ(ids({.major = 65535}), Ids{});
}

TEST_F(ServiceSearch, TellsAllGroupsWhateverItSelects) {
  EXPECT_EQ(page({}).groups, std::set<std::string>{});
  for (const auto& [id, group] : {std::pair(30, "News"), std::pair(31, "Radio"), std::pair(32, "News")}) {
    Service service = serviceOf(static_cast<std::uint64_t>(id), id);
    service.group = group;
    memory.store.add(service);
  }
  EXPECT_EQ(page({.group = "News", .limit = 1}).groups, (std::set<std::string>{"News", "Radio"}));
  EXPECT_EQ(page({.text = "nothing"}).groups, (std::set<std::string>{"News", "Radio"}));
}

TEST_F(ServiceSearch, ASideThatAServiceLacksIsNoneThatIsWanted) {
  Service bare;
  bare.numbers[TCServiceData::SERVICE_ID] = 9;
  memory.store.add(bare);
  EXPECT_EQ(ids({}), (Ids{1, 2, 3, 4, 9}));
  EXPECT_EQ(ids({.text = "e"}), (Ids{1, 2, 3, 4}));
  EXPECT_EQ(ids({.antenna = ANTENNA_TERRESTRIAL}), Ids{3});
  EXPECT_EQ(ids({.kind = ServiceKind::television}), (Ids{2, 3}));
  for (const std::uint64_t noType : {0U, 10U}) {
    memory.store.set(*memory.store.keyOf(9), TCServiceData::CHANNEL_TYPE, noType);
    EXPECT_EQ(ids({.kind = ServiceKind::television}), (Ids{2, 3})) << noType;
  }
}

TEST_F(ServiceSearch, AnAnalogueServiceIsTelevision) {
  for (const ChannelType type : {CHANNEL_ANALOGUE_TERRESTRIAL, CHANNEL_ANALOGUE_CABLE}) {
    memory.store.set(*memory.store.keyOf(4), TCServiceData::CHANNEL_TYPE, static_cast<std::uint64_t>(type));
    EXPECT_EQ(ids({.kind = ServiceKind::television}), (Ids{2, 3, 4}));
  }
}

TEST_F(ServiceSearch, APageShowsAPartAndCountsAll) {
  EXPECT_EQ(ids({.offset = 1, .limit = 2}), (Ids{2, 3}));
  EXPECT_EQ(page({.offset = 1, .limit = 2}).total, 4U);
  EXPECT_EQ(ids({.text = "news", .offset = 1, .limit = 1}), Ids{3});
  EXPECT_EQ(page({.text = "news", .offset = 1, .limit = 1}).total, 2U);
}

TEST_F(ServiceSearch, APageBehindTheEndIsEmptyAndStillCounts) {
  EXPECT_EQ(ids({.offset = 3, .limit = 9}), Ids{4});
  for (const std::size_t offset : {std::size_t{4}, std::numeric_limits<std::size_t>::max()}) {
    EXPECT_EQ(ids({.offset = offset}), Ids{}) << offset;
    EXPECT_EQ(page({.offset = offset}).total, 4U);
    EXPECT_EQ(page({.text = "news", .offset = offset}).total, 2U);
  }
  EXPECT_EQ(ids({.limit = 0}), Ids{});
  EXPECT_EQ(page({.limit = 0}).total, 4U);
}

}  // namespace
}  // namespace virtualtv::test
