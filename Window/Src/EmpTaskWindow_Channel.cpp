// SPDX-License-Identifier: MIT
// Looking services up: the found-channel list, the service on screen, the one before, the one that the set starts with,
// and the TV mode. Calls IServiceNavigation, IService and TCNavigationModeHelper.
#include "Ask.h"
#include "Criteria.h"
#include "EmpTaskWindow.h"
#include "ServiceFields.h"
#include "ServiceList.h"
#include "TaskFile.h"
#include "tvservice/IService.h"
#include "tvservice/IServiceNavigation.h"
#include "tvservice/TCNavigationModeHelper.h"

namespace kel {

namespace {

using S = TCServiceData;

void LogFound(const TCServiceData& service) {
  KEL_LOG(kInformation,
          "SERVICE_ID = %llu,FREQUENCY = %d,PROGRAM_NUMBER= %d,CHANNEL_TYPE = %d,MAJOR = %d,MINOR = %d, "
          "TRANSPORT_STREAM_ID = %d, ORIGINAL_NETWORK_ID = %d",
          ReadServiceId(service), ReadInt(service, S::FREQUENCY),
          ReadField<unsigned char>(service, S::PROGRAM_NUMBER, 255), ReadInt(service, S::CHANNEL_TYPE),
          ReadShort(service, S::MAJOR), ReadShort(service, S::MINOR), ReadShort(service, S::TRANSPORT_STREAM_ID),
          ReadShort(service, S::ORIGINAL_NETWORK_ID));
}

}  // namespace

int CEmpTaskWindow::t_GetChannelSeek(int index, TCServiceData** out) {
  if (index < 0 || static_cast<std::size_t>(index) >= m_ChannelList.size()) return 0;
  if (m_ChannelIndex.size() != m_ChannelList.size()) m_ChannelIndex.assign(m_ChannelList.begin(), m_ChannelList.end());
  *out = m_ChannelIndex[static_cast<std::size_t>(index)];
  return 1;
}

int CEmpTaskWindow::FindChannel(_PL_WINDOW_CHANNEL_TYPE type, _PL_WINDOW_TV_MODE mode) {
  const LogScope scope(__func__);
  if (!t_NeedServiceNavigationproxy()) return -1;
  t_ClearChannelList();
  const int nChannelType = CEmpConverterWindow::GetTCValue(type, PL_WINDOW_MAPPING_TABLE_CHANNEL_TYPE);
  const TSTvMode nTCTVMode = CEmpConverterWindow::GetTCTVModeValue(mode);
  KEL_LOG(kInformation, "nTCTVMode.antennaMode = %d, nTCTVMode.serviceMode = %d !",
          static_cast<int>(nTCTVMode.antennaMode), static_cast<int>(nTCTVMode.serviceMode));

  TCCriteriaHelper criteria;
  if (!t_GetNavigationCriteria(NAVIGATION_ALL, nTCTVMode, criteria)) {
    KEL_LOG(kFailure, "Get navigation criteria failed");
    return 0;
  }
  if (type != PL_WINDOW_CHANNEL_TYPE_ALL) criteria.Where(S::CHANNEL_TYPE, nChannelType);
  FetchAll(criteria, {S::SERVICE_ID, S::CHANNEL_NAME, S::ORIGINAL_NETWORK_ID, S::PROGRAM_NUMBER, S::TRANSPORT_STREAM_ID,
                      S::CHANNEL_TYPE, S::PTC, S::MODULATION, S::SOURCE_ID, S::FREQUENCY, S::MAJOR, S::MINOR,
                      S::SERVICE_FIELD_110});
  KEL_LOG(kInformation, "execute GetServiceList");
  // The main window's navigation knows all lists, whichever window asks.
  const int result = ListServices(svc_navi_proxy_main, criteria, m_ChannelList);
  for (const TCServiceData* service : m_ChannelList) LogFound(*service);
  return result > 0 && !m_ChannelList.empty() ? 1 : 0;
}

bool CEmpTaskWindow::t_GetNavigationCriteria(ENavigationMode navigationMode, TSTvMode mode,
                                             TCCriteriaHelper& criteria) {
  constexpr int failed = 0;
  return Try(failed, [&] {
           return TCNavigationModeHelper::GetNavigationCriteria(navigationMode, mode, criteria, kNoServiceId);
         }) != 0;
}

int CEmpTaskWindow::t_GetTvMode(TSTvMode& mode) {
  return Ask(svc_navi_proxy, [&](IServiceNavigation& navigation) { return navigation.GetTvMode(mode); });
}

int CEmpTaskWindow::GetTVMode(int* pnMode) {
  const LogScope scope(__func__);
  if (!t_NeedServiceNavigationproxy()) return 0;
  TSTvMode mode = AnyMode();
  const int result = t_GetTvMode(mode);
  if (result < 1) {
    KEL_LOG_ERROR(kTaskFile, kFailure);
    return -1;
  }
  *pnMode = CEmpConverterWindow::GetPLTVModeValue(mode);
  return result;
}

int CEmpTaskWindow::SetTVMode(_PL_WINDOW_TV_MODE mode) {
  const LogScope scope(__func__);
  if (!t_NeedServiceNavigationproxy()) return 0;
  const TSTvMode nTCTVMode = CEmpConverterWindow::GetTCTVModeValue(mode);
  std::string appId;
  if (!t_GetAppId(appId)) return -1;
  const int result =
      Ask(svc_navi_proxy, [&](IServiceNavigation& navigation) { return navigation.SetTVMode(nTCTVMode, appId); });
  return result > 0 ? 1 : -1;
}

int CEmpTaskWindow::t_GetCurrentChannel(TCServiceData& out) {
  const LogScope scope(__func__);
  if (!t_NeedServiceNavigationproxy()) return 0;
  TCCriteriaHelper criteria;
  FetchAll(criteria, {S::SERVICE_ID, S::CHANNEL_NAME, S::ORIGINAL_NETWORK_ID, S::PROGRAM_NUMBER, S::TRANSPORT_STREAM_ID,
                      S::CHANNEL_TYPE, S::PTC, S::MODULATION, S::SOURCE_ID, S::FREQUENCY, S::MAJOR, S::MINOR, S::LOCK,
                      S::SERVICE_FIELD_110});
  TSTvMode mode = AnyMode();
  if (t_GetTvMode(mode) < 1) {
    KEL_LOG_ERROR(kTaskFile, kFailure);
    return 0;
  }
  const int result = Ask(svc_navi_proxy, [&](IServiceNavigation& navigation) {
    return navigation.GetCurrentService(mode, criteria, out);
  });
  if (result < 1) {
    KEL_LOG(kFailure, "Fail to get current service data\n");
    return 0;
  }
  KEL_LOG(kInformation, "SERVICE_ID = %llu", ReadServiceId(out));
  KEL_LOG(kInformation, "MAJOR = %d", ReadShort(out, S::MAJOR));
  return 1;
}

int CEmpTaskWindow::t_GetPreviousChannel(TCServiceData& out) {
  const LogScope scope(__func__);
  if (!t_NeedServiceNavigationproxy()) return 0;
  if (!t_NeedServiceproxy()) return 0;
  TSTvMode mode = AnyMode();
  if (t_GetTvMode(mode) < 1) {
    KEL_LOG_ERROR(kTaskFile, kFailure);
    return 0;
  }
  unsigned long long serviceId = kNoServiceId;
  const int known = Ask(
      svc_navi_proxy, [&](IServiceNavigation& navigation) { return navigation.GetPreviousServiceId(mode, serviceId); });
  if (known < 1) {
    KEL_LOG(kFailure, "Fail to get previous service id\n");
    return 0;
  }
  TCCriteriaHelper criteria;
  FetchAll(criteria, {S::SERVICE_ID, S::CHANNEL_NAME, S::ORIGINAL_NETWORK_ID, S::PROGRAM_NUMBER, S::TRANSPORT_STREAM_ID,
                      S::CHANNEL_TYPE, S::PTC, S::MODULATION, S::SOURCE_ID, S::FREQUENCY, S::MAJOR, S::MINOR});
  criteria.Where(S::SERVICE_ID, serviceId);
  if (t_FindService(criteria, out) < 1) {
    KEL_LOG(kFailure, "Fail to find previous service\n");
    return 0;
  }
  KEL_LOG(kInformation, "previous channel SERVICE_ID = %llu", ReadServiceId(out));
  KEL_LOG(kInformation, "previous channel MAJOR = %d,MINOR = %d", ReadShort(out, S::MAJOR), ReadShort(out, S::MINOR));
  return 1;
}

int CEmpTaskWindow::t_FindService(TCCriteriaHelper& criteria, TCServiceData& out) {
  return Ask(svc_proxy, [&](IService& services) { return services.FindService(criteria, out, 1); });
}

bool CEmpTaskWindow::t_AskStartService(unsigned long long& serviceId, int& source) {
  if (!t_NeedServiceNavigationproxy()) return false;
  const int result = Ask(svc_navi_proxy,
                         [&](IServiceNavigation& navigation) { return navigation.GetStartService(serviceId, source); });
  if (result < 1) KEL_LOG(kFailure, "Fail to GetStartService!!!");
  return result >= 1;
}

int CEmpTaskWindow::t_GetStartService(TCServiceData& out) {
  const LogScope scope(__func__);
  unsigned long long serviceId = kNoServiceId;
  int source = -1;
  if (!t_AskStartService(serviceId, source)) return 0;
  if (!t_CheckServiceproxy()) {
    KEL_LOG(kFailure, "ServiceNavigationproxy is NULL");
    return 0;
  }
  KEL_LOG(kInformation, "serviceId = %llu, source = %d", serviceId, source);
  TCCriteriaHelper criteria;
  FetchAll(criteria, {S::CHANNEL_NAME, S::MAJOR, S::MINOR, S::CHANNEL_TYPE, S::SERVICE_ID});
  criteria.Where(S::SERVICE_ID, serviceId);
  if (t_FindService(criteria, out) < 1) {
    KEL_LOG(kFailure, "Fail to FindService!!!");
    return 0;
  }
  return 1;
}

}  // namespace kel
