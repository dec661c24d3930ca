// SPDX-License-Identifier: MIT
// Changing the channel, and finding one by its numbers. Calls IServiceNavigation, IService, ISourceControl,
// ITunerControl, TCNavigationModeHelper, vconf and the engine's GetAppInfo.
#include <cstdint>
#include <cstdio>

#include "Criteria.h"
#include "EmpTaskWindow.h"
#include "ServiceFields.h"
#include "SourceKeys.h"
#include "TaskFile.h"
#include "tvservice/IServiceNavigation.h"
#include "tvservice/ISourceControl.h"
#include "tvservice/ITunerControl.h"
#include "tvservice/TCNavigationModeHelper.h"

namespace kel {

namespace {

using S = TCServiceData;

// The TV service's channel types that limit a search; the last is that of services found on several antennas.
constexpr int kFirstChannelType = 1;
constexpr int kLastChannelType = 9;

}  // namespace

// The shared steps.

int CEmpTaskWindow::t_TuneService(unsigned long long serviceId, const std::string& appId) {
  const int result = Ask(
      svc_navi_proxy, [&](IServiceNavigation& navigation) { return navigation.TuneService(serviceId, 0, 0, appId); });
  return result > 0 ? 1 : 0;
}

int CEmpTaskWindow::t_TuneToService(unsigned long long serviceId, const std::string& appId, const char* notTv) {
  _PL_WINDOW_Source ePLSource = PL_WINDOW_SOURCE_UNKNOWN;
  if (t_GetCurrentSourceInfo(ePLSource) && ePLSource == PL_WINDOW_SOURCE_TV) {
    KEL_LOG(kInformation, "Current source is TV, ePLSource = %d", static_cast<int>(ePLSource));
    return t_TuneService(serviceId, appId);
  }
  if (notTv != nullptr) KEL_LOG(kInformation, "%s", notTv);
  // The result of the switch is ignored; only the keys must match.
  if (!Reach([&] { src_ctrl_proxy->SetSource(SOURCE_TV, serviceId, appId); })) return 0;
  int nCurSourceVconf = -1;
  if (!ReadKey(m_SourceVconf.c_str(), nCurSourceVconf)) {
    KEL_LOG(kFailure, "Get the vconf %s fails", m_SourceVconf.c_str());
    return 0;
  }
  if (nCurSourceVconf == PL_WINDOW_SOURCE_TV) {
    KEL_LOG(kInformation, "nCurSourceVconf is PL_WINDOW_SOURCE_TV");
    return 1;
  }
  if (!t_UpdateSourceVconf(PL_WINDOW_SOURCE_TV, nCurSourceVconf)) {
    KEL_LOG(kFailure, "Update the vconf fails");
    return 0;
  }
  return 1;
}

/// Tunes to the first service of the database that meets the criteria.
int CEmpTaskWindow::t_TuneToFound(TCCriteriaHelper& criteria) {
  TCServiceData service;
  if (t_FindService(criteria, service) < 1) return 0;
  const unsigned long long serviceId = ReadServiceId(service);
  KEL_LOG(kInformation, "SERVICE_ID=[%llu]", serviceId);
  return t_AskAppAndTune(serviceId);
}

int CEmpTaskWindow::t_AskAppAndTune(unsigned long long serviceId, const char* notTv) {
  std::string appId;
  return t_GetAppId(appId) ? t_TuneToService(serviceId, appId, notTv) : 0;
}

bool CEmpTaskWindow::t_NeedTuningproxies() {
  return t_NeedServiceproxy() && t_NeedSourceControlproxy() && t_NeedServiceNavigationproxy();
}

// The commands.

int CEmpTaskWindow::SetChannel(int nMajor, int nMinor) {
  const LogScope scope(__func__);
  KEL_LOG_PLACE(kTaskFile, kInformation);
  if (!t_NeedTuningproxies()) return 0;
  KEL_LOG(kInformation, "nMajor=[%d] nMinor=[%d]", nMajor, nMinor);
  TCCriteriaHelper criteria;
  criteria.Fetch(S::SERVICE_ID);
  constexpr int failed = 0;
  const int filled = Try(failed, [&] {
    return TCNavigationModeHelper::GetOptimumCriteria(static_cast<unsigned short>(nMajor),
                                                      static_cast<unsigned short>(nMinor), criteria, NAVIGATION_ALL);
  });
  if (filled == 0) return 0;
  TCServiceData service;
  const int found = Ask(svc_navi_proxy, [&](IServiceNavigation& navigation) {
    return navigation.GetOptimumService(criteria, service, AnyMode());
  });
  if (found < 1) {
    KEL_LOG_ERROR(kTaskFile, kFailure);
    return 0;
  }
  const unsigned long long serviceId = ReadServiceId(service);
  KEL_LOG(kInformation, "SERVICE_ID=[%llu]", serviceId);
  return t_AskAppAndTune(serviceId, "Current source is not TV,use setsource API");
}

int CEmpTaskWindow::SetChannel_PTC(int nPTC) {
  const LogScope scope(__func__);
  if (!t_NeedTuningproxies()) return 0;
  KEL_LOG(kInformation, "nPTC=[%d]", nPTC);
  TCCriteriaHelper criteria;
  FetchAll(criteria, {S::SERVICE_ID, S::ORIGINAL_NETWORK_ID, S::TRANSPORT_STREAM_ID, S::PTC});
  criteria.OrderBy(S::SERVICE_ID, SORT_ASCENDING);
  criteria.Where(S::PTC, nPTC);
  return t_TuneToFound(criteria);
}

int CEmpTaskWindow::SetChannelDirect(int ptc, int major, int minor, int channelType) {
  const LogScope scope(__func__);
  KEL_LOG_PLACE(kTaskFile, kInformation);
  if (!t_NeedTuningproxies()) return 0;
  KEL_LOG(kInformation, "ptc=[%d],major=[%d],minor=[%d],channelType=[%d]", ptc, major, minor, channelType);
  TCCriteriaHelper criteria;
  criteria.Fetch(S::SERVICE_ID);
  criteria.Where(S::PTC, ptc);
  criteria.Where(S::CHANNEL_TYPE, major);  // applications pass the type in place of the major number
  criteria.Where(S::MINOR, minor);
  return t_TuneToFound(criteria);
}

int CEmpTaskWindow::SetChannelByServiceid(unsigned long long serviceId) {
  const LogScope scope(__func__);
  KEL_LOG_PLACE(kTaskFile, kInformation);
  if (!t_NeedSourceControlproxy()) return 0;
  KEL_LOG(kInformation, "TCServiceId=[%llu]", serviceId);
  return t_AskAppAndTune(serviceId);
}

int CEmpTaskWindow::SetChannel_Seek(_PL_WINDOW_SEEK eSeek, _PL_WINDOW_NAVIGATOR_MODE eNavigatorMode) {
  const LogScope scope(__func__);
  KEL_LOG_PLACE(kTaskFile, kInformation);
  // In another order than the other tunes.
  const bool connected = t_NeedServiceproxy() && t_NeedServiceNavigationproxy() && t_NeedSourceControlproxy();
  if (!connected) return 0;
  KEL_LOG(kInformation, "eSeek=[%d] eNavigatorMode=[%d]", static_cast<int>(eSeek), static_cast<int>(eNavigatorMode));
  const int nTCNavigatorMode = CEmpConverterWindow::GetTCValue(eNavigatorMode, PL_WINDOW_MAPPING_TABLE_NAVIGATOR_MODE);
  KEL_LOG(kInformation, "eSeek=[%d] nTCNavigatorMode=[%d]", static_cast<int>(eSeek), nTCNavigatorMode);
  TSTvMode mode = AnyMode();
  if (t_GetTvMode(mode) < 1) {
    KEL_LOG(kFailure, "GetTvMode failed");
    return 0;
  }
  TCCriteriaHelper criteria;
  if (!t_GetNavigationCriteria(static_cast<ENavigationMode>(nTCNavigatorMode), mode, criteria)) {
    KEL_LOG(kFailure, "Get navigation criteria failed");
    return 0;
  }
  FetchAll(criteria, {S::CHANNEL_TYPE, S::SERVICE_ID, S::LOCK});
  TCServiceData service;
  const int known = Ask(svc_navi_proxy, [&](IServiceNavigation& navigation) {
    return navigation.GetCurrentService(mode, criteria, service);
  });
  if (known < 1) {
    KEL_LOG(kFailure, "Fail to get current service data\n");
    return -1;
  }
  std::string appId;
  if (!t_GetAppId(appId)) return 0;
  const int result = t_SeekService(eSeek, criteria, service);
  if (result != 1) return result;
  const unsigned long long serviceId = ReadServiceId(service);
  KEL_LOG(kInformation, "svcidNext = %llu", serviceId);
  return t_TuneToService(serviceId, appId);
}

/// Replaces the record of the current service by that of its neighbour. @return 1; 0 for another seek, -1 on failure.
int CEmpTaskWindow::t_SeekService(_PL_WINDOW_SEEK eSeek, TCCriteriaHelper& criteria, TCServiceData& service) {
  const unsigned long long currentId = ReadServiceId(service);
  KEL_LOG(kInformation, "svcid = %llu", currentId);
  if (eSeek != PL_WINDOW_SEEK_NEXT && eSeek != PL_WINDOW_SEEK_PREVIOUS) {
    KEL_LOG(kFailure, "not support");
    return 0;
  }
  const int found = Ask(svc_navi_proxy, [&](IServiceNavigation& navigation) {
    return eSeek == PL_WINDOW_SEEK_NEXT ? navigation.SeekNextService(criteria, currentId, service, AnyMode())
                                        : navigation.SeekPreviousService(criteria, currentId, service, AnyMode());
  });
  if (found >= 1) return 1;
  KEL_LOG_ERROR(kTaskFile, kFailure);
  return -1;
}

int CEmpTaskWindow::GetSignalStrength(unsigned char* strength) {
  const LogScope scope(__func__);
  KEL_LOG_PLACE(kTaskFile, kInformation);
  if (!t_NeedTunerControlproxy()) return 0;
  const int result = Ask(tuner_ctrl_proxy, [&](ITunerControl& tuner) { return tuner.GetSignalStrength(0, strength); });
  if (result < 1) {
    KEL_LOG(kFailure, "GetSignalStrength failed");
    return -1;
  }
  // Logs the address of the strength, not its value, as log readers expect.
  KEL_LOG(kInformation, "GetSignalStrength sigStrength is %d",
          static_cast<int>(reinterpret_cast<std::uintptr_t>(strength)));
  return 1;
}

int CEmpTaskWindow::GetChannel_ServiceId(int nMajor, int nMinor, _PL_WINDOW_CHANNEL_TYPE eChannelType,
                                         char* pszServiceId) {
  const LogScope scope(__func__);
  KEL_LOG_PLACE(kTaskFile, kInformation);
  KEL_LOG(kInformation, "[CEmpTaskWindow::%s][nMajor:%d,Minor:%d] call begin.", __func__, nMajor, nMinor);
  if (!t_NeedServiceproxy()) return -1;
  TCCriteriaHelper criteria;
  FetchAll(criteria, {S::SERVICE_ID, S::MAJOR, S::MINOR});
  criteria.OrderBy(S::SERVICE_ID, SORT_ASCENDING);
  criteria.Where(S::MAJOR, nMajor);
  criteria.Where(S::MINOR, nMinor);

  const int nChannelType = CEmpConverterWindow::GetTCValue(eChannelType, PL_WINDOW_MAPPING_TABLE_CHANNEL_TYPE);
  KEL_LOG(kInformation, "eChannelType = %d,nChannelType = %d", static_cast<int>(eChannelType), nChannelType);
  if (nChannelType >= kFirstChannelType && nChannelType <= kLastChannelType) {
    criteria.Where(S::CHANNEL_TYPE, nChannelType);
  }
  if (nChannelType == kLastChannelType) {
    TSTvMode mode = AnyMode();
    int known = kFailed;
    if (svc_navi_proxy != nullptr && !Reach([&] { known = svc_navi_proxy->GetTvMode(mode); })) return 0;
    if (known >= 1) criteria.Where(S::ANTENNA_MODE, mode.antennaMode);
  }
  TCServiceData service;
  if (t_FindService(criteria, service) < 1) {
    KEL_LOG_ERROR(kTaskFile, kFailure);
    return 0;
  }
  const unsigned long long serviceId = ReadServiceId(service);
  KEL_LOG(kInformation, "ServiceId == %llu", serviceId);
  constexpr std::size_t room = 32;
  std::snprintf(pszServiceId, room, "%llu", serviceId);
  return 1;
}

}  // namespace kel
