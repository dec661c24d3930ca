// SPDX-License-Identifier: MIT
#pragma once

#include <list>
#include <map>
#include <utility>

#include "tvservice/TCCriteriaHelper.h"
#include "tvservice/TCServiceData.h"

/// The service database. Made by `TVServiceAPI::CreateService`; owned by the library.
class IService {
 public:
  virtual ~IService();

  /// Fills `service` with the first service that meets the criteria.
  /// @param count  how many services are looked for; 1 here.
  /// @return greater than 0 when one was found; otherwise `service` is not to be read.
  virtual int FindService(TCCriteriaHelper& criteria, TCServiceData& service, int count) = 0;

  /// Puts services into a favourite group or takes them out.
  /// @param favorites  service id, and true to put it into the group.
  /// @param group      the group's number, read as unsigned 8 bits.
  /// @return greater than 0 on success.
  virtual int SetFavorites(const std::list<std::pair<unsigned long long, bool>>& favorites, char group) = 0;

  /// The favourite groups that hold a value for a service: group number, and whether the service is a member.
  /// @return greater than 0 on success.
  virtual int GetFavorites(const unsigned long long& serviceId, std::map<unsigned char, bool>& favorites) = 0;
};
