// SPDX-License-Identifier: MIT
// Switching the window's source. Calls ISourceControl, IServiceNavigation::GetServiceList, vconf, and the secondary TV
// stack for the ISP source.
#include "Criteria.h"
#include "EmpTaskWindow.h"
#include "ServiceFields.h"
#include "ServiceList.h"
#include "SourceKeys.h"
#include "TaskFile.h"
#include "tvservice/ISourceControl.h"

namespace kel {

namespace {

constexpr int kNoChannel = -1;

}  // namespace

int CEmpTaskWindow::SetSource(_PL_WINDOW_Source eSource, _PL_WINDOW_SEEK nSeek) {
  const LogScope scope(__func__);
  KEL_LOG_PLACE(kTaskFile, kInformation);
  KEL_LOG(kInformation, "eSource=[%d] nSeek=[%d]", static_cast<int>(eSource), static_cast<int>(nSeek));
  if (src_ctrl_proxy == nullptr) {
    KEL_LOG(kFailure, "src_ctrl_proxy is NULL!!!");
    return -1;
  }
  int nSource = eSource;
  if (IsPreviousSourceSeek(nSeek) && !t_ReadPreviousSource(nSource)) return 0;
  if (!t_SetSource(static_cast<_PL_WINDOW_Source>(nSource), kNoChannel)) {
    KEL_LOG(kFailure, "t_SetSource failed\n");
    return 0;
  }
  return 1;
}

int CEmpTaskWindow::SetSourceAndTune(_PL_WINDOW_Source eSource, int nMajor) {
  const LogScope scope(__func__);
  KEL_LOG_PLACE(kTaskFile, kInformation);
  KEL_LOG(kInformation, "eSource=[%d], nMajor=[%d]", static_cast<int>(eSource), nMajor);
  if (src_ctrl_proxy == nullptr) {
    KEL_LOG(kFailure, "src_ctrl_proxy is NULL!!!");
    return -1;
  }
  if (!t_SetSource(eSource, nMajor)) {
    KEL_LOG(kFailure, "t_SetSource failed\n");
    return 0;
  }
  return 1;
}

int CEmpTaskWindow::SetPreviousSource() {
  const LogScope scope(__func__);
  int nSource = 0;
  if (!t_ReadPreviousSource(nSource)) return 0;
  if (!t_SetSource(static_cast<_PL_WINDOW_Source>(nSource), kNoChannel)) {
    KEL_LOG(kFailure, "t_SetSource failed");
    return 0;
  }
  return 1;
}

bool CEmpTaskWindow::DisconnectSource() {
  const LogScope scope(__func__);
  KEL_LOG(kInformation, "DisconnectSource start\n");
  const bool disconnected = t_SetSource(PL_WINDOW_SOURCE_NONE, kNoChannel);
  if (!disconnected) KEL_LOG(kFailure, "t_SetSource failed\n");
  return disconnected;
}

bool CEmpTaskWindow::t_SetSource(_PL_WINDOW_Source ePLSource, int nMajor) {
  const LogScope scope(__func__);
  if (!t_NeedSourceControlproxy()) return false;
  KEL_LOG(kInformation, "t_SetSource input ePLSource = %d, nMajor = %d", static_cast<int>(ePLSource), nMajor);
  _PL_WINDOW_Source eCurPLSource = PL_WINDOW_SOURCE_UNKNOWN;
  if (!t_GetCurrentSourceInfo(eCurPLSource)) {
    KEL_LOG(kFailure, "t_GetCurrentSourceInfo failed ");
    return false;
  }
  KEL_LOG(kInformation, "t_SetSource input eCurPLSource = %d", static_cast<int>(eCurPLSource));
  if (ePLSource == eCurPLSource) return t_RepairSource(ePLSource, eCurPLSource);

  KEL_LOG(kInformation, "ePLSource=[%d], current %s = %d success", static_cast<int>(ePLSource), m_SourceVconf.c_str(),
          static_cast<int>(eCurPLSource));
  std::string appId;
  if (!t_GetAppId(appId)) return false;
  const bool switched =
      t_IsTVServiceSource(ePLSource) ? t_SwitchTVService(ePLSource, nMajor, appId) : t_LeaveTVService(ePLSource);
  return switched && t_RecordSources(ePLSource, eCurPLSource);
}

/// The source is already on screen: nothing is switched, but keys that differ are corrected.
bool CEmpTaskWindow::t_RepairSource(_PL_WINDOW_Source ePLSource, _PL_WINDOW_Source eCurPLSource) {
  if (eCurPLSource == PL_WINDOW_SOURCE_NONE) {
    if (!t_DeactivateSource()) return false;
    KEL_LOG(kInformation, "DeactivateSource successfully ");
  } else {
    KEL_LOG(kInformation, "t_SetSource %d is equal to vconf %d", static_cast<int>(ePLSource),
            static_cast<int>(eCurPLSource));
  }
  int nStored = 0;
  int read = kFailed;
  if (!Reach([&] { read = vconf_get_int(m_SourceVconf.c_str(), &nStored); })) return false;
  if (read != 0 || nStored == eCurPLSource) {
    KEL_LOG(kFailure, "Set vconf %s = %d failed", m_SourceVconf.c_str(), static_cast<int>(ePLSource));
    return true;
  }
  return t_RecordSources(eCurPLSource, nStored);
}

bool CEmpTaskWindow::t_DeactivateSource() {
  if (Ask(src_ctrl_proxy, [](ISourceControl& control) { return control.DeactivateSource(); }) >= 1) {
    return true;
  }
  KEL_LOG(kFailure, "DeactivateSource failed ");
  return false;
}

bool CEmpTaskWindow::t_SwitchTVService(_PL_WINDOW_Source ePLSource, int nMajor, const std::string& appId) {
  ESource eTVSSource = SOURCE_NONE;
  if (!t_IsConvertable(ePLSource, eTVSSource)) return false;
  KEL_LOG(kInformation, "ePLSource=[%d] eTVSSource=[%d], nMajor=[%d]", static_cast<int>(ePLSource),
          static_cast<int>(eTVSSource), nMajor);
  unsigned long long serviceId = kNoServiceId;
  if (nMajor >= 0 && !t_FindMajor(nMajor, serviceId)) return false;
  const int result = Ask(src_ctrl_proxy, [&](ISourceControl& control) {
    return nMajor < 0 ? control.SetSource(eTVSSource, appId) : control.SetSource(eTVSSource, serviceId, appId);
  });
  if (result < 1) {
    KEL_LOG(kFailure, "SetSource failed eTVSSource= %d", static_cast<int>(eTVSSource));
    return false;
  }
  return true;
}

/// The first service of a major number that has an id.
bool CEmpTaskWindow::t_FindMajor(int nMajor, unsigned long long& serviceId) {
  TCCriteriaHelper criteria;
  criteria.Fetch(TCServiceData::SERVICE_ID);
  criteria.Where(TCServiceData::MAJOR, nMajor);
  ServiceList list;
  const int result = ListServices(svc_navi_proxy, criteria, list.services);
  if (result < 1 || list.services.empty()) {
    KEL_LOG(kFailure, "GetServiceList did not find any services for nMajor=%d", nMajor);
    return false;
  }
  for (const TCServiceData* service : list.services) {
    if (serviceId == kNoServiceId) serviceId = ReadServiceId(*service);
  }
  if (serviceId == kNoServiceId) {
    KEL_LOG(kFailure, "Could not extract valid service ID");
    return false;
  }
  KEL_LOG(kInformation, "Target service: %llu", serviceId);
  return true;
}

bool CEmpTaskWindow::t_LeaveTVService(_PL_WINDOW_Source ePLSource) {
  if (ePLSource == PL_WINDOW_SOURCE_ISP) {
    KEL_LOG(kInformation, "[ISPSource] : SetSource to ISP Source : [%d]", static_cast<int>(ePLSource));
    if (!SetSource_D2TV()) {
      KEL_LOG(kFailure, "CEmpTaskWindow::SetSource :: Setting \"isp-service\" to last service failed.");
      return false;
    }
  }
  KEL_LOG(kInformation, "ePLSource=[%d].Deactivate TVService", static_cast<int>(ePLSource));
  return t_DeactivateSource();
}

}  // namespace kel
