// SPDX-License-Identifier: MIT
#pragma once

#include <list>
#include <map>
#include <utility>

#include "tvservice/TCCriteriaHelper.h"
#include "tvservice/TCServiceData.h"

/// The service database. Created by `TVServiceAPI::CreateService`; owned by the library.
class IService {
 public:
  virtual ~IService();

  /// Fills `service` with the first service that meets the criteria.
  /// @param count  the number of services to find; 1 here.
  /// @return greater than 0 when a service was found; otherwise `service` must not be read.
  virtual int FindService(TCCriteriaHelper& criteria, TCServiceData& service, int count) = 0;

  /// Adds services to a favourite group, or removes them.
  /// @param favorites  service ids, each with true to add it to the group.
  /// @param group      the group's number, read as unsigned 8 bits.
  /// @return greater than 0 on success.
  virtual int SetFavorites(const std::list<std::pair<unsigned long long, bool>>& favorites, char group) = 0;

  /// The favourite groups with an entry for a service: the group's number, and true if the service is a member.
  /// @return greater than 0 on success.
  virtual int GetFavorites(const unsigned long long& serviceId, std::map<unsigned char, bool>& favorites) = 0;
};
