#pragma once

#include <list>

#include "Ask.h"
#include "Criteria.h"
#include "tvservice/IServiceNavigation.h"
#include "tvservice/TCServiceData.h"

namespace kel {

/// Records that the TV service hands over; deleted when the list goes.
struct ServiceList {
  ServiceList() = default;
  ServiceList(const ServiceList&) = delete;
  ServiceList& operator=(const ServiceList&) = delete;
  ~ServiceList() {
    for (TCServiceData* service : services) delete service;
  }
  std::list<TCServiceData*> services;
};

/// Appends a record for each service that meets the criteria, in any TV mode; the caller deletes them, also after a
/// failure. A null pointer in place of a record is dropped, so that neither counts nor positions know of it.
/// @param at  the operation that asks. @return what the set answers, greater than 0 on success; -1 without a navigation
/// and when the call throws.
inline int ListServices(Location at, IServiceNavigation* navigation, TCCriteriaHelper& criteria,
                        std::list<TCServiceData*>& services) {
  const int result = Ask(at, navigation, [&](IServiceNavigation& asked) {
    return asked.GetServiceList(criteria, services, AnyMode(), 0, 0);
  });
  services.remove(nullptr);
  return result;
}

}  // namespace kel
