// SPDX-License-Identifier: MIT
// Tuning to a satellite service by a JSON description: the calls to the set, and the effects of failures.
#include "Satellite.h"

namespace satellite {

namespace {

// A description that matches a service.

TEST_F(SatelliteTest, LooksTheTransponderUpThenFindsTheServiceThenTunesToIt) {
  const std::string text = description();
  EXPECT_EQ(set(text), 1);
  EXPECT_EQ(calls(), (Lines{createManager, lookUp() + " -> 1", find(), tune}));
  EXPECT_EQ(logs(), join({understood(text), {"3 SERVICE_ID=[900]"}}));
  EXPECT_EQ(onScreen(), 900U);
}

TEST_F(SatelliteTest, ReadsNoSourceSwitchesNoneAndWritesNoKey) {
  tv().adjust([](virtualtv::TvState& state) { state[virtualtv::WindowId::main].source = 13; });
  setSetting("db/emp/mainsource", 31);
  setSetting("db/emp/previousmainsource", 77);
  EXPECT_EQ(set(description()), 1);
  EXPECT_EQ(calls().size(), 4U);
  EXPECT_EQ(tv().state()[virtualtv::WindowId::main].source, 13);
  EXPECT_EQ(intSetting("db/emp/mainsource"), 31);
  EXPECT_EQ(intSetting("db/emp/previousmainsource"), 77);
  EXPECT_EQ(textSetting("db/kel/current_source_type"), std::nullopt);
}

// The meaning of the members.

TEST_F(SatelliteTest, TheModulationsThatCanBeSearchedFor) {
  const std::map<std::string, Lines> conditions{{"where 6=16, ", {"16", "65552", "-65520"}},
                                                {"where 6=18, ", {"18", "65554"}},
                                                {"where 6=7, ", {"5", "65541"}},
                                                {"", {"0", "7", "1", "17", "-1", "65536", "2147483647"}}};
  for (const auto& [condition, modulations] : conditions) {
    for (const std::string& modulation : modulations) {
      SCOPED_TRACE(modulation);
      forget();
      set(description({{"ModulationType", modulation}}));
      const std::string call = calls()[2];
      EXPECT_NE(call.find("where 1=9, " + condition + "where 7=27, where 2=3, where 15=50, where 1=9, where 14=2, "),
                std::string::npos)
          << call;
    }
  }
}

TEST_F(SatelliteTest, AMinorNumberIsAConditionWhenItIsAboveZero) {
  const std::map<std::string, std::string> conditions{
      {"0", ""}, {"-1", ""}, {"-2147483648", ""}, {"1", ", where 14=1"}, {"2147483647", ", where 14=2147483647"}};
  for (const auto& [minor, condition] : conditions) {
    SCOPED_TRACE(minor);
    forget();
    set(description({{"MINOR_NUMBER_ONE_PART", minor}}));
    const std::string call = calls()[2];
    EXPECT_NE(call.find("where 15=50, where 1=9" + condition + ", count=1)"), std::string::npos) << call;
  }
}

TEST_F(SatelliteTest, ANumberOfAServiceIsItsLow16Bits) {
  EXPECT_EQ(set(description({{"TYPE", "65545"}, {"ProgramNumber", "65586"}, {"PTC", "-65533"}, {"ProgNum", "131081"}})),
            1);
  EXPECT_EQ(calls()[2], find());
  set(description({{"TYPE", "-1"}, {"ProgramNumber", "-2"}, {"PTC", "2147483647"}, {"ProgNum", "-2147483648"}}));
  const std::string call = calls()[2];
  EXPECT_NE(call.find("where 1=65535, where 6=16, where 7=27, where 2=65535, where 15=65534, where 1=0, "),
            std::string::npos)
      << call;
}

TEST_F(SatelliteTest, TheSymbolRateIsSearchedForAsGivenAndLookedUpAThousandfoldIn16Bits) {
  struct Rate {
    std::string given;
    std::string thousandfold;
    std::string searched;  ///< as traced
  };
  const std::vector<Rate> rates{{"27", "27000", "27"},
                                {"0", "0", "0"},
                                {"1", "1000", "1"},
                                {"65", "65000", "65"},
                                {"66", "464", "66"},
                                {"27500", "40416", "27500"},
                                {"2147483647", "64536", "2147483647"},
                                {"-1", "64536", "-1"},
                                {"-2147483648", "0", "-2147483648"}};
  for (const Rate& rate : rates) {
    SCOPED_TRACE(rate.given);
    forget();
    set(description({{"SymbolRate", rate.given}}));
    const Lines made = calls();
    EXPECT_EQ(made[1], lookUp("65535,26,11727000," + rate.thousandfold + ",1,-1") + " -> 1");
    EXPECT_NE(made[2].find(", where 7=" + rate.searched + ", "), std::string::npos) << made[2];
  }
}

TEST_F(SatelliteTest, TheSatelliteIsAHexadecimalTextAndBeyondTheRangeTheClosestThatFits) {
  const std::map<std::string, Lines> satellites{
      {"26", {R"("1A")", R"("1a")", R"("0x1A")", R"(" 1A")", R"("+1A")", R"("1A\u00001")"}},
      {"-1", {R"("-1")"}},
      {"0", {R"("")", R"("zz")", R"("0")", "null", "true"}},
      {"1", {R"("1G")", "1.5"}},
      {"19", {R"("13.0E")"}},
      {"38", {"26"}},
      {"2147483647", {R"("7FFFFFFF")", R"("80000000")", R"("FFFFFFFFFFFFFFFFFFFF")"}},
      {"-2147483648", {R"("-80000001")", R"("-FFFFFFFFFFFFFFFFFFFF")"}}};
  for (const auto& [id, texts] : satellites) {
    for (const std::string& satellite : texts) {
      SCOPED_TRACE(satellite);
      restart();
      set(description({{"SatelliteId", satellite}}));
      EXPECT_EQ(calls()[1], lookUp("65535," + id + ",11727000,27000,1,-1") + " -> 1");
    }
  }
}

TEST_F(SatelliteTest, FrequencyAndPolarisationArePassedOn) {
  EXPECT_EQ(set(description({{"Frequency", "-5"}, {"Polarization", "-2147483648"}})), 1);
  EXPECT_EQ(calls()[1], lookUp("65535,26,-5,27000,-2147483648,-1", "65535") + " -> 0");
}

TEST_F(SatelliteTest, AMissingMemberCountsAsOne) {
  EXPECT_EQ(set("{}"), 0);
  EXPECT_EQ(calls(),
            (Lines{createManager, lookUp("65535,1,1,1000,1,-1", "65535") + " -> 0",
                   find("where 1=1, where 7=1, where 2=1, where 15=1, where 1=1, where 14=1", "service={} -> 0")}));
}

TEST_F(SatelliteTest, EachMissingMemberAloneCountsAsOne) {
  const std::map<std::string, std::string> conditions{
      {"TYPE", "where 1=1, where 6=16, where 7=27, where 2=3, where 15=50, where 1=9, where 14=2"},
      {"ModulationType", "where 1=9, where 7=27, where 2=3, where 15=50, where 1=9, where 14=2"},
      {"SymbolRate", "where 1=9, where 6=16, where 7=1, where 2=3, where 15=50, where 1=9, where 14=2"},
      {"PTC", "where 1=9, where 6=16, where 7=27, where 2=1, where 15=50, where 1=9, where 14=2"},
      {"ProgramNumber", "where 1=9, where 6=16, where 7=27, where 2=3, where 15=1, where 1=9, where 14=2"},
      {"ProgNum", "where 1=9, where 6=16, where 7=27, where 2=3, where 15=50, where 1=1, where 14=2"},
      {"MINOR_NUMBER_ONE_PART", "where 1=9, where 6=16, where 7=27, where 2=3, where 15=50, where 1=9, where 14=1"}};
  for (const auto& [member, searched] : conditions) {
    SCOPED_TRACE(member);
    forget();
    set(description({{member, ""}}));
    const std::string call = calls()[2];
    EXPECT_NE(call.find("(fetch 12, " + searched + ", count=1)"), std::string::npos) << call;
  }
}

// Failures of the set.

TEST_F(SatelliteTest, WithoutASatelliteManagerTheAnswerIsMinusOne) {
  const std::string text = description();
  const std::string create = "TVServiceAPI::CreateSatellite";
  for (const std::string way : {"null", "-1", "1", "unwritten", "throw"}) {
    SCOPED_TRACE(way);
    restart();
    fault(create + " result=" + way);
    EXPECT_EQ(set(text), -1);
    const Lines thrown{caught("SetDVBSIChannelDirectEx", create)};
    EXPECT_EQ(logs(), join({understood(text), way == "throw" ? thrown : Lines(), {"0  pSatelliteMgr is NULL !"}}));
    EXPECT_EQ(calls().size(), 1U);
  }
  EXPECT_EQ(onScreen(), 281U);
}

TEST_F(SatelliteTest, WhatTheManagerMakesOfTheTransponderDoesNotCount) {
  const std::string text = description();
  for (const char* way : {"result=0", "result=-1", "result=unwritten", "result=1 out.result=7"}) {
    SCOPED_TRACE(way);
    restart();
    fault(std::string("ISatellite::LookupTransponder ") + way);
    EXPECT_EQ(set(text), 1);
    EXPECT_EQ(logs(), join({understood(text), {"3 SERVICE_ID=[900]"}}));
    EXPECT_EQ(calls()[2], find());
  }
}

TEST_F(SatelliteTest, ATransponderThatIsLookedUpWithAnExceptionAnswersZeroAndFindsNothing) {
  const std::string text = description();
  fault("ISatellite::LookupTransponder result=throw");
  EXPECT_EQ(set(text), 0);
  EXPECT_EQ(logs(), join({understood(text), {caught("SetDVBSIChannelDirectEx", "ISatellite::LookupTransponder")}}));
  const Lines made = calls();
  ASSERT_EQ(made.size(), 2U);
  EXPECT_EQ(made[0], createManager);
  EXPECT_EQ(made[1].rfind("ISatellite[set#1]::LookupTransponder(", 0), 0U) << made[1];
  EXPECT_EQ(onScreen(), 281U);
}

TEST_F(SatelliteTest, AServiceThatCannotBeFoundIsZero) {
  const std::string text = description();
  for (const std::string way : {"result=0", "result=-1", "result=0 out.service={12=900}", "result=throw"}) {
    SCOPED_TRACE(way);
    restart();
    fault("IService::FindService " + way);
    EXPECT_EQ(set(text), 0);
    const Lines thrown{caught("SetDVBSIChannelDirectEx", "IService::FindService")};
    EXPECT_EQ(logs(), join({understood(text), way == "result=throw" ? thrown : Lines()}));
    EXPECT_EQ(calls().size(), 3U);
  }
}

TEST_F(SatelliteTest, AServiceWithoutAnIdIsTunedToByTheIdOfNone) {
  const std::string text = description();
  for (const char* way : {"result=unwritten", "out.service={}", "out.service={13=1}"}) {
    SCOPED_TRACE(way);
    restart();
    fault(std::string("IService::FindService ") + way);
    EXPECT_EQ(set(text), 0);
    EXPECT_EQ(logs(), join({understood(text), {"3 SERVICE_ID=[18446744073709551615]"}}));
    EXPECT_EQ(calls()[3],
              "IServiceNavigation[main#1]::TuneService(serviceId=18446744073709551615, 0, 0, appId=\"\") -> 0");
  }
}

TEST_F(SatelliteTest, ATuneThatFailsIsZero) {
  const std::string text = description();
  const std::map<std::string, Lines> ways{
      {"0", {}}, {"-1", {}}, {"throw", {caught("SetDVBSIChannelDirectEx", "IServiceNavigation::TuneService")}}};
  for (const auto& [way, lines] : ways) {
    SCOPED_TRACE(way);
    restart();
    fault("IServiceNavigation::TuneService result=" + way);
    EXPECT_EQ(set(text), 0);
    EXPECT_EQ(logs(), join({understood(text), {"3 SERVICE_ID=[900]"}, lines}));
    EXPECT_EQ(onScreen(), 281U);
  }
}

TEST_F(SatelliteTest, AnyPositiveResultIsATune) {
  for (const char* result : {"1", "2", "2147483647"}) {
    restart();
    fault(std::string("IServiceNavigation::TuneService result=") + result);
    EXPECT_EQ(set(description()), 1) << result;
    restart();
    fault(std::string("IService::FindService result=") + result);
    EXPECT_EQ(set(description()), 1) << result;
  }
}

TEST_F(SatelliteTest, ProxiesAreUsedAsTheyAreAndNotMade) {
  const std::string text = description();
  worker.svc_navi_proxy = nullptr;
  EXPECT_EQ(set(text), 0);
  EXPECT_EQ(calls(), (Lines{createManager, lookUp() + " -> 1", find()})) << "the service is found, but not tuned to";
  EXPECT_EQ(logs(), join({understood(text), {"3 SERVICE_ID=[900]"}}));
  worker.svc_proxy = nullptr;
  EXPECT_EQ(set(text), 0);
  EXPECT_EQ(calls(), (Lines{createManager, lookUp() + " -> 1"}));
  EXPECT_EQ(worker.svc_proxy, nullptr);
  EXPECT_EQ(worker.svc_navi_proxy, nullptr);
}

}  // namespace

}  // namespace satellite
