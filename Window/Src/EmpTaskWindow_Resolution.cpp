// SPDX-License-Identifier: MIT
// The resolution of the picture on screen. Calls IAVControl, and CD2tvMgrProxy while the ISP source is shown.
#include <json/json.h>

#include "Ask.h"
#include "D2tvManager.h"
#include "EmpTaskWindow.h"
#include "JsonText.h"
#include "Records.h"
#include "TaskFile.h"
#include "tvservice/IAVControl.h"

namespace kel {

namespace {

constexpr auto kUnknownCode = static_cast<EResolution>(136);

/// Writes the document. @return false, with the text unchanged, on failure.
bool WriteDetail(const TSResolution& resolution, std::string& out) {
  return Try(false, [&] {
    Json::Value root(Json::objectValue);
    root["horizontal"] = resolution.horizontal;
    root["vertical"] = resolution.vertical;
    root["frequency"] = resolution.frequency;
    root["hFrequency"] = resolution.horizontalFrequency;
    out = WriteJson(root);
    return true;
  });
}

}  // namespace

_PL_WINDOW_RESOLUTION CEmpTaskWindow::t_getPLResolution(EResolution eResolution) {
  const auto pl = [](int number) { return static_cast<_PL_WINDOW_RESOLUTION>(number); };
  constexpr int unknown = 20;
  const int code = eResolution;
  switch (code) {
    case -1:
      return pl(21);
    case 0:
      return pl(2);
    case 1:
    case 2:
    case 3:
    case 4:
    case 5:
      return pl(code + 4);
    case 10:
    case 11:
      return pl(code);
    case 15:
    case 16:
    case 17:
      return pl(code - 1);
    case 18:
      return pl(14);
    case 19:
      return pl(17);
    case 21:
    case 22:
      return pl(code - 9);
    case 29:
      return pl(22);
    case 134:
      return pl(1);
    case 135:
      return pl(19);
    case 137:
      return pl(0);
    default:
      return pl(unknown);
  }
}

int CEmpTaskWindow::GetResolution(_PL_WINDOW_RESOLUTION* peResolution) {
  const LogScope scope(__func__);
  KEL_LOG_PLACE(kTaskFile, kInformation);
  if (!t_NeedAVControlproxy()) return -1;
  if (peResolution == nullptr) {
    KEL_LOG_ERROR(kTaskFile, kFailure);
    return -3;
  }
  EResolution eCode = kUnknownCode;
  auto resolution = Zeroed<TSResolution>();
  if (Ask(av_ctrl_proxy, [&](IAVControl& av) { return av.GetResolution(eCode, resolution); }) != 0) {
    KEL_LOG_ERROR(kTaskFile, kFailure);
    return -1;
  }
  *peResolution = t_getPLResolution(eCode);
  KEL_LOG(kInformation, "resolution=[%d] *peResolution=[%d]", static_cast<int>(eCode), static_cast<int>(*peResolution));
  return 1;
}

int CEmpTaskWindow::GetResolutionDetail(std::string& strDetail) {
  const LogScope scope(__func__);
  if (IsSourceISP()) {
    if (GetResolutionDetail_D2TV(strDetail) == 1) {
      KEL_LOG(kInformation, "Successfull  get the audio information in CEmpTaskWindow::GetResolutionDetail_D2TV");
      return 1;
    }
    KEL_LOG(kFailure, "Fail to get the audio information in CEmpTaskWindow::GetResolutionDetail_D2TV");
    return 0;
  }
  if (!t_NeedAVControlproxy()) return -1;
  EResolution eCode = kUnknownCode;
  auto resolution = Zeroed<TSResolution>();
  if (Ask(av_ctrl_proxy, [&](IAVControl& av) { return av.GetResolution(eCode, resolution); }) != 0) {
    KEL_LOG(kFailure, "GetResolution fails");
    return -1;
  }
  if (!WriteDetail(resolution, strDetail)) return -1;
  KEL_LOG(kInformation, "GetResolutionDetail : %s", strDetail.c_str());
  return 1;
}

int CEmpTaskWindow::GetResolutionDetail_D2TV(std::string& strDetail) {
  const LogScope scope(__func__);
  KEL_LOG(kInformation, "CEmpTaskWindow::GetResolutionDetail_D2TV::Start of  GetResolutionDetail_D2TV \n ");
  auto resolution = Zeroed<TSResolution>();
  CD2tvMgrProxy* const manager = D2tvManager();
  if (manager == nullptr) {
    KEL_LOG(kFailure, "Invalid Channel Manager Instance.");
    WriteDetail(resolution, strDetail);
    return -1;
  }
  unsigned width = 0;
  unsigned height = 0;
  if (Ask(manager, [&](CD2tvMgrProxy& stack) { return stack.GetVideoResolution(&width, &height); }) != 0) {
    KEL_LOG(kFailure, "CEmpTaskWindow::GetResolutionDetail_D2TV=>GetResolution  fail to return   ");
    WriteDetail(resolution, strDetail);
    return -1;
  }
  KEL_LOG(kInformation,
          "CEmpTaskWindow::GetResolutionDetail_D2TV=>GetResolution sucessufully returned : horizontal==> %d, "
          "vertical==> %d ",
          static_cast<int>(width), static_cast<int>(height));
  resolution.horizontal = width;
  resolution.vertical = height;
  if (!WriteDetail(resolution, strDetail)) return -1;
  KEL_LOG(kInformation, "GetResolutionDetail : %s", strDetail.c_str());
  return 1;
}

}  // namespace kel
