#pragma once

#include <list>

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

}  // namespace kel
