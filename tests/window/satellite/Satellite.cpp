// SPDX-License-Identifier: MIT
#include "Satellite.h"

#include "services/ServiceStore.h"
#include "tvservice/TCCriteriaHelper.h"

namespace satellite {

using virtualtv::WindowId;
using Data = TCServiceData;

const std::string notParsed = "0 #### DVBSIChannelDirectEx reade.parser Fail ###";
const std::string createManager = "TVServiceAPI::CreateSatellite() -> 0";
const std::string tune = "IServiceNavigation[main#1]::TuneService(serviceId=900, 0, 0, appId=\"\") -> 1";

namespace {

virtualtv::Service terrestrialService() {
  return support::service({{Data::SERVICE_ID, 281},
                           {Data::CHANNEL_TYPE, 9},
                           {Data::PTC, 34},
                           {Data::FREQUENCY, 578000},
                           {Data::MAJOR, 7},
                           {Data::MINOR, 0},
                           {Data::PROGRAM_NUMBER, 300},
                           {Data::ANTENNA_MODE, ANTENNA_TERRESTRIAL},
                           {virtualtv::HIDDEN, 0},
                           {virtualtv::SERVICE_MODE, 0}});
}

virtualtv::Service satelliteService() {
  return support::service({{Data::SERVICE_ID, 900},
                           {Data::CHANNEL_TYPE, 9},
                           {Data::PTC, 3},
                           {Data::FREQUENCY, 11727000},
                           {Data::MODULATION, 16},
                           {Data::SYMBOL_RATE, 27},
                           {Data::MAJOR, 1},
                           {Data::MINOR, 2},
                           {Data::PROGRAM_NUMBER, 50},
                           {Data::ANTENNA_MODE, ANTENNA_SATELLITE},
                           {virtualtv::HIDDEN, 0},
                           {virtualtv::SERVICE_MODE, 0}});
}

}  // namespace

std::string description(const Members& changes) {
  Members members{{"TYPE", "9"},
                  {"ModulationType", "16"},
                  {"SymbolRate", "27"},
                  {"ProgramNumber", "50"},
                  {"PTC", "3"},
                  {"ProgNum", "9"},
                  {"MINOR_NUMBER_ONE_PART", "2"},
                  {"SatelliteId", "\"1A\""},
                  {"Frequency", "11727000"},
                  {"Polarization", "1"}};
  for (const auto& [name, value] : changes) members[name] = value;
  std::string text;
  for (const auto& [name, value] : members) {
    if (!value.empty()) text += (text.empty() ? "{\"" : ", \"") + name + "\": " + value;
  }
  return text + "}";
}

std::string given(const std::string& text) {
  return "3 #### SetChannel ChannelInfo[" + text + "]";
}

Lines understood(const std::string& text) {
  return {given(text), "3 #### DVBSIChannelDirectEx ChannelInfo Success ###", "3 #### DVBSIChannelDirectEx ###"};
}

std::string lookUp(const std::string& transponder, const std::string& result) {
  return "ISatellite[set#1]::LookupTransponder(transponder=" + transponder + ") result=" + result;
}

std::string find(const std::string& conditions, const std::string& answer) {
  return "IService[set#1]::FindService(fetch 12, " + conditions + ", count=1) " + answer;
}

void SatelliteTest::SetUp() {
  setServices({terrestrialService(), satelliteService()});
  WorkerTest::SetUp();
}

void SatelliteTest::restart() {
  clearFaults();
  tv().tune(WindowId::main, *tv().services().keyOf(281));
  forget();
}

unsigned long long SatelliteTest::onScreen() {
  TCCriteriaHelper criteria;
  criteria.Fetch(Data::SERVICE_ID);
  TCServiceData record;
  unsigned long long id = 0;
  EXPECT_TRUE(tv().services().at(tv().state()[WindowId::main].service, criteria, record));
  EXPECT_TRUE(record.Get(Data::SERVICE_ID, id));
  return id;
}

void SatelliteTest::expectRefused(const std::string& text, const Lines& expected) {
  restart();
  const virtualtv::TvState before = tv().state();
  EXPECT_EQ(set(text), 0);
  EXPECT_EQ(calls(), expected);
  EXPECT_EQ(tv().state(), before);
}

}  // namespace satellite
