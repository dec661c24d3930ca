// The favourite groups of a service: reading them as a document, and changing one.
#include "services/ServiceStore.h"
#include "support/Tracks.h"
#include "window/report/Documents.h"

namespace {

using channels::noService;
using reports::notWritten;
using reports::parsed;
using reports::WriterFault;
using support::caught;
using support::join;
using support::Lines;
using tracks::Members;

using Groups = std::map<std::uint8_t, bool>;

const std::string askGroups = "IService[set#1]::GetFavorites(serviceId=281) ";
const std::string asked = "3 serviceId == 281";
const std::string failed = "0 GetFavorites failed";
const Lines noProxy = join({noService(), {"0 Serviceproxy is NULL"}});

/// What is logged for a group: its number, its key, its membership.
Lines toldGroup(const std::string& number, const std::string& key, const std::string& member) {
  return {"3 itor->first = " + number + ",itor->second = " + member, "3 firstdata = " + key, "3 firststr = " + key,
          "3 seconddata = " + member, "3 secondstr = " + member};
}

std::string told(const std::string& text) {
  return "3 retStr = " + text;
}

class GetFavourites : public tracks::TrackTest {
 protected:
  void give(const Groups& favourites) {
    virtualtv::Service service;
    service.favourites = favourites;
    showTv(service);
  }

  int read() { return worker.GetFavorites(id, text); }
  int readUnder(const std::string& words) {
    text = untouched;
    return under(words, [this] { return read(); });
  }

