// SPDX-License-Identifier: MIT
// The full channel list, implemented without regard to speed.
#include "PlainList.h"

#include <json/json.h>

#include <array>
#include <list>
#include <stdexcept>
#include <string>
#include <vector>

#include "Window/Src/Log.h"
#include "Window/Src/Ucs2Text.h"
#include "tvservice/IServiceNavigation.h"
#include "tvservice/TCCriteriaHelper.h"
#include "tvservice/TCNavigationModeHelper.h"
#include "tvservice/TCServiceData.h"

#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

namespace bench {

namespace {

using S = TCServiceData;
using kel::kInformation;

constexpr std::array fields{S::SERVICE_ID, S::CHANNEL_NAME,   S::MAJOR,
                            S::MINOR,      S::CHANNEL_TYPE,   S::FREQUENCY,
                            S::PTC,        S::PROGRAM_NUMBER, S::ORIGINAL_NETWORK_ID};

std::string utf8(const std::vector<unsigned short>& units) {
  std::array<char, kel::kUtf8Room + 1> text{};
  kel::ucs2utf8(text.data(), reinterpret_cast<const char*>(units.data()), units.size() * 2);
  return text.data();
}

int number(const TCServiceData& service, int field) {
  int value = -1;
  service.Get(field, value);
  return value;
}

Json::Value listed(const TCServiceData& service) {
  unsigned long long id = 0;
  service.Get(S::SERVICE_ID, id);
  std::vector<unsigned short> units(static_cast<std::size_t>(service.GetLength(S::CHANNEL_NAME)));
  service.Get(S::CHANNEL_NAME, units.data());
  KEL_LOG(kInformation, "len = %d, c_len=%d", static_cast<int>(units.size()), static_cast<int>(units.size() * 2));
  const std::string name = utf8(units);
  const int major = number(service, S::MAJOR);
  const int minor = number(service, S::MINOR);
  const int type = number(service, S::CHANNEL_TYPE);
  const int frequency = number(service, S::FREQUENCY);
  const int ptc = number(service, S::PTC);
  const int program = number(service, S::PROGRAM_NUMBER) & 0xFF;
  const int network = number(service, S::ORIGINAL_NETWORK_ID);
  KEL_LOG(kInformation,
          "SERVICE_ID = %llu,tmpName = %s, MAJOR = %d,MINOR = %d, CHANNEL_TYPE = %d, FREQUENCY = %d, "
          "CHANNEL_NUMBER = %d, PROGRAM_NUMBER= %d, ORIGINAL_NETWORK_ID = %d",
          id, name.c_str(), major, minor, type, frequency, ptc, program, network);
  Json::Value element;
  element["SERVICE_ID"] = std::to_string(id);
  element["SERVICE_NAME"] = name;
  element["MAJOR"] = major;
  element["MINOR"] = minor;
  element["CHANNEL_TYPE"] = type;
  element["FREQUENCY"] = frequency;
  element["CHANNEL_NUMBER"] = ptc;
  element["PROGRAM_NUMBER"] = program;
  element["ORIGINAL_NETWORK_ID"] = network;
  return element;
}

std::string document(std::list<TCServiceData*>& services) {
  Json::Value root;
  root["ListName"] = "ChannelList";
  Json::Value elements(Json::arrayValue);
  for (TCServiceData* service : services) {
    const Json::Value element = listed(*service);
    elements.append(element);
    delete service;
  }
  services.clear();
  root["TCServiceData"] = elements;
  return Json::StyledWriter().write(root);
}

}  // namespace

std::string plainChannelList(IServiceNavigation& navigation) {
  const kel::LogScope scope("GetFullChannelList");
  KEL_LOG(kInformation, "This is GetFullChannelList");
  TSTvMode mode(ANTENNA_NONE, SERVICE_MODE_NONE);
  navigation.GetTvMode(mode);
  TCCriteriaHelper criteria;
  TCNavigationModeHelper::GetNavigationCriteria(NAVIGATION_ALL, mode, criteria, ~0ULL);
  for (const int field : fields) criteria.Fetch(field);
  KEL_LOG(kInformation, "execute GetServiceList");
  std::list<TCServiceData*> services;
  const TSTvMode any(ANTENNA_NONE, SERVICE_MODE_NONE);
  if (navigation.GetServiceList(criteria, services, any, 0, 0) < 1) throw std::runtime_error("there is no list");
  KEL_LOG(kInformation, "ServiceList size = %d", static_cast<int>(services.size()));
  std::string text = document(services);
  KEL_LOG(kInformation, "Lenght = %d,strChannelInfo = %s", static_cast<int>(text.size()), text.c_str());
  return text;
}

}  // namespace bench
