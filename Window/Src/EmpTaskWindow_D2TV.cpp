// SPDX-License-Identifier: MIT
// The ISP source, which the secondary TV stack shows. Calls CD2tvMgrProxy, D2TVCAPI and vconf. Everything here is
// logged as information, failures too.
#include <cstdlib>
#include <cstring>
#include <memory>

#include "Ask.h"
#include "D2tvManager.h"
#include "EmpTaskWindow.h"
#include "SourceKeys.h"
#include "d2tv/D2TVCAPI.h"
#include "settings/vconf.h"

namespace kel {

namespace {

constexpr const char* kD2tvFile = "Window/Src/EmpTaskWindow_D2TV";
constexpr const char* kIspService = "isp-service";

/// `Try` at this file's level.
template <typename Call, typename Result>
Result Attempt(Result failed, Call call) {
  return Try(failed, call, kInformation);
}

struct Free {
  void operator()(char* text) const { std::free(text); }
};

}  // namespace

void CEmpTaskWindow::CreateD2TVManagerInstance() {
  const LogScope scope(__func__);
  if (D2tvManager(kInformation) == nullptr) {
    KEL_LOG(kInformation, "CEmpTaskWindow:: pCHMgr=>>CIptvMgrProxy :Create pCHMgr Failed ");
  } else {
    KEL_LOG(kInformation, "CEmpTaskWindow:: pCHMgr=>>CIptvMgrProxy :Create pCHMgr successfully ");
  }
}

void CEmpTaskWindow::DestroyD2TVManagerInstance() {
  const LogScope scope(__func__);
  Attempt(false, [] {
    CD2tvMgrProxy::DestroyInstance();
    return true;
  });
}

bool CEmpTaskWindow::IsSourceISP() {
  const LogScope scope(__func__);
  constexpr char* none = nullptr;
  const std::unique_ptr<char, Free> sourceType(Attempt(none, [] { return vconf_get_str(kLastService); }));
  if (sourceType == nullptr) {
    KEL_LOG(kInformation, "CEmpTaskWindow::IsSourceISP:: sourceType is NULL");
    return false;
  }
  KEL_LOG(kInformation, "CEmpTaskWindow::IsSourceISP:: Source is in ISP source of sourceType - (%s)", sourceType.get());
  const bool isp = std::strcmp(sourceType.get(), kIspService) == 0;
  if (!isp) KEL_LOG(kInformation, "CEmpTaskWindow::IsSourceISP::Source is Not in ISP source");
  return isp;
}

bool CEmpTaskWindow::SetSource_D2TV() {
  const LogScope scope(__func__);
  KEL_LOG_PLACE(kD2tvFile, kInformation);
  KEL_LOG(kInformation, "CEmpTaskWindow::SetSource : [SetISPSource]");
  if (Attempt(kFailed, [] { return D2TVCAPI_setSourceISP(); }) != 1) {
    KEL_LOG(kInformation, "CEmpTaskWindow::SetSource : Fail to Set ISP Source");
    return false;
  }
  return true;
}

}  // namespace kel
