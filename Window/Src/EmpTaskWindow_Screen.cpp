// SPDX-License-Identifier: MIT
// Where the picture stands on the screen. Calls IVideoControl and ISourceControl. Applications work in the plug-in's
// space of 960 x 540, the TV service in the base screen; every rectangle that crosses between the two is converted
// here.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>

#include "Ask.h"
#include "EmpTaskWindow.h"
#include "TaskFile.h"
#include "tvservice/ISourceControl.h"
#include "tvservice/IVideoControl.h"

namespace kel {

namespace {

constexpr int kPluginWidth = 960;
constexpr int kPluginHeight = 540;

constexpr std::size_t kRectText = 40;  // what the caller's buffer holds

template <typename Wide>
int Clamped(Wide value) {
  constexpr auto lowest = static_cast<Wide>(std::numeric_limits<int>::min());
  constexpr auto highest = static_cast<Wide>(std::numeric_limits<int>::max());
  return static_cast<int>(std::clamp(value, lowest, highest));
}

int ToBase(int value, int base, int plugin) {
  return Clamped(static_cast<long long>(value) * base / plugin);
}

/// Rounds, while the conversion to base space truncates. For a base screen without a size, 0 becomes 0, and everything
/// else infinite.
int ToPlugin(int value, int plugin, int base) {
  const double rounded = value * (static_cast<double>(plugin) / base) + 0.5;
  return std::isnan(rounded) ? 0 : Clamped(rounded);
}

void ToPlugin(CEmpTaskWindow::Rect& rect, int baseWidth, int baseHeight) {
  rect.x = ToPlugin(rect.x, kPluginWidth, baseWidth);
  rect.y = ToPlugin(rect.y, kPluginHeight, baseHeight);
  rect.width = ToPlugin(rect.width, kPluginWidth, baseWidth);
  rect.height = ToPlugin(rect.height, kPluginHeight, baseHeight);
}

void Print(const CEmpTaskWindow::Rect& rect, char* out) {
  std::snprintf(out, kRectText, "x:%d,y:%d,w:%d,h:%d", rect.x, rect.y, rect.width, rect.height);  // what fits
}

_PL_WINDOW_SHOW_STATE ShowStateOf(int sourceState) {
  const auto state = [](int number) { return static_cast<_PL_WINDOW_SHOW_STATE>(number); };
  switch (sourceState) {
    case -1:
      return state(0);
    case 1:
      return state(3);
    case 2:
      return state(1);
    default:
      return state(4);
  }
}

}  // namespace

int CEmpTaskWindow::SetScreenRect(int x, int y, int w, int h) {
  const LogScope scope(__func__);
  KEL_LOG_PLACE(kTaskFile, kFailure);
  if (!t_NeedVideoControlproxy()) return 0;
  KEL_LOG(kInformation, "nX=[%d] nY=[%d] nW=[%d] nH=[%d]", x, y, w, h);
  return x < 0 ? t_SetDefaultSize() : t_SetSize({x, y, w, h});
}

bool CEmpTaskWindow::t_HasSource() {
  _PL_WINDOW_Source eSource = PL_WINDOW_SOURCE_UNKNOWN;
  if (t_GetCurrentSourceInfo(eSource)) return true;
  KEL_LOG(kFailure, "t_GetCurrentSourceInfo fails !\n");
  return false;
}

int CEmpTaskWindow::t_SetDefaultSize() {
  if (!t_HasSource()) return 0;
  KEL_LOG(kInformation, "bFullScreen = true SetDefaultSize !\n");
  if (Ask(video_ctrl_proxy, [](IVideoControl& video) { return video.SetDefaultSize(); }) < 1) return 0;
  KEL_LOG(kInformation, "SetDefaultSize success!\n");
  return 1;
}

int CEmpTaskWindow::t_SetSize(const Rect& rect) {
  const int x = ToBase(rect.x, m_baseScrW, kPluginWidth);
  const int y = ToBase(rect.y, m_baseScrH, kPluginHeight);
  const int width = ToBase(rect.width, m_baseScrW, kPluginWidth);
  const int height = ToBase(rect.height, m_baseScrH, kPluginHeight);
  KEL_LOG(kInformation, "After convert nTempX=[%d] nTempY=[%d] nTempW=[%d] nTempH=[%d]", x, y, width, height);
  if (!t_HasSource()) return 0;
  const int result = Ask(video_ctrl_proxy, [&](IVideoControl& video) { return video.SetSize(x, y, height, width); });
  if (result < 1) return 0;
  KEL_LOG(kInformation, "SetSize success!\n");
  return 1;
}

int CEmpTaskWindow::GetScreenRect(char* pszScreenRect) {
  const LogScope scope(__func__);
  KEL_LOG_PLACE(kTaskFile, kFailure);
  if (!t_NeedVideoControlproxy()) return 0;
  if (pszScreenRect == nullptr) {
    KEL_LOG_ERROR(kTaskFile, kFailure);
    return -3;
  }
  _PL_WINDOW_Source eSource = PL_WINDOW_SOURCE_UNKNOWN;
  if (!t_GetCurrentSourceInfo(eSource)) {
    KEL_LOG(kFailure, "Cannot get Source info from TVS!!!");
    return 0;
  }
  Rect rect{};
  const int result = Ask(video_ctrl_proxy, [&](IVideoControl& video) {
    return video.GetSize(&rect.x, &rect.y, &rect.height, &rect.width);
  });
  if (result < 1) {
    KEL_LOG(kFailure, "Cannot get Size info from TVS!!!");
    return 0;
  }
  KEL_LOG(kInformation, "GetScreenRect success! [x,y,w,h=%d,%d,%d,%d]\n", rect.x, rect.y, rect.width, rect.height);
  ToPlugin(rect, m_baseScrW, m_baseScrH);
  KEL_LOG(kInformation, "After convert x = %04d,y = %04d, w = %04d, h= %04d", rect.x, rect.y, rect.width, rect.height);
  Print(rect, pszScreenRect);
  KEL_LOG(kInformation, "pszScreenRect = %s", pszScreenRect);
  KEL_LOG(kInformation, "%04d/%04d/%04d/%04d", rect.x, rect.y, rect.width, rect.height);
  return 1;
}

int CEmpTaskWindow::GetScreenRect(Rect& rect) {
  const LogScope scope(__func__);
  KEL_LOG_PLACE(kTaskFile, kFailure);
  if (!t_NeedVideoControlproxy()) return -1;
  _PL_WINDOW_Source eSource = PL_WINDOW_SOURCE_UNKNOWN;
  if (!t_GetCurrentSourceInfo(eSource)) return -1;
  // Width and height are swapped here, unlike in the text form; applications depend on it.
  const int result = Ask(video_ctrl_proxy, [&](IVideoControl& video) {
    return video.GetSize(&rect.x, &rect.y, &rect.width, &rect.height);
  });
  if (result < 1) return 0;
  KEL_LOG(kInformation, "GetScreenRect success!\n");
  ToPlugin(rect, m_baseScrW, m_baseScrH);
  return 1;
}

int CEmpTaskWindow::GetAFDGeometryRectSize(char* pszAFDRect) {
  const LogScope scope(__func__);
  KEL_LOG_PLACE(kTaskFile, kFailure);
  if (!t_NeedVideoControlproxy()) return 0;
  if (pszAFDRect == nullptr) {
    KEL_LOG_ERROR(kTaskFile, kFailure);
    return -3;
  }
  Rect rect{};
  const int result = Ask(video_ctrl_proxy, [&](IVideoControl& video) {
    return video.GetAFDGeometryRectSize(&rect.x, &rect.y, &rect.width, &rect.height);
  });
  if (result < 1) {
    KEL_LOG(kFailure, "GetAFDGeometryRectSize failed");
    return 0;
  }
  KEL_LOG(kInformation, "GetAFDGeometryRectSize success! [x,y,w,h=%d,%d,%d,%d]\n", rect.x, rect.y, rect.width,
          rect.height);
  Print(rect, pszAFDRect);
  KEL_LOG(kInformation, "pszAFDRect = %s", pszAFDRect);
  return 1;
}

// The output of the next two stays as it is.
// NOLINTBEGIN(readability-non-const-parameter)
int CEmpTaskWindow::GetScreenRect_PosMode(_PL_WINDOW_POSITION_MODE* pePosMode) {
  const LogScope scope(__func__);
  KEL_LOG_PLACE(kTaskFile, kFailure);
  if (pePosMode == nullptr) {
    KEL_LOG_ERROR(kTaskFile, kFailure);
    return -3;
  }
  return 0;
}

int CEmpTaskWindow::GetScreenRect_SizeMode(_PL_WINDOW_RECT_SIZE_MODE* peSizeMode) {
  const LogScope scope(__func__);
  KEL_LOG_PLACE(kTaskFile, kFailure);
  if (peSizeMode == nullptr) {
    KEL_LOG_ERROR(kTaskFile, kFailure);
    return -3;
  }
  return 0;
}
// NOLINTEND(readability-non-const-parameter)

int CEmpTaskWindow::SetScreenRect_PosSizeMode(_PL_WINDOW_POSITION_MODE /*ePosMode*/,
                                              _PL_WINDOW_RECT_SIZE_MODE /*eSizeMode*/) {
  const LogScope scope(__func__);
  KEL_LOG_PLACE(kTaskFile, kFailure);
  return -1;
}

int CEmpTaskWindow::GetState_Show(_PL_WINDOW_SHOW_STATE* peShowState) {
  const LogScope scope(__func__);
  KEL_LOG_PLACE(kTaskFile, kFailure);
  if (peShowState == nullptr) {
    KEL_LOG_ERROR(kTaskFile, kFailure);
    return -3;
  }
  if (src_ctrl_proxy == nullptr && !t_BindSourceControl(t_TellWindow())) return 0;
  constexpr int none = -1;
  int nState = none;
  if (Try(0, [&] { return src_ctrl_proxy->GetSourceState(&nState); }) == 0) {
    KEL_LOG_ERROR(kTaskFile, kFailure);
    return -1;
  }
  *peShowState = ShowStateOf(nState);
  KEL_LOG(kInformation, "nShowState=[%d], *peShowState=[%d]", nState != none ? 1 : 0, static_cast<int>(*peShowState));
  return 1;
}

}  // namespace kel
