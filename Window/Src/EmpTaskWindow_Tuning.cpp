// Finding a channel by its numbers. Calls IService and IServiceNavigation.
#include <cstdio>

#include "Ask.h"
#include "Criteria.h"
#include "EmpTaskWindow.h"
#include "ServiceFields.h"
#include "TaskFile.h"

namespace kel {

namespace {

using S = TCServiceData;

// The TV service's channel types that limit a search; the last is that of services found on several antennas.
constexpr int kFirstChannelType = 1;
constexpr int kLastChannelType = 9;

}  // namespace

int CEmpTaskWindow::GetChannel_ServiceId(int nMajor, int nMinor, _PL_WINDOW_CHANNEL_TYPE eChannelType,
                                         char* pszServiceId) {
  KEL_LOG_PLACE(kTaskFile, __func__, kInformation);
  KEL_LOG(kInformation, "[CEmpTaskWindow::%s][nMajor:%d,Minor:%d] call begin.", __func__, nMajor, nMinor);
  if (!t_CheckServiceproxy()) {
    KEL_LOG(kFailure, "Serviceproxy is NULL");
    return -1;
  }
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
    if (t_GetTvMode(__func__, mode) >= 1) criteria.Where(S::ANTENNA_MODE, mode.antennaMode);
  }
  TCServiceData service;
  if (t_FindService(__func__, criteria, service) < 1) {
    KEL_LOG_ERROR(kTaskFile, __func__, kFailure);
    return 0;
  }
  const unsigned long long serviceId = ReadServiceId(service);
  KEL_LOG(kInformation, "ServiceId == %llu", serviceId);
  constexpr std::size_t room = 32;
  std::snprintf(pszServiceId, room, "%llu", serviceId);
  return 1;
}

}  // namespace kel
