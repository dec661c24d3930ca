// SPDX-License-Identifier: MIT
// The subtitles of what is on screen: of the TV service, or of the secondary TV stack while the ISP source is shown.
// Calls ServiceDataAux, IDataControl, IServiceNavigation, TCNavigationModeHelper and CD2tvMgrProxy.
#include <json/json.h>

#include "Ask.h"
#include "Criteria.h"
#include "D2tvManager.h"
#include "EmpTaskWindow.h"
#include "JsonText.h"
#include "Records.h"
#include "ServiceFields.h"
#include "tvservice/IDataControl.h"
#include "tvservice/IServiceNavigation.h"
#include "tvservice/ServiceDataAux.h"
#include "tvservice/TCNavigationModeHelper.h"

namespace kel {

namespace {

// The paths log as their operations.

constexpr int kNoLanguage = -1;

Json::Value NoSubtitles() {
  Json::Value root(Json::objectValue);
  root["NumOfSubtitle"] = 0;
  root["NumOfTTX"] = 0;
  root["NumOfTTXSubtitle"] = 0;
  root["subtitle"] = Json::Value(Json::arrayValue);
  return root;
}

template <typename Language>
Json::Value Element(unsigned index, Language lang) {
  Json::Value element(Json::objectValue);
  element["index"] = index;
  element["lang"] = lang;
  return element;
}

/// The entries that the secondary stack can read; null when it can read none.
Json::Value ReadEntries(CD2tvMgrProxy& manager, unsigned total) {
  Json::Value items;
  for (unsigned i = 0; i < total; ++i) {
    const int position = static_cast<int>(i);
    KEL_LOG(kInformation, "CEmpTaskWindow::GetSubtitleInfo:: Index NO is :[%d] ", position);
    DVBSubtitleInfo info{};
    if (manager.GetDVBSubtitleInfo(&info, position) != 0) {
      KEL_LOG(kFailure, "CEmpTaskWindow::GetSubtitleInfo :pCHMgr->GetDVBSubtitleInf  call Fail. ");
      continue;
    }
    KEL_LOG(kInformation, "CEmpTaskWindow::GetSubtitleInfo :pCHMgr->GetDVBSubtitleInf  call Success. ");
    KEL_LOG(kInformation, "CEmpTaskWindow::GetSubtitleInfo :sbtList[index]=> [%d] and sbtList[lang] =>[%d] value  ",
            static_cast<int>(info.index), static_cast<int>(info.lang));
    items.append(Element(info.index, info.lang));
  }
  return items;
}

/// @return false, after a log line, when the secondary stack fails.
bool ListEntries(Json::Value& root) {
  CD2tvMgrProxy* const manager = D2tvManager();
  if (manager == nullptr) {
    KEL_LOG(kFailure, "Invalid Channel Manager Instance.");
    return false;
  }
  unsigned subtitles = 0;
  unsigned teletext = 0;
  unsigned teletextSubtitles = 0;
  if (manager->GetTotalNumOfSubtitle(&subtitles, &teletext, &teletextSubtitles) != 0) {
    KEL_LOG(kFailure, "CEmpTaskWindow::GetSubtitleInfo GetTotalNumOfSubtitle fail to return  \n ");
    return false;
  }
  KEL_LOG(kInformation,
          "CEmpTaskWindow::GetSubtitleInfo GetTotalNumOfSubtitle  sucessufully returned ::with  NumOfSubtitle "
          "=>[%d]",
          static_cast<int>(subtitles));
  root["NumOfSubtitle"] = subtitles;
  root["NumOfTTX"] = teletext;
  root["NumOfTTXSubtitle"] = teletextSubtitles;
  const unsigned total = subtitles + teletext + teletextSubtitles;
  KEL_LOG(kInformation, "CEmpTaskWindow::GetSubtitleInfo:: root[TotalSubtitleSize]==> [%d]   ",
          static_cast<int>(total));
  KEL_LOG(kInformation,
          "CEmpTaskWindow::GetSubtitleInfo:: root[NumOfSubtitle]==> [%d]  :: root[NumOfTTX]==> [%d] :: "
          "root[NumOfTTXSubtitle]==> [%d]  ",
          static_cast<int>(subtitles), static_cast<int>(teletext), static_cast<int>(teletextSubtitles));
  if (total == 0) {
    root["subtitle"] = Json::Value(Json::arrayValue);
    KEL_LOG(kInformation,
            "CEmpTaskWindow::GetSubtitleInfo:: root items = arr_value : for NUll handling undefined case \n");
    return true;
  }
  root["subtitle"] = ReadEntries(*manager, total);
  KEL_LOG(kInformation, "CEmpTaskWindow::GetSubtitleInfo :root[subtitle] = items\n ");
  return true;
}

void Write(const Json::Value& root, std::string& out) {
  out = WriteJson(root);
  KEL_LOG(kInformation, "CEmpTaskWindow::GetSubtitleInfo ::jsonstr =>[%s]", out.c_str());
}

/// Writes a document on every path.
int ListOfSecondaryStack(std::string& strInfo) {
  KEL_LOG(kInformation, "GetSubtitleInfo Start!!");
  constexpr int failed = -1;
  Json::Value root(Json::objectValue);
  const bool listed = Try(false, [&] { return ListEntries(root); });
  return Try(failed, [&] {
    if (!listed) {
      strInfo = WriteJson(NoSubtitles());
      return failed;
    }
    Write(root, strInfo);
    return 1;
  });
}

/// Logs the value used instead of the language when the secondary stack fails. @return the stack's number.
int NotCurrent(int result, int language) {
  KEL_LOG(kInformation, "CEmpTaskWindow::GetCurrentSubtitle::CurrentSubtitleLanguage =>[%d]", language);
  return result;
}

int CurrentOfSecondaryStack(int* language) {
  KEL_LOG(kInformation, "CEmpTaskWindow::GetCurrentSubtitle:: Start!!");
  CD2tvMgrProxy* const manager = D2tvManager();
  if (manager == nullptr) {
    KEL_LOG(kFailure, "CEmpTaskWindow::GetCurrentSubtitle::Invalid Channel Manager Instance.");
    return -1;
  }
  if (language == nullptr) return NotCurrent(kFailed, kNoLanguage);
  const int result = Ask(manager, [=](CD2tvMgrProxy& stack) { return stack.GetCurrentSubtitle(language); });
  if (result != 0) return NotCurrent(result, *language);
  KEL_LOG(kInformation, "CEmpTaskWindow::GetCurrentSubtitle:: Success!!");
  return 1;
}

int ChangeOnSecondaryStack(int index) {
  KEL_LOG(kInformation, "CEmpTaskWindow::ChangeSubtitleLanguage Start!!");
  CD2tvMgrProxy* const manager = D2tvManager();
  if (manager == nullptr) {
    KEL_LOG(kFailure, "Invalid Channel Manager Instance.");
    return -1;
  }
  KEL_LOG(kInformation, "CEmpTaskWindow::ChangeSubtitleLanguage for recieved SubtitleIndex:: [%d]!!", index);
  const int result = Ask(manager, [=](CD2tvMgrProxy& stack) { return stack.ChangeSubtitleLanguage(index); });
  if (result != 0) {
    KEL_LOG(kInformation, "CEmpTaskWindow::ChangeSubtitleLanguage Ends =>[%d]  Success", index);
    return result;
  }
  KEL_LOG(kInformation, "ChangeSubtitleLanguage Success!!");
  return 1;
}

}  // namespace

int CEmpTaskWindow::GetSubtitleInfo(std::string& strInfo) {
  const LogScope scope(__func__);
  if (IsSourceISP()) return ListOfSecondaryStack(strInfo);
  if (!t_NeedDataControlproxy()) return 0;
  if (!t_NeedServiceNavigationproxy()) return 0;
  constexpr int failed = -1;
  return Try(failed, [&] {
    unsigned long long serviceId = kNoServiceId;
    return t_AskSubtitledService(serviceId) ? t_ListSubtitles(serviceId, strInfo) : failed;
  });
}

/// The service on screen. Returns false, after a log line, when it can't be read.
bool CEmpTaskWindow::t_AskSubtitledService(unsigned long long& serviceId) {
  TSTvMode mode = AnyMode();
  if (svc_navi_proxy->GetTvMode(mode) != 1) {
    KEL_LOG(kFailure, "GetTvMode failed.");
    return false;
  }
  TCCriteriaHelper criteria;
  if (TCNavigationModeHelper::GetNavigationCriteria(mode, NAVIGATION_ALL, criteria, kNoServiceId) == 0) {
    KEL_LOG(kFailure, "Get navigation criteria failed");
    return false;
  }
  criteria.Fetch(TCServiceData::SERVICE_ID);
  TCServiceData service;
  if (svc_navi_proxy->GetCurrentServiceInfo(mode, criteria, service) <= 0) {
    KEL_LOG(kFailure, "GetCurrentServiceInfo failed.");
    return false;
  }
  serviceId = ReadServiceId(service);
  KEL_LOG(kInformation, "Current service Id = %llu", serviceId);
  return true;
}

int CEmpTaskWindow::t_ListSubtitles(unsigned long long serviceId, std::string& strInfo) {
  if (!t_NeedServiceDataAuxproxy()) return -1;
  unsigned size = 0;
  if (servicedata_aux_proxy->GetHybridSBTSize(serviceId, size) <= 0) {
    KEL_LOG(kFailure, "Get size of HybridSBT fails");
    return -1;
  }
  KEL_LOG(kInformation, "Size Of HybridSBT is %d.", static_cast<int>(size));
  Json::Value root(Json::objectValue);
  root["NumOfSubtitle"] = size;
  Json::Value items;
  int lang = kNoLanguage;  // carried over from track to track
  for (unsigned k = 0; k < size; ++k) {
    auto subtitle = Zeroed<TSHybridSBT>();
    if (servicedata_aux_proxy->GetHybridSBT(serviceId, static_cast<int>(k), lang, subtitle) > 0) {
      items.append(Element(k, lang));
    }
  }
  if (size != 0) root["subtitle"] = std::move(items);
  Write(root, strInfo);
  return 1;
}

int CEmpTaskWindow::GetCurrentSubtitle(int* language) {
  const LogScope scope(__func__);
  if (IsSourceISP()) return CurrentOfSecondaryStack(language);
  if (!t_NeedDataControlproxy()) return 0;
  int lang = kNoLanguage;
  auto subtitle = Zeroed<TSHybridSBT>();
  const int result =
      Ask(svc_datacontrol_proxy, [&](IDataControl& control) { return control.GetCurrentHybridSBT(lang, subtitle); });
  if (result < 1 || lang == kNoLanguage || language == nullptr) {
    KEL_LOG(kFailure, "CEmpTaskWindow::GetCurrentSubtitle:: Failed!!");
    return -1;
  }
  KEL_LOG(kInformation, "language:[%x] ", static_cast<unsigned>(lang));
  *language = lang;
  return 1;
}

int CEmpTaskWindow::ChangeSubtitle(int index) {
  const LogScope scope(__func__);
  KEL_LOG(kInformation, " this is %s", __func__);
  if (IsSourceISP()) return ChangeOnSecondaryStack(index);
  KEL_LOG(kInformation, "Current is not ISP Source.\n ");
  if (!t_NeedDataControlproxy()) return -1;
  const int result = Ask(svc_datacontrol_proxy, [=](IDataControl& control) { return control.SelectHybridSBT(index); });
  return result > 0 ? 1 : -1;
}

}  // namespace kel
