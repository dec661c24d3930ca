// SPDX-License-Identifier: MIT
// The audio tracks of the ISP source, which the secondary TV stack shows. Calls CD2tvMgrProxy. Reading tracks writes a
// document on every path, even when the stack fails.
#include <json/json.h>

#include "Ask.h"
#include "D2tvManager.h"
#include "EmpTaskWindow.h"
#include "JsonText.h"

namespace kel {

namespace {

Json::Value NoTracks() {
  Json::Value root(Json::objectValue);
  root["NumOfAudio"] = 0;
  root["items"] = Json::Value(Json::arrayValue);
  return root;
}

Json::Value TrackElement(const MVPDAudio& audio) {
  Json::Value element(Json::objectValue);
  element["index"] = audio.index;
  element["pid"] = audio.pid;
  element["decodeType"] = audio.decodeType;
  element["audioMode"] = static_cast<unsigned>(audio.audioMode);
  element["audioType"] = static_cast<unsigned>(audio.audioType);
  element["lang"] = static_cast<unsigned>(audio.lang);
  return element;
}

/// The tracks that can be read; null when none can.
Json::Value ReadTracks(CD2tvMgrProxy& manager, unsigned count) {
  Json::Value items;
  for (unsigned k = 0; k < count; ++k) {
    MVPDAudio audio{};
    if (manager.GetMultiAudioInfo(&audio, k) != 0) {
      KEL_LOG(kFailure, "CEmpTaskWindow::GetMultiAudioInfo::GetMultiAudioInfo() fail to return   ");
      continue;
    }
    KEL_LOG(kInformation,
            "CEmpTaskWindow::GetMultiAudioInfo::audioList[index]==>%d \n audioList[pid]==>%d \n "
            "audioList[decodeType]==>%d \n audioList[audioMode]==> %d \n audioList[audioType]==> %d "
            "audioList[lang]==> %d\n",
            audio.index, audio.pid, audio.decodeType, audio.audioMode, audio.audioType, audio.lang);
    items.append(TrackElement(audio));
  }
  return items;
}

/// @return false, after a log line, when the stack fails.
bool ListTracks(Json::Value& root) {
  CD2tvMgrProxy* const manager = D2tvManager();
  if (manager == nullptr) {
    KEL_LOG(kFailure, "Invalid Channel Manager Instance.");
    return false;
  }
  unsigned count = 0;
  if (manager->GetTotalNumOfAudio(&count) != 0) {
    KEL_LOG(kFailure, "CEmpTaskWindow::GetMultiAudioInfo:: GetTotalNumOfAudio()  fail to return   ");
    return false;
  }
  KEL_LOG(kInformation,
          "CEmpTaskWindow::GetMultiAudioInfo: GetTotalNumOfAudio  sucessufully returned : NumofAudio==> %d ",
          static_cast<int>(count));
  root["NumOfAudio"] = count;
  if (count == 0) {
    root["items"] = Json::Value(Json::arrayValue);
    KEL_LOG(kInformation,
            "CEmpTaskWindow::GetMultiAudioInfo:: index <= 0; root items = undefined : for handling undefined case "
            "\n");
    return true;
  }
  root["items"] = ReadTracks(*manager, count);
  KEL_LOG(kInformation, "CEmpTaskWindow::GetMultiAudioInfo:: root items = items : after \n");
  return true;
}

Json::Value CurrentTrack(int pid, int index, unsigned lang) {
  Json::Value root(Json::objectValue);
  root["pid"] = pid;
  root["lang"] = lang;
  root["index"] = index;
  return root;
}

}  // namespace

int CEmpTaskWindow::GetMultiAudioInfo_D2TV(std::string& strInfo) {
  const LogScope scope(__func__);
  KEL_LOG(kInformation, "CEmpTaskWindow::GetMultiAudioInfo::Start of  GetMultiAudioInfo \n ");
  constexpr int failed = -1;
  Json::Value root(Json::objectValue);
  if (!Try(false, [&] { return ListTracks(root); })) {
    return Try(failed, [&] {
      strInfo = WriteJson(NoTracks());
      return failed;
    });
  }
  return Try(failed, [&] {
    strInfo = WriteJson(root);
    KEL_LOG(kInformation, "CEmpTaskWindow::GetMultiAudioInfo end of  GetMultiAudioInfo \n ");
    return 1;
  });
}

int CEmpTaskWindow::GetCurrentAudioInfo_D2TV(std::string& strInfo) {
  const LogScope scope(__func__);
  KEL_LOG(kInformation, "CEmpTaskWindow::GetCurrentAudioInfo_D2TV::Start of  GetCurrentAudioInfo \n ");
  int pid = -1;
  int index = -1;
  unsigned lang = 0;
  CD2tvMgrProxy* const manager = D2tvManager();
  bool known = false;
  if (manager == nullptr) {
    KEL_LOG(kFailure, "Invalid Channel Manager Instance.");
  } else if (Ask(manager, [&](CD2tvMgrProxy& stack) { return stack.GetCurrentAudioInfo(&pid, &index, &lang); }) == 0) {
    known = true;
    KEL_LOG(kInformation, "CEmpTaskWindow::GetCurrentAudioInfo_D2TV::GetCurrentAudioInfo =>pid:%d, index:%d lang:%d",
            pid, index, static_cast<int>(lang));
  } else {
    KEL_LOG(kFailure, "CEmpTaskWindow::GetMultiAudioInfo::GetMultiAudioInfo() fail to return   ");
  }
  constexpr int failed = -1;
  return Try(failed, [&] {
    strInfo = WriteJson(known ? CurrentTrack(pid, index, lang) : CurrentTrack(-1, -1, 0));
    return known ? 1 : failed;
  });
}

int CEmpTaskWindow::ChangeAudioPID_D2TV(short pid) {
  const LogScope scope(__func__);
  KEL_LOG(kInformation, "CEmpTaskWindow::ChangeAudioPID::ChangeAudioByPID Start!!");
  CD2tvMgrProxy* const manager = D2tvManager();
  if (manager == nullptr) {
    KEL_LOG(kFailure, "CEmpTaskWindow::ChangeAudioPID::Invalid Channel Manager Instance.");
    return -1;
  }
  const int result =
      Ask(manager, [=](CD2tvMgrProxy& stack) { return stack.ChangeAudioByPID(static_cast<unsigned>(pid)); });
  if (result != 0) {
    KEL_LOG(kInformation, "CEmpTaskWindow::ChangeAudioPID::SetAudioByPID =>[%d]", static_cast<int>(pid));
    return result;
  }
  KEL_LOG(kInformation, "CEmpTaskWindow::ChangeAudioPID::ChangeAudioByPID Success!!");
  return 1;
}

int CEmpTaskWindow::ChangeAudioByIndex_D2TV(int index) {
  const LogScope scope(__func__);
  KEL_LOG(kInformation, "CEmpTaskWindow::ChangeAudioByIndex()::ChangeAudioByIndex Start!!");
  CD2tvMgrProxy* const manager = D2tvManager();
  if (manager == nullptr) {
    KEL_LOG(kFailure, "CEmpTaskWindow::ChangeAudioByIndex()::Invalid Channel Manager Instance.");
    return -1;
  }
  KEL_LOG(kInformation, "CEmpTaskWindow::ChangeAudioByIndex::SetAudioByIndex =>[%d]", index);
  const int result =
      Ask(manager, [=](CD2tvMgrProxy& stack) { return stack.ChangeAudioByIndex(static_cast<unsigned>(index)); });
  if (result != 0) return result;
  KEL_LOG(kInformation, "CEmpTaskWindow::ChangeAudioByIndex()::ChangeAudioByIndex Success!!");
  return 1;
}

}  // namespace kel
