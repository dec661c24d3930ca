// The commands of favourites through the engine: what they read as parameters, what they answer.
#include "support/Tracks.h"

namespace {

using support::commandLogs;
using support::join;
using support::Lines;
using tracks::Members;

const std::string getter = "GetFavorites";
const std::string setter = "UpdateFavorites";

class FavouriteCommand : public tracks::TrackCommand {
 protected:
  void give(const std::map<std::uint8_t, bool>& favourites) {
    virtualtv::Service service;
    service.favourites = favourites;
    showTv(service);
  }

  Lines asked() { return callsOf("IService[set#1]::GetFavorites"); }
  Lines sent() { return callsOf("IService[set#1]::SetFavorites"); }
};

TEST_F(FavouriteCommand, FavouritesAreADocument) {
  give({{1, true}});
  const std::string text = tracks::document(Members{{"1", "\"1\""}});
  EXPECT_EQ(ask(getter, {"281", "x"}).text(), text);
  EXPECT_EQ(logs(),
            commandLogs(getter, {"281", "x"},
                        {"0 id == 281", "3 serviceId == 281", "3 itor->first = 1,itor->second = 1", "3 firstdata = 1",
                         "3 firststr = 1", "3 seconddata = 1", "3 secondstr = 1", "3 retStr = " + text},
                        1));
}

TEST_F(FavouriteCommand, AnIdIsReadInItsBase) {
  const std::vector<std::pair<std::string, std::string>> ids{{"281", "281"},
                                                             {"0x119", "281"},
                                                             {"0X119", "281"},
                                                             {"0431", "281"},
                                                             {" 281", "281"},
                                                             {"281abc", "281"},
                                                             {"+281", "281"},
                                                             {"abc", "0"},
                                                             {" ", "0"},
                                                             {"0", "0"},
                                                             {"18446744073709551615", "18446744073709551615"},
                                                             {"0xffffffffffffffff", "18446744073709551615"},
                                                             {"18446744073709551616", "18446744073709551615"},
                                                             {"\t\n-1", "18446744073709551615"},
                                                             {"-2", "18446744073709551614"},
                                                             {"-0x10", "18446744073709551600"},
                                                             {"-18446744073709551616", "18446744073709551615"}};
  for (const auto& [text, id] : ids) {
    EXPECT_EQ(executeUnder("IService::GetFavorites result=1 out.favorites={}", getter, {text}), "ascii |\n| {}")
        << text;
    EXPECT_EQ(asked(), Lines{"IService[set#1]::GetFavorites(serviceId=" + id + ") favorites={} -> 1 [fault]"}) << text;
    EXPECT_EQ(logs(), commandLogs(getter, {text}, {"0 id == " + id, "3 serviceId == " + id, "3 retStr = {}\n"}, 1));
  }
}

TEST_F(FavouriteCommand, WithoutAnIdTheAnswerIsMinusOneAtOnce) {
  for (const Lines& parameters : {Lines{}, Lines{""}, Lines{"", "281"}}) {
    EXPECT_EQ(execute(getter, parameters), "int -1");
    EXPECT_EQ(calls(), Lines());
    EXPECT_EQ(logs(), commandLogs(getter, parameters, {}, -1));
  }
}

TEST_F(FavouriteCommand, FavouritesThatCannotBeReadAreMinusOne) {
  for (const std::string way : {"result=0", "result=-1", "result=throw"}) {
    EXPECT_EQ(executeUnder("IService::GetFavorites " + way, getter, {"281"}), "int -1") << way;
    EXPECT_EQ(finished(), "-1") << way;
  }
}

TEST_F(FavouriteCommand, WithoutAServiceProxyFavouritesAreMinusOneWithResultZero) {
  close();
  fault("TVServiceAPI::CreateService always result=-1");
  ASSERT_TRUE(open());
  ASSERT_EQ(execute("SetWindow", {"0"}), "int 1");
  forget();
  const Lines missing = join({channels::noService(), {"0 Serviceproxy is NULL"}});
  EXPECT_EQ(execute(getter, {"281"}), "int -1");
  EXPECT_EQ(logs(), commandLogs(getter, {"281"}, join({{"0 id == 281"}, missing}), 0));
  EXPECT_EQ(execute(setter, {"281", "1", "1"}), "int 0");
  EXPECT_EQ(logs(), commandLogs(setter, {"281", "1", "1"}, missing, 0));
}

TEST_F(FavouriteCommand, AMembershipIsSetOrCleared) {
  EXPECT_EQ(execute(setter, {"281", "1", "5", "x"}), "int 1");
  EXPECT_EQ(calls(), Lines{"IService[set#1]::SetFavorites({281=1}, group=5) -> 1"});
  EXPECT_EQ(logs(), commandLogs(setter, {"281", "1", "5", "x"}, {"3 serviceId == 281, value = 1, group = 5"}, 1));
  EXPECT_EQ(execute(setter, {"0x119", "0", "5"}), "int 1");
  EXPECT_EQ(calls(), Lines{"IService[set#1]::SetFavorites({281=0}, group=5) -> 1"});
  EXPECT_EQ(ask(getter, {"281"}).text(), tracks::document(Members{{"5", "\"0\""}}));
}

TEST_F(FavouriteCommand, EveryMembershipButZeroIsTrue) {
  const std::vector<std::pair<std::string, std::string>> values{
      {"0", "0"}, {"-0", "0"}, {"1", "1"}, {"2", "1"}, {"-1", "1"}, {"256", "1"}, {"-2147483648", "1"}};
  for (const auto& [text, value] : values) {
    EXPECT_EQ(execute(setter, {"281", text, "5"}), "int 1") << text;
    EXPECT_EQ(sent(), Lines{"IService[set#1]::SetFavorites({281=" + value + "}, group=5) -> 1"}) << text;
  }
}

TEST_F(FavouriteCommand, OfAGroupTheLowEightBitsCount) {
  const std::vector<std::tuple<std::string, std::string, std::string>> groups{
      {"0", "0", "0"},      {"127", "127", "127"},       {"128", "128", "-128"},
      {"255", "255", "-1"}, {"256", "0", "0"},           {"300", "44", "44"},
      {"-1", "255", "-1"},  {"2147483647", "255", "-1"}, {"-2147483648", "0", "0"}};
  for (const auto& [text, group, logged] : groups) {
    EXPECT_EQ(execute(setter, {"281", "1", text}), "int 1") << text;
    EXPECT_EQ(sent(), Lines{"IService[set#1]::SetFavorites({281=1}, group=" + group + ") -> 1"}) << text;
    EXPECT_EQ(logs(), commandLogs(setter, {"281", "1", text}, {"3 serviceId == 281, value = 1, group = " + logged}, 1));
  }
}

TEST_F(FavouriteCommand, AMembershipOrGroupThatIsNoNumberAnswersMinusOneWithoutACall) {
  for (const std::string& text : support::noNumbers) {
    for (const Lines& parameters : {Lines{"281", text, "5"}, Lines{"281", "1", text}}) {
      EXPECT_EQ(execute(setter, parameters), "int -1") << '\'' << text << '\'';
      EXPECT_EQ(calls(), Lines());
      EXPECT_EQ(logs(), commandLogs(setter, parameters, {}, -1));
    }
  }
}

TEST_F(FavouriteCommand, AnIdWithoutDigitsIsTheServiceZero) {
  for (const std::string text : {"", "abc"}) {
    EXPECT_EQ(execute(setter, {text, "1", "5"}), "int -1") << "the set does not have it";
    EXPECT_EQ(sent(), Lines{"IService[set#1]::SetFavorites({0=1}, group=5) -> 0"});
    EXPECT_EQ(finished(), "-1");
  }
}

TEST_F(FavouriteCommand, AGroupThatTheSetRefusesAnswersMinusOne) {
  for (const std::string way : {"result=0", "result=-1", "result=throw"}) {
    EXPECT_EQ(executeUnder("IService::SetFavorites " + way, setter, {"281", "1", "5"}), "int -1") << way;
    EXPECT_EQ(finished(), "-1") << way;
  }
}

}  // namespace
