// SPDX-License-Identifier: MIT
// The favourite groups of a service, read as a document and changed, including rare answers of the set.
#include "services/ServiceStore.h"
#include "support/Tracks.h"
#include "window/report/Documents.h"

namespace {

using reports::notWritten;
using reports::WriterFault;
using support::caught;
using support::join;
using support::Lines;
using tracks::Members;

const Lines noProxy = join({channels::noService(), {"0 Serviceproxy is NULL"}});

class GetFavourites : public tracks::TrackTest {
 protected:
  int read() { return worker.GetFavorites(id, text); }

  unsigned long long id = 281;
};

TEST_F(GetFavourites, AnyResultAboveZeroSucceeds) {
  const std::string ask = "IService::GetFavorites out.favorites={7=1} ";
  const auto asked = [this] { return read(); };
  const std::string document = tracks::document(Members{{"7", "\"1\""}});
  const Lines told{"3 itor->first = 7,itor->second = 1",
                   "3 firstdata = 7",
                   "3 firststr = 7",
                   "3 seconddata = 1",
                   "3 secondstr = 1",
                   "3 retStr = " + document};
  expectEach({"3 serviceId == 281"}, {{ask + "result=2", 1, told}, {ask + "result=2147483647", 1, told}}, asked,
             document);
  expectEach({"3 serviceId == 281"},
             {{ask, -1, {"0 GetFavorites failed"}, tracks::notPositive},
              {ask + "result=throw", -1, {caught("GetFavorites", "IService::GetFavorites")}}},
             asked);
  failsWithout(worker.svc_proxy, "CreateService", noProxy, asked, 0);
}

TEST_F(GetFavourites, AMapThatIsNotWrittenIsEmpty) {
  expectEach(
      {"3 serviceId == 281"}, {{"IService::GetFavorites result=unwritten", 1, {"3 retStr = {}\n"}}},
      [this] { return read(); }, "{}\n");
}

TEST_F(GetFavourites, ADocumentThatCannotBeWrittenFailsAndLeavesTheText) {
  const WriterFault writer;
  EXPECT_EQ(read(), -1);
  EXPECT_TRUE(writer.hit());
  EXPECT_EQ(text, untouched);
  EXPECT_EQ(logs().back(), notWritten("GetFavorites"));
}

TEST_F(GetFavourites, TheServiceIdIsPassedWholeAndLeftAsItIs) {
  for (const unsigned long long wanted : {0ULL, 4294967296ULL, 18446744073709551615ULL}) {
    id = wanted;
    EXPECT_EQ(under("IService::GetFavorites result=1 out.favorites={}", [this] { return read(); }), 1);
    EXPECT_EQ(id, wanted);
    EXPECT_EQ(calls(), Lines{"IService[set#1]::GetFavorites(serviceId=" + std::to_string(wanted) +
                             ") favorites={} -> 1 [fault]"});
  }
}

class UpdateFavourites : public tracks::TrackTest {
 protected:
  /// The log line of an update, and the call that reaches the set.
  static std::string begun(const std::string& id, const std::string& value, const std::string& group) {
    return "3 serviceId == " + id + ", value = " + value + ", group = " + group;
  }
  static std::string sent(const std::string& entry, const std::string& group) {
    return "IService[set#1]::SetFavorites({" + entry + "}, group=" + group + ") -> 1";
  }
};

TEST_F(UpdateFavourites, AnyResultAboveZeroSucceeds) {
  const auto set = [this] { return worker.UpdateFavorites(281, true, 5); };
  const std::string call = "IService::SetFavorites";
  expectEach({begun("281", "1", "5")},
             {{call + " result=2147483647", 1, {}},
              {call, -1, {}, tracks::notPositive},
              {call + " result=throw", -1, {caught("UpdateFavorites", call)}}},
             set);
  failsWithout(worker.svc_proxy, "CreateService", noProxy, set, 0);
}

TEST_F(UpdateFavourites, TheGroupIsLoggedSignedAndReachesTheSetUnsigned) {
  for (const auto& [group, logged, passed] : std::vector<std::tuple<int, std::string, std::string>>{
           {0, "0", "0"}, {127, "127", "127"}, {128, "-128", "128"}, {200, "-56", "200"}, {255, "-1", "255"}}) {
    EXPECT_EQ(worker.UpdateFavorites(281, true, static_cast<char>(group)), 1) << group;
    EXPECT_EQ(calls(), Lines{sent("281=1", passed)});
    EXPECT_EQ(logs(), Lines{begun("281", "1", logged)});
  }
  EXPECT_EQ(tv().services().favourites(281),
            (std::map<std::uint8_t, bool>{{0, true}, {127, true}, {128, true}, {200, true}, {255, true}}));
}

TEST_F(UpdateFavourites, TheServiceIdIsPassedWhole) {
  EXPECT_EQ(under("IService::SetFavorites result=1", [this] { return worker.UpdateFavorites(~0ULL, false, 1); }), 1);
  EXPECT_EQ(calls(), Lines{sent("18446744073709551615=0", "1") + " [fault]"});
}

// The commands' parameters.

/// Texts of ids, with the ids that they are read as.
const std::vector<std::pair<std::string, std::string>> ids{{"0x119", "281"},
                                                           {"0431", "281"},
                                                           {" 281abc", "281"},
                                                           {"abc", "0"},
                                                           {" ", "0"},
                                                           {"18446744073709551615", "18446744073709551615"},
                                                           {"18446744073709551616", "18446744073709551615"},
                                                           {"\t\n-1", "18446744073709551615"},
                                                           {"-0x10", "18446744073709551600"},
                                                           {"-18446744073709551616", "18446744073709551615"}};

class FavouriteCommand : public tracks::TrackCommand {};

TEST_F(FavouriteCommand, AnIdIsReadInItsBase) {
  for (const auto& [text, id] : ids) {
    EXPECT_EQ(executeUnder("IService::GetFavorites result=1 out.favorites={}", "GetFavorites", {text}), "ascii |\n| {}")
        << text;
    EXPECT_EQ(logs(), support::commandLogs("GetFavorites", {text},
                                           {"0 id == " + id, "3 serviceId == " + id, "3 retStr = {}\n"}, 1));
  }
}

TEST_F(FavouriteCommand, EveryMembershipButZeroIsTrueAndOfAGroupTheLowEightBitsCount) {
  for (const auto& [member, value] : std::vector<std::pair<std::string, std::string>>{
           {"0", "0"}, {"-0", "0"}, {"2", "1"}, {"-1", "1"}, {"256", "1"}, {"-2147483648", "1"}}) {
    EXPECT_EQ(execute("UpdateFavorites", {"281", member, "5"}), "int 1") << member;
    EXPECT_EQ(calls().back(), "IService[set#1]::SetFavorites({281=" + value + "}, group=5) -> 1") << member;
  }
  for (const auto& [text, group] : std::vector<std::pair<std::string, std::string>>{
           {"256", "0"}, {"300", "44"}, {"-1", "255"}, {"2147483647", "255"}, {"-2147483648", "0"}}) {
    EXPECT_EQ(execute("UpdateFavorites", {"281", "1", text}), "int 1") << text;
    EXPECT_EQ(calls().back(), "IService[set#1]::SetFavorites({281=1}, group=" + group + ") -> 1") << text;
  }
}

}  // namespace
