// SPDX-License-Identifier: MIT
// Tuning to a satellite service by a JSON description. Calls the satellite manager, IService and IServiceNavigation.
#include <json/json.h>

#include <climits>
#include <cstdlib>

#include "Ask.h"
#include "Criteria.h"
#include "EmpTaskWindow.h"
#include "JsonText.h"
#include "ServiceFields.h"
#include "tvservice/ISatellite.h"
#include "tvservice/TVServiceAPI.h"

namespace kel {

namespace {

using S = TCServiceData;

/// What the description says about the service.
struct Description {
  int type;
  int modulation;
  int symbolRate;
  int programNumber;
  int ptc;
  int progNum;
  int minor;
};

int Number(const Json::Value& info, const char* key) {
  return info.get(key, 1).asInt();
}

int Low(int value) {
  return static_cast<int>(static_cast<unsigned>(value) & 0xFFFFU);
}

Description Read(const Json::Value& info) {
  Description description{};
  description.type = Number(info, "TYPE");
  description.modulation = Number(info, "ModulationType");
  description.symbolRate = Number(info, "SymbolRate");
  description.programNumber = Number(info, "ProgramNumber");
  description.ptc = Number(info, "PTC");
  description.progNum = Number(info, "ProgNum");
  description.minor = Number(info, "MINOR_NUMBER_ONE_PART");
  return description;
}

int Hexadecimal(const std::string& text) {
  const long value = std::strtol(text.c_str(), nullptr, 16);
  if (value > INT_MAX) return INT_MAX;
  if (value < INT_MIN) return INT_MIN;
  return static_cast<int>(value);
}

void FillTransponder(TSTransponder& transponder, const Json::Value& info, int symbolRate) {
  constexpr unsigned perMega = 1000;
  transponder.satelliteId = static_cast<ESatelliteId>(Hexadecimal(info.get("SatelliteId", 1).asString()));
  transponder.frequency = Number(info, "Frequency");
  transponder.polarisation = static_cast<EDVBSPolarisation>(Number(info, "Polarization"));
  transponder.symbolRate = static_cast<unsigned short>(static_cast<unsigned>(symbolRate) * perMega);
}

/// The modulations for a search; 5 means the TV service's 7.
void AddModulation(TCCriteriaHelper& criteria, int modulation) {
  if (Low(modulation) == 16 || Low(modulation) == 18) criteria.Where(S::MODULATION, Low(modulation));
  if (Low(modulation) == 5) criteria.Where(S::MODULATION, 7);
}

void FillCriteria(TCCriteriaHelper& criteria, const Description& description) {
  criteria.Fetch(S::SERVICE_ID);
  criteria.Where(S::CHANNEL_TYPE, Low(description.type));
  AddModulation(criteria, description.modulation);
  criteria.Where(S::SYMBOL_RATE, description.symbolRate);
  criteria.Where(S::PTC, Low(description.ptc));
  criteria.Where(S::PROGRAM_NUMBER, Low(description.programNumber));
  criteria.Where(S::CHANNEL_TYPE, Low(description.progNum));  // a service is found only when the two agree
  if (description.minor > 0) criteria.Where(S::MINOR, description.minor);
}

ISatellite* Satellites() {
  ISatellite* satellites = nullptr;
  Try(kFailed, [&] { return TVServiceAPI::CreateSatellite(&satellites); });
  return satellites;
}

}  // namespace

int CEmpTaskWindow::SetDVBSIChannelDirectEx(const std::string& channelInfo, int type) {
  const LogScope scope(__func__);
  KEL_LOG(kInformation, "#### SetChannel ChannelInfo[%s]", channelInfo.c_str());
  if (channelInfo.empty() || channelInfo.front() != '{') return 0;
  constexpr int failed = 0;
  return Try(failed, [&] { return t_TuneDescribed(channelInfo, type); });
}

int CEmpTaskWindow::t_TuneDescribed(const std::string& channelInfo, int type) {
  Json::Value info;
  if (!ReadJson(channelInfo, info)) {
    KEL_LOG(kFailure, "#### DVBSIChannelDirectEx reade.parser Fail ###");
    return 0;
  }
  KEL_LOG(kInformation, "#### DVBSIChannelDirectEx ChannelInfo Success ###");
  if (type != 0) {
    KEL_LOG(kFailure, "#### DVBSIChannelDirectEx Not match Type ###");
    return 0;
  }
  KEL_LOG(kInformation, "#### DVBSIChannelDirectEx ###");
  const Description description = Read(info);

  TSTransponder transponder(65535, static_cast<ESatelliteId>(-1), -1, 65535, static_cast<EDVBSPolarisation>(-1),
                            static_cast<EDVBFECInner>(-1));
  ISatellite* const satellites = Satellites();
  if (satellites == nullptr) {
    KEL_LOG(kFailure, " pSatelliteMgr is NULL !");
    return -1;
  }
  FillTransponder(transponder, info, description.symbolRate);
  unsigned short looked = 65535;
  satellites->LookupTransponder(transponder, looked);  // what it finds does not matter

  TCCriteriaHelper criteria;
  FillCriteria(criteria, description);
  TCServiceData service;
  if (t_FindService(criteria, service) < 1) return 0;
  const unsigned long long serviceId = ReadServiceId(service);
  KEL_LOG(kInformation, "SERVICE_ID=[%llu]", serviceId);
  return t_TuneService(serviceId, "");
}

}  // namespace kel
