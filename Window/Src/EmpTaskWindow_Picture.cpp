// SPDX-License-Identifier: MIT
// What is done to the picture: crop, plane order, show and mute. Calls IVideoControl and IAVControl.
#include "Ask.h"
#include "EmpTaskWindow.h"
#include "Records.h"
#include "TaskFile.h"
#include "tvservice/IAVControl.h"
#include "tvservice/IVideoControl.h"

namespace kel {

namespace {

void Copy(const CEmpTaskWindow::Rect& from, TSRectInfo& to) {
  to.x = from.x;
  to.y = from.y;
  to.width = from.width;
  to.height = from.height;
}

CEmpTaskWindow::Rect RectOf(const TSRectInfo& rect) {
  return {rect.x, rect.y, rect.width, rect.height};
}

}  // namespace

bool CEmpTaskWindow::t_CheckCropping() {
  if (!t_NeedVideoControlproxy()) return false;
  _PL_WINDOW_Source eSource = PL_WINDOW_SOURCE_UNKNOWN;
  return t_GetCurrentSourceInfo(eSource);
}

int CEmpTaskWindow::SetScreenCropRect(Rect* crop, Rect* display, int /*plane*/) {
  const LogScope scope(__func__);
  if (!t_CheckCropping()) return -1;
  auto cropInfo = Zeroed<TSRectInfo>();
  auto displayInfo = Zeroed<TSRectInfo>();
  if (crop != nullptr) Copy(*crop, cropInfo);
  if (display != nullptr) Copy(*display, displayInfo);
  const int result =
      Ask(video_ctrl_proxy, [&](IVideoControl& video) { return video.SetCropArea(&cropInfo, &displayInfo); });
  if (result < 1) return 0;
  KEL_LOG(kInformation, "SetSize success!\n");
  return 1;
}

int CEmpTaskWindow::GetScreenCropRect(Rect& crop, Rect& display, int /*plane*/) {
  const LogScope scope(__func__);
  if (!t_CheckCropping()) return -1;
  auto cropInfo = Zeroed<TSRectInfo>();
  auto displayInfo = Zeroed<TSRectInfo>();
  const int result =
      Ask(video_ctrl_proxy, [&](IVideoControl& video) { return video.GetCropArea(&cropInfo, &displayInfo); });
  if (result < 1) return 0;
  KEL_LOG(kInformation, "GetScreenCropRect success!\n");
  crop = RectOf(cropInfo);
  display = RectOf(displayInfo);
  return 1;
}

int CEmpTaskWindow::SetScreenZorder(PL_WINDOW_ZORDER eZorder) {
  const LogScope scope(__func__);
  if (!t_NeedVideoControlproxy()) return -1;
  const int nOrder = CEmpConverterWindow::GetTCValue(eZorder, PL_WINDOW_MAPPING_TABLE_ZORDER);
  const int result = Ask(video_ctrl_proxy, [=](IVideoControl& video) { return video.SetZOrder(nOrder); });
  if (result < 0) return -1;
  KEL_LOG(kInformation, "SetScreenRect by order : result : %d", result);
  return 1;
}

int CEmpTaskWindow::Show(_PL_WINDOW_SHOW_TYPE eShowType) {
  const LogScope scope(__func__);
  if (!t_NeedAVControlproxy()) return -1;
  const int nType = eShowType;
  KEL_LOG(kInformation, "eShowType=[%d]", nType);
  switch (nType) {
    case 0:
    case 2:
      KEL_LOG(kInformation, "eShowType=[%d],Set MuteVideo(TRUE).", nType);
      return t_ShowPicture(false);
    case 1:
    case 3:
      KEL_LOG(kInformation, "eShowType=[%d],Set MuteVideo(FALSE).", nType);
      return t_ShowPicture(true);
    case 4:
    case 5:
    case 6:
      KEL_LOG_ERROR(kTaskFile, kFailure);
      KEL_LOG(kFailure, "eShowType=[%d] is NOT supported in VELUN.", nType);
      return -1;
    default:
      KEL_LOG(kFailure, "eShowType=[%d],NOT defined.", nType);
      KEL_LOG_ERROR(kTaskFile, kFailure);
      return -1;
  }
}

int CEmpTaskWindow::t_ShowPicture(bool shown) {
  if (Ask(av_ctrl_proxy, [=](IAVControl& av) { return av.MuteVideo(shown ? 0 : 1); }) == 1) return 1;
  KEL_LOG_ERROR(kTaskFile, kFailure);
  return -1;
}

int CEmpTaskWindow::MuteVideo(bool mute) {
  const LogScope scope(__func__);
  if (!t_CheckAVControlproxy()) return -1;
  // Any number except 0 is a success here, while showing and hiding require 1.
  return Try(0, [&] { return av_ctrl_proxy->MuteVideo(mute ? 1 : 0); }) == 0 ? -1 : 1;
}

}  // namespace kel
