// SPDX-License-Identifier: MIT
#pragma once

#include <list>

#include "Ask.h"
#include "Criteria.h"
#include "tvservice/IServiceNavigation.h"
#include "tvservice/TCServiceData.h"

namespace kel {

/// Owns records from the TV service and deletes them with the list.
struct ServiceList {
  ServiceList() = default;
  ServiceList(const ServiceList&) = delete;
  ServiceList& operator=(const ServiceList&) = delete;
  ~ServiceList() {
    for (TCServiceData* service : services) delete service;
  }
  std::list<TCServiceData*> services;
};

/// Appends a record for each service that meets the criteria, in any TV mode. The caller deletes the records, even
/// after a failure. Null pointers in place of records are dropped, so they affect neither counts nor positions.
/// @return the result of the call, greater than 0 on success; -1 when `navigation` is null or the call throws.
inline int ListServices(IServiceNavigation* navigation, TCCriteriaHelper& criteria,
                        std::list<TCServiceData*>& services) {
  const int result = Ask(
      navigation, [&](IServiceNavigation& asked) { return asked.GetServiceList(criteria, services, AnyMode(), 0, 0); });
  services.remove(nullptr);
  return result;
}

}  // namespace kel
