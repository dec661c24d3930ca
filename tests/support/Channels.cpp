// SPDX-License-Identifier: MIT
#include "support/Channels.h"

#include <utility>

#include "seam/Values.h"
#include "text/Units.h"

namespace channels {

using virtualtv::Service;
using virtualtv::Tv;
using virtualtv::WindowId;

namespace {

Service terrestrial(std::map<int, std::uint64_t> numbers, std::u16string name) {
  const std::map<int, std::uint64_t> common{
      {TCServiceData::MINOR, 0},
      {TCServiceData::TRANSPORT_STREAM_ID, 1051},
      {TCServiceData::ORIGINAL_NETWORK_ID, 8442},
      {TCServiceData::MODULATION, 6},
      {TCServiceData::SOURCE_ID, 4},
      {TCServiceData::LOCK, 0},
      {TCServiceData::ANTENNA_MODE, ANTENNA_TERRESTRIAL},
      {virtualtv::HIDDEN, 0},
      {virtualtv::SERVICE_MODE, 0},
  };
  numbers.insert(common.begin(), common.end());
  return support::service(std::move(numbers), std::move(name));
}

}  // namespace

std::vector<Service> threeServices() {
  using Data = TCServiceData;
  return {
      terrestrial({{Data::SERVICE_ID, 281},
                   {Data::CHANNEL_TYPE, 1},
                   {Data::PTC, 34},
                   {Data::FREQUENCY, 578000},
                   {Data::MAJOR, 7},
                   {Data::PROGRAM_NUMBER, 300}},
                  u"News 24"),
      terrestrial({{Data::SERVICE_ID, 282},
                   {Data::CHANNEL_TYPE, 2},
                   {Data::PTC, 35},
                   {Data::FREQUENCY, 586000},
                   {Data::MAJOR, 8},
                   {Data::PROGRAM_NUMBER, 20}},
                  u"Radio 5"),
      terrestrial({{Data::SERVICE_ID, 283},
                   {Data::CHANNEL_TYPE, 1},
                   {Data::PTC, 36},
                   {Data::FREQUENCY, 594000},
                   {Data::MAJOR, 9},
                   {Data::PROGRAM_NUMBER, 30}},
                  u""),
  };
}

TCServiceData record(std::string_view text) {
  TCServiceData made;
  EXPECT_TRUE(virtualtv::seam::parse(text, made)) << text;
  return made;
}

void setText(TCServiceData& record, int field, std::u16string_view units) {
  std::vector<unsigned short> stored;
  for (const char16_t unit : units) {
    unsigned short bigEndian = 0;
    auto* bytes = reinterpret_cast<unsigned char*>(&bigEndian);
    bytes[0] = static_cast<unsigned char>(unit >> 8U);
    bytes[1] = static_cast<unsigned char>(unit & 0xFFU);
    stored.push_back(bigEndian);
  }
  record.Set(field, stored.data(), static_cast<int>(stored.size()));
}

std::string quoted(std::u16string_view units) {
  std::string text = virtualtv::text::quoted(units);
  for (std::size_t at = text.find(' '); at != std::string::npos; at = text.find(' ', at)) {
    text.replace(at, 1, "\\u0020");
  }
  return text;
}

Lines noNavigation() {
  return {"0 svc_navi_proxy is NULL, t_eWindow =0", "0 CEmpTaskWindow svc_navi_proxy create is FAIL!!"};
}

Lines noService() {
  return {"0 src_ctrl_proxy is NULL t_eWindow =0", "0 CEmpTaskWindow svc_proxy create is FAIL!!"};
}

std::string head(const std::string& call) {
  return call.substr(0, call.find(") ") + 1);
}

Lines withoutConditions(const Lines& calls) {
  const std::string before = " criteria=";
  std::string conditions;
  Lines lines;
  for (std::string line : calls) {
    if (line.rfind("TCNavigationModeHelper::", 0) == 0) {
      const std::size_t start = line.find(before) + before.size();
      conditions = line.substr(start, line.find(" -> ", start) - start);
      line.replace(start, conditions.size(), "CRITERIA");
    } else if (const std::size_t open = line.find('('); !conditions.empty() && open != std::string::npos &&
                                                        line.compare(open + 1, conditions.size(), conditions) == 0) {
      line.replace(open + 1, conditions.size(), "CRITERIA");
    }
    lines.push_back(std::move(line));
  }
  return lines;
}

void furnish(Tv& tv, const std::vector<Service>& services) {
  tv.removeServices();  // removes the built-in services
  tv.import(services, false);
  tv.adjust([](virtualtv::TvState& state) {
    state.region = 0;
    state.country = 3;
    state[WindowId::main].mode = {0, 1};
  });
  const virtualtv::ServiceKey news = tv.state()[WindowId::main].service;
  tv.tune(WindowId::main, news + 1);
  tv.tune(WindowId::main, news);
}

void ChannelTest::SetUp() {
  furnish(tv());
  WorkerTest::SetUp();
}

void ChannelTest::loseNavigation() {
  worker.svc_navi_proxy = nullptr;
  fault("TVServiceAPI::CreateServiceNavigation always result=-1");
}

void ChannelTest::loseService() {
  worker.svc_proxy = nullptr;
  fault("TVServiceAPI::CreateService always result=-1");
}

void ChannelEngineTest::SetUp() {
  furnish(tv());
  EngineTest::SetUp();
}

std::string ChannelEngineTest::finished() {
  const std::string mark = "Finish result[";
  const Lines lines = logs();
  if (lines.empty()) return "nothing logged";
  const std::size_t at = lines.back().find(mark);
  if (at == std::string::npos) return lines.back();
  return lines.back().substr(at + mark.size(), lines.back().find(']', at) - at - mark.size());
}

}  // namespace channels