  unsigned long long id = 281;
};

TEST_F(GetFavourites, TellsEachGroupUnderItsNumber) {
  give({{1, true}, {2, false}, {3, true}});
  EXPECT_EQ(read(), 1);
  EXPECT_EQ(text, tracks::document(Members{{"1", "\"1\""}, {"2", "\"0\""}, {"3", "\"1\""}}));
  EXPECT_EQ(calls(), Lines{askGroups + "favorites={1=1,2=0,3=1} -> 1"});
  EXPECT_EQ(
      logs(),
      join({{asked}, toldGroup("1", "1", "1"), toldGroup("2", "2", "0"), toldGroup("3", "3", "1"), {told(text)}}));
}

TEST_F(GetFavourites, KeysAndValuesAreTextsOfOneCharacter) {
  give({{0, false}, {9, true}});
  ASSERT_EQ(read(), 1);
  const Json::Value root = parsed(text);
  ASSERT_TRUE(root.isObject());
  EXPECT_EQ(root.getMemberNames(), (Lines{"0", "9"}));
  for (const Json::Value& member : root) ASSERT_TRUE(member.isString()) << text;
  EXPECT_EQ(root["0"].asString(), "0");
  EXPECT_EQ(root["9"].asString(), "1");
}

TEST_F(GetFavourites, AGroupBeyondNineKeepsItsFirstDigitAndTheLaterGroupWins) {
  give({{1, true}, {12, false}});
  EXPECT_EQ(read(), 1);
  EXPECT_EQ(text, tracks::document(Members{{"1", "\"0\""}}));
  EXPECT_EQ(logs(), join({{asked}, toldGroup("1", "1", "1"), toldGroup("12", "1", "0"), {told(text)}}));
  give({{1, false}, {12, true}});
  EXPECT_EQ(read(), 1);
  EXPECT_EQ(text, tracks::document(Members{{"1", "\"1\""}}));
}

TEST_F(GetFavourites, AllGroupsShareTheTenDigits) {
  Groups groups;
  for (int group = 0; group <= 255; ++group) groups[static_cast<std::uint8_t>(group)] = group % 3 == 0;
  give(groups);
  EXPECT_EQ(read(), 1);
  Members expected{{"0", "\"1\""}};  // of group 0; then of 199, 255, 39, 49, ... 99
  for (const char* const last : {"199", "255", "39", "49", "59", "69", "79", "89", "99"}) {
    expected.emplace_back(std::string(1, *last), std::atoi(last) % 3 == 0 ? "\"1\"" : "\"0\"");
  }
  EXPECT_EQ(text, tracks::document(expected));
  EXPECT_EQ(logs().size(), 1U + 256 * 5 + 1);
}

TEST_F(GetFavourites, AServiceWithoutGroupsIsAnEmptyObject) {
  give({});
  EXPECT_EQ(read(), 1);
  EXPECT_EQ(text, "{}\n");
  EXPECT_TRUE(parsed(text).isObject());
  EXPECT_EQ(logs(), (Lines{asked, told("{}\n")}));
}

TEST_F(GetFavourites, AMapThatIsNotWrittenIsEmpty) {
  give({{1, true}});
  ASSERT_EQ(read(), 1);
  EXPECT_EQ(readUnder("IService::GetFavorites result=unwritten"), 1);
  EXPECT_EQ(text, "{}\n") << "nothing is left of the time before";
}

TEST_F(GetFavourites, AnyResultAboveZeroSucceeds) {
  for (const std::string result : {"1", "2", "2147483647"}) {
    EXPECT_EQ(readUnder("IService::GetFavorites out.favorites={7=1} result=" + result), 1) << result;
    EXPECT_EQ(text, tracks::document(Members{{"7", "\"1\""}}));
  }
}

TEST_F(GetFavourites, AnyOtherResultFailsAndLeavesTheText) {
  for (const std::string& way : tracks::notPositive) {
    EXPECT_EQ(readUnder("IService::GetFavorites out.favorites={7=1} " + way), -1) << way;
    EXPECT_EQ(text, untouched) << way;
    EXPECT_EQ(logs(), (Lines{asked, failed}));
  }
}

TEST_F(GetFavourites, AnExceptionFailsWithItsOwnLineAlone) {
  EXPECT_EQ(readUnder("IService::GetFavorites result=throw"), -1);
  EXPECT_EQ(text, untouched);
  EXPECT_EQ(logs(), (Lines{asked, caught("GetFavorites", "IService::GetFavorites")}));
}

TEST_F(GetFavourites, ADocumentThatCannotBeWrittenFailsAndLeavesTheText) {
  give({{4, true}});
  const WriterFault writer;
  EXPECT_EQ(read(), -1);
  EXPECT_TRUE(writer.hit());
  EXPECT_EQ(text, untouched);
  EXPECT_EQ(logs(), join({{asked}, toldGroup("4", "4", "1"), {notWritten("GetFavorites")}}));
}

TEST_F(GetFavourites, WithoutAServiceProxyAnswersZeroAndLeavesTheText) {
  failsWithout(
      worker.svc_proxy, "CreateService", noProxy, [this] { return read(); }, 0);
  EXPECT_EQ(text, untouched);
}

TEST_F(GetFavourites, AMissingServiceProxyIsMade) {
  worker.svc_proxy = nullptr;
  EXPECT_EQ(read(), 1);
  EXPECT_EQ(calls(), (Lines{"TVServiceAPI::CreateService() -> 0",
                            "IService[set#2]::GetFavorites(serviceId=281) favorites={} -> 1"}));
}

TEST_F(GetFavourites, TheServiceIdIsPassedWholeAndLeftAsItIs) {
  for (const unsigned long long wanted : {0ULL, 4294967296ULL, 18446744073709551615ULL}) {
    id = wanted;
    EXPECT_EQ(readUnder("IService::GetFavorites result=1 out.favorites={}"), 1);
    EXPECT_EQ(id, wanted);
    const std::string shown = std::to_string(wanted);
    EXPECT_EQ(calls(), Lines{"IService[set#1]::GetFavorites(serviceId=" + shown + ") favorites={} -> 1 [fault]"});
    EXPECT_EQ(logs().front(), "3 serviceId == " + shown);
  }
}

TEST_F(GetFavourites, AServiceThatTheSetDoesNotHaveFails) {
  id = 999;
  EXPECT_EQ(read(), -1);
  EXPECT_EQ(text, untouched);
}

class UpdateFavourites : public tracks::TrackTest {
 protected:
  static std::string sent(const std::string& entry, const std::string& group, const std::string& result) {
    return "IService[set#1]::SetFavorites({" + entry + "}, group=" + group + ") -> " + result;
  }
  static std::string begun(const std::string& id, const std::string& value, const std::string& group) {
    return "3 serviceId == " + id + ", value = " + value + ", group = " + group;
  }

