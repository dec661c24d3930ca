// SPDX-License-Identifier: MIT
// The worker's life cycle, its proxies and the window selection. Calls the factories of TVServiceAPI and the engine's
// GetAppInfo.
#include "EmpTaskWindow.h"

#include "Ask.h"
#include "SourceKeys.h"
#include "TaskFile.h"
#include "kel/CEmpEngineBase.h"
#include "tvservice/TVServiceAPI.h"

namespace kel {

namespace {

constexpr int kIndex = 0;  // second argument of every factory

template <typename Interface>
using Factory = int (*)(EProfile, int, Interface**);

// The two factories that differ, under the signature of the others.
int MakeService(EProfile, int, IService** service) {
  return TVServiceAPI::CreateService(service);
}
int MakeServiceDataAux(EProfile profile, int index, ServiceDataAux** aux) {
  *aux = TVServiceAPI::ServiceDataAux(profile, index);
  return 0;
}

enum class Made { yes, refused, nothing, thrown };

/// Runs a factory. On failure `target` is null.
template <typename Interface>
Made Make(Interface*& target, Factory<Interface> factory, EProfile profile) {
  target = nullptr;
  const Made made = Try(Made::thrown, [&] {
    if (factory(profile, kIndex, &target) != 0) return Made::refused;
    return target == nullptr ? Made::nothing : Made::yes;
  });
  if (made != Made::yes) target = nullptr;
  return made;
}

/// One step of `Create`: runs a factory for the main window. @return 1 for a failure, 0 for none.
template <typename Interface>
int MakeFirst(Interface*& target, Factory<Interface> factory, int level, const char* failed) {
  if (Make(target, factory, PROFILE_MAIN) == Made::yes) return 0;
  KEL_LOG(level, "%s", failed);
  return 1;
}

/// One interface of window selection, and the log text when it can't be created.
template <typename Interface>
struct Binding {
  Factory<Interface> factory;
  const char* refused;
  const char* nothing;
};

/// Creates a window's own instance if it is missing, and activates it.
template <typename Interface>
bool Bind(Interface*& active, Interface*& own, EProfile profile, const Binding<Interface>& binding) {
  const Made made = own == nullptr ? Make(own, binding.factory, profile) : Made::yes;
  if (made == Made::refused || made == Made::thrown)
    KEL_LOG(kFailure, binding.refused, static_cast<int>(profile), kIndex);
  if (made == Made::nothing) KEL_LOG(kFailure, "%s", binding.nothing);
  if (made != Made::yes) return false;
  active = own;
  return true;
}

/// Creates an active proxy on first use. Such a proxy is not stored as a window's own.
template <typename Interface>
bool Check(Location operation, Interface*& active, Factory<Interface> factory, int window, const char* missing,
           const char* failed) {
  if (active != nullptr) return true;
  const LogScope scope(operation);
  KEL_LOG(kFailure, missing, window);
  const EProfile profile = window == PL_WINDOW_WINDOW_MAIN ? PROFILE_MAIN : PROFILE_PIP;
  if (Make(active, factory, profile) == Made::yes) return true;
  KEL_LOG(kFailure, "%s", failed);
  return false;
}

/// Returns `there`, and logs a missing proxy.
bool Needed(bool there, const char* missing) {
  if (!there) KEL_LOG(kFailure, "%s", missing);
  return there;
}

}  // namespace

CEmpTaskWindow::CEmpTaskWindow()
    : m_pEngine(nullptr),
      m_baseScrW(1920),
      m_baseScrH(1080),
      svc_navi_proxy(nullptr),
      svc_navi_proxy_main(nullptr),
      svc_navi_proxy_pip(nullptr),
      src_ctrl_proxy(nullptr),
      src_ctrl_proxy_main(nullptr),
      src_ctrl_proxy_pip(nullptr),
      video_ctrl_proxy(nullptr),
      video_ctrl_proxy_main(nullptr),
      video_ctrl_proxy_pip(nullptr),
      av_ctrl_proxy(nullptr),
      av_ctrl_proxy_main(nullptr),
      av_ctrl_proxy_pip(nullptr),
      servicedata_aux_proxy(nullptr),
      servicedata_aux_proxy_main(nullptr),
      servicedata_aux_proxy_pip(nullptr),
      svc_datacontrol_proxy(nullptr),
      svc_datacontrol_proxy_main(nullptr),
      svc_datacontrol_proxy_pip(nullptr),
      tuner_ctrl_proxy(nullptr),
      svc_proxy(nullptr),
      t_eWindow(3) {
  const LogScope scope(__func__);
  KEL_LOG(kInformation, "[CEmpTaskWindow::CEmpTaskWindow][%p] begin.", static_cast<void*>(this));
  KEL_LOG(kInformation, "[CEmpTaskWindow::CEmpTaskWindow][%p] end.", static_cast<void*>(this));
}

CEmpTaskWindow::~CEmpTaskWindow() {
  const LogScope scope(__func__);
  KEL_LOG(kInformation, "[CEmpTaskWindow::~CEmpTaskWindow][%p] begin.", static_cast<void*>(this));
  if (m_pEngine != nullptr) CEmpTaskWindow::Destroy();
  KEL_LOG(kInformation, "[CEmpTaskWindow::~CEmpTaskWindow][%p] end.", static_cast<void*>(this));
}

void CEmpTaskWindow::Destroy() {
  const LogScope scope(__func__);
  KEL_LOG(kInformation, "[CEmpTaskWindow::Destroy][%p] begin.", static_cast<void*>(this));
  t_ClearChannelList();
  DestroyD2TVManagerInstance();
  KEL_LOG(kInformation, "[CEmpTaskWindow::Destroy][%p] end.", static_cast<void*>(this));
}

bool CEmpTaskWindow::FlagCreate() {
  return m_pEngine != nullptr;
}

bool CEmpTaskWindow::Create(const char* /*name*/, CEmpEngineBase* engine) {
  const LogScope scope(__func__);
  KEL_LOG(kInformation, "[CEmpTaskWindow::Create][%p] begin.", static_cast<void*>(this));
  int nError = 0;
  if (FlagCreate()) {
    KEL_LOG(kInformation, "[CEmpTaskWindow::Create][%p] end.[nError:%d]", static_cast<void*>(this), nError);
  } else {
    m_pEngine = engine;
    nError = t_CreateProxies();
    m_SourceVconf = kMainSource;
    m_PreviousSourceVconf = kPreviousMainSource;
    KEL_LOG(kInformation, "resolution is RES_1920x1080");
    m_baseScrW = 1920;
    m_baseScrH = 1080;
    KEL_LOG(kInformation, "[m_baseScrW = %d,[m_baseScrH:%d]", m_baseScrW, m_baseScrH);
    KEL_LOG(kInformation, "[CEmpTaskWindow::Create][%p] end.[nError:%d]", static_cast<void*>(this), nError);
  }
  if (nError != 0) return false;

  t_eWindow = PL_WINDOW_WINDOW_MAIN;
  const bool seeded = t_InitSourceVconf();
  if (!seeded) KEL_LOG(kFailure, "[CEmpTaskWindow::Create] t_InitSourceVconf failed");
  return seeded;
}

int CEmpTaskWindow::t_CreateProxies() {
  int nError = MakeFirst(svc_proxy, MakeService, kFailure, "CEmpTaskWindow::Create. svc_proxy create is FAIL!!");
  nError += MakeFirst(src_ctrl_proxy_main, TVServiceAPI::CreateSourceControl, kFailure,
                      "CEmpTaskWindow::Create. src_ctrl_proxy create is FAIL!!");
  src_ctrl_proxy = src_ctrl_proxy_main;
  nError += MakeFirst(svc_navi_proxy_main, TVServiceAPI::CreateServiceNavigation, kFailure,
                      "CEmpTaskWindow::Create. svc_navi_proxy create is FAIL!!");
  svc_navi_proxy = svc_navi_proxy_main;
  nError += MakeFirst(av_ctrl_proxy_main, TVServiceAPI::CreateAVControl, kFailure,
                      "CEmpTaskWindow::Create. av_ctrl_proxy create is FAIL!!");
  av_ctrl_proxy = av_ctrl_proxy_main;
  nError += MakeFirst(servicedata_aux_proxy_main, MakeServiceDataAux, kFailure,
                      "CEmpTaskWindow::Create. servicedata_aux_proxy create is FAIL!!");
  servicedata_aux_proxy = servicedata_aux_proxy_main;
  // The next three are only activated, not stored: selecting the main window later creates another video control.
  nError += MakeFirst(video_ctrl_proxy, TVServiceAPI::CreateVideoControl, kFailure,
                      "CEmpTaskWindow::Create. video_ctrl_proxy create is FAIL!!");
  nError += MakeFirst(tuner_ctrl_proxy, TVServiceAPI::CreateTunerControl, kInformation,
                      "CEmpTaskTV::Create. tuner_ctrl_proxy create is FAIL!!");
  nError += MakeFirst(svc_datacontrol_proxy, TVServiceAPI::CreateDataControl, kFailure,
                      "CEmpTaskWindow::Create. svc_datacontrol_proxy create is FAIL!!");
  return nError;
}

int CEmpTaskWindow::SetWindow(_PL_WINDOW_WINDOW window) {
  const LogScope scope(__func__);
  KEL_LOG_PLACE(kTaskFile, kRoutine);
  t_eWindow = window;
  const bool main = window == PL_WINDOW_WINDOW_MAIN;
  const EProfile profile = t_TellWindow();

  // The picture-in-picture window reports its navigation in the words of the source control.
  const Binding<IServiceNavigation> navigation{
      TVServiceAPI::CreateServiceNavigation,
      main ? "CreateServiceNavigation returned false for [p:%d,s:%d] failed."
           : "CreateSourceControl returned false for [p:%d,s:%d] failed.",
      main ? "CreateServiceNavigation returned NULL!!!" : "CreateSourceControl returned NULL!!!"};
  const Binding<IVideoControl> video{TVServiceAPI::CreateVideoControl,
                                     "CreateVideoControl returned false for [p:%d,s:%d] failed.",
                                     "CreateVideoControl returned NULL!!!"};
  const Binding<IAVControl> av{TVServiceAPI::CreateAVControl, "CreateAVControl returned false for [p:%d,s:%d] failed.",
                               "CreateAVControl returned NULL!!!"};

  const bool bound = Bind(svc_navi_proxy, main ? svc_navi_proxy_main : svc_navi_proxy_pip, profile, navigation) &&
                     t_BindSourceControl(profile) &&
                     Bind(video_ctrl_proxy, main ? video_ctrl_proxy_main : video_ctrl_proxy_pip, profile, video) &&
                     Bind(av_ctrl_proxy, main ? av_ctrl_proxy_main : av_ctrl_proxy_pip, profile, av) &&
                     t_BindServiceDataAux(profile);
  return bound && t_BindDataControl(main) ? 1 : 0;
}

EProfile CEmpTaskWindow::t_TellWindow() {
  if (t_eWindow == PL_WINDOW_WINDOW_MAIN) {
    KEL_LOG(kRoutine, "PL_WINDOW_WINDOW_MAIN");
    return PROFILE_MAIN;
  }
  KEL_LOG(kRoutine, "PL_WINDOW_WINDOW_PIP");
  return PROFILE_PIP;
}

bool CEmpTaskWindow::t_BindSourceControl(EProfile profile) {
  const Binding<ISourceControl> control{TVServiceAPI::CreateSourceControl,
                                        "CreateSourceControl returned false for [p:%d,s:%d] failed.",
                                        "CreateSourceControl returned NULL!!!"};
  const bool main = profile == PROFILE_MAIN;
  if (!Bind(src_ctrl_proxy, main ? src_ctrl_proxy_main : src_ctrl_proxy_pip, profile, control)) return false;
  m_SourceVconf = main ? kMainSource : kPipSource;
  m_PreviousSourceVconf = main ? kPreviousMainSource : kPreviousPipSource;
  return true;
}

bool CEmpTaskWindow::t_BindServiceDataAux(EProfile profile) {
  ServiceDataAux*& own = profile == PROFILE_MAIN ? servicedata_aux_proxy_main : servicedata_aux_proxy_pip;
  if (own == nullptr && Make(own, MakeServiceDataAux, profile) != Made::yes) {
    KEL_LOG(kFailure, "ServiceDataAux returned NULL!!!");
    return false;
  }
  servicedata_aux_proxy = own;
  return true;
}

/// The window is selected even without a data control, unless creating one throws.
bool CEmpTaskWindow::t_BindDataControl(bool main) {
  IDataControl*& own = main ? svc_datacontrol_proxy_main : svc_datacontrol_proxy_pip;
  Made made = Made::yes;
  if (own == nullptr) made = Make(own, TVServiceAPI::CreateDataControl, PROFILE_MAIN);  // in both windows
  if (made != Made::yes) {
    if (main) {
      KEL_LOG(kFailure, "SetWindow svc_datacontrol_proxy_main create is FAIL!!");
    } else {
      KEL_LOG(kFailure, "SetWindow svc_datacontrol_proxy_pip create is FAIL!!");
    }
  }
  svc_datacontrol_proxy = own;
  return made != Made::thrown;
}

bool CEmpTaskWindow::t_CheckServiceproxy() {
  return Check(__func__, svc_proxy, MakeService, t_eWindow, "src_ctrl_proxy is NULL t_eWindow =%d",
               "CEmpTaskWindow svc_proxy create is FAIL!!");
}

bool CEmpTaskWindow::t_CheckServiceNavigationproxy() {
  return Check(__func__, svc_navi_proxy, TVServiceAPI::CreateServiceNavigation, t_eWindow,
               "svc_navi_proxy is NULL, t_eWindow =%d", "CEmpTaskWindow svc_navi_proxy create is FAIL!!");
}

bool CEmpTaskWindow::t_CheckSourceControlproxy() {
  return Check(__func__, src_ctrl_proxy, TVServiceAPI::CreateSourceControl, t_eWindow,
               "src_ctrl_proxy is NULL, t_eWindow =%d", "CEmpTaskWindow src_ctrl_proxy create is FAIL!!");
}

bool CEmpTaskWindow::t_CheckVideoControlproxy() {
  return Check(__func__, video_ctrl_proxy, TVServiceAPI::CreateVideoControl, t_eWindow,
               "video_ctrl_proxy is NULL, t_eWindow =%d", "CEmpTaskWindow video_ctrl_proxy create is FAIL!!");
}

bool CEmpTaskWindow::t_CheckAVControlproxy() {
  return Check(__func__, av_ctrl_proxy, TVServiceAPI::CreateAVControl, t_eWindow,
               "av_ctrl_proxy is NULL, t_eWindow =%d", "CEmpTaskWindow av_ctrl_proxy create is FAIL!!");
}

bool CEmpTaskWindow::t_CheckServiceDataAuxproxy() {
  return Check(__func__, servicedata_aux_proxy, MakeServiceDataAux, t_eWindow,
               "servicedata_aux_proxy is NULL, t_eWindow =%d", "CEmpTaskWindow servicedata_aux_proxy create is FAIL!!");
}

bool CEmpTaskWindow::t_CheckDataControlproxy() {
  return Check(__func__, svc_datacontrol_proxy, TVServiceAPI::CreateDataControl, t_eWindow,
               "svc_datacontrol_proxy is NULL, t_eWindow =%d", "CEmpTaskWindow svc_datacontrol_proxy create is FAIL!!");
}

bool CEmpTaskWindow::t_CheckTunerControlproxy() {
  return Check(__func__, tuner_ctrl_proxy, TVServiceAPI::CreateTunerControl, t_eWindow,
               "tuner_ctrl_proxy is NULL, t_eWindow =%d", "CEmpTaskWindow tuner_ctrl_proxy create is FAIL!!");
}

bool CEmpTaskWindow::t_NeedServiceproxy() {
  return Needed(t_CheckServiceproxy(), "Serviceproxy is NULL");
}

bool CEmpTaskWindow::t_NeedServiceNavigationproxy() {
  return Needed(t_CheckServiceNavigationproxy(), "ServiceNavigationproxy is NULL");
}

bool CEmpTaskWindow::t_NeedSourceControlproxy() {
  return Needed(t_CheckSourceControlproxy(), "SourceControlproxy is NULL");
}

bool CEmpTaskWindow::t_NeedVideoControlproxy() {
  return Needed(t_CheckVideoControlproxy(), "VideoControlproxy is NULL");
}

bool CEmpTaskWindow::t_NeedAVControlproxy() {
  return Needed(t_CheckAVControlproxy(), "AVControlproxy is NULL");
}

bool CEmpTaskWindow::t_NeedServiceDataAuxproxy() {
  return Needed(t_CheckServiceDataAuxproxy(), "ServiceDataAuxproxy is NULL");
}

bool CEmpTaskWindow::t_NeedDataControlproxy() {
  return Needed(t_CheckDataControlproxy(), "ServiceDataControlproxy is NULL");
}

bool CEmpTaskWindow::t_NeedTunerControlproxy() {
  return Needed(t_CheckTunerControlproxy(), "TunerControlproxy is NULL");
}

bool CEmpTaskWindow::t_GetAppId(std::string& appId) {
  appId.clear();
  if (m_pEngine != nullptr && !Reach([&] { appId = m_pEngine->GetAppInfo(eAPP_INFO_APP_ID); })) return false;
  if (appId.empty()) {
    KEL_LOG(kFailure, "Could not get app ID.");
    appId = "NoAppId";
  }
  KEL_LOG(kInformation, "appid is %s", appId.c_str());
  return true;
}

void CEmpTaskWindow::t_ClearChannelList() {
  for (TCServiceData* service : m_ChannelList) delete service;
  m_ChannelList.clear();
  m_ChannelIndex.clear();
}

}  // namespace kel
