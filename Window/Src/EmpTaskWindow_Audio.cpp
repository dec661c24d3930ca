// SPDX-License-Identifier: MIT
// The audio tracks of what is on screen, as the TV service knows them. Calls ServiceDataAux and IAVControl; on the ISP
// source the operations go to their variants for the secondary TV stack.
#include <json/json.h>

#include "Ask.h"
#include "EmpTaskWindow.h"
#include "JsonText.h"
#include "Records.h"
#include "ServiceFields.h"
#include "TaskFile.h"
#include "tvservice/IAVControl.h"
#include "tvservice/ServiceDataAux.h"

namespace kel {

namespace {

Json::Value TrackElement(unsigned position, const TSAudio& audio) {
  Json::Value element(Json::objectValue);
  element["index"] = position;
  element["pid"] = static_cast<int>(audio.pid);
  element["decodeType"] = audio.decodeType;
  element["audioMode"] = audio.audioMode;
  element["audioType"] = audio.audioType;
  element["lang"] = audio.lang;
  return element;
}

/// Logs the outcome of a variant for the secondary stack. @return true on success.
bool Told(int result, const char* succeeded, const char* failed) {
  const bool well = result == 1;
  KEL_LOG(well ? kInformation : kFailure, "%s", well ? succeeded : failed);
  return well;
}

}  // namespace

bool CEmpTaskWindow::t_NeedAudioproxies() {
  return t_NeedServiceDataAuxproxy() && t_NeedAVControlproxy();
}

int CEmpTaskWindow::GetMultiAudioInfo(std::string& strInfo) {
  const LogScope scope(__func__);
  if (IsSourceISP()) {
    const int result = GetMultiAudioInfo_D2TV(strInfo);
    return Told(result, "Successfull  get the audio information in CEmpTaskWindow::GetMultiAudioInfo_D2TV",
                "Fail to get the audio information in CEmpTaskWindow::GetMultiAudioInfo_D2TV");
  }
  TCServiceData service;
  if (t_GetCurrentChannel(service) != 1) return 0;
  if (!t_NeedServiceDataAuxproxy()) return 0;
  constexpr int failed = -1;
  return Try(failed, [&] { return t_ListAudio(ReadServiceId(service), strInfo); });
}

int CEmpTaskWindow::t_ListAudio(unsigned long long serviceId, std::string& strInfo) {
  unsigned count = 0;
  servicedata_aux_proxy->GetAudioSize(serviceId, count);
  Json::Value root(Json::objectValue);
  root["NumOfAudio"] = count;
  KEL_LOG(kInformation, "sizeofAudio = %d\n", static_cast<int>(count));
  Json::Value items;
  unsigned ix = 0;
  for (; ix < count; ++ix) {
    auto audio = Zeroed<TSAudio>();
    if (servicedata_aux_proxy->GetAudio(serviceId, static_cast<int>(ix), audio) <= 0) {
      KEL_LOG(kFailure, "GetAudio failed.\n");
      continue;
    }
    KEL_LOG(kInformation, "GetAudio success.\n");
    items.append(TrackElement(ix, audio));
  }
  KEL_LOG(kInformation, "ix = %d", static_cast<int>(ix));
  if (ix != 0) root["items"] = std::move(items);
  strInfo = WriteJson(root);
  KEL_LOG(kInformation, "CEmpTaskWindow::GetMultiAudioInfo ::jsonstr =>[%s]", strInfo.c_str());
  return 1;
}

int CEmpTaskWindow::GetCurrentAudioInfo(std::string& strInfo) {
  const LogScope scope(__func__);
  if (IsSourceISP()) {
    const int result = GetCurrentAudioInfo_D2TV(strInfo);
    return Told(result, "Successfull  get the audio information in CEmpTaskWindow::GetCurrentAudioInfo_D2TV",
                "Fail to get the audio information in CEmpTaskWindow::GetCurrentAudioInfo_D2TV");
  }
  if (!t_NeedAudioproxies()) return 0;
  constexpr int failed = -1;
  return Try(failed, [&] { return t_TellAudio(strInfo); });
}

int CEmpTaskWindow::t_TellAudio(std::string& strInfo) {
  int result = 1;
  int lang = -1;
  int index = -1;
  if (av_ctrl_proxy->GetCurrentAudioInfo(&lang, &index) <= 0) {
    KEL_LOG(kFailure, "GetCurrentAudioInfo failed");
    result = -1;
  }
  TCServiceData service;
  if (t_GetCurrentChannel(service) != 1) {
    KEL_LOG_ERROR(kTaskFile, kFailure);
    KEL_LOG(kFailure, "[CEmpTaskWindow::%s] Failed to get data.", LogScope::Name());
    return -1;
  }
  auto audio = Zeroed<TSAudio>();
  if (servicedata_aux_proxy->GetAudio(ReadServiceId(service), index, audio) <= 0) {
    KEL_LOG(kFailure, "GetAudio failed");
    result = -1;
  }
  Json::Value root(Json::objectValue);
  root["pid"] = static_cast<int>(audio.pid);
  root["lang"] = lang;
  root["index"] = index;
  constexpr int noPid = -1;  // the log line has never had the track's own PID
  KEL_LOG(kInformation, "GetCurrentAudioInfo =>pid:%d, index:%d lang:%d", noPid, index, lang);
  strInfo = WriteJson(root);
  return result;
}

int CEmpTaskWindow::ChangeAudioPID(short pid) {
  const LogScope scope(__func__);
  if (IsSourceISP()) {
    const int result = ChangeAudioPID_D2TV(pid);
    return Told(result, "Successfull  get the audio information in CEmpTaskWindow::ChangeAudioPID_D2TV",
                "Fail to get the audio information in CEmpTaskWindow::ChangeAudioPID_D2TV");
  }
  if (!t_NeedAudioproxies()) return 0;
  TCServiceData service;
  if (t_GetCurrentChannel(service) != 1) return 0;
  constexpr int failed = 0;
  return Try(failed, [&] { return t_SelectAudio(ReadServiceId(service), pid); });
}

int CEmpTaskWindow::t_SelectAudio(unsigned long long serviceId, short pid) {
  unsigned count = 0;
  servicedata_aux_proxy->GetAudioSize(serviceId, count);
  KEL_LOG(kInformation, "SizeOfAudio = %d.\n", static_cast<int>(count));
  for (unsigned k = 0; k < count; ++k) {
    auto audio = Zeroed<TSAudio>();
    const int position = static_cast<int>(k);
    servicedata_aux_proxy->GetAudio(serviceId, position, audio);
    KEL_LOG(kInformation, "k =%d,audio.pid = %d,pid = %d!", position, static_cast<int>(audio.pid),
            static_cast<int>(pid));
    if (static_cast<int>(audio.pid) != static_cast<int>(pid)) continue;
    KEL_LOG(kInformation, "SetCurrentAudioByIndex begin!");
    const bool selected = av_ctrl_proxy->SetCurrentAudioByIndex(position) > 0;
    if (selected) {
      KEL_LOG(kInformation, "SetCurrentAudioByIndex success!");
    } else {
      KEL_LOG(kFailure, "SetCurrentAudioByIndex failed!");
    }
    return selected ? 1 : 0;
  }
  KEL_LOG(kFailure, "Don't find pid = %d in curCh = %llu!", static_cast<int>(pid), serviceId);
  return -1;
}

bool CEmpTaskWindow::ChangeAudioByIndex(int index) {
  const LogScope scope(__func__);
  if (IsSourceISP()) {
    const int result = ChangeAudioByIndex_D2TV(index);
    return Told(result, "Successfull  get the audio information in CEmpTaskWindow::ChangeAudioByIndex_D2TV",
                "Fail to get the audio information in CEmpTaskWindow::ChangeAudioByIndex_D2TV");
  }
  if (!t_NeedAVControlproxy()) return false;
  const int result = Ask(av_ctrl_proxy, [=](IAVControl& av) { return av.SetCurrentAudioByIndex(index); });
  KEL_LOG(kInformation, "SetAudioByIndex =>[%d]", index);
  return result > 0;
}

int CEmpTaskWindow::SetSourceVolume(unsigned char /*volume*/) {
  return 0;
}

}  // namespace kel
