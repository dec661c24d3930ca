// SPDX-License-Identifier: MIT
// The favourite groups of a service.
#include "tvservice/IService.h"
#include "virtualtv/set/sound/SoundTest.h"

namespace virtualtv::test {
namespace {

class Favourites : public SoundTest {
 protected:
  Favourites() {
    tv->import({serviceOf(10, 0, 1), serviceOf(20, 0, 2)}, false);
    noteEvents();
  }

  /// Puts several services into a group or takes them out, in one call.
  static int favourAll(const std::list<std::pair<unsigned long long, bool>>& members, int group) {
    IService* services = nullptr;
    EXPECT_EQ(TVServiceAPI::CreateService(&services), 0);
    return services->SetFavorites(members, static_cast<char>(group));
  }
};

TEST_F(Favourites, AreNoneAtFirst) {
  EXPECT_EQ(favourites(10), "");
}

TEST_F(Favourites, AreTheGroupsThatAServiceWasPutIntoOrTakenOutOf) {
  EXPECT_EQ(favour(10, true, 12), 1);
  EXPECT_EQ(favour(10, true, 1), 1);
  EXPECT_EQ(favour(10, false, 3), 1);
  EXPECT_EQ(favourites(10), "1=1,3=0,12=1");
  EXPECT_EQ(favour(10, false, 1), 1);
  EXPECT_EQ(favourites(10), "1=0,3=0,12=1");
  EXPECT_EQ(favourites(20), "");
}

TEST_F(Favourites, HaveGroupsOfUnsignedEightBits) {
  std::string all;
  for (int group = 0; group < 256; ++group) {
    ASSERT_EQ(favour(10, group % 2 == 0, group), 1) << group;
    all += (group == 0 ? "" : ",") + std::to_string(group) + (group % 2 == 0 ? "=1" : "=0");
  }
  EXPECT_EQ(favourites(10), all);
  EXPECT_EQ(knob("service.10.favourites"), all);
}

TEST_F(Favourites, OfAServiceThatIsNotThereAreNone) {
  for (const std::uint64_t id : {std::uint64_t{0}, std::uint64_t{30}, ~std::uint64_t{0}}) {
    EXPECT_EQ(favour(id, true, 1), 0) << id;
    EXPECT_EQ(favourites(id), "fails") << id;
  }
  EXPECT_TRUE(events.empty());
}

TEST_F(Favourites, OfSeveralServicesChangeTogetherOrNotAtAll) {
  EXPECT_EQ(favourAll({{10, true}, {20, false}}, 5), 1);
  EXPECT_EQ(favourites(10), "5=1");
  EXPECT_EQ(favourites(20), "5=0");
  EXPECT_EQ(favourAll({{10, false}, {30, true}, {20, true}}, 5), 0);
  EXPECT_EQ(favourites(10), "5=1");
  EXPECT_EQ(favourites(20), "5=0");
}

TEST_F(Favourites, AreToldToListeners) {
  favour(10, true, 1);
  ASSERT_EQ(events.size(), 1U);
  const auto& change = changeOf<FavouritesChanged>(events[0]);
  EXPECT_EQ(change.service, *tv->services().keyOf(10));
  EXPECT_TRUE(change.before.empty());
  EXPECT_EQ(change.after, (std::map<std::uint8_t, bool>{{1, true}}));
}

TEST_F(Favourites, AreKept) {
  favour(10, true, 200);
  favour(10, false, 0);
  restart();
  EXPECT_EQ(favourites(10), "0=0,200=1");
}

TEST_F(Favourites, DoNotChangeWhereTheyCannotBeKept) {
  breakStore();
  EXPECT_EQ(favour(10, true, 1), 0);
  EXPECT_EQ(tv->takeComplaints().size(), 1U);
  mendStore();
  EXPECT_EQ(favourites(10), "");
  EXPECT_TRUE(events.empty());
}

}  // namespace
}  // namespace virtualtv::test