  /// The groups of a service as the set keeps them.
  Groups kept(std::uint64_t id) { return tv().services().favourites(id).value_or(Groups{{255, true}}); }

  int set(char group = 5) { return worker.UpdateFavorites(281, true, group); }
};

TEST_F(UpdateFavourites, SetsOrClearsTheMembershipOfOneService) {
  EXPECT_EQ(worker.UpdateFavorites(281, true, 5), 1);
  EXPECT_EQ(calls(), Lines{sent("281=1", "5", "1")});
  EXPECT_EQ(logs(), Lines{begun("281", "1", "5")});
  EXPECT_EQ(kept(281), (Groups{{5, true}}));
  EXPECT_EQ(kept(282), Groups());

  EXPECT_EQ(worker.UpdateFavorites(281, false, 5), 1);
  EXPECT_EQ(calls(), Lines{sent("281=0", "5", "1")});
  EXPECT_EQ(logs(), Lines{begun("281", "0", "5")});
  EXPECT_EQ(kept(281), (Groups{{5, false}}));
}

TEST_F(UpdateFavourites, TheGroupIsLoggedSignedAndReachesTheSetUnsigned) {
  for (const auto& [group, logged, passed] : std::vector<std::tuple<int, std::string, std::string>>{
           {0, "0", "0"}, {127, "127", "127"}, {128, "-128", "128"}, {200, "-56", "200"}, {255, "-1", "255"}}) {
    EXPECT_EQ(set(static_cast<char>(group)), 1) << group;
    EXPECT_EQ(calls(), Lines{sent("281=1", passed, "1")});
    EXPECT_EQ(logs(), Lines{begun("281", "1", logged)});
  }
  EXPECT_EQ(kept(281), (Groups{{0, true}, {127, true}, {128, true}, {200, true}, {255, true}}));
}

TEST_F(UpdateFavourites, TheServiceIdIsPassedWhole) {
  const std::string greatest = "18446744073709551615";
  EXPECT_EQ(under("IService::SetFavorites result=1", [this] { return worker.UpdateFavorites(~0ULL, false, 1); }), 1);
  EXPECT_EQ(calls(), Lines{sent(greatest + "=0", "1", "1") + " [fault]"});
  EXPECT_EQ(logs(), Lines{begun(greatest, "0", "1")});
}

TEST_F(UpdateFavourites, AnyResultAboveZeroSucceeds) {
  for (const std::string result : {"1", "2", "2147483647"}) {
    EXPECT_EQ(under("IService::SetFavorites result=" + result, [this] { return set(); }), 1) << result;
  }
}

TEST_F(UpdateFavourites, AGroupThatIsRefusedAnswersMinusOne) {
  for (const std::string& way : tracks::notPositive) {
    EXPECT_EQ(under("IService::SetFavorites " + way, [this] { return set(); }), -1) << way;
    EXPECT_EQ(logs(), Lines{begun("281", "1", "5")});
  }
  EXPECT_EQ(kept(281), Groups());
  EXPECT_EQ(worker.UpdateFavorites(999, true, 5), -1) << "the set does not have the service";
}

TEST_F(UpdateFavourites, AnExceptionAnswersMinusOne) {
  EXPECT_EQ(under("IService::SetFavorites result=throw", [this] { return set(); }), -1);
  EXPECT_EQ(logs(), (Lines{begun("281", "1", "5"), caught("UpdateFavorites", "IService::SetFavorites")}));
}

TEST_F(UpdateFavourites, WithoutAServiceProxyAnswersZero) {
  failsWithout(
      worker.svc_proxy, "CreateService", noProxy, [this] { return set(); }, 0);
  EXPECT_EQ(kept(281), Groups());
}

TEST_F(UpdateFavourites, IsWhatIsReadAfterwards) {
  ASSERT_EQ(worker.UpdateFavorites(282, true, 3), 1);
  ASSERT_EQ(worker.UpdateFavorites(282, false, 40), 1);
  unsigned long long id = 282;
  ASSERT_EQ(worker.GetFavorites(id, text), 1);
  EXPECT_EQ(text, tracks::document(Members{{"3", "\"1\""}, {"4", "\"0\""}}));
}

}  // namespace
