// SPDX-License-Identifier: MIT
// The window's source: what the TV service shows, and the settings keys that record it. Calls ISourceControl, vconf and
// the engine's GetAppInfo.
#include <cstdio>
#include <cstring>

#include "Ask.h"
#include "EmpTaskWindow.h"
#include "SourceKeys.h"
#include "TaskFile.h"
#include "kel/CEmpEngineBase.h"
#include "settings/vconf.h"
#include "tvservice/ISourceControl.h"

namespace kel {

int CEmpTaskWindow::GetSource(_PL_WINDOW_Source* peSource, _PL_WINDOW_SEEK eSeek) {
  const LogScope scope(__func__);
  KEL_LOG_PLACE(kTaskFile, kInformation);
  if (peSource == nullptr) {
    KEL_LOG_ERROR(kTaskFile, kFailure);
    return -3;
  }
  if (IsPreviousSourceSeek(eSeek)) {
    int nStored = 0;
    if (!t_ReadPreviousSource(nStored)) return 0;
    *peSource = static_cast<_PL_WINDOW_Source>(nStored);
    return 1;
  }
  _PL_WINDOW_Source eSource = PL_WINDOW_SOURCE_UNKNOWN;
  if (!t_GetCurrentSourceInfo(eSource)) return -1;
  *peSource = eSource;
  return 1;
}

int CEmpTaskWindow::GetPreviousSource(_PL_WINDOW_Source* peSource) {
  const LogScope scope(__func__);
  KEL_LOG_PLACE(kTaskFile, kInformation);
  if (peSource == nullptr) {
    KEL_LOG_ERROR(kTaskFile, kFailure);
    return -3;
  }
  _PL_WINDOW_Source eSource = PL_WINDOW_SOURCE_UNKNOWN;
  if (!t_GetPreviousSourceInfo(eSource)) return -1;
  *peSource = eSource;
  return 1;
}

int CEmpTaskWindow::GetSourceState(int* pnState) {
  const LogScope scope(__func__);
  KEL_LOG_PLACE(kTaskFile, kInformation);
  if (pnState == nullptr) {
    KEL_LOG_ERROR(kTaskFile, kFailure);
    return -3;
  }
  if (!t_NeedSourceControlproxy()) return -1;
  KEL_LOG(kInformation, "GetSourceState start");
  int nState = -1;
  if (Ask(src_ctrl_proxy, [&](ISourceControl& control) { return control.GetSourceState(&nState); }) != 1) {
    KEL_LOG(kFailure, "Get GetSourceState failed");
    return -1;
  }
  KEL_LOG(kInformation, "GetSourceState = %d", nState);
  *pnState = nState;
  return 1;
}

bool CEmpTaskWindow::t_IsTVServiceSource(_PL_WINDOW_Source eSource) {
  return static_cast<unsigned>(eSource) <= PL_WINDOW_SOURCE_TVS_LAST;
}

bool CEmpTaskWindow::t_IsConvertable(ESource eTVSSource, _PL_WINDOW_Source& ePLSource) {
  const LogScope scope(__func__);
  KEL_LOG(kInformation, "t_IsConvertable input eTVSSource = %d", static_cast<int>(eTVSSource));
  const int nPLSource = CEmpConverterWindow::GetPLValue(eTVSSource, PL_WINDOW_MAPPING_TABLE_SOURCE);
  // 0 also means "not found", and 1 is the first source without a counterpart.
  if (eTVSSource != SOURCE_TV && static_cast<unsigned>(nPLSource) <= 1) {
    KEL_LOG(kFailure, "t_IsConvertable can't convert to  PL_WINDOW_SOURCE");
    return false;
  }
  ePLSource = static_cast<_PL_WINDOW_Source>(nPLSource);
  KEL_LOG(kInformation, "t_IsConvertable output ePLSource = %d", nPLSource);
  return true;
}

bool CEmpTaskWindow::t_IsConvertable(_PL_WINDOW_Source ePLSource, ESource& eTVSSource) {
  const LogScope scope(__func__);
  KEL_LOG(kInformation, "t_IsConvertable input ePLSource = %d", static_cast<int>(ePLSource));
  const int nTVSSource = CEmpConverterWindow::GetTCValue(ePLSource, PL_WINDOW_MAPPING_TABLE_SOURCE);
  if (nTVSSource == -1) {
    KEL_LOG(kFailure, "t_IsConvertable can't convert to  ESource");
    return false;
  }
  eTVSSource = static_cast<ESource>(nTVSSource);
  KEL_LOG(kInformation, "t_IsConvertable output eTVSSource = %d", nTVSSource);
  return true;
}

bool CEmpTaskWindow::t_GetCurrentSourceInfo(_PL_WINDOW_Source& eSource) {
  const LogScope scope(__func__);
  if (!t_NeedSourceControlproxy()) return false;
  KEL_LOG(kInformation, "This is t_GetCurrentSourceInfo");
  KEL_LOG(kInformation, "GetSourceState start");
  int nState = -1;
  int result = kFailed;
  if (!Reach([&] { result = src_ctrl_proxy->GetSourceState(&nState); })) return false;
  if (result == 1) {
    KEL_LOG(kInformation, "GetSourceState = %d", nState);
    if (nState != -1) return t_AskCurrentSource(eSource);
    KEL_LOG(kInformation, "Get GetSourceState success and eCurrentSourceState = SOURCE_STATE_NONE");
  } else {
    KEL_LOG(kFailure, "Get GetSourceState failed");
  }
  KEL_LOG(kInformation, "TVS is not active");
  eSource = PL_WINDOW_SOURCE_NONE;
  return true;
}

bool CEmpTaskWindow::t_AskCurrentSource(_PL_WINDOW_Source& eSource) {
  ESource eTVSSource = SOURCE_NONE;
  const int result =
      Ask(src_ctrl_proxy, [&](ISourceControl& control) { return control.GetCurrentSourceInfo(eTVSSource); });
  if (result < 1) {
    KEL_LOG(kFailure, "GetCurrentSourceInfo failed");
    return false;
  }
  KEL_LOG(kInformation, "GetCurrentSourceInfo successfully eTVSSource = %d", static_cast<int>(eTVSSource));
  return t_ConvertSource(eTVSSource, eSource);
}

bool CEmpTaskWindow::t_ConvertSource(ESource eTVSSource, _PL_WINDOW_Source& eSource) {
  if (t_IsConvertable(eTVSSource, eSource)) return true;
  KEL_LOG(kFailure, "Can't convert from eTVSSource = %d to PL_WINDOW_SOURCE", static_cast<int>(eTVSSource));
  return false;
}

bool CEmpTaskWindow::t_GetPreviousSourceInfo(_PL_WINDOW_Source& eSource) {
  const LogScope scope(__func__);
  if (!t_NeedSourceControlproxy()) return false;
  KEL_LOG(kInformation, "This is t_GetPreviousSourceInfo");
  ESource eTVSSource = SOURCE_NONE;
  const int result =
      Ask(src_ctrl_proxy, [&](ISourceControl& control) { return control.GetPreviousSourceInfo(eTVSSource); });
  if (result < 1) {
    KEL_LOG(kFailure, "GetCurrentSourceInfo failed");
    return false;
  }
  KEL_LOG(kInformation, "GetPreviousSourceInfo successfully eTVSSource = %d", static_cast<int>(eTVSSource));
  return t_ConvertSource(eTVSSource, eSource);
}

bool CEmpTaskWindow::t_ReadPreviousSource(int& nSource) {
  if (!ReadKey(m_PreviousSourceVconf.c_str(), nSource)) {
    KEL_LOG(kFailure, "Get vconf %s failed", m_PreviousSourceVconf.c_str());
    return false;
  }
  KEL_LOG(kInformation, "m_PreviousSourceVconf %s = %d success", m_PreviousSourceVconf.c_str(), nSource);
  return true;
}

bool CEmpTaskWindow::t_SetTVMWMainSourcevconf(const char* key, int nPLSource) {
  const LogScope scope(__func__);
  KEL_LOG(kInformation, "This is t_SetCurrentSourcevconf");
  if (std::strcmp(key, kMainSource) != 0) {
    KEL_LOG(kFailure, "in_key= %s  is not equal to %s", key, kMainSource);
    return false;
  }
  KEL_LOG(kInformation, "it is main source set the vconf for emptvsmw ");
  std::string value;
  if (m_pEngine != nullptr && !Reach([&] { value = m_pEngine->GetAppInfo(eAPP_INFO_WIDGET_ID); })) return false;
  if (value.empty()) KEL_LOG(kFailure, "Could not get widget ID.");

  char digits[12] = {};
  std::snprintf(digits, sizeof digits, "%d", nPLSource);
  value.append(":").append(digits, ::strnlen(digits, 3));  // the middleware reads no more than three characters
  KEL_LOG(kInformation, "The vconf value to be set: %s", value.c_str());
  if (Try(kFailed, [&] { return vconf_set_str(kPublishedSource, value.c_str()); }) != 0) {
    KEL_LOG(kFailure, "set the vconf for emptvsmw failed!!!");
    return false;
  }
  return true;
}

bool CEmpTaskWindow::t_InitSourceVconf() {
  const LogScope scope(__func__);
  _PL_WINDOW_Source eSource = PL_WINDOW_SOURCE_UNKNOWN;
  if (!t_GetCurrentSourceInfo(eSource)) return false;
  if (!t_SeedKey(kMainSource, eSource)) return false;
  // The previous source starts as the current one, whatever the TV service showed before.
  if (!t_AskCurrentSource(eSource)) return false;
  if (!t_SeedKey(kPreviousMainSource, eSource)) return false;

  if (!WriteKey(kPipSource, PL_WINDOW_SOURCE_TV)) {
    KEL_LOG(kFailure, "Set vconf %sfailed", kPipSource);
    return false;
  }
  KEL_LOG(kInformation, "Set vconf %s = %d success", kPipSource, static_cast<int>(PL_WINDOW_SOURCE_TV));
  return true;
}

bool CEmpTaskWindow::t_SeedKey(const char* key, int nSource) {
  if (!WriteKey(key, nSource)) {
    KEL_LOG(kFailure, "Set vconf %s failed", key);
    return false;
  }
  KEL_LOG(kInformation, "Set vconf %s = %d success", key, nSource);
  return true;
}

bool CEmpTaskWindow::t_UpdateSourceVconf(int nNewSource, int nPreviousSource) {
  const LogScope scope(__func__);
  return t_RecordSources(nNewSource, nPreviousSource);
}

bool CEmpTaskWindow::t_RecordSources(int nNewSource, int nPreviousSource) {
  if (!t_RecordSource(m_PreviousSourceVconf, nPreviousSource)) return false;
  if (!t_SetTVMWMainSourcevconf(m_SourceVconf.c_str(), nNewSource)) {
    KEL_LOG(kFailure, "t_SetTVMWMainSourcevconf failed");
    return false;
  }
  return t_RecordSource(m_SourceVconf, nNewSource);
}

bool CEmpTaskWindow::t_RecordSource(const std::string& key, int nSource) {
  if (!WriteKey(key.c_str(), nSource)) {
    KEL_LOG(kFailure, "Set vconf %s = %d failed", key.c_str(), nSource);
    return false;
  }
  KEL_LOG(kInformation, "Set vconf %s = %d success", key.c_str(), nSource);
  return true;
}

}  // namespace kel
