// SPDX-License-Identifier: MIT
// The favourite groups of a service. Calls IService.
#include <json/json.h>

#include <map>
#include <string>

#include "Ask.h"
#include "EmpTaskWindow.h"
#include "JsonText.h"
#include "tvservice/IService.h"

namespace kel {

namespace {

/// The first digit of a number, since applications expect keys and values of one character.
std::string Digit(int number) {
  return std::to_string(number).substr(0, 1);
}

std::string Document(const std::map<unsigned char, bool>& favorites) {
  Json::Value root(Json::objectValue);
  for (const auto& [group, member] : favorites) {
    KEL_LOG(kInformation, "itor->first = %d,itor->second = %d", static_cast<int>(group), static_cast<int>(member));
    const std::string key = Digit(group);
    KEL_LOG(kInformation, "firstdata = %s", key.c_str());
    KEL_LOG(kInformation, "firststr = %s", key.c_str());
    const std::string value = Digit(member ? 1 : 0);
    KEL_LOG(kInformation, "seconddata = %s", value.c_str());
    KEL_LOG(kInformation, "secondstr = %s", value.c_str());
    root[key] = value;
  }
  return WriteJson(root);
}

}  // namespace

int CEmpTaskWindow::UpdateFavorites(unsigned long long serviceId, bool value, char group) {
  const LogScope scope(__func__);
  if (!t_NeedServiceproxy()) return 0;
  KEL_LOG(kInformation, "serviceId == %llu, value = %d, group = %d", serviceId, static_cast<int>(value),
          static_cast<int>(static_cast<signed char>(group)));
  const int result = Ask(svc_proxy, [&](IService& services) {
    return services.SetFavorites({{serviceId, value}}, group);
  });
  return result > 0 ? 1 : -1;
}

int CEmpTaskWindow::GetFavorites(unsigned long long& serviceId, std::string& strFavorites) {
  const LogScope scope(__func__);
  if (!t_NeedServiceproxy()) return 0;
  KEL_LOG(kInformation, "serviceId == %llu", serviceId);
  constexpr int failed = -1;
  return Try(failed, [&] {
    std::map<unsigned char, bool> favorites;
    if (svc_proxy->GetFavorites(serviceId, favorites) <= 0) {
      KEL_LOG(kFailure, "GetFavorites failed");
      return failed;
    }
    strFavorites = Document(favorites);
    KEL_LOG(kInformation, "retStr = %s", strFavorites.c_str());
    return 1;
  });
}

}  // namespace kel
